#include "convergence/oscillation.h"

#include <algorithm>
#include <cmath>

namespace convergence {
namespace {

constexpr std::size_t kLookedAt = 65536;
constexpr std::size_t kFewest = 64;
constexpr std::size_t kFewestCrossings = 4;
constexpr double kCorrelationNeeded = 0.2;

// Centred moving average over `width` values (odd), shorter at the ends.
std::vector<double> smoothed(std::span<const double> values, std::size_t width) {
  const std::size_t n = values.size();
  std::vector<double> prefix(n + 1, 0.0);
  const double reference = values[0];
  for (std::size_t i = 0; i < n; ++i) prefix[i + 1] = prefix[i] + (values[i] - reference);
  std::vector<double> out(n);
  const std::size_t half = width / 2;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t from = i >= half ? i - half : 0;
    const std::size_t to = std::min(n, i + half + 1);
    out[i] = reference + (prefix[to] - prefix[from]) / static_cast<double>(to - from);
  }
  return out;
}

struct Moments {
  double mean = 0.0;
  double deviation = 0.0;
};

Moments momentsOf(std::span<const double> values) {
  double mean = 0.0;
  for (const double value : values) mean += value;
  mean /= static_cast<double>(values.size());
  double squares = 0.0;
  for (const double value : values) squares += (value - mean) * (value - mean);
  return {mean, std::sqrt(squares / static_cast<double>(values.size()))};
}

// Upward crossings of the mean, counted only after the series has been
// below the band and then above it.
std::vector<double> upCrossings(std::span<const double> values) {
  const Moments moments = momentsOf(values);
  const double band = 0.5 * moments.deviation;
  std::vector<double> crossings;
  if (band <= 0.0) return crossings;
  bool below = false;
  std::size_t lastAtOrBelow = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] <= moments.mean) lastAtOrBelow = i;
    if (values[i] < moments.mean - band) {
      below = true;
    } else if (below && values[i] > moments.mean + band) {
      below = false;
      const std::size_t j = lastAtOrBelow;
      const double step = values[j + 1] - values[j];
      crossings.push_back(static_cast<double>(j) +
                          (step > 0.0 ? (moments.mean - values[j]) / step : 0.0));
    }
  }
  return crossings;
}

double autocorrelation(std::span<const double> values, double mean, std::size_t lag) {
  double product = 0.0;
  double squares = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double centred = values[i] - mean;
    squares += centred * centred;
    if (i + lag < values.size()) product += centred * (values[i + lag] - mean);
  }
  return squares > 0.0 ? product / squares : 0.0;
}

double periodOf(const std::vector<double>& crossings) {
  return (crossings.back() - crossings.front()) / static_cast<double>(crossings.size() - 1);
}

// The crossings of `values` when they oscillate; empty otherwise.
std::vector<double> oscillationIn(std::span<const double> values) {
  if (values.size() < kFewest) return {};
  const std::vector<double> rough = upCrossings(smoothed(values, 5));
  if (rough.size() < kFewestCrossings) return {};
  const auto width = static_cast<std::size_t>(periodOf(rough) / 10.0) | 1U;
  std::vector<double> fine = upCrossings(smoothed(values, width));
  if (fine.size() < kFewestCrossings) return {};
  const double period = periodOf(fine);
  const auto lag = static_cast<std::size_t>(std::lround(period));
  const auto halfLag = static_cast<std::size_t>(std::lround(period / 2.0));
  if (halfLag < 2 || lag * 3 > values.size()) return {};
  const double mean = momentsOf(values).mean;
  if (autocorrelation(values, mean, lag) < kCorrelationNeeded ||
      autocorrelation(values, mean, halfLag) > -kCorrelationNeeded)
    return {};
  return fine;
}

}  // namespace

Oscillation findOscillation(std::span<const double> values) {
  Oscillation found;
  const std::size_t n = values.size();
  const std::size_t tail = std::min(n, kLookedAt);
  found.upCrossings = oscillationIn(values.last(tail));
  for (double& crossing : found.upCrossings) crossing += static_cast<double>(n - tail);
  if (found.found() || n <= kLookedAt) return found;
  const std::size_t factor = (n + kLookedAt - 1) / kLookedAt;
  std::vector<double> averaged(n / factor);
  for (std::size_t j = 0; j < averaged.size(); ++j) {
    double sum = 0.0;
    for (std::size_t i = 0; i < factor; ++i) sum += values[j * factor + i];
    averaged[j] = sum / static_cast<double>(factor);
  }
  found.upCrossings = oscillationIn(averaged);
  // A block's mean stands at its middle.
  for (double& crossing : found.upCrossings)
    crossing = crossing * static_cast<double>(factor) + static_cast<double>(factor - 1) / 2.0;
  return found;
}

}  // namespace convergence
