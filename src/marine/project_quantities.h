// What a loaded computation offers by name: the force and moment quantities
// its run writes, and the motions of its moving bodies.
#pragma once

#include <string>
#include <vector>

#include "marine/component_histories.h"

namespace marine {

class ProjectMonitorMarine;

// Whether the run writes a quantity of the force or moment table: its file
// was read, and for a "Dyn" quantity the run is unsteady.
bool quantityPresent(const ProjectMonitorMarine& project, Component component, int quantity);

// The motion columns of the moving bodies, in body and column order, each
// name once.
std::vector<std::string> motionNames(const ProjectMonitorMarine& project);

}  // namespace marine
