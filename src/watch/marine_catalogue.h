// The curves of a marine computation, named as its formulas name them:
//
//   ResU, ResV, ...            the residuals the file holds, against the
//                              iteration number
//   X_hull, THETA_hull, ...    the motions of each moving body
//   Fx_hull, MzV_keel, ...     forces and moments of each body and sub-body,
//                              against the iteration (steady run) or the
//                              physical time (unsteady run)
//   FxDyn_hull, ...            in an unsteady run, the converged value of
//                              each time step, against its physical time
//   Thrust1, Torque2, ...      the quantities of each actuator disk (disks
//                              numbered from 1 in the order of the file's
//                              columns), per step
//   Heave force, ...           the user quantities of user_data.csv, per row
//
// The custom curves of --formula come apart, under their own names.
#pragma once

#include <string>
#include <vector>

#include "marine/project_monitor_marine.h"
#include "watch/named_curve.h"

namespace watch {

// A custom plot of the project and the name the user gave it.
struct FormulaCurve {
  std::string name;
  std::size_t plot = 0;  // its number among the project's custom plots
};

// The curves of a loaded project, in the order above; none for a project
// that is not loaded.
std::vector<NamedCurve> marineCurves(marine::ProjectMonitorMarine& project);

// The custom plots of the formulas, under the formulas' names.
std::vector<NamedCurve> formulaCurves(marine::ProjectMonitorMarine& project,
                                      const std::vector<FormulaCurve>& formulas);

}  // namespace watch
