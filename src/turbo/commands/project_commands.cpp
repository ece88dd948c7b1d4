// Commands on the loaded projects, their shape and the script's current values.
#include <algorithm>

#include "fileformat/work_unit.h"
#include "platform/console.h"
#include "script/argument_reading.h"
#include "script/monitor_session.h"
#include "script/result_stream.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/monitor.h"

namespace turbo {
namespace {

ProjectMonitor* projectByPath(ArgStream& arguments) {
  return theMonitor()->findProject(textArgument(arguments));
}

void writeModeDescription(ResultStream& result, const ProjectMonitor* project) {
  if (project == nullptr) {
    result << "3D"
           << "NO-K-E" << 0 << 0;
    result.beginList();
    result.endList();
    result << "TURBO";
    return;
  }
  const ResFile& file = project->resFile();
  result << file.module() << file.turbulence() << file.nbExtra1() << file.nbExtra2();
  result.beginList();
  for (const std::string& name : file.extraNames1()) result << name;
  for (const std::string& name : file.extraNames2()) result << name;
  result.endList();
  result << file.application();
}

}  // namespace

void addResFile(ArgStream& arguments, ResultStream&) {
  Monitor& monitor = *theMonitor();
  const std::string path = textArgument(arguments);
  for (const auto& project : monitor.runningProjects()) {
    if (project->name() == path) platform::consoleLine("Project already loaded");
  }
  monitor.addProject(path);
  monitor.updateAll();
}

void removeResFile(ArgStream& arguments, ResultStream&) {
  Monitor& monitor = *theMonitor();
  for (const std::string& path : textListArgument(arguments)) {
    if (monitor.removeProject(path) == 0) platform::consoleLine("can't remove it!");
  }
  monitor.currentProject = 0;
  monitor.currentBlock = 0;
  monitor.updateAll();
}

void setCurrentProject(ArgStream& arguments, ResultStream&) {
  Monitor& monitor = *theMonitor();
  const long long index = monitor.lastIndexOf(textArgument(arguments));
  if (index >= 0) monitor.currentProject = static_cast<int>(index);
}

void getCurrentNbBlocks(ArgStream&, ResultStream& result) {
  Monitor& monitor = *theMonitor();
  const ProjectMonitor* project = monitor.projectAt(monitor.currentProject);
  result << (project == nullptr ? 0U : project->resFile().nbBlocks());
}

void setCurrentBlock(ArgStream& arguments, ResultStream&) {
  theMonitor()->currentBlock = integerArgument(arguments) - 1;
}

void getCurrentMode(ArgStream&, ResultStream& result) {
  Monitor& monitor = *theMonitor();
  writeModeDescription(result, monitor.projectAt(monitor.currentProject));
}

void getMode(ArgStream& arguments, ResultStream& result) {
  Monitor& monitor = *theMonitor();
  if (monitor.projectCount() == 0) {
    writeModeDescription(result, nullptr);
    return;
  }
  writeModeDescription(result, monitor.projectAt(integerArgument(arguments)));
}

void readRunningProject(ArgStream&, ResultStream& result) {
  const auto& running = theMonitor()->runningProjects();
  result << static_cast<int>(running.size());
  for (const auto& project : running) result << project->name();
}

void getNbIter(ArgStream& arguments, ResultStream& result) {
  if (const ProjectMonitor* project = projectByPath(arguments)) {
    result << static_cast<int>(project->resFile().recordCount());
  }
}

void getRealNbIter(ArgStream& arguments, ResultStream& result) {
  if (const ProjectMonitor* project = projectByPath(arguments)) {
    result << static_cast<int>(project->resFile().lastIterationNumber());
  }
}

void getCurrentNbIter(ArgStream& arguments, ResultStream& result) {
  const std::int32_t i = integerArgument(arguments);
  const std::int32_t j = integerArgument(arguments);
  if (ProjectMonitor* project = projectByPath(arguments))
    result << project->currentIter().get(i, j);
}

void setCurrentNbIter(ArgStream& arguments, ResultStream&) {
  const std::int32_t i = integerArgument(arguments);
  const std::int32_t j = integerArgument(arguments);
  ProjectMonitor* project = projectByPath(arguments);
  const std::int32_t value = integerArgument(arguments);
  if (project != nullptr) project->currentIter().set(i, j, value);
}

void getNbBlock(ArgStream& arguments, ResultStream& result) {
  if (const ProjectMonitor* project = projectByPath(arguments)) {
    result << project->resFile().nbBlocks();
  }
}

void setWorkUnit(ArgStream& arguments, ResultStream&) {
  fileformat::workUnit = integerArgument(arguments);
  theMonitor()->settingsChanged = 1;
}

void getWorkUnit(ArgStream&, ResultStream& result) { result << fileformat::workUnit; }

void updateNowMonitor(ArgStream&, ResultStream& result) {
  Monitor& monitor = *theMonitor();
  int changed = 0;
  for (std::size_t i = 0; i < monitor.projectCount(); ++i) {
    if (monitor.updateProject(*monitor.projectAt(static_cast<long long>(i))) == 1) changed = 1;
  }
  result << changed;
}

void print(ArgStream& arguments, ResultStream&) { textArgument(arguments); }

void quitCommand(ArgStream&, ResultStream&) { theMonitorSession()->running = 0; }

void getResidualsPerRowChoice(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const ProjectMonitor* project = theMonitor()->findProject(path);
  if (project == nullptr) {
    platform::consoleLine("itf_get_residuals_per_row_choice, ERROR: residual file: " + path +
                          " not found!");
    result << 0;
    return;
  }
  result << project->resFile().headerInt();
}

}  // namespace turbo
