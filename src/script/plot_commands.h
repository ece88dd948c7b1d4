// The command that the window scripts keep their curves in. The scripts fill
// it with what they fetched through the monitor's data commands; it reaches
// no data of its own.
//
//   monitor_curve new                    a new, empty curve; answers its name
//   monitor_curve delete curve
//   monitor_curve append curve xs ys     appends the pairs of two lists of
//                                        numbers of the same length
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
#pragma once

struct Tcl_Interp;

void registerPlotCommands(Tcl_Interp* interp);
