// Everything loaded in marine mode: the projects and the user's preferences.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "marine/preferences.h"
#include "marine/project_monitor_marine.h"

namespace marine {

class MonitorMarine {
 public:
  // Reads the preferences file, then honours "-startupdir <folder>" among the
  // arguments (the first is the program) by making the folder the working
  // folder. Becomes the process's marine monitor.
  MonitorMarine(const std::vector<std::string>& arguments, const std::string& preferencesPath);
  ~MonitorMarine();
  MonitorMarine(const MonitorMarine&) = delete;
  MonitorMarine& operator=(const MonitorMarine&) = delete;

  // "preferences.dat" one folder above the scratch folder.
  static std::string preferencesPathFor(const std::string& scratchFolder);

  Preferences& preferences() { return preferences_; }

  const std::vector<std::unique_ptr<ProjectMonitorMarine>>& projects() const { return projects_; }
  // The project loaded under exactly this path; null when none is.
  ProjectMonitorMarine* findProject(const std::string& path);
  // Adds and loads a project; the project stays even when loading failed, and
  // later refreshes try again.
  ProjectMonitorMarine& addProject(const std::string& path);
  // Removes the project loaded under this path; false when none is.
  bool removeProject(const std::string& path);
  void removeAllProjects() { projects_.clear(); }
  // Refreshes every project; true when any of them reported a change.
  bool refreshAll();

  // The scripts' current project (a position in projects()) and a second
  // current index kept beside it; both go back to 0 when the scripts remove
  // projects by path.
  int currentProject = 0;
  int currentBlock = 0;

 private:
  Preferences preferences_;
  std::vector<std::unique_ptr<ProjectMonitorMarine>> projects_;
};

// The process's monitor in marine mode; null in turbomachinery mode.
MonitorMarine* theMonitorMarine();

}  // namespace marine
