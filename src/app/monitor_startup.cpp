#include "app/monitor_startup.h"

#include <cstdlib>

#include "app/common_commands.h"
#include "marine/commands/curve_sources.h"
#include "marine/commands/marine_command_set.h"
#include "marine/monitor_marine.h"
#include "marine/script_hooks.h"
#include "platform/console.h"
#include "platform/system_services.h"
#include "script/monitor_session.h"
#include "script/plot_commands.h"
#include "turbo/commands/curve_sources.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"

namespace app {
namespace {

// Lets the marine model run its script requests in the session.
class SessionScriptEvaluator final : public marine::ScriptEvaluator {
 public:
  void evaluate(const std::string& script) override { evalScript(script); }
};

}  // namespace

ScriptEnvironment scriptEnvironment(const QVEnvironmentVariables& e) {
  const char* exportedBlt = std::getenv("BLT_LIBRARY");
  return {
      {"TCL_PATH", e.TCL_PATH},
      {"TCL_LIBRARY", e.TCL_LIBRARY},
      {"TK_LIBRARY", e.TK_LIBRARY},
      {"TIX_LIBRARY", e.TIX_LIBRARY},
      {"BLT_LIBRARY", e.BLT_LIBRARY},
      {"PLOTVU_PATH", e.PLOTVU_PATH},
      {"BLT_LIBRARY", exportedBlt == nullptr ? std::string{} : std::string(exportedBlt)},
      {"TMP_DIR", e.TMP_DIR},
      {"VORTAXE_DIR", e.VORTAXE_DIR},
      {"GMX_EXE", e.GMX_EXE},
      {"GRA_EXE", e.GRA_EXE},
      {"VTX_EXE", e.VTX_EXE},
      {"PLV_EXE", e.PLV_EXE},
      {"TURNKEY_INP_PATH", e.TURNKEY_INP_PATH},
      {"PYTHONPATH", e.PYTHONPATH},
      {"ONLINEHELPDUNE_DIR", e.ONLINEHELPDUNE_DIR},
      {"ONLINEHELPGMX_DIR", e.ONLINEHELPGMX_DIR},
      {"ONLINEHELPVEXO_DIR", e.ONLINEHELPVEXO_DIR},
      {"ONLINEHELPPLOTVU_DIR", e.ONLINEHELPPLOTVU_DIR},
  };
}

void sourceStartupScript(MonitorMode mode, const QVEnvironmentVariables& environment) {
  if (!environment.defined()) {
    platform::consoleLine("TCL_PATH is not defined. Cannot continue...");
    std::exit(0);
  }
  constexpr char sep = platform::kPathSeparator;
  std::string script = environment.TCL_PATH + sep + "_monitorTurbo" + sep;
  if (mode == MonitorMode::marine) script += std::string("_monitorMarine") + sep;
  script += "itf_init.tcl";
  evalScriptFile(script);
}

int runMonitor(int argc, char** argv) {
  const bool batchAsked = refuseBatchArguments(std::vector<std::string>(argv, argv + argc));
  QVEnvironmentVariables::initWin32(argc, argv);
  const QVEnvironmentVariables& environment = QVEnvironmentVariables::current();
  const MonitorMode mode = chooseMode(environment.QV_VERSION);
  platform::consoleLine(banner(mode));
  if (batchAsked) return 0;

  // The session and the monitor live until the process ends; nothing is torn
  // down at exit.
  const std::vector<std::string> arguments(argv, argv + argc);
  MonitorSessionH* session = nullptr;
  if (mode == MonitorMode::marine) {
    session = new MonitorSessionH(argc, argv, scriptEnvironment(environment));
    marine::setScriptEvaluator(new SessionScriptEvaluator);
    new marine::MonitorMarine(arguments,
                              marine::MonitorMarine::preferencesPathFor(environment.TMP_DIR));
    marine::registerMarineCommands();
  } else {
    turbo::buildCurveNameTables();
    session = new MonitorSessionH(argc, argv, scriptEnvironment(environment));
    new turbo::Monitor(arguments);
    turbo::registerTurboCommands();
  }
  registerCommonCommands();
  registerPlotCommands(session->interp().interp(), mode == MonitorMode::marine
                                                       ? marine::curveSources()
                                                       : turbo::curveSources());
  sourceStartupScript(mode, environment);
  session->runMainLoop();
  return 1;
}

}  // namespace app
