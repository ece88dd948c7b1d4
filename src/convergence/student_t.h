// Quantiles of Student's t distribution, for confidence intervals computed
// from a handful of batch means.
#pragma once

namespace convergence {

// The t such that P(T <= t) = probability for T with `freedom` degrees of
// freedom (freedom >= 1, 0 < probability < 1).
double studentQuantile(double probability, int freedom);

}  // namespace convergence
