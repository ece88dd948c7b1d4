// Where the points of a marine curve stand: shared by the command that reads
// one point and the bulk route, so that both put a point at the same place.
#pragma once

#include <vector>

#include "marine/body_object.h"
#include "marine/project_monitor_marine.h"

namespace marine {

// The abscissa of position `position` of a body's curves: the iteration
// number in a steady run, the physical time (from `times`) in an unsteady
// one, as the float the scripts see; 0 outside the history.
double bodyAbscissa(const ProjectMonitorMarine& project, const BodyObject& body,
                    const std::vector<double>& times, long long position);

// The abscissa of residual row `position`: its iteration number, or in work
// units the time of the same row of the first body (residual rows keep no
// time of their own); 0 outside the history.
double residualAbscissa(const ProjectMonitorMarine& project, long long position);

}  // namespace marine
