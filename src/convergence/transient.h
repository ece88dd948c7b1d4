// Where the start-up transient of a series ends, by MSER-5 (White, 1997):
// the series is cut into batches of five, and the cut is the number of
// leading batches whose removal minimises the squared standard error of the
// mean of the rest, Σ(Z - Z̄)² / (k - d)². The cut is looked for in the first
// half only. A minimum beyond 40 % of the series means the transient is
// still going: a series that settled early has its minimum near its start,
// whereas a trend, which the rule trades against the noise, pushes the
// minimum deep into the first half, and what is left after such a cut is too
// short to tell a trend from slow noise.
#pragma once

#include <cstddef>
#include <span>

namespace convergence {

struct TransientCut {
  std::size_t end = 0;  // the first position of the steady part
  bool stillGoing = false;
};

// Batches of five values, or of one period for an oscillating series (MSER-m
// with m the period): the batch means of a short batch swing with the
// oscillation, which hides the end of the transient from the rule.
TransientCut findTransientEnd(std::span<const double> values, std::size_t batchSize = 5);

}  // namespace convergence
