// Commands that read the points of residual-history curves.
#include "script/result_stream.h"
#include "turbo/commands/command_arguments.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"

namespace turbo {
namespace {

// The global curve of each code of itf_get_curve_value.
constexpr const char* kGlobalCurveOfCode[] = {"Lift", "Axial thrust", "Qmax", "Tmax", "In", "Torque", "Out"};

// The residual curves of codes 6 to 39 of itf_get_curve_block_value.
constexpr const char* kResidualCurveOfCode[] = {
    "rms_d",   "max_d",   "rms_E",   "max_E",   "rms_wx",  "max_wx",         "rms_wy", "max_wy",
    "rms_wz",  "max_wz",  "rms_bladeForce", "rms_k", "max_bladeForce", "max_k", "rms_eps", "max_eps",
    "rms_sp1", "max_sp1", "rms_sp2", "max_sp2", "rms_sp3", "max_sp3",        "rms_sp4", "max_sp4",
    "rms_sp5", "max_sp5", "rms_sp6", "max_sp6", "rms_sp7", "max_sp7",        "rms_sp8", "max_sp8",
    "rms_nu",  "max_nu",
};
constexpr int kFirstResidualCode = 6;
constexpr int kLastResidualCode = 39;

// The abscissa of record `iter`: its iteration number, or its "WorkUnit"
// value when the script plots against work units; 0 past the end.
double abscissa(const ResFile& file, std::int32_t iter) {
  if (iter < 0 || static_cast<std::size_t>(iter) >= file.recordCount()) return 0.0;
  const IteRes record = file.record(static_cast<std::size_t>(iter));
  return workUnit == 1 ? static_cast<double>(record.valueAt(0)) : static_cast<double>(record.iterationNumber());
}

float valueAt(const ResFile& file, std::int32_t iter, std::int64_t position) {
  if (iter < 0 || static_cast<std::size_t>(iter) >= file.recordCount()) return 0.0f;
  return file.record(static_cast<std::size_t>(iter)).valueAt(position);
}

// x, then the named residual of the block at `iter` less its value at the
// first record; 0 past the end of the history.
void writeResidualPoint(ResultStream& result, Monitor& monitor, const ResFile& file,
                        const std::string& name, std::int32_t block, std::int32_t iter) {
  const std::int64_t position = indexOf(name, block, file.nbVars(), monitor.currentTurbulenceCount());
  const bool held = iter >= 0 && static_cast<std::size_t>(iter) < file.recordCount();
  const float value = held ? valueAt(file, iter, position) - valueAt(file, 0, position) : 0.0f;
  result << abscissa(file, iter) << static_cast<double>(value);
}

}  // namespace

void getHarmonicCurveBlockValue(ArgStream& arguments, ResultStream& result) {
  const std::int32_t code = integerArgument(arguments);
  const std::string prefix = textArgument(arguments);
  Monitor& monitor = *theMonitor();
  const ProjectMonitor* project = monitor.findProject(textArgument(arguments));
  const std::int32_t block = integerArgument(arguments);
  const std::int32_t iter = integerArgument(arguments);
  if (project == nullptr) return;
  const std::string name = prefix + "_harm" + std::to_string((static_cast<std::int64_t>(code) - 39) / 2);
  writeResidualPoint(result, monitor, project->resFile(), name, block, iter);
}

void getCurveValue(ArgStream& arguments, ResultStream& result) {
  const std::int32_t code = integerArgument(arguments);
  Monitor& monitor = *theMonitor();
  const ProjectMonitor* project = monitor.findProject(textArgument(arguments));
  const std::int32_t iter = integerArgument(arguments);
  if (project == nullptr) return;
  if (code < 0 || code >= static_cast<std::int32_t>(std::size(kGlobalCurveOfCode))) {
    result << 0 << 0;
    return;
  }
  const ResFile& file = project->resFile();
  float value = 0.0f;
  if (iter >= 0 && static_cast<std::size_t>(iter) < file.recordCount()) {
    value = file.record(static_cast<std::size_t>(iter)).valueOf(kGlobalCurveOfCode[code],
                                                                monitor.currentTurbulenceCount());
  }
  result << abscissa(file, iter) << static_cast<double>(value);
}

void getCurveBlockValue(ArgStream& arguments, ResultStream& result) {
  const std::int32_t code = integerArgument(arguments);
  Monitor& monitor = *theMonitor();
  const ProjectMonitor* project = monitor.findProject(textArgument(arguments));
  const std::int32_t block = integerArgument(arguments);
  const std::int32_t iter = integerArgument(arguments);
  if (project == nullptr) return;
  const std::string name =
      code >= kFirstResidualCode && code <= kLastResidualCode
          ? std::string(kResidualCurveOfCode[code - kFirstResidualCode])
          : "rms_harm" + std::to_string(static_cast<std::int64_t>(code) / 2 - 20);
  writeResidualPoint(result, monitor, project->resFile(), name, block, iter);
}

}  // namespace turbo
