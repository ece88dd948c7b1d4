// Timing and memory of the residual history reader (turbo::ResFile) on a
// large file that the benchmark writes itself into a temporary folder:
//
//   FirstRead               the whole file read once from the top (MB/s);
//   RefreshAfterOneRecord   one record appended, then read() again, at a file
//                           of about 10 MB and at the full-size file;
//   MemoryPerValue          resident memory the history takes, in bytes per
//                           stored value, right after a first read and
//                           again after one refresh.
//
// The file holds 4 blocks of a "3D" run with the "K-E" model (7 equations),
// so 9 + 2 x 4 x 7 = 65 values a record, written as "%.6e" would. The record
// count is 200000 (about 170 MB of text) unless MONITOR_BENCH_RECORDS says
// otherwise, e.g. for a profiler run on a smaller file.
//
// The files are written once and stay in the page cache, so the figures are
// those of a file the solver has just written, not of a cold disk.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "bench_support.h"
#include "turbo/res_file.h"

namespace {

namespace fs = std::filesystem;
using bench_support::File;
using bench_support::openFile;
using bench_support::processCpuSeconds;
using bench_support::residentBytes;

constexpr int kBlocks = 4;
constexpr int kEquations = 7;  // "3D" (5) + "K-E" (2)
constexpr std::size_t kValuesPerRecord = 9 + 2 * kBlocks * kEquations;
constexpr std::size_t kDefaultRecords = 200000;
constexpr double kSmallFileBytes = 10e6;

std::size_t recordTarget() {
  if (const char* text = std::getenv("MONITOR_BENCH_RECORDS")) {
    const long long records = std::atoll(text);
    if (records > 1) return static_cast<std::size_t>(records);
  }
  return kDefaultRecords;
}

// Writes records through a fixed buffer that lives outside the heap, so that
// writing the files leaves the allocator as it found it (the memory figure
// reads the process's resident size).
// A turbomachinery residual history, record after record.
class RecordWriter : public bench_support::TextRows {
 public:
  using TextRows::TextRows;

  void header() {
    // Marker, version, blocks, module, turbulence, no extra equations in
    // either list, residuals-per-row choice, mode, application.
    text("0\n3.0\n4\n3D\nK-E\n0\n0\n1\nSTEADY\nTURBO\n");
  }

  // One record of a run that converges: residuals falling with noise five
  // decades every 30000 iterations down to a floor, the integrated
  // quantities settling, the work unit growing.
  void record(std::int32_t iteration) {
    const double i = iteration;
    room(kMaxRecordChars);
    integer(iteration);
    const double settle = std::exp(-i / 4000.0);
    real(0.35 * i);                                    // WorkUnit
    real(1.42 + 0.08 * settle * std::cos(i / 90.0));   // pu
    real(2.35e3 * (1.0 - 0.3 * settle) + noise(2.0));  // Lift
    real(-8.1e2 * (1.0 - 0.2 * settle) + noise(1.0));  // Axial thrust
    real(1.27e2 * (1.0 + 0.4 * settle) + noise(0.1));  // Torque
    real(1.8e-1 * (1.0 + settle) + noise(1e-3));       // Qmax
    real(3.1e2 + 15.0 * settle + noise(0.05));         // Tmax
    real(2.05e1 + 0.5 * settle + noise(0.01));         // In
    real(-2.05e1 - 0.9 * settle + noise(0.01));        // Out
    for (int block = 0; block < kBlocks; ++block) {
      for (int equation = 0; equation < kEquations; ++equation) {
        const double rate = equation < 5 ? 1.0 / 30000.0 : 1.0 / 45000.0;
        const double rms = std::pow(10.0, -1.5 - 0.3 * equation - 0.1 * block) *
                           (std::exp(-i * rate * std::log(10.0) * 5.0) + 1e-6) *
                           (1.0 + noise(0.15));
        real(rms * (4.0 + noise(0.5)));  // max
        real(rms);                       // rms
      }
    }
    end();
  }

 private:
  // Iteration number and 65 values of at most 14 characters and a blank.
  static constexpr std::size_t kMaxRecordChars = 16 + kValuesPerRecord * 16;

  // "%.6e".
  void real(double value) { scientific(value, 6); }
};

// The temporary folder and the files in it, written on first use and removed
// when the program ends.
class Workspace {
 public:
  static Workspace& instance() {
    static Workspace workspace;
    return workspace;
  }

  ~Workspace() {
    std::error_code ignored;
    if (!folder_.empty()) fs::remove_all(folder_, ignored);
  }

  // The full-size file, never changed once written.
  const fs::path& fullFile() {
    if (full_.empty()) {
      full_ = folder_ / "full.res";
      writeFile(full_, recordTarget());
    }
    return full_;
  }

  // A fresh file for appending to: about 10 MB (`large` false) or a copy of
  // the full-size file.
  fs::path growingFile(bool large) {
    const fs::path path = folder_ / (large ? "grow_large.res" : "grow_small.res");
    fs::remove(path);
    if (large) {
      fs::copy_file(fullFile(), path);
    } else {
      writeFile(path, std::max<std::size_t>(
                          2, static_cast<std::size_t>(kSmallFileBytes / bytesPerRecord())));
    }
    return path;
  }

  // Appends one record the way the solver does: open, write, close.
  static void appendRecord(const fs::path& path, std::int32_t iteration) {
    const File file = openFile(path, "ab");
    RecordWriter writer(file.get());
    writer.record(iteration);
  }

 private:
  Workspace() {
    std::string pattern = (fs::temp_directory_path() / "residual_file_bench.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot make a temporary folder");
    folder_ = pattern;
  }

  static void writeFile(const fs::path& path, std::size_t records) {
    const File file = openFile(path, "wb");
    RecordWriter writer(file.get());
    writer.header();
    for (std::size_t i = 1; i <= records; ++i) writer.record(static_cast<std::int32_t>(i));
  }

  double bytesPerRecord() {
    return static_cast<double>(fs::file_size(fullFile())) / static_cast<double>(recordTarget());
  }

  fs::path folder_;
  fs::path full_;
};

// Resident memory after the first read of the full-size file, and again
// after one record is appended and read: a refresh should add next to
// nothing to what the history holds.
void MemoryPerValue(benchmark::State& state) {
  const fs::path path = Workspace::instance().growingFile(true);
  const std::size_t records = recordTarget();
  for (auto _ : state) {
    const std::uint64_t before = residentBytes();
    auto file = std::make_unique<turbo::ResFile>(path.string());
    const int status = file->read();
    const std::uint64_t afterRead = residentBytes();
    if (status != 1 || file->recordCount() != records ||
        file->valuesPerRecord() != kValuesPerRecord) {
      state.SkipWithError("the file did not read whole");
      break;
    }
    Workspace::appendRecord(path, static_cast<std::int32_t>(file->lastIterationNumber()) + 1);
    if (file->read() != 1 || file->recordCount() != records + 1) {
      state.SkipWithError("the appended record was not read");
      break;
    }
    const std::uint64_t afterRefresh = residentBytes();
    const double stored = static_cast<double>(records * file->valuesPerRecord());
    const auto growth = [before](std::uint64_t after) {
      return static_cast<double>(after > before ? after - before : 0);
    };
    state.counters["stored_values"] = stored;
    state.counters["rss_growth_MB"] = growth(afterRead) / 1e6;
    state.counters["bytes_per_value"] = growth(afterRead) / stored;
    state.counters["bytes_per_value_refreshed"] = growth(afterRefresh) / stored;
  }
  fs::remove(path);
}

void FirstRead(benchmark::State& state) {
  const fs::path& path = Workspace::instance().fullFile();
  const std::size_t records = recordTarget();
  const auto bytes = static_cast<std::int64_t>(fs::file_size(path));
  const double cpuStart = processCpuSeconds();
  for (auto _ : state) {
    turbo::ResFile file(path.string());
    const int status = file.read();
    if (status != 1 || file.recordCount() != records) {
      state.SkipWithError("the file did not read whole");
      break;
    }
    benchmark::DoNotOptimize(file.record(records - 1).valueAt(0));
  }
  const double cpu = processCpuSeconds() - cpuStart;
  state.SetBytesProcessed(bytes * state.iterations());
  state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
  state.counters["MB_per_s"] =
      benchmark::Counter(static_cast<double>(bytes) / 1e6 * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate);
  // The same per second of processor time: the figure to compare when other
  // work shares the machine.
  if (cpu > 0) {
    state.counters["MB_per_cpu_s"] =
        static_cast<double>(bytes) / 1e6 * static_cast<double>(state.iterations()) / cpu;
  }
}

// state.range(0): 0 for the ~10 MB file, 1 for the full-size one. Only the
// read() is timed; each iteration appends one record first.
void RefreshAfterOneRecord(benchmark::State& state) {
  const fs::path path = Workspace::instance().growingFile(state.range(0) != 0);
  turbo::ResFile file(path.string());
  if (file.read() != 1) {
    state.SkipWithError("the file did not read");
    return;
  }
  const double startBytes = static_cast<double>(fs::file_size(path));
  auto iteration = static_cast<std::int32_t>(file.lastIterationNumber());
  std::size_t expected = file.recordCount();
  for (auto _ : state) {
    Workspace::appendRecord(path, ++iteration);
    ++expected;
    const auto start = std::chrono::steady_clock::now();
    const int status = file.read();
    const auto stop = std::chrono::steady_clock::now();
    state.SetIterationTime(std::chrono::duration<double>(stop - start).count());
    if (status != 1 || file.recordCount() != expected) {
      state.SkipWithError("the appended record was not read");
      break;
    }
  }
  state.counters["file_MB"] = startBytes / 1e6;
  state.counters["records"] = static_cast<double>(expected);
  fs::remove(path);
}

}  // namespace

// The memory figure first, while the allocator holds nothing of the reads.
BENCHMARK(MemoryPerValue)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(FirstRead)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(RefreshAfterOneRecord)
    ->ArgName("full_size")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
