// The mean of a correlated series and how well it is known, by batch means:
// the series is cut into a few long batches, whose means are nearly
// independent when each batch spans many correlation times, so that their
// spread gives the standard error of the mean (Student's t with one degree
// of freedom less than batches). The same batch means, regressed on their
// position, tell whether a trend is left beyond what the noise explains.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace convergence {

struct MeanEstimate {
  double mean = 0.0;
  double halfWidth = 0.0;  // of the interval at the confidence asked
  // Samples per independent sample: batch size × variance of the batch
  // means ÷ variance of the values (1 for white noise).
  double correlationTime = 1.0;
  bool drift = false;
  double driftT = 0.0;  // the slope's t statistic
};

// Batch limits: `limits[j]` to `limits[j + 1]` is batch j, positions into
// `values`; at least three batches.
std::vector<std::size_t> equalBatches(std::size_t first, std::size_t end, std::size_t batches);

// `abscissae` give each batch's position for the trend; `confidence` is the
// interval's level (0.95), `driftLevel` the level at which a trend counts.
MeanEstimate estimateMean(std::span<const double> values, std::span<const double> abscissae,
                          std::span<const std::size_t> limits, double confidence,
                          double driftLevel);

}  // namespace convergence
