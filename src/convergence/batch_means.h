// The mean of a correlated series and how well it is known, by batch means:
// the series is cut into a few long batches, whose means are nearly
// independent when each batch spans many correlation times, so that their
// spread gives the standard error of the mean (Student's t with one degree
// of freedom less than batches). The same batch means, regressed on their
// position, tell whether a trend is left beyond what the noise explains.
//
// Batches shorter than a few correlation times make the interval too narrow:
// neighbouring batch means are then correlated and each one varies less than
// the long-run variance says. For AR(1) noise the variance of the batch means
// falls short by about τ / (2 × batch size), τ the integrated correlation
// time. The steady part is therefore cut into fewer batches when it is short
// for its correlation (batchesFor), trading some width of the interval for
// its honesty.
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
  // The slope's t statistic; infinite when the batch means lie exactly on a
  // sloped line.
  double driftT = 0.0;
};

// Batch limits: `limits[j]` to `limits[j + 1]` is batch j, positions into
// `values`; at least three batches.
std::vector<std::size_t> equalBatches(std::size_t first, std::size_t end, std::size_t batches);

// How many batches a steady part of `count` values takes when its
// correlation time is `correlationTime` samples: kMostBatches when each batch
// then spans at least kBatchSpan correlation times, fewer down to
// kFewestBatches as the correlation grows.
inline constexpr std::size_t kMostBatches = 20;
inline constexpr std::size_t kFewestBatches = 10;
inline constexpr double kBatchSpan = 5.0;
std::size_t batchesFor(std::size_t count, double correlationTime);

// `positions[j]` is where batch j stands (the abscissa of its middle), for
// the trend; `confidence` is the interval's level (0.95), `driftLevel` the
// level at which a trend counts.
MeanEstimate estimateMean(std::span<const double> values, std::span<const std::size_t> limits,
                          std::span<const double> positions, double confidence, double driftLevel);

}  // namespace convergence
