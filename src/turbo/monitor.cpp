#include "turbo/monitor.h"

#include "platform/console.h"
#include "turbo/curve_names.h"

namespace turbo {
namespace {

Monitor* processMonitor = nullptr;

}  // namespace

Monitor* theMonitor() { return processMonitor; }

std::string extensionOf(const std::string& argument) {
  const std::size_t dot = argument.rfind('.');
  return dot == std::string::npos ? std::string{} : argument.substr(dot + 1);
}

Monitor::Monitor(const std::vector<std::string>& arguments) {
  processMonitor = this;
  settingsChanged = 0;
  for (const std::string& argument : arguments) {
    if (extensionOf(argument) != "res") continue;
    runningProjects_.push_back(std::make_unique<ProjectMonitor>(argument, true));
    registryBusy = 1;
  }
  updateAll();
  settingsChanged = 0;
  updateAll();
}

Monitor::~Monitor() {
  if (processMonitor == this) processMonitor = nullptr;
}

template <typename Visit>
void Monitor::forEachProject(Visit visit) {
  for (const auto& project : runningProjects_) visit(*project);
  for (const auto& project : addedProjects_) visit(*project);
}

ProjectMonitor* Monitor::projectAt(long long index) {
  if (index < 0) return nullptr;
  const auto i = static_cast<std::size_t>(index);
  if (i < runningProjects_.size()) return runningProjects_[i].get();
  if (i - runningProjects_.size() < addedProjects_.size()) {
    return addedProjects_[i - runningProjects_.size()].get();
  }
  return nullptr;
}

ProjectMonitor* Monitor::findProject(const std::string& path) {
  ProjectMonitor* found = nullptr;
  forEachProject([&](ProjectMonitor& project) {
    if (found == nullptr && project.name() == path) found = &project;
  });
  return found;
}

long long Monitor::lastIndexOf(const std::string& path) const {
  long long index = 0;
  long long last = -1;
  for (const auto& project : runningProjects_) {
    if (project->name() == path) last = index;
    ++index;
  }
  for (const auto& project : addedProjects_) {
    if (project->name() == path) last = index;
    ++index;
  }
  return last;
}

void Monitor::addProject(const std::string& path) {
  registryBusy = 1;
  addedProjects_.push_back(std::make_unique<ProjectMonitor>(path, false));
  updateProject(*addedProjects_.back());
  registryBusy = 0;
}

int Monitor::removeProject(const std::string& path) {
  registryBusy = 1;
  for (auto it = addedProjects_.begin(); it != addedProjects_.end(); ++it) {
    if ((*it)->name() == path) {
      addedProjects_.erase(it);
      registryBusy = 0;
      return 1;
    }
  }
  return 0;
}

int Monitor::updateProject(ProjectMonitor& project) { return project.update(); }

void Monitor::updateAll() {
  forEachProject([this](ProjectMonitor& project) { updateProject(project); });
}

int Monitor::currentTurbulenceCount() {
  ProjectMonitor* project = projectAt(currentProject);
  return turbulenceEquationCount(project == nullptr ? "NO-K-E" : project->resFile().turbulence());
}

}  // namespace turbo
