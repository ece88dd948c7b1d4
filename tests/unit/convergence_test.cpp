// The convergence verdict and its pieces, on series whose answer is known:
// Student's quantiles, the MSER-5 cut, the batch-means interval and trend,
// the period of an oscillation, and the verdict's states. The noise comes
// from fixed seeds, so that every case is the same on every run; the bounds
// are those of the statistics, not of one draw.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "convergence/batch_means.h"
#include "convergence/oscillation.h"
#include "convergence/student_t.h"
#include "convergence/transient.h"
#include "convergence/verdict.h"

namespace {

using convergence::State;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
// What the program answers for a point the solver did not give.
const double kMissing = static_cast<double>(std::numeric_limits<float>::max());

// Standard normal deviates, by Box-Muller from a fixed seed.
std::vector<double> normalNoise(std::size_t n, std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  const auto uniform = [&engine] { return static_cast<double>(engine() >> 11) * 0x1.0p-53; };
  std::vector<double> noise(n);
  for (std::size_t i = 0; i < n; i += 2) {
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * std::numbers::pi * uniform();
    noise[i] = radius * std::cos(angle);
    if (i + 1 < n) noise[i + 1] = radius * std::sin(angle);
  }
  return noise;
}

// AR(1) noise of unit deviation.
std::vector<double> autoregressive(std::size_t n, double phi, std::uint64_t seed) {
  std::vector<double> noise = normalNoise(n, seed);
  const double innovation = std::sqrt(1.0 - phi * phi);
  for (std::size_t i = 1; i < n; ++i) noise[i] = phi * noise[i - 1] + innovation * noise[i];
  return noise;
}

std::vector<double> positions(std::size_t n, double step = 1.0) {
  std::vector<double> x(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = static_cast<double>(i) * step;
  return x;
}

// level + scale × noise + shape(i)
template <typename Shape>
std::vector<double> series(std::size_t n, double level, double scale, std::uint64_t seed,
                           Shape shape) {
  std::vector<double> y = normalNoise(n, seed);
  for (std::size_t i = 0; i < n; ++i) y[i] = level + scale * y[i] + shape(static_cast<double>(i));
  return y;
}

std::vector<double> whiteSeries(std::size_t n, double level, double scale, std::uint64_t seed) {
  return series(n, level, scale, seed, [](double) { return 0.0; });
}

convergence::Verdict judge(const std::vector<double>& y, const convergence::Settings& settings = {},
                           bool residual = false) {
  return convergence::judge(positions(y.size()), y, settings, residual);
}

// The batch-means estimate over equal batches, each standing at its middle.
convergence::MeanEstimate estimateOverBatches(const std::vector<double>& values,
                                              std::size_t batches) {
  const std::vector<std::size_t> limits = convergence::equalBatches(0, values.size(), batches);
  std::vector<double> middles;
  for (std::size_t j = 0; j < batches; ++j)
    middles.push_back(0.5 * static_cast<double>(limits[j] + limits[j + 1] - 1));
  return convergence::estimateMean(values, limits, middles, 0.95, 0.99);
}

TEST(ConvergenceStudentT, QuantilesMatchTheTables) {
  const struct {
    double probability;
    int freedom;
    double quantile;
  } cases[] = {
      {0.975, 1, 12.706204736},   {0.975, 2, 4.302652730},  {0.975, 4, 2.776445105},
      {0.975, 9, 2.262157163},    {0.975, 11, 2.200985160}, {0.975, 19, 2.093024054},
      {0.995, 8, 3.355387331},    {0.995, 18, 2.878440473}, {0.95, 10, 1.812461123},
      {0.975, 1000, 1.962339081}, {0.025, 4, -2.776445105}, {0.5, 7, 0.0},
      {0.9995, 3, 12.923978637},
  };
  for (const auto& c : cases)
    EXPECT_NEAR(convergence::studentQuantile(c.probability, c.freedom), c.quantile, 1e-6)
        << c.probability << " with " << c.freedom << " degrees of freedom";
}

TEST(ConvergenceTransient, MserCutsWhereTheStartEnds) {
  const std::size_t n = 2000;
  const struct {
    const char* name;
    std::vector<double> values;
    std::size_t fewest;
    std::size_t most;
    bool stillGoing;
  } cases[] = {
      {"a step down at 300", series(n, 1.0, 0.1, 1, [](double i) { return i < 300 ? 2.0 : 0.0; }),
       300, 300, false},
      {"a decay of time constant 40",
       series(n, 1.0, 0.1, 2, [](double i) { return 5.0 * std::exp(-i / 40.0); }), 100, 300, false},
      // A cut from 40 % of the series on means that the start has not ended.
      {"a step down at 700", series(n, 1.0, 0.1, 6, [](double i) { return i < 700 ? 2.0 : 0.0; }),
       700, 700, false},
      {"a step down at 900", series(n, 1.0, 0.1, 7, [](double i) { return i < 900 ? 2.0 : 0.0; }),
       900, 900, true},
      {"white noise", whiteSeries(n, 1.0, 0.1, 3), 0, 100, false},
      {"a constant", std::vector<double>(n, 4.25), 0, 0, false},
      {"a ramp", series(n, 1.0, 0.1, 4, [](double i) { return 0.001 * i; }), 800, 1000, true},
      {"a decay over the whole series",
       series(n, 1.0, 0.01, 5, [](double i) { return std::exp(-i / 1000.0); }), 800, 1000, true},
  };
  for (const auto& c : cases) {
    const convergence::TransientCut cut = convergence::findTransientEnd(c.values);
    EXPECT_GE(cut.end, c.fewest) << c.name;
    EXPECT_LE(cut.end, c.most) << c.name;
    EXPECT_EQ(cut.stillGoing, c.stillGoing) << c.name;
  }
}

TEST(ConvergenceBatchMeans, IntervalOfWhiteAndCorrelatedNoise) {
  const std::size_t n = 20000;
  const struct {
    double phi;
    double correlationTime;  // (1 + phi) / (1 - phi)
  } cases[] = {{0.0, 1.0}, {0.5, 3.0}, {0.9, 19.0}};
  for (const auto& c : cases) {
    std::vector<double> values = autoregressive(n, c.phi, 11);
    for (double& value : values) value += 3.0;
    const convergence::MeanEstimate estimate = estimateOverBatches(values, 20);
    // The standard error of the mean of correlated values: sqrt(tau / n).
    const double expected = 2.093 * std::sqrt(c.correlationTime / static_cast<double>(n));
    EXPECT_GT(estimate.halfWidth, 0.6 * expected) << c.phi;
    EXPECT_LT(estimate.halfWidth, 1.5 * expected) << c.phi;
    EXPECT_NEAR(estimate.mean, 3.0, 2.0 * estimate.halfWidth) << c.phi;
    EXPECT_GT(estimate.correlationTime, 0.5 * c.correlationTime) << c.phi;
    EXPECT_LT(estimate.correlationTime, 2.0 * c.correlationTime) << c.phi;
    EXPECT_FALSE(estimate.drift) << c.phi;
  }
}

TEST(ConvergenceBatchMeans, FewerBatchesWhenTheSeriesIsShortForItsCorrelation) {
  const struct {
    std::size_t count;
    double correlationTime;
    std::size_t batches;
  } cases[] = {
      {2000, 1.0, 20},    {10000, 100.0, 20}, {10000, 150.0, 13},
      {10000, 200.0, 10}, {1000, 500.0, 10},
  };
  for (const auto& c : cases)
    EXPECT_EQ(convergence::batchesFor(c.count, c.correlationTime), c.batches)
        << c.count << " values, correlation time " << c.correlationTime;
}

TEST(ConvergenceBatchMeans, TrendFoundWhenBeyondTheNoise) {
  const std::size_t n = 4000;
  // White noise of deviation 1: the mean is known to about ±0.03, so a rise
  // of 0.5 over the series stands out and one of 0.001 does not.
  const struct {
    double rise;
    bool drift;
  } cases[] = {{0.0, false}, {0.001, false}, {0.5, true}, {-0.5, true}, {5.0, true}};
  for (const auto& c : cases) {
    const std::vector<double> values =
        series(n, 1.0, 1.0, 21, [&](double i) { return c.rise * i / static_cast<double>(n); });
    const convergence::MeanEstimate estimate = estimateOverBatches(values, 20);
    EXPECT_EQ(estimate.drift, c.drift) << c.rise;
    if (c.drift) {
      EXPECT_EQ(estimate.driftT > 0.0, c.rise > 0.0) << c.rise;
    }
  }
}

TEST(ConvergenceOscillation, PeriodOfANoisySine) {
  const struct {
    double period;  // samples
    std::size_t points;
    double noise;  // relative to the amplitude
  } cases[] = {
      {12.5, 1000, 0.3},      {50.0, 3000, 0.5},
      {333.3, 5000, 0.5},     {1000.0, 8000, 1.0},  // noise as large as the sine
      {30000.0, 150000, 0.5},                       // beyond the values looked at in full
  };
  for (const auto& c : cases) {
    const std::vector<double> values = series(c.points, 7.0, c.noise, 31, [&](double i) {
      return std::sin(2.0 * std::numbers::pi * i / c.period + 0.3);
    });
    const convergence::Oscillation found = convergence::findOscillation(values);
    ASSERT_TRUE(found.found()) << c.period;
    EXPECT_NEAR(found.periodInSamples(), c.period, 0.01 * c.period);
    const double periods = std::floor(static_cast<double>(c.points) / c.period);
    const auto overWholePeriods =
        std::span<const double>(values).first(static_cast<std::size_t>(periods * c.period));
    EXPECT_NEAR(convergence::fundamentalAmplitude(overWholePeriods, c.period), 1.0, 0.05)
        << c.period;
  }
}

TEST(ConvergenceOscillation, NoPeriodInNoiseOrTrends) {
  const std::size_t n = 5000;
  const struct {
    const char* name;
    std::vector<double> values;
  } cases[] = {
      {"white noise", whiteSeries(n, 1.0, 1.0, 41)},
      {"AR(1) noise, phi 0.9", autoregressive(n, 0.9, 42)},
      {"AR(1) noise, phi 0.99", autoregressive(n, 0.99, 43)},
      {"a ramp", series(n, 0.0, 0.1, 44, [](double i) { return i / 5000.0; })},
      {"a constant", std::vector<double>(n, 2.0)},
  };
  for (const auto& c : cases)
    EXPECT_FALSE(convergence::findOscillation(c.values).found()) << c.name;
}

TEST(ConvergenceVerdict, StatesOfTypicalSeries) {
  const std::size_t n = 4000;
  const struct {
    const char* name;
    std::vector<double> values;
    State state;
  } cases[] = {
      {"a level with small noise", whiteSeries(n, 1.0, 0.001, 51), State::converged},
      {"a level after a start-up transient",
       series(n, 1.0, 0.001, 52, [](double i) { return 0.5 * std::exp(-i / 100.0); }),
       State::converged},
      {"a slow approach still under way",
       series(n, 1.0, 0.001, 53, [](double i) { return -std::exp(-i / 4000.0); }),
       State::transient},
      {"a level with a trend", series(n, 1.0, 1.0, 54, [](double i) { return i / 8000.0; }),
       State::drifting},
      {"a level with large noise", whiteSeries(n, 1.0, 1.0, 55), State::wide},
      {"99 points", whiteSeries(99, 1.0, 0.001, 56), State::shortSeries},
  };
  for (const auto& c : cases) {
    const convergence::Verdict verdict = judge(c.values);
    EXPECT_EQ(convergence::stateName(verdict.state), convergence::stateName(c.state)) << c.name;
  }
  EXPECT_EQ(convergence::stateName(State::shortSeries), "short");
}

TEST(ConvergenceVerdict, AConstantSeriesHasAZeroWidthIntervalAndIsConverged) {
  for (const double level : {4.25, -2.0e5, 1.0e-30, 0.0}) {
    const convergence::Verdict verdict = judge(std::vector<double>(500, level));
    EXPECT_EQ(verdict.state, State::converged) << level;
    EXPECT_EQ(verdict.mean, level);
    EXPECT_EQ(verdict.halfWidth, 0.0) << level;
    EXPECT_FALSE(verdict.drift) << level;
    EXPECT_EQ(verdict.transientEnd, 0.0) << level;
    EXPECT_FALSE(verdict.period) << level;
    EXPECT_EQ(verdict.samples, 500U) << level;
  }
}

TEST(ConvergenceVerdict, ShortSeriesAreAnsweredNotRefused) {
  std::vector<double> mostlyMissing = whiteSeries(300, 1.0, 0.001, 61);
  for (std::size_t i = 0; i < mostlyMissing.size(); i += 3) mostlyMissing[i] = kNaN;
  for (std::size_t i = 1; i < mostlyMissing.size(); i += 3) mostlyMissing[i] = kMissing;
  mostlyMissing[2] = -kInfinity;
  const struct {
    const char* name;
    std::vector<double> x;
    std::vector<double> y;
  } cases[] = {
      {"no point", {}, {}},
      {"one point", {0.0}, {1.0}},
      {"99 points", positions(99), whiteSeries(99, 1.0, 0.001, 62)},
      {"100 values, 50 abscissae", positions(50), whiteSeries(100, 1.0, 0.001, 63)},
      {"300 points, 201 missing", positions(300), mostlyMissing},
  };
  for (const auto& c : cases) {
    const convergence::Verdict verdict = convergence::judge(c.x, c.y, {});
    EXPECT_EQ(verdict.state, State::shortSeries) << c.name;
    EXPECT_LT(verdict.samples, convergence::kFewestSamples) << c.name;
    EXPECT_FALSE(verdict.transientEnd) << c.name;
  }
}

TEST(ConvergenceVerdict, MissingAndNonFinitePointsAreLeftOut) {
  const std::size_t n = 3000;
  const std::vector<double> x = positions(n, 0.5);
  const double holes[] = {kMissing, -kMissing, kNaN, kInfinity, -kInfinity, 3.5e38};
  const struct {
    const char* name;
    std::vector<double> y;
    bool oscillates;
  } cases[] = {
      {"a level after a transient",
       series(n, 2.0, 0.01, 71, [](double i) { return 0.3 * std::exp(-i / 50.0); }), false},
      {"an oscillation",
       series(n, 2.0, 0.01, 72,
              [](double i) { return std::sin(2.0 * std::numbers::pi * i / 40.0); }),
       true},
  };
  for (const auto& c : cases) {
    // Holes in the values, each at an abscissa of its own, and in the
    // abscissae: what is left is the series without them.
    std::vector<double> holedX;
    std::vector<double> holedY;
    for (std::size_t i = 0; i < n; ++i) {
      if (i % 7 == 3) {
        holedX.push_back(x[i] - 0.25);
        holedY.push_back(holes[i % std::size(holes)]);
      }
      if (i % 11 == 5) {
        holedX.push_back(holes[i % std::size(holes)]);
        holedY.push_back(100.0);
      }
      holedX.push_back(x[i]);
      holedY.push_back(c.y[i]);
    }
    const convergence::Verdict clean = convergence::judge(x, c.y, {});
    const convergence::Verdict holed = convergence::judge(holedX, holedY, {});
    EXPECT_EQ(clean.state, State::converged) << c.name;
    EXPECT_EQ(clean.period.has_value(), c.oscillates) << c.name;
    EXPECT_EQ(holed.state, clean.state) << c.name;
    EXPECT_EQ(holed.samples, clean.samples) << c.name;
    EXPECT_EQ(holed.transientEnd, clean.transientEnd) << c.name;
    EXPECT_EQ(holed.mean, clean.mean) << c.name;
    EXPECT_EQ(holed.halfWidth, clean.halfWidth) << c.name;
    EXPECT_EQ(holed.drift, clean.drift) << c.name;
    EXPECT_EQ(holed.period, clean.period) << c.name;
    EXPECT_EQ(holed.amplitude, clean.amplitude) << c.name;
  }
}

TEST(ConvergenceVerdict, ResidualOrdersDroppedAndStillFalling) {
  const std::size_t n = 2000;
  const auto geometric = [n](double decades) {
    std::vector<double> values(n);
    for (std::size_t i = 0; i < n; ++i)
      values[i] = std::pow(10.0, -decades * static_cast<double>(i) / static_cast<double>(n - 1));
    return values;
  };
  // Falls six decades over its first half, then levels out in noise.
  std::vector<double> levelled(n);
  const std::vector<double> noise = normalNoise(n, 81);
  for (std::size_t i = 0; i < n; ++i)
    levelled[i] = std::pow(10.0, i < n / 2 ? -12.0 * static_cast<double>(i) / static_cast<double>(n)
                                           : -6.0 + 0.1 * noise[i]);
  // The mean decade of the last twentieth, points 1900 to 1999 of 2000.
  const double lastTwentieth = 1949.5 / 1999.0;
  const struct {
    const char* name;
    std::vector<double> values;
    double ordersDropped;
    double tolerance;
    bool stillFalling;
  } cases[] = {
      {"6 decades, geometric", geometric(6.0), 6.0 * lastTwentieth, 1e-9, true},
      {"1 decade, geometric", geometric(1.0), lastTwentieth, 1e-9, true},
      {"6 decades, then level", levelled, 6.0, 0.05, false},
  };
  for (const auto& c : cases) {
    const convergence::Verdict verdict = judge(c.values, {}, true);
    ASSERT_TRUE(verdict.ordersDropped) << c.name;
    EXPECT_NEAR(*verdict.ordersDropped, c.ordersDropped, c.tolerance) << c.name;
    EXPECT_EQ(verdict.stillFalling, c.stillFalling) << c.name;
  }
  // Orders are for residuals, and only for positive ones.
  EXPECT_FALSE(judge(geometric(6.0)).ordersDropped);
  std::vector<double> withZero = geometric(6.0);
  withZero[1500] = 0.0;
  EXPECT_FALSE(judge(withZero, {}, true).ordersDropped);
}

TEST(ConvergenceVerdict, AnOscillationIsJudgedOverWholePeriods) {
  // A force in an unsteady run: level 2, a swing of 0.5 every 5 time units
  // (50 time steps of 0.1), a start-up surge and some noise.
  const std::size_t n = 6000;
  const std::vector<double> x = positions(n, 0.1);
  const std::vector<double> y = series(n, 2.0, 0.05, 91, [](double i) {
    return 0.5 * std::sin(2.0 * std::numbers::pi * i / 50.0) + 1.5 * std::exp(-i / 100.0);
  });
  const convergence::Verdict verdict = convergence::judge(x, y, {});
  EXPECT_EQ(verdict.state, State::converged);
  ASSERT_TRUE(verdict.period);
  EXPECT_NEAR(*verdict.period, 5.0, 0.01);
  ASSERT_TRUE(verdict.amplitude);
  EXPECT_NEAR(*verdict.amplitude, 0.5, 0.02);
  EXPECT_NEAR(verdict.mean, 2.0, 0.01);
  EXPECT_LT(verdict.halfWidth, 0.01);
  EXPECT_FALSE(verdict.drift);
  // Whole periods: a multiple of 50 points, give or take the rounding of
  // the crossings.
  const double periods = static_cast<double>(verdict.samples) / 50.0;
  EXPECT_NEAR(periods, std::round(periods), 0.05);
  EXPECT_GT(verdict.samples, n / 2);
}

}  // namespace
