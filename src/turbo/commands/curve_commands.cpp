// Commands that read the points of residual-history curves.
#include "script/argument_reading.h"
#include "script/result_stream.h"
#include "turbo/commands/residual_curves.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"

namespace turbo {
namespace {

// x, then the named residual of the block at `iter` less its value at the
// first record; 0 past the end of the history.
void writeResidualPoint(ResultStream& result, Monitor& monitor, const ResFile& file,
                        const std::string& name, std::int32_t block, std::int32_t iter) {
  const std::int64_t position =
      indexOf(name, block, file.nbVars(), monitor.currentTurbulenceCount());
  result << recordAbscissa(file, iter) << static_cast<double>(residualChange(file, iter, position));
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
  writeResidualPoint(result, monitor, project->resFile(), harmonicResidualName(code, prefix), block,
                     iter);
}

void getCurveValue(ArgStream& arguments, ResultStream& result) {
  const std::int32_t code = integerArgument(arguments);
  Monitor& monitor = *theMonitor();
  const ProjectMonitor* project = monitor.findProject(textArgument(arguments));
  const std::int32_t iter = integerArgument(arguments);
  if (project == nullptr) return;
  const char* name = globalCurveName(code);
  if (name == nullptr) {
    result << 0 << 0;
    return;
  }
  const ResFile& file = project->resFile();
  const std::int64_t position = indexOf(name, 0, file.nbVars(), monitor.currentTurbulenceCount());
  result << recordAbscissa(file, iter) << static_cast<double>(recordValue(file, iter, position));
}

void getCurveBlockValue(ArgStream& arguments, ResultStream& result) {
  const std::int32_t code = integerArgument(arguments);
  Monitor& monitor = *theMonitor();
  const ProjectMonitor* project = monitor.findProject(textArgument(arguments));
  const std::int32_t block = integerArgument(arguments);
  const std::int32_t iter = integerArgument(arguments);
  if (project == nullptr) return;
  writeResidualPoint(result, monitor, project->resFile(), blockResidualName(code), block, iter);
}

}  // namespace turbo
