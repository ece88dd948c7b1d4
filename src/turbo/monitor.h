// Everything loaded in turbomachinery mode: the projects (residual histories)
// and the diagram and profile files, with the values the scripts set (the
// current project and block, the work-unit abscissa).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fileformat/class_ids.h"
#include "turbo/blade_files.h"
#include "turbo/project_monitor.h"

namespace turbo {

class Monitor {
 public:
  static constexpr std::uint16_t kClassId = classid::kMonitor;

  // Opens every argument whose extension (after the last '.' of the whole
  // argument) is "res" as a project and reads them all, twice. Becomes the
  // process's monitor.
  explicit Monitor(const std::vector<std::string>& arguments);
  ~Monitor();
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  // Projects are numbered across both collections: the command line's first,
  // then the added ones.
  std::size_t projectCount() const { return runningProjects_.size() + addedProjects_.size(); }
  ProjectMonitor* projectAt(long long index);
  // The first project loaded under exactly this path.
  ProjectMonitor* findProject(const std::string& path);
  // Joint index of the last project loaded under this path, or -1.
  long long lastIndexOf(const std::string& path) const;
  const std::vector<std::unique_ptr<ProjectMonitor>>& runningProjects() const {
    return runningProjects_;
  }

  void addProject(const std::string& path);
  // Removes the first added project with this path: 1, else 0. Projects of the
  // command line are never removed.
  int removeProject(const std::string& path);
  int updateProject(ProjectMonitor& project);
  void updateAll();

  BladeFileRegistry<DiagramMonitor>& diagrams() { return diagrams_; }
  BladeFileRegistry<ProfileMonitor>& profiles() { return profiles_; }

  // The turbulence-equation count of the current project's run (0 when there
  // is none), which decides where species and harmonics lie in a record.
  int currentTurbulenceCount();

  int currentProject = 0;
  int currentBlock = 0;
  int settingsChanged = 0;
  int registryBusy = 0;

 private:
  template <typename Visit>
  void forEachProject(Visit visit);

  std::vector<std::unique_ptr<ProjectMonitor>> addedProjects_;
  std::vector<std::unique_ptr<ProjectMonitor>> runningProjects_;
  BladeFileRegistry<DiagramMonitor> diagrams_;
  BladeFileRegistry<ProfileMonitor> profiles_;
};

// The process's monitor in turbomachinery mode; null in marine mode.
Monitor* theMonitor();

// The extension of an argument: what follows its last '.'; empty without one.
std::string extensionOf(const std::string& argument);

}  // namespace turbo
