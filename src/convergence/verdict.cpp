#include "convergence/verdict.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "convergence/batch_means.h"
#include "convergence/finite_points.h"
#include "convergence/oscillation.h"
#include "convergence/transient.h"

namespace convergence {
namespace {

// A steady part must span this many independent samples.
constexpr double kIndependentSamplesNeeded = 10.0;
// A trend counts when its slope is beyond what the noise explains at this
// level: strict, so that a steady series is seldom called drifting.
constexpr double kDriftLevel = 0.99;
// The transient is looked for again over batches of one period when the
// series holds this many periods. Over fewer, the rule is unsure: even on
// independent values its minimum falls beyond 40 % of the series in 1.5 % of
// series of 40 batches, 6 % of 20 and 18 % of 10.
constexpr double kFewestPeriodsForCut = 40.0;
constexpr double kDecadesPerOctave = 0.30102999566398120;  // log10(2)

// Batch limits on whole periods: at up-crossings, as many batches as there
// are periods up to kMostBatches.
std::vector<std::size_t> periodBatches(const std::vector<double>& crossings) {
  const std::size_t periods = crossings.size() - 1;
  const std::size_t batches = std::min(periods, kMostBatches);
  std::vector<std::size_t> limits(batches + 1);
  for (std::size_t j = 0; j <= batches; ++j) {
    limits[j] = static_cast<std::size_t>(std::lround(crossings[periods * j / batches]));
  }
  return limits;
}

// The amplitude of the oscillation, batch by batch (a few periods each, so
// that a small error of the period does not blur it), as their root mean
// square.
double amplitudeOver(std::span<const double> y, const std::vector<std::size_t>& limits,
                     double periodInSamples) {
  double squares = 0.0;
  for (std::size_t j = 0; j + 1 < limits.size(); ++j) {
    const double amplitude =
        fundamentalAmplitude(y.subspan(limits[j], limits[j + 1] - limits[j]), periodInSamples);
    squares += amplitude * amplitude;
  }
  return std::sqrt(squares / static_cast<double>(limits.size() - 1));
}

// Orders of magnitude dropped, from the highest value of the first tenth to
// the mean decade of the last twentieth; still falling when the decades of
// the last half hold a downward trend.
// The last half of a residual is read at this many points at most.
constexpr std::size_t kLastHalfSampled = 32768;

void judgeResidual(const FinitePoints& points, Verdict& verdict) {
  const std::span<const double> values = points.values();
  if (std::any_of(values.begin(), values.end(), [](double value) { return !(value > 0.0); }))
    return;
  const std::size_t n = values.size();
  const std::size_t early = std::max<std::size_t>(10, n / 10);
  const std::size_t late = std::max<std::size_t>(10, n / 20);
  const std::size_t half = n / 2;
  const double highest = std::log10(*std::max_element(values.begin(), values.begin() + early));
  // The last half in decades, one value in `stride`: enough for its level and
  // trend, and the cost of the logarithms stays bounded on long histories.
  const std::size_t stride = std::max<std::size_t>(1, (n - half) / kLastHalfSampled);
  std::vector<double> decades;
  decades.reserve((n - half) / stride + 1);
  for (std::size_t i = half; i < n; i += stride)
    decades.push_back(kDecadesPerOctave * std::log2(values[i]));
  const std::size_t lateSampled = std::max<std::size_t>(1, late / stride);
  double recent = 0.0;
  for (std::size_t i = decades.size() - lateSampled; i < decades.size(); ++i) recent += decades[i];
  verdict.ordersDropped = highest - recent / static_cast<double>(lateSampled);
  const std::vector<std::size_t> limits = equalBatches(0, decades.size(), kMostBatches);
  std::vector<double> positions(kMostBatches);
  for (std::size_t j = 0; j < kMostBatches; ++j) {
    positions[j] = points.abscissa(half + stride * (limits[j] + limits[j + 1] - 1) / 2);
  }
  const MeanEstimate lastHalf = estimateMean(decades, limits, positions, 0.95, kDriftLevel);
  verdict.stillFalling = lastHalf.drift && lastHalf.driftT < 0.0;
}

// The mean of the steady part from `first` on, over batches of equal length,
// as many as its correlation allows.
MeanEstimate steadyMean(const FinitePoints& points, std::size_t first, double confidence) {
  const std::span<const double> y = points.values();
  const auto estimateOver = [&](std::size_t batches) {
    const std::vector<std::size_t> limits = equalBatches(first, y.size(), batches);
    return estimateMean(y, limits, points.batchPositions(limits), confidence, kDriftLevel);
  };
  const MeanEstimate estimate = estimateOver(kMostBatches);
  const std::size_t batches = batchesFor(y.size() - first, estimate.correlationTime);
  return batches < kMostBatches ? estimateOver(batches) : estimate;
}

}  // namespace

std::string_view stateName(State state) {
  switch (state) {
    case State::converged:
      return "converged";
    case State::transient:
      return "transient";
    case State::drifting:
      return "drifting";
    case State::wide:
      return "wide";
    case State::shortSeries:
      break;
  }
  return "short";
}

Verdict judge(std::span<const double> abscissae, std::span<const double> values,
              const Settings& settings, bool residual) {
  Verdict verdict;
  verdict.confidence = settings.confidence;
  const FinitePoints points(abscissae, values);
  const std::span<const double> y = points.values();
  const std::size_t n = y.size();
  verdict.samples = n;
  if (n < kFewestSamples) return verdict;
  if (residual) judgeResidual(points, verdict);

  TransientCut cut = findTransientEnd(y);
  Oscillation oscillation = findOscillation(y.subspan(cut.end));
  const double period = oscillation.found() ? oscillation.periodInSamples() : 0.0;
  if (period > 0.0 && static_cast<double>(n) >= kFewestPeriodsForCut * period) {
    // The end of the transient again, seen through batches of one period.
    const TransientCut overPeriods =
        findTransientEnd(y, static_cast<std::size_t>(std::lround(period)));
    if (overPeriods.end > cut.end) {
      cut = overPeriods;
      oscillation = findOscillation(y.subspan(cut.end));
    }
    cut.stillGoing = cut.stillGoing || overPeriods.stillGoing;
  }
  verdict.transientEnd = points.abscissa(cut.end);
  std::vector<std::size_t> limits;
  if (oscillation.found()) {
    std::vector<double> crossings = oscillation.upCrossings;
    for (double& crossing : crossings) crossing += static_cast<double>(cut.end);
    verdict.period = (points.abscissaAt(crossings.back()) - points.abscissaAt(crossings.front())) /
                     static_cast<double>(crossings.size() - 1);
    limits = periodBatches(crossings);
    verdict.amplitude = amplitudeOver(y, limits, oscillation.periodInSamples());
  }
  const MeanEstimate estimate =
      limits.size() >= 4
          ? estimateMean(y, limits, points.batchPositions(limits), settings.confidence, kDriftLevel)
          : steadyMean(points, cut.end, settings.confidence);
  if (limits.size() < 4) limits = {cut.end, n};
  verdict.samples = limits.back() - limits.front();
  verdict.mean = estimate.mean;
  verdict.halfWidth = estimate.halfWidth;
  verdict.drift = estimate.drift;

  if (cut.stillGoing) {
    verdict.state = State::transient;
  } else if (verdict.samples < kFewestSamples ||
             static_cast<double>(verdict.samples) <
                 kIndependentSamplesNeeded * estimate.correlationTime) {
    verdict.state = State::shortSeries;
  } else if (estimate.drift) {
    verdict.state = State::drifting;
  } else if (!(verdict.halfWidth <= settings.tolerance * std::fabs(verdict.mean))) {
    verdict.state = State::wide;
  } else {
    verdict.state = State::converged;
  }
  return verdict;
}

}  // namespace convergence
