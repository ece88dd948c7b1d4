#include "convergence/batch_means.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "convergence/student_t.h"

namespace convergence {

std::vector<std::size_t> equalBatches(std::size_t first, std::size_t end, std::size_t batches) {
  std::vector<std::size_t> limits(batches + 1);
  for (std::size_t j = 0; j <= batches; ++j) limits[j] = first + (end - first) * j / batches;
  return limits;
}

std::size_t batchesFor(std::size_t count, double correlationTime) {
  const double fitting = static_cast<double>(count) / (kBatchSpan * correlationTime);
  if (!(fitting < static_cast<double>(kMostBatches))) return kMostBatches;
  return std::max(kFewestBatches, static_cast<std::size_t>(fitting));
}

MeanEstimate estimateMean(std::span<const double> values, std::span<const std::size_t> limits,
                          std::span<const double> positions, double confidence, double driftLevel) {
  MeanEstimate estimate;
  const std::size_t batches = limits.size() - 1;
  const std::size_t first = limits.front();
  const std::size_t end = limits.back();
  const auto count = static_cast<double>(end - first);
  const double reference = values[first];
  std::vector<double> means(batches);
  double total = 0.0;
  double squares = 0.0;
  for (std::size_t j = 0; j < batches; ++j) {
    double sum = 0.0;
    for (std::size_t i = limits[j]; i < limits[j + 1]; ++i) {
      const double value = values[i] - reference;
      sum += value;
      squares += value * value;
    }
    total += sum;
    means[j] = sum / static_cast<double>(limits[j + 1] - limits[j]);
  }
  const double mean = total / count;
  estimate.mean = reference + mean;
  const auto b = static_cast<double>(batches);
  double spread = 0.0;
  for (const double batchMean : means) spread += (batchMean - mean) * (batchMean - mean);
  const double batchVariance = spread / (b - 1.0);
  estimate.halfWidth = studentQuantile(0.5 + confidence / 2.0, static_cast<int>(batches) - 1) *
                       std::sqrt(batchVariance / b);
  const double variance = (squares - total * total / count) / (count - 1.0);
  if (variance > 0.0)
    estimate.correlationTime = std::max(1.0, count / b * batchVariance / variance);

  // The trend: least squares of the batch means on their positions.
  double meanPosition = 0.0;
  for (const double position : positions) meanPosition += position / b;
  double sxx = 0.0;
  double sxy = 0.0;
  for (std::size_t j = 0; j < batches; ++j) {
    sxx += (positions[j] - meanPosition) * (positions[j] - meanPosition);
    sxy += (positions[j] - meanPosition) * (means[j] - mean);
  }
  if (sxx <= 0.0) return estimate;
  const double slope = sxy / sxx;
  double residuals = 0.0;
  for (std::size_t j = 0; j < batches; ++j) {
    const double fitted = mean + slope * (positions[j] - meanPosition);
    residuals += (means[j] - fitted) * (means[j] - fitted);
  }
  const double slopeError = std::sqrt(residuals / (b - 2.0) / sxx);
  if (slopeError > 0.0) {
    estimate.driftT = slope / slopeError;
    estimate.drift = std::fabs(estimate.driftT) >
                     studentQuantile(0.5 + driftLevel / 2.0, static_cast<int>(batches) - 2);
  } else {
    // Batch means on a straight line: a trend unless the line is flat.
    estimate.drift = slope != 0.0;
    if (estimate.drift)
      estimate.driftT = std::copysign(std::numeric_limits<double>::infinity(), slope);
  }
  return estimate;
}

}  // namespace convergence
