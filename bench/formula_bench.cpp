// The cost of evaluating a custom plot's formula, point by point, against the
// same expression written as a plain loop:
//
//   PlainLoop           (hull[i] + rudder[i]) / 2 - 0.5 * sin(t[i]) in C++;
//   TreeAndStore        the formula parsed into its tree, then for every point
//                       the three variables set in a VariableStore and the
//                       tree evaluated;
//   ComputePlotPoints   marine::computePlotPoints over an in-memory provider
//                       holding the two series as arrays, as a plot does.
//
// The formula is "(Fx_Hull+Fx_Rudder)/2 - 0.5*sin(t)" over 1 000 000 points
// (MONITOR_BENCH_POINTS says otherwise). Every benchmark reports the time
// per point as `per_point` (e.g. "11.3ns"); the goal is at most 10 times the
// plain loop's.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "formula/functions.h"
#include "formula/parser.h"
#include "formula/quantity_data_provider.h"
#include "formula/symbol_table.h"
#include "formula/variable_store.h"
#include "marine/custom_plots.h"

namespace {

constexpr const char* kFormula = "(Fx_Hull+Fx_Rudder)/2 - 0.5*sin(t)";

std::size_t pointCount() {
  const char* text = std::getenv("MONITOR_BENCH_POINTS");
  const long points = text == nullptr ? 0 : std::atol(text);
  return points > 0 ? static_cast<std::size_t>(points) : 1000000;
}

// Two force histories of an unsteady run and its times.
struct Series {
  std::vector<double> times;
  std::vector<double> hull;
  std::vector<double> rudder;
};

const Series& series() {
  static const Series data = [] {
    Series s;
    const std::size_t count = pointCount();
    s.times.reserve(count);
    s.hull.reserve(count);
    s.rudder.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const double t = 0.01 * static_cast<double>(i + 1);
      s.times.push_back(t);
      s.hull.push_back(-2100.0 + 150.0 * std::exp(-t) * std::cos(3.0 * t));
      s.rudder.push_back(-35.0 + 4.0 * std::sin(1.7 * t));
    }
    return s;
  }();
  return data;
}

// A provider over the arrays: the two series by name, the times as abscissae.
class ArrayProvider final : public formula::QuantityDataProvider {
 public:
  explicit ArrayProvider(const Series& data) : data_(data) {}

  void GetVariableNames(std::vector<std::string>& names) const override {
    names.push_back("Fx_Hull");
    names.push_back("Fx_Rudder");
  }
  int GetPointsCount() const override { return static_cast<int>(data_.times.size()); }
  double GetAbscissa(int point) const override {
    return data_.times[static_cast<std::size_t>(point)];
  }
  double GetValue(int point, const std::string& name) const override {
    const std::vector<double>* values = GetSeries(name);
    return values == nullptr ? 0.0 : (*values)[static_cast<std::size_t>(point)];
  }
  const std::vector<double>* GetSeries(const std::string& name) const override {
    if (name == "Fx_Hull") return &data_.hull;
    if (name == "Fx_Rudder") return &data_.rudder;
    return nullptr;
  }

 private:
  const Series& data_;
};

void reportPerPoint(benchmark::State& state, std::size_t points) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * points));
  state.counters["per_point"] = benchmark::Counter(
      static_cast<double>(points),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void PlainLoop(benchmark::State& state) {
  const Series& data = series();
  const std::size_t count = data.times.size();
  std::vector<double> values(count);
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) {
      values[i] = (data.hull[i] + data.rudder[i]) / 2 - 0.5 * std::sin(data.times[i]);
    }
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  reportPerPoint(state, count);
}

void TreeAndStore(benchmark::State& state) {
  const Series& data = series();
  const std::size_t count = data.times.size();
  std::vector<double> values(count);
  for (auto _ : state) {
    formula::SymbolTable symbols = formula::functionSymbols();
    const int t = symbols.insert("t");
    const int hull = symbols.insert("Fx_Hull");
    const int rudder = symbols.insert("Fx_Rudder");
    formula::Parser parser(symbols, true);
    if (parser.parse(kFormula) != formula::ParseStatus::ok)
      throw std::logic_error("the formula does not parse");
    const formula::Node& root = *parser.root();
    formula::VariableStore store(symbols);
    for (std::size_t i = 0; i < count; ++i) {
      store.set(t, data.times[i]);
      store.set(hull, data.hull[i]);
      store.set(rudder, data.rudder[i]);
      values[i] = root.Calc(store);
    }
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  reportPerPoint(state, count);
}

void ComputePlotPoints(benchmark::State& state) {
  const Series& data = series();
  const ArrayProvider provider(data);
  marine::PlotPoints points;
  points.reserve(data.times.size());
  for (auto _ : state) {
    points.clear();
    if (!marine::computePlotPoints(provider, kFormula, 0, points))
      throw std::logic_error("the plot failed");
    benchmark::DoNotOptimize(points.data());
    benchmark::ClobberMemory();
  }
  reportPerPoint(state, data.times.size());
}

// With --benchmark_repetitions=N, the fastest repetition too: on a shared
// machine it is the figure least disturbed by other work.
double fastest(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

}  // namespace

BENCHMARK(PlainLoop)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(TreeAndStore)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(ComputePlotPoints)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);

BENCHMARK_MAIN();
