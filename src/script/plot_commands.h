// The command that the window scripts keep their curves in. The scripts fill
// it from the model in bulk, a range of positions of a served curve in one
// call, carried as numbers.
//
//   monitor_curve new                    a new, empty curve; answers its name
//   monitor_curve positions source ?argument ...?
//                                        the number of positions of the
//                                        served curve `source` names (see
//                                        the mode's table of curve sources)
//   monitor_curve fill curve first last source ?argument ...?
//                                        appends the points of positions
//                                        first..last of the served curve,
//                                        leaving out the missing ones;
//                                        answers {appended trailingMissing}:
//                                        the points appended and the first
//                                        position of the missing points that
//                                        end the range (-1 when none do).
//                                        Nothing is appended when the
//                                        arguments are wrong.
//   monitor_curve delete curve
//   monitor_curve length curve
//   monitor_curve truncate curve count   keeps the first count points
//   monitor_curve values curve first last
//                                        {xs ys} of the points first..last
//   monitor_curve thin curve xOut yOut xMin xMax columns
//                                        fills the BLT vectors xOut and yOut
//                                        with what a plot of `columns` pixels
//                                        can show between xMin and xMax (the
//                                        limits may be -Inf and Inf); answers
//                                        the number of points kept
//   monitor_curve statistics curve lastCount
//                                        {count mean standardDeviation minimum
//                                        maximum} of the last lastCount values
//                                        (all of them for 0)
//   monitor_curve verdict curve ?-confidence level? ?-tolerance fraction? ?-residual 0|1?
//                                        whether the curve has converged, as a
//                                        dict: verdict (converged, transient,
//                                        drifting, wide, short), transientEnd
//                                        (abscissa), samples, mean, halfWidth,
//                                        confidence, drift (0/1), period,
//                                        amplitude, ordersDropped and
//                                        stillFalling (residuals); a value
//                                        that does not apply is empty
#pragma once

#include <span>

#include "script/curve_source_row.h"

struct Tcl_Interp;

// `sources` lists the kinds of curves the mode serves; it must outlive the
// interpreter.
void registerPlotCommands(Tcl_Interp* interp, std::span<const CurveSourceRow> sources);
