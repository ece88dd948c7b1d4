// The convergence verdict and its pieces on series whose answer is known. The
// noise comes from fixed seeds; the bounds are those of the statistics, not of one draw.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <sstream>
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

Values positions(std::size_t n, double step = 1.0) {
  Values x(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = double(i) * step;
  return x;
}

// The batch-means estimate over 20 equal batches, each standing at its middle.
convergence::MeanEstimate estimateOver20Batches(const Values& values) {
  const std::vector<std::size_t> limits = convergence::equalBatches(0, values.size(), 20);
  Values middles;
  for (std::size_t j = 0; j < 20; ++j)
    middles.push_back(0.5 * double(limits[j] + limits[j + 1] - 1));
  return convergence::estimateMean(values, limits, middles, 0.95, 0.99);
}

TEST(Convergence, StudentQuantilesAndBatchCounts) {
  std::istringstream quantiles(  // probability, degrees of freedom, quantile
      "0.975 1 12.706204736  0.975 2 4.302652730  0.975 19 2.093024054  0.995 8 3.355387331 "
      "0.975 1000 1.962339081  0.025 4 -2.776445105  0.5 7 0  0.9995 3 12.923978637 "
      "0.95 10 1.812461123");
  double probability, quantile;
  for (int freedom; quantiles >> probability >> freedom >> quantile;)
    EXPECT_NEAR(convergence::studentQuantile(probability, freedom), quantile, 1e-6) << freedom;
  // Fewer batches when the series is short for its correlation: count, tau, batches.
  const std::tuple<std::size_t, double, std::size_t> batches[] = {
      {2000, 1.0, 20},    {10000, 100.0, 20}, {10000, 150.0, 13},
      {10000, 200.0, 10}, {1000, 500.0, 10},
  };
  for (const auto& [count, correlationTime, expected] : batches)
    EXPECT_EQ(convergence::batchesFor(count, correlationTime), expected) << correlationTime;
}

TEST(Convergence, MserCutsWhereTheStartEnds) {
  // A cut from 40 % of the series on means that the start has not ended.
  const struct {
    const char* name;
    Values values;
    std::size_t fewest, most;
    bool stillGoing;
  } cases[] = {
      {"step at 700", series(2000, 1, 0.1, 6, [](double i) { return i < 700 ? 2.0 : 0.0; }), 700,
       700},
      {"step at 800: 40 %", series(2000, 1, 0.1, 8, [](double i) { return i < 800 ? 2.0 : 0.0; }),
       800, 800, true},
      {"decay", series(2000, 1, 0.1, 2, [](double i) { return 5 * std::exp(-i / 40); }), 100, 300},
      {"white noise", series(2000, 1, 0.1, 3), 0, 100},
      {"constant", Values(2000, 4.25), 0, 0},
      {"ramp", series(2000, 1, 0.1, 4, [](double i) { return 0.001 * i; }), 800, 1000, true},
      {"3 batches", Values(15, 1.0), 0, 0},
      {"4 batches", {3, 3, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 5, 5},
  };
  for (const auto& c : cases) {
    const convergence::TransientCut cut = convergence::findTransientEnd(c.values);
    EXPECT_TRUE(cut.end >= c.fewest && cut.end <= c.most) << c.name << ": " << cut.end;
    EXPECT_EQ(cut.stillGoing, c.stillGoing) << c.name;
  }
}

TEST(Convergence, BatchMeansIntervalOfWhiteAndCorrelatedNoiseAndTrends) {
  for (const double phi : {0.0, 0.9}) {
    const double correlationTime = (1 + phi) / (1 - phi);
    Values values = noise(20000, 11, phi);
    for (double& value : values) value += 3.0;
    const convergence::MeanEstimate estimate = estimateOver20Batches(values);
    // The standard error of the mean of correlated values: sqrt(tau / n).
    const double expected = 2.093 * std::sqrt(correlationTime / 20000);
    EXPECT_TRUE(estimate.halfWidth > 0.6 * expected && estimate.halfWidth < 1.5 * expected) << phi;
    EXPECT_NEAR(estimate.mean, 3.0, 2.0 * estimate.halfWidth) << phi;
    EXPECT_TRUE(estimate.correlationTime > 0.5 * correlationTime &&
                estimate.correlationTime < 2.0 * correlationTime)
        << phi;
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

TEST(Convergence, PeriodOfANoisySineAndNoneInNoiseOrTrends) {
  // Period in samples, points, noise / amplitude; the last beyond the values looked at in full.
  for (const auto& [period, points, scale] :
       {std::tuple{12.5, 1000, 0.3}, {1000.0, 8000, 1.0}, {30000.0, 150000, 0.5}}) {
    Values values = series(points, 7.0, scale, 31);
    for (int i = 0; i < points; ++i) values[i] += std::sin(2 * kPi * i / period + 0.3);
    const convergence::Oscillation found = convergence::findOscillation(values);
    EXPECT_NEAR(found.found() ? found.periodInSamples() : 0, period, 0.01 * period);
    const auto whole = std::size_t(std::floor(points / period) * period);
    const std::span<const double> wholePeriods = std::span<const double>(values).first(whole);
    EXPECT_NEAR(convergence::fundamentalAmplitude(wholePeriods, period), 1.0, 0.05) << period;
  }
  for (const Values& values : {series(5000, 1, 1, 41), noise(5000, 43, 0.99),
                               series(5000, 0, 0.1, 44, [](double i) { return i / 5000; })})
    EXPECT_FALSE(convergence::findOscillation(values).found()) << values[1];
}

TEST(Convergence, VerdictStatesOfTypicalSeries) {
  Values mostlyMissing = series(300, 1.0, 0.001, 61);
  for (std::size_t i = 0; i < 300; i += 3) mostlyMissing[i] = kNaN, mostlyMissing[i + 1] = kMissing;
  mostlyMissing[2] = -kInfinity;
  const struct {
    const char* name;
    Values y;
    std::string_view state;
    std::size_t abscissae = 0;  // 0: one per value
  } cases[] = {
      {"small noise", series(4000, 1, 0.001, 51), "converged"},
      {"slow approach", series(4000, 1, 0.001, 53, [](double i) { return -std::exp(-i / 4000); }),
       "transient"},
      {"trend", series(4000, 1, 1, 54, [](double i) { return i / 8000; }), "drifting"},
      {"large noise", series(4000, 1, 1, 55), "wide"},
      {"no point", {}, "short"},
      {"99 points", series(99, 1, 0.001, 62), "short"},
      {"100 points", series(100, 1, 0.001, 62), "converged"},
      {"100 values, 50 abscissae", series(100, 1, 0.001, 63), "short", 50},
      {"300 points, 201 missing", mostlyMissing, "short"},
  };
  for (const auto& c : cases) {
    const convergence::Verdict verdict =
        convergence::judge(positions(c.abscissae ? c.abscissae : c.y.size()), c.y, {});
    EXPECT_EQ(convergence::stateName(verdict.state), c.state) << c.name;
    const bool tooFew = verdict.samples < convergence::kFewestSamples && !verdict.transientEnd;
    EXPECT_EQ(tooFew, c.state == "short") << c.name;
  }
  for (const double level : {4.25, -2.0e5, 1.0e-30, 0.0}) {
    const convergence::Verdict v = convergence::judge(positions(500), Values(500, level), {});
    EXPECT_TRUE(v.state == State::converged && v.mean == level && v.halfWidth == 0.0 && !v.drift &&
                !v.period && v.transientEnd == 0.0 && v.samples == 500U)
        << level;
  }
}

TEST(Convergence, OscillationsOverWholePeriodsAndHolesLeftOut) {
  const std::size_t n = 6000;
  const Values x = positions(n, 0.1);
  const double holes[] = {kMissing, -kMissing, kNaN, kInfinity, -kInfinity, 3.5e38};
  for (const bool oscillates : {false, true}) {
    // Level 2 after a start-up surge; a swing of 0.5 every 5 time units (50 steps of 0.1).
    const auto swing = [](double i) {
      return 0.5 * std::sin(2 * kPi * i / 50) + 1.5 * std::exp(-i / 100);
    };
    const auto decay = [](double i) { return 0.3 * std::exp(-i / 50); };
    const Values y = oscillates ? series(n, 2.0, 0.05, 91, swing) : series(n, 2.0, 0.01, 71, decay);
    // Holes in the values, each at an abscissa of its own, and in the abscissae.
    Values holedX, holedY;
    for (std::size_t i = 0; i < n; ++i) {
      if (i % 7 == 3) holedX.push_back(x[i] - 0.05), holedY.push_back(holes[i % 6]);
      if (i % 11 == 5) holedX.push_back(holes[i % 6]), holedY.push_back(100.0);
      holedX.push_back(x[i]), holedY.push_back(y[i]);
    }
    const convergence::Verdict clean = convergence::judge(x, y, {});
    const convergence::Verdict holed = convergence::judge(holedX, holedY, {});
    EXPECT_EQ(clean.state, State::converged) << oscillates;
    EXPECT_EQ(clean.period.has_value(), oscillates);
    EXPECT_TRUE(holed.samples == clean.samples && holed.transientEnd == clean.transientEnd &&
                holed.mean == clean.mean && holed.halfWidth == clean.halfWidth &&
                holed.period == clean.period && holed.amplitude == clean.amplitude)
        << oscillates;
    if (!oscillates) continue;
    EXPECT_NEAR(clean.period.value_or(0), 5.0, 0.01);
    EXPECT_NEAR(clean.amplitude.value_or(0), 0.5, 0.02);
    EXPECT_NEAR(clean.mean, 2.0, 0.01);
    EXPECT_TRUE(clean.halfWidth < 0.01 && !clean.drift && clean.samples > 3000u);
    // Whole periods: a multiple of 50 points, give or take the rounding of the crossings.
    EXPECT_NEAR(double(clean.samples) / 50.0, std::round(double(clean.samples) / 50.0), 0.05);
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
  const std::tuple<Values, double, double, bool> cases[] = {
      {geometric(6.0), 6.0 * lastTwentieth, 1e-9, true},
      {geometric(1.0), lastTwentieth, 1e-9, true},
      {levelled, 6.0, 0.05, false}};
  for (const auto& [values, ordersDropped, tolerance, stillFalling] : cases) {
    const convergence::Verdict verdict = convergence::judge(positions(2000), values, {}, true);
    EXPECT_NEAR(verdict.ordersDropped.value_or(-1), ordersDropped, tolerance);
    EXPECT_EQ(verdict.stillFalling, stillFalling) << ordersDropped;
  }
  // Orders are for residuals, and only for positive ones.
  Values withZero = geometric(6.0);
  EXPECT_FALSE(convergence::judge(positions(2000), withZero, {}).ordersDropped);
  withZero[1500] = 0.0;
  EXPECT_FALSE(convergence::judge(positions(2000), withZero, {}, true).ordersDropped);
}

}  // namespace
