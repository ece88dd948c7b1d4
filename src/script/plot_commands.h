// Two commands that the window scripts use to draw long curves. They work on
// BLT vectors that the scripts have filled through the monitor's data
// commands; they reach no data of their own.
//
//   monitor_thin_curve xVector yVector xOut yOut xMin xMax columns
//       fills xOut/yOut with what a plot of `columns` pixels can show of the
//       curve between xMin and xMax; answers the number of points kept.
//   monitor_curve_statistics yVector lastCount
//       answers {count mean standardDeviation minimum maximum} of the last
//       `lastCount` values (all of them for 0).
#pragma once

struct Tcl_Interp;

void registerPlotCommands(Tcl_Interp* interp);
