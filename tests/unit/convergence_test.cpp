// The convergence verdict and its pieces on series whose answer is known. The
// noise comes from fixed seeds, so that every case is the same on every run;
// the bounds are those of the statistics, not of one draw.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "convergence/batch_means.h"
#include "convergence/oscillation.h"
#include "convergence/student_t.h"
#include "convergence/transient.h"
#include "convergence/verdict.h"

namespace {

using convergence::State;
using Values = std::vector<double>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kPi = std::numbers::pi;
const double kMissing = static_cast<double>(std::numeric_limits<float>::max());

// AR(1) noise of unit deviation (white for phi 0), by Box-Muller from a fixed seed.
Values noise(std::size_t n, std::uint64_t seed, double phi = 0.0) {
  std::mt19937_64 engine(seed);
  const auto uniform = [&engine] { return static_cast<double>(engine() >> 11) * 0x1.0p-53; };
  Values values(n);
  for (std::size_t i = 0; i < n; i += 2) {
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * kPi * uniform();
    values[i] = radius * std::cos(angle);
    if (i + 1 < n) values[i + 1] = radius * std::sin(angle);
  }
  for (std::size_t i = 1; i < n; ++i)
    values[i] = phi * values[i - 1] + std::sqrt(1.0 - phi * phi) * values[i];
  return values;
}

// level + scale × white noise + shape(i)
Values series(
    std::size_t n, double level, double scale, std::uint64_t seed,
    double (*shape)(double) = [](double) { return 0.0; }) {
  Values y = noise(n, seed);
  for (std::size_t i = 0; i < n; ++i) y[i] = level + scale * y[i] + shape(double(i));
  return y;
}

// A level of 1 that steps down from 3 at `at`, of 2000 values.
Values stepDown(std::size_t at, std::uint64_t seed) {
  Values y = series(2000, 1.0, 0.1, seed);
  for (std::size_t i = 0; i < at; ++i) y[i] += 2.0;
  return y;
}

Values positions(std::size_t n, double step = 1.0) {
  Values x(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = double(i) * step;
  return x;
}

convergence::Verdict judge(const Values& y, bool residual = false) {
  return convergence::judge(positions(y.size()), y, {}, residual);
}

// The batch-means estimate over 20 equal batches, each standing at its middle.
convergence::MeanEstimate estimateOver20Batches(const Values& values) {
  const std::vector<std::size_t> limits = convergence::equalBatches(0, values.size(), 20);
  Values middles;
  for (std::size_t j = 0; j < 20; ++j)
    middles.push_back(0.5 * double(limits[j] + limits[j + 1] - 1));
  return convergence::estimateMean(values, limits, middles, 0.95, 0.99);
}

TEST(Convergence, StudentQuantilesMatchTheTables) {
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

TEST(Convergence, MserCutsWhereTheStartEnds) {
  // A cut from 40 % of the series on means that the start has not ended.
  const struct {
    const char* name;
    Values values;
    std::size_t fewest, most;
    bool stillGoing;
  } cases[] = {
      {"step at 300", stepDown(300, 1), 300, 300, false},
      {"step at 700", stepDown(700, 6), 700, 700, false},
      {"step at 900", stepDown(900, 7), 900, 900, true},
      {"step at 800: 40 %", stepDown(800, 8), 800, 800, true},
      {"decay over 40", series(2000, 1, 0.1, 2, [](double i) { return 5 * std::exp(-i / 40); }),
       100, 300, false},
      {"white noise", series(2000, 1, 0.1, 3), 0, 100, false},
      {"constant", Values(2000, 4.25), 0, 0, false},
      {"ramp", series(2000, 1, 0.1, 4, [](double i) { return 0.001 * i; }), 800, 1000, true},
      {"slow decay", series(2000, 1, 0.01, 5, [](double i) { return std::exp(-i / 1000); }), 800,
       1000, true},
      {"3 batches", Values(15, 1.0), 0, 0, false},
      {"4 batches", {3, 3, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 5, 5, false},
  };
  for (const auto& c : cases) {
    const convergence::TransientCut cut = convergence::findTransientEnd(c.values);
    EXPECT_GE(cut.end, c.fewest) << c.name;
    EXPECT_LE(cut.end, c.most) << c.name;
    EXPECT_EQ(cut.stillGoing, c.stillGoing) << c.name;
  }
}

TEST(Convergence, BatchMeansIntervalOfWhiteAndCorrelatedNoiseAndTrends) {
  for (const double phi : {0.0, 0.5, 0.9}) {
    const double correlationTime = (1 + phi) / (1 - phi);
    Values values = noise(20000, 11, phi);
    for (double& value : values) value += 3.0;
    const convergence::MeanEstimate estimate = estimateOver20Batches(values);
    // The standard error of the mean of correlated values: sqrt(tau / n).
    const double expected = 2.093 * std::sqrt(correlationTime / 20000);
    EXPECT_GT(estimate.halfWidth, 0.6 * expected) << phi;
    EXPECT_LT(estimate.halfWidth, 1.5 * expected) << phi;
    EXPECT_NEAR(estimate.mean, 3.0, 2.0 * estimate.halfWidth) << phi;
    EXPECT_GT(estimate.correlationTime, 0.5 * correlationTime) << phi;
    EXPECT_LT(estimate.correlationTime, 2.0 * correlationTime) << phi;
    EXPECT_FALSE(estimate.drift) << phi;
  }
  // Deviation 1 over 4000 values: the mean is known to about ±0.03, so a rise
  // of 0.5 over the series stands out and one of 0.001 does not.
  for (const double rise : {0.001, 0.5, -0.5, 5.0}) {
    Values values = series(4000, 1.0, 1.0, 21);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] += rise * double(i) / 4000;
    const convergence::MeanEstimate estimate = estimateOver20Batches(values);
    EXPECT_EQ(estimate.drift, rise != 0.001) << rise;
    EXPECT_EQ(estimate.driftT > 0.0, rise > 0.0) << rise;
  }
  EXPECT_FALSE(estimateOver20Batches(Values(200, 1.5)).drift);
}

TEST(Convergence, FewerBatchesWhenTheSeriesIsShortForItsCorrelation) {
  const struct {
    std::size_t count;
    double correlationTime;
    std::size_t batches;
  } cases[] = {{2000, 1.0, 20},
               {10000, 100.0, 20},
               {10000, 150.0, 13},
               {10000, 200.0, 10},
               {1000, 500.0, 10}};
  for (const auto& c : cases)
    EXPECT_EQ(convergence::batchesFor(c.count, c.correlationTime), c.batches) << c.correlationTime;
}

TEST(Convergence, PeriodOfANoisySineAndNoneInNoiseOrTrends) {
  const struct {
    double period;  // samples
    std::size_t points;
    double noise;  // relative to the amplitude
  } cases[] = {
      {12.5, 1000, 0.3},   {50.0, 3000, 0.5},      {333.3, 5000, 0.5},
      {1000.0, 8000, 1.0}, {30000.0, 150000, 0.5},  // beyond the values looked at in full
  };
  for (const auto& c : cases) {
    Values values = series(c.points, 7.0, c.noise, 31);
    for (std::size_t i = 0; i < c.points; ++i)
      values[i] += std::sin(2 * kPi * double(i) / c.period + 0.3);
    const convergence::Oscillation found = convergence::findOscillation(values);
    ASSERT_TRUE(found.found()) << c.period;
    EXPECT_NEAR(found.periodInSamples(), c.period, 0.01 * c.period);
    const auto whole = std::floor(double(c.points) / c.period) * c.period;
    EXPECT_NEAR(convergence::fundamentalAmplitude(
                    std::span<const double>(values).first(std::size_t(whole)), c.period),
                1.0, 0.05)
        << c.period;
  }
  for (const Values& values :
       {series(5000, 1, 1, 41), noise(5000, 42, 0.9), noise(5000, 43, 0.99),
        series(5000, 0, 0.1, 44, [](double i) { return i / 5000; }), Values(5000, 2.0)}) {
    EXPECT_FALSE(convergence::findOscillation(values).found()) << values[1];
  }
}

TEST(Convergence, VerdictStatesOfTypicalSeries) {
  std::vector<double> mostlyMissing = series(300, 1.0, 0.001, 61);
  for (std::size_t i = 0; i < 300; i += 3) mostlyMissing[i] = kNaN;
  for (std::size_t i = 1; i < 300; i += 3) mostlyMissing[i] = kMissing;
  mostlyMissing[2] = -kInfinity;
  const struct {
    const char* name;
    Values x, y;
    std::string_view state;
  } cases[] = {
      {"small noise", positions(4000), series(4000, 1, 0.001, 51), "converged"},
      {"after a start-up", positions(4000),
       series(4000, 1, 0.001, 52, [](double i) { return 0.5 * std::exp(-i / 100); }), "converged"},
      {"slow approach", positions(4000),
       series(4000, 1, 0.001, 53, [](double i) { return -std::exp(-i / 4000); }), "transient"},
      {"trend", positions(4000), series(4000, 1, 1, 54, [](double i) { return i / 8000; }),
       "drifting"},
      {"large noise", positions(4000), series(4000, 1, 1, 55), "wide"},
      {"no point", {}, {}, "short"},
      {"99 points", positions(99), series(99, 1, 0.001, 62), "short"},
      {"100 points", positions(100), series(100, 1, 0.001, 62), "converged"},
      {"100 values, 50 abscissae", positions(50), series(100, 1, 0.001, 63), "short"},
      {"300 points, 201 missing", positions(300), mostlyMissing, "short"},
  };
  for (const auto& c : cases) {
    const convergence::Verdict verdict = convergence::judge(c.x, c.y, {});
    EXPECT_EQ(convergence::stateName(verdict.state), c.state) << c.name;
    if (c.state == "short" && c.x.size() < 1000) {
      EXPECT_LT(verdict.samples, convergence::kFewestSamples) << c.name;
      EXPECT_FALSE(verdict.transientEnd) << c.name;
    }
  }
  EXPECT_EQ(convergence::stateName(State::shortSeries), "short");
  for (const double level : {4.25, -2.0e5, 1.0e-30, 0.0}) {
    const convergence::Verdict verdict = judge(Values(500, level));
    EXPECT_EQ(verdict.state, State::converged) << level;
    EXPECT_EQ(verdict.mean, level);
    EXPECT_EQ(verdict.halfWidth, 0.0) << level;
    EXPECT_FALSE(verdict.drift || verdict.period) << level;
    EXPECT_EQ(verdict.transientEnd, 0.0) << level;
    EXPECT_EQ(verdict.samples, 500U) << level;
  }
}

TEST(Convergence, MissingAndNonFinitePointsAreLeftOut) {
  const std::size_t n = 3000;
  const Values x = positions(n, 0.5);
  const double holes[] = {kMissing, -kMissing, kNaN, kInfinity, -kInfinity, 3.5e38};
  for (const bool oscillates : {false, true}) {
    const Values y =
        oscillates ? series(n, 2.0, 0.01, 72, [](double i) { return std::sin(2 * kPi * i / 40); })
                   : series(n, 2.0, 0.01, 71, [](double i) { return 0.3 * std::exp(-i / 50); });
    // Holes in the values, each at an abscissa of its own, and in the abscissae.
    Values holedX, holedY;
    for (std::size_t i = 0; i < n; ++i) {
      if (i % 7 == 3) holedX.push_back(x[i] - 0.25), holedY.push_back(holes[i % 6]);
      if (i % 11 == 5) holedX.push_back(holes[i % 6]), holedY.push_back(100.0);
      holedX.push_back(x[i]), holedY.push_back(y[i]);
    }
    const convergence::Verdict clean = convergence::judge(x, y, {});
    const convergence::Verdict holed = convergence::judge(holedX, holedY, {});
    EXPECT_EQ(clean.state, State::converged) << oscillates;
    EXPECT_EQ(clean.period.has_value(), oscillates);
    EXPECT_EQ(holed.samples, clean.samples) << oscillates;
    EXPECT_EQ(holed.transientEnd, clean.transientEnd) << oscillates;
    EXPECT_EQ(holed.mean, clean.mean) << oscillates;
    EXPECT_EQ(holed.halfWidth, clean.halfWidth) << oscillates;
    EXPECT_EQ(holed.period, clean.period) << oscillates;
    EXPECT_EQ(holed.amplitude, clean.amplitude) << oscillates;
  }
}

TEST(Convergence, ResidualOrdersDroppedAndStillFalling) {
  const auto geometric = [](double decades) {
    Values values(2000);
    for (std::size_t i = 0; i < 2000; ++i) values[i] = std::pow(10.0, -decades * double(i) / 1999);
    return values;
  };
  // Falls six decades over its first half, then levels out in noise.
  Values levelled = noise(2000, 81);
  for (std::size_t i = 0; i < 2000; ++i)
    levelled[i] = std::pow(10.0, i < 1000 ? -12.0 * double(i) / 2000 : -6.0 + 0.1 * levelled[i]);
  const double lastTwentieth = 1949.5 / 1999.0;  // mean decade of points 1900 to 1999
  const struct {
    Values values;
    double ordersDropped, tolerance;
    bool stillFalling;
  } cases[] = {{geometric(6.0), 6.0 * lastTwentieth, 1e-9, true},
               {geometric(1.0), lastTwentieth, 1e-9, true},
               {levelled, 6.0, 0.05, false}};
  for (const auto& c : cases) {
    const convergence::Verdict verdict = judge(c.values, true);
    ASSERT_TRUE(verdict.ordersDropped) << c.ordersDropped;
    EXPECT_NEAR(*verdict.ordersDropped, c.ordersDropped, c.tolerance);
    EXPECT_EQ(verdict.stillFalling, c.stillFalling) << c.ordersDropped;
  }
  // Orders are for residuals, and only for positive ones.
  EXPECT_FALSE(judge(geometric(6.0)).ordersDropped);
  Values withZero = geometric(6.0);
  withZero[1500] = 0.0;
  EXPECT_FALSE(judge(withZero, true).ordersDropped);
}

TEST(Convergence, AnOscillationIsJudgedOverWholePeriods) {
  // Level 2, a swing of 0.5 every 5 time units (50 steps of 0.1), a start-up
  // surge and some noise.
  const Values y = series(6000, 2.0, 0.05, 91, [](double i) {
    return 0.5 * std::sin(2 * kPi * i / 50) + 1.5 * std::exp(-i / 100);
  });
  const convergence::Verdict verdict = convergence::judge(positions(6000, 0.1), y, {});
  EXPECT_EQ(verdict.state, State::converged);
  EXPECT_NEAR(verdict.period.value_or(0), 5.0, 0.01);
  EXPECT_NEAR(verdict.amplitude.value_or(0), 0.5, 0.02);
  EXPECT_NEAR(verdict.mean, 2.0, 0.01);
  EXPECT_LT(verdict.halfWidth, 0.01);
  EXPECT_FALSE(verdict.drift);
  // Whole periods: a multiple of 50 points, give or take the rounding of the crossings.
  const double periods = double(verdict.samples) / 50.0;
  EXPECT_NEAR(periods, std::round(periods), 0.05);
  EXPECT_GT(verdict.samples, 3000u);
}

}  // namespace
