// The curves that marine mode serves to the window in bulk, by kind:
//
//   residual path residual              a residual of the run
//   force path body sub quantity        a force of a body (sub -1) or of
//   moment path body sub quantity       one of its sub-bodies
//   motion path body motion             a motion of a moving body
//   convergedForce path body sub quantity
//   convergedMoment path body sub quantity
//                                       the converged value of each time step
//                                       of an unsteady run, at steps 1, 2, ...
//   disk path disk quantity abscissa    an actuator-disk quantity against the
//                                       quantity `abscissa`, or against the
//                                       step 1, 2, ... for -1
//   extra path quantity abscissa        a user quantity, likewise
//   custom path plot                    a custom plot
//
// Each puts its points where the commands that read one point put them, with
// the same values, and its number of positions is what those commands count.
#pragma once

#include <span>

#include "script/curve_source_row.h"

namespace marine {

std::span<const CurveSourceRow> curveSources();

}  // namespace marine
