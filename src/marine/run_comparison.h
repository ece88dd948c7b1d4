// Whether two loaded computations are runs of the same set-up, so that their
// curves can be shown side by side: the same residuals, the same moving bodies
// with the same motions, the same force and moment files, and the same bodies
// with the same sub-bodies.
#pragma once

namespace marine {

class ProjectMonitorMarine;

bool runsConsistent(const ProjectMonitorMarine& first, const ProjectMonitorMarine& second);

}  // namespace marine
