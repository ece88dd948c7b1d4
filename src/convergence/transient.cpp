#include "convergence/transient.h"

#include <vector>

namespace convergence {

namespace {

// A cut from 2/5 of the series on means that the transient is still going.
constexpr std::size_t kLateCutNumerator = 2;
constexpr std::size_t kLateCutDenominator = 5;

}  // namespace

TransientCut findTransientEnd(std::span<const double> values, std::size_t batchSize) {
  if (batchSize == 0) return {};
  const std::size_t batches = values.size() / batchSize;
  if (batches < 4) return {};
  // Batch means, less a reference so that the sums keep their digits.
  const double reference = values[values.size() / 2];
  std::vector<double> means(batches);
  for (std::size_t j = 0; j < batches; ++j) {
    double sum = 0.0;
    for (std::size_t i = 0; i < batchSize; ++i) sum += values[j * batchSize + i] - reference;
    means[j] = sum / static_cast<double>(batchSize);
  }
  // Suffix sums from the last batch back to the first candidate cuts.
  const std::size_t lastCut = batches / 2;
  double sum = 0.0;
  double squares = 0.0;
  for (std::size_t j = batches; j-- > lastCut;) {
    sum += means[j];
    squares += means[j] * means[j];
  }
  std::size_t best = lastCut;
  double bestScore = -1.0;
  for (std::size_t d = lastCut + 1; d-- > 0;) {
    if (d < lastCut) {
      sum += means[d];
      squares += means[d] * means[d];
    }
    const auto kept = static_cast<double>(batches - d);
    const double spread = squares - sum * sum / kept;
    const double score = (spread > 0.0 ? spread : 0.0) / (kept * kept);
    // Ties go to the earlier cut: keep as much as the rule allows.
    if (bestScore < 0.0 || score <= bestScore) {
      bestScore = score;
      best = d;
    }
  }
  return {best * batchSize, best * kLateCutDenominator >= batches * kLateCutNumerator};
}

}  // namespace convergence
