#include "marine/monitor_marine.h"

#include "platform/console.h"
#include "platform/system_services.h"

namespace marine {
namespace {

MonitorMarine* processMonitor = nullptr;

}  // namespace

MonitorMarine* theMonitorMarine() { return processMonitor; }

std::string MonitorMarine::preferencesPathFor(const std::string& scratchFolder) {
  return scratchFolder + "/" + ".." + "/" + "preferences.dat";
}

MonitorMarine::MonitorMarine(const std::vector<std::string>& arguments,
                             const std::string& preferencesPath) {
  processMonitor = this;
  preferences_.read(preferencesPath);
  for (std::size_t i = 1; i + 1 < arguments.size(); ++i) {
    if (arguments[i] != "-startupdir") continue;
    platform::consoleLine("change directory to " + arguments[i + 1]);
    platform::changeDirectory(arguments[i + 1]);
  }
}

MonitorMarine::~MonitorMarine() {
  if (processMonitor == this) processMonitor = nullptr;
}

ProjectMonitorMarine* MonitorMarine::findProject(const std::string& path) {
  for (const auto& project : projects_) {
    if (project->path() == path) return project.get();
  }
  return nullptr;
}

ProjectMonitorMarine& MonitorMarine::addProject(const std::string& path) {
  projects_.push_back(std::make_unique<ProjectMonitorMarine>(path));
  projects_.back()->load();
  return *projects_.back();
}

bool MonitorMarine::removeProject(const std::string& path) {
  for (auto it = projects_.begin(); it != projects_.end(); ++it) {
    if ((*it)->path() == path) {
      projects_.erase(it);
      return true;
    }
  }
  return false;
}

bool MonitorMarine::refreshAll() {
  bool changed = false;
  for (const auto& project : projects_) {
    if (project->refresh().changed) changed = true;
  }
  return changed;
}

}  // namespace marine
