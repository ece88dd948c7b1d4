#include "convergence/oscillation.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace convergence {
namespace {

constexpr std::size_t kLookedAt = 65536;
constexpr std::size_t kFewest = 64;
constexpr std::size_t kFewestCrossings = 4;
constexpr double kCorrelationNeeded = 0.2;
// Smoothed white noise goes round the band every 3 to 4.5 widths (every 6.5
// values unsmoothed); an oscillation's crossings are looked at when they come
// further apart than this many widths. Correlated noise comes round more
// slowly, but fails the autocorrelation test.
constexpr double kWidthsApart = 6.0;
// The smoothing the period is measured with, as a share of the period.
constexpr double kSmoothingPerPeriod = 1.0 / 6.0;
constexpr int kSettlingRounds = 6;
constexpr std::size_t kPointsPerWidth = 4;
constexpr double kPeriodsAgree = 0.01;

// Centred moving averages of any width over the same values, from their
// running sums (less the first value, so that the sums keep their digits).
class MovingAverages {
 public:
  explicit MovingAverages(std::span<const double> values)
      : reference_(values[0]), sums_(values.size() + 1, 0.0) {
    for (std::size_t i = 0; i < values.size(); ++i)
      sums_[i + 1] = sums_[i] + (values[i] - reference_);
  }

  // The averages over `width` values (odd) centred on every `stride`-th
  // value, over fewer values at the ends.
  void smooth(std::size_t width, std::size_t stride, std::vector<double>& out) const {
    const std::size_t n = sums_.size() - 1;
    const std::size_t half = width / 2;
    out.resize((n + stride - 1) / stride);
    for (std::size_t k = 0; k < out.size(); ++k) {
      const std::size_t i = k * stride;
      const std::size_t from = i >= half ? i - half : 0;
      const std::size_t to = std::min(n, i + half + 1);
      out[k] = reference_ + (sums_[to] - sums_[from]) / static_cast<double>(to - from);
    }
  }

  double mean() const { return reference_ + sums_.back() / static_cast<double>(sums_.size() - 1); }

 private:
  double reference_;
  std::vector<double> sums_;
};

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

// The up-crossings of the moving average over `width` values, in samples.
// A wide average changes little from one value to the next: it is taken at
// every (width / 4)th value only, which still gives a period of six widths
// 24 points.
std::vector<double> smoothedCrossings(const MovingAverages& averages, std::size_t width,
                                      std::vector<double>& smoothed) {
  const std::size_t stride = std::max<std::size_t>(1, width / kPointsPerWidth);
  averages.smooth(width, stride, smoothed);
  std::vector<double> crossings = upCrossings(smoothed);
  for (double& crossing : crossings) crossing *= static_cast<double>(stride);
  return crossings;
}

double periodOf(const std::vector<double>& crossings) {
  return (crossings.back() - crossings.front()) / static_cast<double>(crossings.size() - 1);
}

// Positive correlation one period apart and negative half a period apart.
bool swingsWithPeriod(std::span<const double> values, double mean, double period) {
  const auto lag = static_cast<std::size_t>(std::lround(period));
  const auto halfLag = static_cast<std::size_t>(std::lround(period / 2.0));
  if (halfLag < 2 || lag * 3 > values.size()) return false;
  double atPeriod = 0.0;
  double atHalf = 0.0;
  double squares = 0.0;
  const std::size_t n = values.size();
  for (std::size_t i = 0; i < n; ++i) {
    const double centred = values[i] - mean;
    squares += centred * centred;
    if (i + halfLag < n) atHalf += centred * (values[i + halfLag] - mean);
    if (i + lag < n) atPeriod += centred * (values[i + lag] - mean);
  }
  return squares > 0.0 && atPeriod > kCorrelationNeeded * squares &&
         atHalf < -kCorrelationNeeded * squares;
}

// Measures the period again with a smoothing of a sixth of the last one
// found, until two measures agree: crossings left by the noise make a period
// too short, and the wider smoothing it then asks for takes them out. False
// when the crossings fade out instead.
bool settle(const MovingAverages& averages, std::vector<double>& smoothed,
            std::vector<double>& crossings, std::size_t& width) {
  for (int round = 0; round < kSettlingRounds; ++round) {
    const double period = periodOf(crossings);
    const std::size_t wider = static_cast<std::size_t>(period * kSmoothingPerPeriod) | 1U;
    if (round > 0 && wider == width) return true;
    width = wider;
    crossings = smoothedCrossings(averages, width, smoothed);
    if (crossings.size() < kFewestCrossings) return false;
    if (std::fabs(periodOf(crossings) - period) <= kPeriodsAgree * period) return true;
  }
  return false;
}

// The crossings of `values` when they oscillate; empty otherwise.
std::vector<double> oscillationIn(std::span<const double> values) {
  if (values.size() < kFewest) return {};
  const MovingAverages averages(values);
  std::vector<double> smoothed;
  for (std::size_t width = 1; width < values.size() / kFewestCrossings; width = 2 * width + 1) {
    const std::vector<double> rough = smoothedCrossings(averages, width, smoothed);
    if (rough.size() < kFewestCrossings) return {};
    const double roughPeriod = periodOf(rough);
    if (roughPeriod < kWidthsApart * static_cast<double>(width)) continue;
    std::size_t fineWidth = width;
    std::vector<double> fine = rough;
    if (settle(averages, smoothed, fine, fineWidth) &&
        swingsWithPeriod(values, averages.mean(), periodOf(fine)))
      return fine;
    // Not an oscillation at this scale: look at slower ones.
    width = std::max(width, fineWidth);
  }
  return {};
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

double fundamentalAmplitude(std::span<const double> values, double periodInSamples) {
  if (values.empty() || !(periodInSamples > 0.0)) return 0.0;
  const double mean = momentsOf(values).mean;
  // The phasor turns by one step a sample; it is put back on the unit circle
  // now and then, so that rounding does not let it grow or shrink.
  const double angle = 2.0 * std::numbers::pi / periodInSamples;
  const double stepCos = std::cos(angle);
  const double stepSin = std::sin(angle);
  double re = 1.0;
  double im = 0.0;
  double sumRe = 0.0;
  double sumIm = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double centred = values[i] - mean;
    sumRe += centred * re;
    sumIm += centred * im;
    const double turnedRe = re * stepCos + im * stepSin;
    im = im * stepCos - re * stepSin;
    re = turnedRe;
    if (i % 4096 == 4095) {
      const double modulus = std::hypot(re, im);
      re /= modulus;
      im /= modulus;
    }
  }
  return 2.0 * std::hypot(sumRe, sumIm) / static_cast<double>(values.size());
}

}  // namespace convergence
