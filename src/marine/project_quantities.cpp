#include "marine/project_quantities.h"

#include <algorithm>

#include "marine/project_monitor_marine.h"

namespace marine {

bool quantityPresent(const ProjectMonitorMarine& project, Component component, int quantity) {
  if (quantity < 0 || quantity >= static_cast<int>(kForceNames.size())) return false;
  const std::size_t file = static_cast<std::size_t>(quantity / 2) +
                           (component == Component::moment ? kComponentFiles : 0);
  const std::vector<ComponentFile>& files = project.componentFiles();
  if (file >= files.size() || !files[file].present()) return false;
  return quantity % 2 == 0 || project.unsteady();
}

std::vector<std::string> motionNames(const ProjectMonitorMarine& project) {
  std::vector<std::string> names;
  for (const BodyObject* body : project.motionBodies()) {
    for (const std::string& column : body->motion().columnNames()) {
      if (std::find(names.begin(), names.end(), column) == names.end()) names.push_back(column);
    }
  }
  return names;
}

}  // namespace marine
