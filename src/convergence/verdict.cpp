#include "convergence/verdict.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "convergence/batch_means.h"
#include "convergence/oscillation.h"
#include "convergence/transient.h"

namespace convergence {
namespace {

// Values at least this large are the program's mark for a missing point.
constexpr double kMissingMark = 3.4028234e38;
constexpr std::size_t kBatches = 20;
// A steady part must span this many independent samples.
constexpr double kIndependentSamplesNeeded = 10.0;
// A trend counts when its slope is beyond what the noise explains at this
// level: strict, so that a steady series is seldom called drifting.
constexpr double kDriftLevel = 0.99;

struct Points {
  std::vector<double> x;
  std::vector<double> y;
};

Points finitePoints(std::span<const double> abscissae, std::span<const double> values) {
  Points points;
  const std::size_t n = std::min(abscissae.size(), values.size());
  points.x.reserve(n);
  points.y.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    if (std::fabs(abscissae[i]) < kMissingMark && std::fabs(values[i]) < kMissingMark) {
      points.x.push_back(abscissae[i]);
      points.y.push_back(values[i]);
    }
  }
  return points;
}

double abscissaAt(const std::vector<double>& x, double position) {
  const auto below = static_cast<std::size_t>(position);
  if (below + 1 >= x.size()) return x.back();
  return x[below] + (position - static_cast<double>(below)) * (x[below + 1] - x[below]);
}

// Batch limits on whole periods: at up-crossings, as many batches as there
// are periods up to kBatches.
std::vector<std::size_t> periodBatches(const std::vector<double>& crossings) {
  const std::size_t periods = crossings.size() - 1;
  const std::size_t batches = std::min(periods, kBatches);
  std::vector<std::size_t> limits(batches + 1);
  for (std::size_t j = 0; j <= batches; ++j) {
    limits[j] = static_cast<std::size_t>(std::lround(crossings[periods * j / batches]));
  }
  return limits;
}

void judgeResidual(std::span<const double> values, Verdict& verdict) {
  if (std::any_of(values.begin(), values.end(), [](double value) { return !(value > 0.0); }))
    return;
  std::vector<double> decades(values.size());
  std::transform(values.begin(), values.end(), decades.begin(),
                 [](double value) { return std::log10(value); });
  const std::size_t early = std::max<std::size_t>(10, decades.size() / 10);
  const std::size_t late = std::max<std::size_t>(10, decades.size() / 20);
  const double highest =
      *std::max_element(decades.begin(), decades.begin() + static_cast<std::ptrdiff_t>(early));
  double recent = 0.0;
  for (std::size_t i = decades.size() - late; i < decades.size(); ++i)
    recent += decades[i] / static_cast<double>(late);
  verdict.ordersDropped = highest - recent;
  // Still falling: a downward trend over the last half.
  const std::size_t half = decades.size() / 2;
  std::vector<double> positions(decades.size());
  for (std::size_t i = 0; i < positions.size(); ++i) positions[i] = static_cast<double>(i);
  const MeanEstimate lastHalf = estimateMean(
      decades, positions, equalBatches(half, decades.size(), kBatches), 0.95, kDriftLevel);
  verdict.stillFalling = lastHalf.drift && lastHalf.driftT < 0.0;
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
  const Points points = finitePoints(abscissae, values);
  const std::size_t n = points.y.size();
  verdict.samples = n;
  if (n < kFewestSamples) return verdict;
  if (residual) judgeResidual(points.y, verdict);

  const TransientCut cut = findTransientEnd(points.y);
  verdict.transientEnd = points.x[cut.end];
  const std::span<const double> steady = std::span<const double>(points.y).subspan(cut.end);
  const Oscillation oscillation = findOscillation(steady);
  std::vector<std::size_t> limits;
  if (oscillation.found()) {
    std::vector<double> crossings = oscillation.upCrossings;
    for (double& crossing : crossings) crossing += static_cast<double>(cut.end);
    verdict.period =
        (abscissaAt(points.x, crossings.back()) - abscissaAt(points.x, crossings.front())) /
        static_cast<double>(crossings.size() - 1);
    limits = periodBatches(crossings);
    // The amplitude of the sine of the same variance.
    double mean = 0.0;
    for (std::size_t i = limits.front(); i < limits.back(); ++i) mean += points.y[i];
    mean /= static_cast<double>(limits.back() - limits.front());
    double squares = 0.0;
    for (std::size_t i = limits.front(); i < limits.back(); ++i)
      squares += (points.y[i] - mean) * (points.y[i] - mean);
    verdict.amplitude =
        std::sqrt(2.0 * squares / static_cast<double>(limits.back() - limits.front()));
  }
  if (limits.size() < 4) limits = equalBatches(cut.end, n, kBatches);
  verdict.samples = limits.back() - limits.front();
  const MeanEstimate estimate =
      estimateMean(points.y, points.x, limits, settings.confidence, kDriftLevel);
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
