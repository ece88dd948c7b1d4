// How monitor-watch ends, for job scripts.
#pragma once

namespace watch {

enum ExitStatus : int {
  kDone = 0,            // every awaited curve converged, or the watch was read once
  kBadUse = 1,          // bad arguments, or no readable computation
  kNotConverged = 2,    // --timeout ran out (or --once found them not converged)
  kStalled = 3,         // no file grew for --stall seconds
  kSignalOffset = 128,  // ended by a signal: 128 + its number (130 for SIGINT, 143 for SIGTERM)
};

}  // namespace watch
