// Where the start-up transient of a series ends, by MSER-5 (White, 1997):
// the series is cut into batches of five, and the cut is the number of
// leading batches whose removal minimises the squared standard error of the
// mean of the rest, Σ(Z - Z̄)² / (k - d)². The cut is looked for in the first
// half only; a minimum at the end of that half means the transient is still
// going (the rule is not to be trusted there).
#pragma once

#include <cstddef>
#include <span>

namespace convergence {

struct TransientCut {
  std::size_t end = 0;  // the first position of the steady part
  bool stillGoing = false;
};

TransientCut findTransientEnd(std::span<const double> values);

}  // namespace convergence
