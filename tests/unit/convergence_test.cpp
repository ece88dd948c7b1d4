// The verdict and its pieces on series of known answer; the bounds are the statistics', not a
// draw's.
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

TEST(Convergence, StudentQuantilesAndBatchCounts) {
  std::istringstream quantiles(  // probability, degrees of freedom, quantile
      "0.975 1 12.706204736  0.975 2 4.302652730  0.975 19 2.093024054  0.995 8 3.355387331 "
      "0.975 1000 1.962339081  0.025 4 -2.776445105  0.5 7 0  0.9995 3 12.923978637 "
      "0.95 10 1.812461123");
  double probability, quantile;
  for (int freedom; quantiles >> probability >> freedom >> quantile;)
    EXPECT_NEAR(convergence::studentQuantile(probability, freedom), quantile, 1e-6) << freedom;
  // Fewer batches when the series is short for its correlation: count, tau, batches.
  std::istringstream batches("2000 1 20  10000 100 20  10000 150 13  10000 200 10  1000 500 10");
  for (double count, correlationTime, expected; batches >> count >> correlationTime >> expected;)
    EXPECT_EQ(convergence::batchesFor(std::size_t(count), correlationTime), expected)
        << correlationTime;
}

TEST(Convergence, TheMeanIsThatOfTheBatchesAfterTheCut) {
  // Ten values of a start-up, then three batches alternating 0.9 and 1.1.
  std::vector<double> values(10, 50.0);
  for (int i = 0; i < 30; ++i) values.push_back(i % 2 == 0 ? 0.9 : 1.1);
  const std::size_t limits[] = {10, 20, 30, 40};
  const double positions[] = {15, 25, 35};
  const convergence::MeanEstimate estimate =
      convergence::estimateMean(values, limits, positions, 0.95, 3.0);
  EXPECT_NEAR(estimate.mean, 1.0, 1e-12);
  EXPECT_FALSE(estimate.drift);
}

TEST(Convergence, MserCutsWhereTheStartEnds) {
  // A cut from 40 % of the series on means that the start has not ended.
  const std::tuple<const char*, Values, std::size_t, std::size_t, bool> cases[] = {
      {"step at 700", series(2000, 1, 0.1, 6, [](double i) { return i < 700 ? 2.0 : 0.0; }), 700,
       700, false},
      {"step at 800: 40 %", series(2000, 1, 0.1, 8, [](double i) { return i < 800 ? 2.0 : 0.0; }),
       800, 800, true},
      {"decay", series(2000, 1, 0.1, 2, [](double i) { return 5 * std::exp(-i / 40); }), 100, 300,
       false},
      {"constant", Values(2000, 4.25), 0, 0, false},
      {"ramp", series(2000, 1, 0.1, 4, [](double i) { return 0.001 * i; }), 800, 1000, true},
      {"3 batches", Values(15, 1.0), 0, 0, false},
      {"4 batches", {3, 3, 3, 3, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 5, 5, false},
  };
  for (const auto& [name, values, fewest, most, stillGoing] : cases) {
    const convergence::TransientCut cut = convergence::findTransientEnd(values);
    EXPECT_TRUE(cut.end >= fewest && cut.end <= most && cut.stillGoing == stillGoing)
        << name << ": " << cut.end;
  }
}

TEST(Convergence, APeriodLongerThanTheValuesLookedAtInFull) {
  Values values = series(150000, 7.0, 0.5, 31);
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] += std::sin(2 * kPi * double(i) / 30000);
  const convergence::Oscillation found = convergence::findOscillation(values);
  EXPECT_NEAR(found.found() ? found.periodInSamples() : 0, 30000, 300);
  EXPECT_NEAR(convergence::fundamentalAmplitude(values, 30000), 1.0, 0.05);
}

TEST(Convergence, VerdictStatesOfTypicalSeries) {
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
      return std::sin(kPi * i / 25) / 2 + 1.5 * std::exp(-i / 100);
    };
    const auto decay = [](double i) { return 0.3 * std::exp(-i / 50); };
    const Values y = oscillates ? series(n, 2.0, 0.05, 91, swing) : series(n, 2.0, 0.01, 71, decay);
    Values holedX, holedY;
    for (std::size_t i = 0; i < n; ++i) {
      if (i % 7 == 3) holedX.push_back(x[i] - 0.05), holedY.push_back(holes[i % 6]);
      if (i % 11 == 5) holedX.push_back(holes[i % 6]), holedY.push_back(100.0);
      holedX.push_back(x[i]), holedY.push_back(y[i]);
    }
    const convergence::Verdict clean = convergence::judge(x, y, {});
    const convergence::Verdict holed = convergence::judge(holedX, holedY, {});
    EXPECT_TRUE(clean.state == State::converged && clean.period.has_value() == oscillates);
    EXPECT_TRUE(holed.samples == clean.samples && holed.transientEnd == clean.transientEnd &&
                holed.mean == clean.mean && holed.halfWidth == clean.halfWidth &&
                holed.period == clean.period && holed.amplitude == clean.amplitude)
        << oscillates;
    const double periods = double(clean.samples) / 50.0;  // whole, give or take the crossings
    EXPECT_TRUE(!oscillates ||
                (std::fabs(clean.period.value_or(0) - 5.0) < 0.01 &&
                 std::fabs(clean.amplitude.value_or(0) - 0.5) < 0.02 &&
                 std::fabs(clean.mean - 2.0) < 0.01 && clean.halfWidth < 0.01 && !clean.drift &&
                 clean.samples > 3000u && std::fabs(periods - std::round(periods)) < 0.05));
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
  const convergence::Verdict falling =
      convergence::judge(positions(2000), geometric(6.0), {}, true);
  const convergence::Verdict levelledOut = convergence::judge(positions(2000), levelled, {}, true);
  // The mean decade of points 1900 to 1999 against the highest of the first tenth.
  EXPECT_NEAR(falling.ordersDropped.value_or(-1), 6.0 * 1949.5 / 1999.0, 1e-9);
  EXPECT_NEAR(levelledOut.ordersDropped.value_or(-1), 6.0, 0.05);
  EXPECT_TRUE(falling.stillFalling && !levelledOut.stillFalling);
  Values withZero = geometric(6.0);
  EXPECT_FALSE(convergence::judge(positions(2000), withZero, {}).ordersDropped);
  withZero[1500] = 0.0;
  EXPECT_FALSE(convergence::judge(positions(2000), withZero, {}, true).ordersDropped);
}

}  // namespace
