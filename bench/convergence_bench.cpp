// How well the convergence verdict (convergence::judge) knows what it claims,
// on synthetic series whose truth is known, and what one verdict costs.
//
// Accuracy, printed as tables before the timings, each case over
// MONITOR_BENCH_TRIALS trials (default 1000; 0 skips the tables), every trial
// from its own fixed seed:
//   - coverage: a level of 1, a start-up transient of five noise deviations
//     decaying with a time constant of 1 % of the series, and AR(1) noise of
//     deviation 0.01 with phi 0, 0.5, 0.9, 0.99, over 50 and 200 integral
//     time scales (at least 2 000 points); how often the interval holds the
//     level, beside the naive sd/sqrt(n) interval over the same retained part;
//   - drift: the same series plus a linear drift whose rise over the last
//     half is eight half-widths of the interval of the series without it; how
//     often it is called converged, and how often the series without drift is
//     called drifting;
//   - period: a sine plus a start-up surge plus noise (white, or AR(1) in
//     one case), periods from 8 samples to beyond the 65 536 values looked
//     at in full; the period found, the amplitude, how often the interval
//     over whole periods holds the level.
//
// Cost (Google Benchmark): one verdict on MONITOR_BENCH_POINTS points
// (default 1 000 000) of a steady series (AR(1) noise, phi 0.9, after a
// transient), an oscillating one, a residual, and the steady one with every
// 100th point missing (which makes the verdict copy the points kept).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <optional>
#include <random>
#include <span>
#include <vector>

#include "convergence/verdict.h"

namespace {

constexpr double kLevel = 1.0;
constexpr double kNoise = 0.01;  // the deviation of the noise itself, not of its innovations
constexpr double kTransientAmplitude = 5.0 * kNoise;
constexpr double kTransientDecay = 0.01;  // time constant, as a fraction of the series
constexpr std::size_t kFewestPoints = 2000;
constexpr double kNormal975 = 1.959963984540054;

std::size_t sizeFromEnvironment(const char* name, std::size_t otherwise) {
  const char* text = std::getenv(name);
  if (text == nullptr || *text == '\0') return otherwise;
  const long value = std::atol(text);
  return value >= 0 ? static_cast<std::size_t>(value) : otherwise;
}

std::size_t trialCount() { return sizeFromEnvironment("MONITOR_BENCH_TRIALS", 1000); }
std::size_t pointCount() { return sizeFromEnvironment("MONITOR_BENCH_POINTS", 1000000); }

// Standard normal deviates by Box-Muller from a fixed-seed generator, the
// same on every platform.
class Normal {
 public:
  explicit Normal(std::uint64_t seed) : engine_(seed) {}

  double operator()() {
    if (spare_) {
      const double value = *spare_;
      spare_.reset();
      return value;
    }
    const double radius = std::sqrt(-2.0 * std::log(1.0 - uniform()));
    const double angle = 2.0 * std::numbers::pi * uniform();
    spare_ = radius * std::sin(angle);
    return radius * std::cos(angle);
  }
  double uniform() { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }

 private:
  std::mt19937_64 engine_;
  std::optional<double> spare_;
};

double integralTime(double phi) { return (1.0 + phi) / (1.0 - phi); }

// Stationary AR(1) noise of deviation `deviation`, from its first value on.
std::vector<double> autoregressive(std::size_t n, double phi, double deviation, Normal& normal) {
  std::vector<double> noise(n);
  const double innovation = deviation * std::sqrt(1.0 - phi * phi);
  double value = deviation * normal();
  for (double& point : noise) {
    point = value;
    value = phi * value + innovation * normal();
  }
  return noise;
}

std::vector<double> positions(std::size_t n, double step = 1.0) {
  std::vector<double> x(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = static_cast<double>(i) * step;
  return x;
}

// The level, a decaying start-up transient and AR(1) noise.
std::vector<double> steadySeries(std::size_t n, double phi, std::uint64_t seed) {
  Normal normal(seed);
  std::vector<double> y = autoregressive(n, phi, kNoise, normal);
  const double decay = kTransientDecay * static_cast<double>(n);
  for (std::size_t i = 0; i < n; ++i)
    y[i] += kLevel + kTransientAmplitude * std::exp(-static_cast<double>(i) / decay);
  return y;
}

bool covers(const convergence::Verdict& verdict, double truth) {
  return std::fabs(verdict.mean - truth) <= verdict.halfWidth;
}

// The interval a textbook gives for independent values, over the same
// retained part.
bool naiveCovers(std::span<const double> retained, double truth) {
  const auto n = static_cast<double>(retained.size());
  double mean = 0.0;
  for (const double value : retained) mean += value / n;
  double squares = 0.0;
  for (const double value : retained) squares += (value - mean) * (value - mean);
  return std::fabs(mean - truth) <= kNormal975 * std::sqrt(squares / (n - 1.0) / n);
}

std::size_t retainedFrom(const convergence::Verdict& verdict) {
  return verdict.transientEnd ? static_cast<std::size_t>(*verdict.transientEnd) : 0;
}

double percent(std::size_t count, std::size_t trials) {
  return trials == 0 ? 0.0 : 100.0 * static_cast<double>(count) / static_cast<double>(trials);
}

struct SteadyCase {
  double phi;
  double timeScales;
  std::size_t points() const {
    return std::max(kFewestPoints,
                    static_cast<std::size_t>(std::ceil(timeScales * integralTime(phi))));
  }
};

constexpr SteadyCase kSteadyCases[] = {{0.0, 50},  {0.5, 50},  {0.9, 50},  {0.99, 50},
                                       {0.0, 200}, {0.5, 200}, {0.9, 200}, {0.99, 200}};

std::uint64_t seedOf(std::size_t table, std::size_t row, std::size_t trial) {
  return 1'000'003ULL * table + 10'007ULL * row + trial;
}

struct StateCounts {
  std::size_t byState[5] = {};
  void add(convergence::State state) { ++byState[static_cast<int>(state)]; }
  std::size_t operator[](convergence::State state) const {
    return byState[static_cast<int>(state)];
  }
};

void coverageTable(std::size_t trials) {
  const convergence::Settings settings{0.95, 0.01};
  std::printf(
      "\nCoverage of the level by the 95 %% interval: level %.0f, transient %.0f noise deviations "
      "decaying over %.0f %% of the series, AR(1) noise of deviation %.2f; %zu trials\n",
      kLevel, kTransientAmplitude / kNoise, 100.0 * kTransientDecay, kNoise, trials);
  std::printf("%6s %8s %8s %9s | %8s %8s | %7s %7s | %6s %6s %6s %6s %6s | %6s\n", "phi", "tau_int",
              "points", "tau_ints", "covered", "naive", "cut %", "width", "conv", "trans", "drift",
              "wide", "short", "period");
  for (std::size_t row = 0; row < std::size(kSteadyCases); ++row) {
    const SteadyCase& c = kSteadyCases[row];
    const std::size_t n = c.points();
    const std::vector<double> x = positions(n);
    std::size_t covered = 0;
    std::size_t naive = 0;
    std::size_t periods = 0;
    double cut = 0.0;
    double width = 0.0;
    StateCounts states;
    for (std::size_t trial = 0; trial < trials; ++trial) {
      const std::vector<double> y = steadySeries(n, c.phi, seedOf(1, row, trial));
      const convergence::Verdict verdict = convergence::judge(x, y, settings);
      const std::size_t first = retainedFrom(verdict);
      covered += covers(verdict, kLevel) ? 1 : 0;
      naive += naiveCovers(std::span<const double>(y).subspan(first), kLevel) ? 1 : 0;
      periods += verdict.period ? 1 : 0;
      cut += static_cast<double>(first) / static_cast<double>(n) / static_cast<double>(trials);
      width += verdict.halfWidth / kNoise / static_cast<double>(trials);
      states.add(verdict.state);
    }
    using enum convergence::State;
    std::printf(
        "%6.2f %8.1f %8zu %9.0f | %7.1f%% %7.1f%% | %7.1f %7.4f | %5.1f%% %5.1f%% %5.1f%% "
        "%5.1f%% %5.1f%% | %5.1f%%\n",
        c.phi, integralTime(c.phi), n, static_cast<double>(n) / integralTime(c.phi),
        percent(covered, trials), percent(naive, trials), 100.0 * cut, width,
        percent(states[converged], trials), percent(states[transient], trials),
        percent(states[drifting], trials), percent(states[wide], trials),
        percent(states[shortSeries], trials), percent(periods, trials));
  }
  std::printf(
      "covered: the interval holds the level; naive: so does mean +- 1.96 sd/sqrt(n) over the "
      "same retained part; cut: mean share left out as transient; width: mean half-width in noise "
      "deviations; then the verdicts (tolerance 1 %%) and how often a period was reported.\n");
}

void driftTable(std::size_t trials) {
  // A tolerance no interval reaches: only the transient, the length and the
  // trend can keep a series from being converged here.
  const convergence::Settings settings{0.95, 1.0};
  std::printf(
      "\nDrift: the same series, then with a linear drift rising by 8 half-widths (of the "
      "series without it) over its last half; %zu trials\n",
      trials);
  std::printf("%6s %8s | %16s %16s %16s | %16s %16s\n", "phi", "points", "steady: drifting",
              "steady: flag", "steady: conv", "drift: not conv", "drift: drifting");
  for (std::size_t row = 0; row < std::size(kSteadyCases); ++row) {
    const SteadyCase& c = kSteadyCases[row];
    const std::size_t n = c.points();
    const std::vector<double> x = positions(n);
    std::size_t steadyDrifting = 0;
    std::size_t steadyFlag = 0;
    std::size_t steadyConverged = 0;
    std::size_t driftNotConverged = 0;
    std::size_t driftDrifting = 0;
    for (std::size_t trial = 0; trial < trials; ++trial) {
      std::vector<double> y = steadySeries(n, c.phi, seedOf(2, row, trial));
      const convergence::Verdict steady = convergence::judge(x, y, settings);
      steadyDrifting += steady.state == convergence::State::drifting ? 1 : 0;
      steadyFlag += steady.drift ? 1 : 0;
      steadyConverged += steady.state == convergence::State::converged ? 1 : 0;
      const double slope = 8.0 * steady.halfWidth / (0.5 * static_cast<double>(n));
      for (std::size_t i = 0; i < n; ++i) y[i] += slope * static_cast<double>(i);
      const convergence::Verdict drifting = convergence::judge(x, y, settings);
      driftNotConverged += drifting.state != convergence::State::converged ? 1 : 0;
      driftDrifting += drifting.state == convergence::State::drifting ? 1 : 0;
    }
    std::printf("%6.2f %8zu | %15.1f%% %15.1f%% %15.1f%% | %15.1f%% %15.1f%%\n", c.phi, n,
                percent(steadyDrifting, trials), percent(steadyFlag, trials),
                percent(steadyConverged, trials), percent(driftNotConverged, trials),
                percent(driftDrifting, trials));
  }
  std::printf(
      "steady: the series without drift, called drifting, flagged with a trend, called "
      "converged; drift: the series with it, not called converged, called drifting (the rest "
      "is mostly called transient). Tolerance 100 %%.\n");
}

struct SineCase {
  double periodInSamples;
  std::size_t points;
  double noise;  // its deviation, relative to the amplitude
  double phi;    // of the noise: 0 for white noise
};

constexpr SineCase kSineCases[] = {{8, 2000, 0.5, 0.0},      {20, 2000, 0.5, 0.0},
                                   {100, 10000, 0.5, 0.0},   {1000, 50000, 0.5, 0.0},
                                   {1000, 50000, 1.0, 0.0},  {1000, 50000, 0.5, 0.9},
                                   {5000, 400000, 0.5, 0.0}, {40000, 400000, 0.5, 0.0}};

void periodTable(std::size_t trials) {
  const convergence::Settings settings{0.95, 1.0};
  constexpr double kStep = 0.01;  // abscissa units per sample
  constexpr double kAmplitude = 0.1;
  constexpr double kSurge = 3.0;  // start-up surge, in amplitudes
  std::printf(
      "\nPeriod: level %.0f plus a sine of amplitude %.1f and random phase, a start-up surge of "
      "%.0f amplitudes decaying over %.0f %% of the series, and noise; abscissa step %.2f; %zu "
      "trials\n",
      kLevel, kAmplitude, kSurge, 100.0 * kTransientDecay, kStep, trials);
  std::printf("%8s %8s %7s %5s | %7s %9s %9s %9s | %8s %8s %7s\n", "period", "points", "noise",
              "phi", "found", "mean err", "max err", "within 2%", "covered", "ampl.", "conv");
  for (std::size_t row = 0; row < std::size(kSineCases); ++row) {
    const SineCase& c = kSineCases[row];
    const std::vector<double> x = positions(c.points, kStep);
    const double truePeriod = c.periodInSamples * kStep;
    const std::size_t rowTrials = c.points > 100000 ? std::max<std::size_t>(1, trials / 5) : trials;
    std::size_t found = 0;
    std::size_t within = 0;
    std::size_t covered = 0;
    double errorSum = 0.0;
    double worst = 0.0;
    double amplitudeSum = 0.0;
    std::size_t converged = 0;
    for (std::size_t trial = 0; trial < rowTrials; ++trial) {
      Normal normal(seedOf(3, row, trial));
      const double phase = 2.0 * std::numbers::pi * normal.uniform();
      std::vector<double> y = autoregressive(c.points, c.phi, c.noise * kAmplitude, normal);
      const double decay = kTransientDecay * static_cast<double>(c.points);
      for (std::size_t i = 0; i < c.points; ++i) {
        const auto position = static_cast<double>(i);
        y[i] +=
            kLevel +
            kAmplitude * std::sin(2.0 * std::numbers::pi * position / c.periodInSamples + phase) +
            kSurge * kAmplitude * std::exp(-position / decay);
      }
      const convergence::Verdict verdict = convergence::judge(x, y, settings);
      covered += covers(verdict, kLevel) ? 1 : 0;
      converged += verdict.state == convergence::State::converged ? 1 : 0;
      if (!verdict.period) continue;
      ++found;
      const double error = std::fabs(*verdict.period - truePeriod) / truePeriod;
      errorSum += error;
      worst = std::max(worst, error);
      within += error <= 0.02 ? 1 : 0;
      amplitudeSum += verdict.amplitude.value_or(0.0);
    }
    std::printf(
        "%8.0f %8zu %7.2f %5.2f | %6.1f%% %8.3f%% %8.3f%% %8.1f%% | %7.1f%% %8.4f %6.1f%%   (%zu "
        "trials)\n",
        c.periodInSamples, c.points, c.noise, c.phi, percent(found, rowTrials),
        found ? 100.0 * errorSum / static_cast<double>(found) : 0.0, 100.0 * worst,
        percent(within, rowTrials), percent(covered, rowTrials),
        found ? amplitudeSum / static_cast<double>(found) : 0.0, percent(converged, rowTrials),
        rowTrials);
  }
  std::printf(
      "period in samples; noise: its deviation over the sine's amplitude, phi: its AR(1) "
      "coefficient; found: a period was "
      "reported; errors relative to the true period; within 2%%: share of all trials; covered: "
      "the interval over whole periods holds the level; ampl.: mean amplitude reported; conv: "
      "called converged (tolerance 100 %%).\n");
}

// The series the timings judge, made once.
struct Timed {
  std::vector<double> x;
  std::vector<double> steady;
  std::vector<double> oscillating;
  std::vector<double> residual;
  std::vector<double> holed;  // the steady series, every 100th point missing
};

const Timed& timed() {
  static const Timed data = [] {
    const std::size_t n = pointCount();
    Timed t;
    t.x = positions(n);
    t.steady = steadySeries(n, 0.9, 42);
    Normal normal(43);
    t.oscillating.resize(n);
    t.residual.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
      const auto position = static_cast<double>(i);
      t.oscillating[i] =
          kLevel + 0.1 * std::sin(2.0 * std::numbers::pi * position / 500.0) + 0.05 * normal();
      t.residual[i] =
          std::exp(-10.0 * position / static_cast<double>(n)) * (1.0 + 0.2 * std::fabs(normal()));
    }
    t.holed = t.steady;
    for (std::size_t i = 50; i < n; i += 100) t.holed[i] = std::numeric_limits<float>::max();
    return t;
  }();
  return data;
}

void judgeSeries(benchmark::State& state, const std::vector<double>& y, bool residual) {
  const Timed& data = timed();
  const convergence::Settings settings;
  for (auto _ : state) {
    convergence::Verdict verdict = convergence::judge(data.x, y, settings, residual);
    benchmark::DoNotOptimize(verdict);
  }
  state.counters["points"] = static_cast<double>(y.size());
}

void JudgeSteady(benchmark::State& state) { judgeSeries(state, timed().steady, false); }
void JudgeOscillating(benchmark::State& state) { judgeSeries(state, timed().oscillating, false); }
void JudgeResidual(benchmark::State& state) { judgeSeries(state, timed().residual, true); }
void JudgeWithMissingPoints(benchmark::State& state) { judgeSeries(state, timed().holed, false); }

double fastest(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

}  // namespace

BENCHMARK(JudgeSteady)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(JudgeOscillating)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(JudgeResidual)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(JudgeWithMissingPoints)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  if (const std::size_t trials = trialCount(); trials > 0) {
    coverageTable(trials);
    driftTable(trials);
    periodTable(trials);
    std::printf("\n");
    std::fflush(stdout);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
