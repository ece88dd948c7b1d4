// Commands on the loaded projects and the script's current values.
#include <algorithm>

#include "fileformat/work_unit.h"
#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "marine/run_comparison.h"
#include "platform/console.h"
#include "script/arg_stream.h"
#include "script/monitor_session.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// A marine computation has one residual history: one block.
constexpr int kBlocksPerProject = 1;

// The preference group the scripts read.
constexpr const char* kPreferenceGroup = "Monitor";

}  // namespace

void addResFile(ArgStream& arguments, ResultStream& result) {
  MonitorMarine& monitor = *theMonitorMarine();
  const std::string path = textArgument(arguments);
  for (const auto& project : monitor.projects()) {
    if (project->path() == path) platform::consoleLine("Project already loaded");
  }
  result << 1 << monitor.addProject(path).path();
}

void removeResFile(ArgStream& arguments, ResultStream&) {
  MonitorMarine& monitor = *theMonitorMarine();
  for (const std::string& path : textListArgument(arguments)) {
    if (!monitor.removeProject(path))
      platform::consoleLine("Error! Could not remove project " + path);
  }
  monitor.refreshAll();
  monitor.currentProject = 0;
  monitor.currentBlock = 0;
}

void removeAllResFiles(ArgStream&, ResultStream&) { theMonitorMarine()->removeAllProjects(); }

void setCurrentProject(ArgStream& arguments, ResultStream&) {
  MonitorMarine& monitor = *theMonitorMarine();
  const std::string path = textArgument(arguments);
  const auto& projects = monitor.projects();
  const auto found = std::find_if(projects.begin(), projects.end(),
                                  [&](const auto& project) { return project->path() == path; });
  if (found != projects.end()) monitor.currentProject = static_cast<int>(found - projects.begin());
}

void getCurrentNbBlocks(ArgStream&, ResultStream& result) {
  const MonitorMarine& monitor = *theMonitorMarine();
  const bool known = monitor.currentProject >= 0 &&
                     static_cast<std::size_t>(monitor.currentProject) < monitor.projects().size();
  if (!known) platform::consoleLine("itf_get_current_nb_blocks - res is: zero");
  result << (known ? kBlocksPerProject : 0);
}

void readRunningProject(ArgStream&, ResultStream& result) {
  const auto& projects = theMonitorMarine()->projects();
  result << static_cast<int>(projects.size());
  for (const auto& project : projects) result << project->path();
}

void updateNowMonitor(ArgStream&, ResultStream& result) {
  result << (theMonitorMarine()->refreshAll() ? 1 : 0);
}

void quitCommand(ArgStream&, ResultStream&) { theMonitorSession()->running = 0; }

void getWorkUnit(ArgStream&, ResultStream& result) { result << fileformat::workUnit; }

void getStationalMode(ArgStream& arguments, ResultStream& result) {
  const ProjectMonitorMarine* project =
      findProject("itf_get_moment_conv_value", textArgument(arguments));
  result << (project != nullptr && project->unsteady() ? "Time [s]" : "Nonlinear Iterations");
}

void getPreference(ArgStream& arguments, ResultStream& result) {
  const std::string key = textArgument(arguments);
  const std::string fallback = textArgument(arguments);
  result << theMonitorMarine()->preferences().getPreference(kPreferenceGroup, key, fallback);
}

void checkRunsConsistency(ArgStream& arguments, ResultStream& result) {
  const std::string firstPath = textArgument(arguments);
  const std::string secondPath = textArgument(arguments);
  const ProjectMonitorMarine* first = findProject("check_runs_consistency", firstPath);
  const ProjectMonitorMarine* second =
      first == nullptr ? nullptr : findProject("check_runs_consistency", secondPath);
  result << (first == nullptr || second == nullptr || runsConsistent(*first, *second) ? 1 : 0);
}

}  // namespace marine
