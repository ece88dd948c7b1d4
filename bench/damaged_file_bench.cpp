// What damaged files cost the readers: the files that a crashed node or a
// solver caught in the middle of a huge line leaves in a computation folder.
//
//   SparseResidualFile/marine:0 and /turbo:1
//                        a computation whose residual file is a sparse file
//                        of MONITOR_BENCH_SPARSE_MB megabytes (default 1024:
//                        NUL bytes only, no line feed), opened and refreshed
//                        three times; beside it the same computation with an
//                        empty residual file;
//   UnfinishedLongLine   a marine computation whose residual file gains a
//                        line of MONITOR_BENCH_LINE_MB megabytes (default 100)
//                        without its line feed, refreshed three times while
//                        the line stays unfinished.
//
// Counters: wall-clock seconds of each step, the bytes the process read
// (`rchar` of /proc/self/io) and the peak resident memory of each step above
// the resident memory before it (VmHWM of /proc/self/status, reset through
// /proc/self/clear_refs), in MB.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "bench_support.h"
#include "marine/project_monitor_marine.h"
#include "platform/console.h"
#include "solver_simulator/marine_case_writer.h"
#include "turbo/res_file.h"

namespace {

namespace fs = std::filesystem;

std::size_t megabytesFrom(const char* variable, std::size_t fallback) {
  const char* text = std::getenv(variable);
  const long long value = text == nullptr ? 0 : std::atoll(text);
  return value > 0 ? static_cast<std::size_t>(value) : fallback;
}

// A number from a "name: value" line of a /proc/self file.
std::uint64_t procValue(const char* file, const std::string& name) {
  std::ifstream in(file);
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind(name + ":", 0) == 0) return std::stoull(line.substr(name.size() + 1));
  }
  return 0;
}

// Time, bytes read and peak memory of one step.
struct StepCost {
  double seconds = 0;
  double megabytesRead = 0;
  double peakMegabytes = 0;  // above the resident memory before the step
};

StepCost measure(const std::function<void()>& step) {
  std::ofstream("/proc/self/clear_refs") << "5";  // restarts the peak at the current size
  const double residentBefore = static_cast<double>(bench_support::residentBytes());
  const std::uint64_t readBefore = procValue("/proc/self/io", "rchar");
  const auto start = std::chrono::steady_clock::now();
  step();
  StepCost cost;
  cost.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  cost.megabytesRead = static_cast<double>(procValue("/proc/self/io", "rchar") - readBefore) / 1e6;
  cost.peakMegabytes =
      (static_cast<double>(procValue("/proc/self/status", "VmHWM")) * 1024.0 - residentBefore) /
      1e6;
  return cost;
}

void report(benchmark::State& state, const std::string& name, const StepCost& cost) {
  state.counters[name + "_s"] = cost.seconds;
  state.counters[name + "_read_MB"] = cost.megabytesRead;
  state.counters[name + "_peak_MB"] = cost.peakMegabytes;
}

// A small unsteady marine computation written by the solver stand-in.
solver_simulator::CaseSetup writeCase(const fs::path& folder) {
  solver_simulator::MarineCaseWriter writer(solver_simulator::defaultCaseSetup(folder));
  writer.writeHeaders();
  for (int i = 0; i < 20; ++i) writer.appendIteration();
  return writer.setup();
}

fs::path scratchFolder(const std::string& name) {
  return fs::temp_directory_path() / ("monitor_damaged_" + name + "_" + std::to_string(::getpid()));
}

// Opens the residual file as its mode does, then refreshes three times.
std::function<void()> openAndRefresh(bool marineMode, const fs::path& residualPath) {
  return [marineMode, residualPath] {
    if (marineMode) {
      marine::ProjectMonitorMarine project(residualPath.string());
      project.load();
      for (int i = 0; i < 3; ++i) project.refresh();
    } else {
      turbo::ResFile file(residualPath.string());
      for (int i = 0; i < 3; ++i) file.read();
    }
  };
}

void SparseResidualFile(benchmark::State& state) {
  const bool marineMode = state.range(0) == 0;
  const std::uint64_t bytes = megabytesFrom("MONITOR_BENCH_SPARSE_MB", 1024) << 20;
  const fs::path folder = scratchFolder("sparse");
  std::ostringstream discarded;
  const platform::ConsoleRedirect quiet(discarded);
  const fs::path residualPath =
      marineMode ? writeCase(folder).residualPath() : folder / "stage.res";
  fs::create_directories(folder);
  for (auto _ : state) {
    { bench_support::File emptied = bench_support::openFile(residualPath, "wb"); }
    report(state, "empty", measure(openAndRefresh(marineMode, residualPath)));
    fs::resize_file(residualPath, bytes);
    report(state, "sparse", measure(openAndRefresh(marineMode, residualPath)));
  }
  state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
  fs::remove_all(folder);
}
BENCHMARK(SparseResidualFile)
    ->ArgName("turbo")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1)
    ->Unit(benchmark::kSecond);

void UnfinishedLongLine(benchmark::State& state) {
  const std::size_t lineBytes = megabytesFrom("MONITOR_BENCH_LINE_MB", 100) << 20;
  const fs::path folder = scratchFolder("line");
  std::ostringstream discarded;
  const platform::ConsoleRedirect quiet(discarded);
  const fs::path residualPath = writeCase(folder).residualPath();
  for (auto _ : state) {
    marine::ProjectMonitorMarine project(residualPath.string());
    project.load();
    project.refresh();
    {
      bench_support::File file = bench_support::openFile(residualPath, "ab");
      bench_support::TextRows text(file.get());
      for (std::size_t written = 0; written < lineBytes; written += 16)
        text.text("1.25e-03 4.5e-04");
    }
    for (int i = 1; i <= 3; ++i)
      report(state, "refresh" + std::to_string(i), measure([&] { project.refresh(); }));
  }
  state.counters["line_MB"] = static_cast<double>(lineBytes) / 1e6;
  fs::remove_all(folder);
}
BENCHMARK(UnfinishedLongLine)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
