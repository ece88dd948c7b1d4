// Timing and memory of a whole marine computation (marine::ProjectMonitorMarine)
// on a large case that the benchmark writes itself into a temporary folder:
//
//   MemoryPerDouble       resident memory the histories take after the load,
//                         in bytes per stored double (residual values and
//                         force and moment history values);
//   FullLoad              load() and the first refresh(), which reads every
//                         row of every file (MB/s over all the case's bytes);
//   RefreshAfterOneRow    one row appended to the residual file and to each
//                         of the 18 force and moment files, then refresh()
//                         again, at a case 1/20 of the full size, at the
//                         full-size case, and at a case whose force files
//                         hold a power of two of rows (262144), where the
//                         first appended row finds every history full.
//
// The case is a steady run: a residual file "case.res" of 1000000 rows
// (itnl cpums ResU ResV ResW ResP ResK), a body description of 3 bodies with
// 2 sub-bodies each, the 18 files eff_Fx.dat ... eff_MzV.dat with 200000 rows
// each (T, itnl and one value per body and sub-body, so 9 values a row), and
// a small actuator-disk table eff_AD.dat. MONITOR_BENCH_MARINE_ROWS sets
// another residual row count (the force files get a fifth of it), e.g. for a
// profiler run on a smaller case.
//
// The files are written once and stay in the page cache, so the figures are
// those of files the solver has just written, not of a cold disk.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
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
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "bench_support.h"
#include "marine/marine_names.h"
#include "marine/project_monitor_marine.h"
#include "platform/console.h"

namespace {

namespace fs = std::filesystem;
using bench_support::File;
using bench_support::openFile;
using bench_support::processCpuSeconds;
using bench_support::residentBytes;
using bench_support::threadCpuSeconds;

constexpr std::size_t kDefaultResidualRows = 1000000;
// The solver writes the forces every fifth iteration.
constexpr std::size_t kIterationsPerForceRow = 5;
constexpr std::size_t kResiduals = 5;  // ResU ResV ResW ResP ResK
constexpr std::size_t kSmallCaseDivisor = 20;
constexpr std::size_t kDiskRows = 2000;

struct BodyLayout {
  std::string_view name;
  std::array<std::string_view, 2> subBodies;
  std::array<double, 3> gravityCentre;
};
constexpr std::array<BodyLayout, 3> kBodies = {{
    {"hull", {"keel", "bulb"}, {61.2, 0.0, -1.5}},
    {"rudder", {"stock", "flap"}, {2.4, 0.0, -3.1}},
    {"pod", {"strut", "nacelle"}, {5.8, 0.0, -4.0}},
}};
constexpr std::size_t kValuesPerForceRow = kBodies.size() * 3;  // body + 2 sub-bodies

std::size_t residualRowTarget() {
  if (const char* text = std::getenv("MONITOR_BENCH_MARINE_ROWS")) {
    const long long rows = std::atoll(text);
    if (rows >= static_cast<long long>(kIterationsPerForceRow * kSmallCaseDivisor * 2)) {
      return static_cast<std::size_t>(rows);
    }
  }
  return kDefaultResidualRows;
}

struct CaseSize {
  std::size_t residualRows;
  std::size_t forceRows;
};

CaseSize fullSize() {
  const std::size_t rows = residualRowTarget();
  return {rows, rows / kIterationsPerForceRow};
}

CaseSize smallSize() {
  const CaseSize full = fullSize();
  return {full.residualRows / kSmallCaseDivisor, full.forceRows / kSmallCaseDivisor};
}

// The full size raised so that the force files hold a power of two of rows:
// a history grown one value at a time is then exactly full.
CaseSize fullCapacitySize() {
  const std::size_t forceRows = std::bit_ceil(fullSize().forceRows);
  return {forceRows * kIterationsPerForceRow, forceRows};
}

enum class GrowingCase { small = 0, full = 1, fullCapacity = 2 };

// Writes text through a fixed buffer that lives outside the heap, so that
// writing the files leaves the allocator as it found it (the memory figure
// reads the process's resident size).
// The rows of a marine case's files.
class RowWriter : public bench_support::TextRows {
 public:
  using TextRows::TextRows;

  // One residual row of a steady run: "itnl cpums ResU ResV ResW ResP ResK",
  // the residuals falling with noise five decades every 200000 iterations
  // down to a floor, written as "%.4e".
  void residualRow(std::int64_t iteration) {
    room(kMaxRowChars);
    const double i = static_cast<double>(iteration);
    integer(iteration);
    fixed(0.42 * i, 2);  // cpums
    for (std::size_t r = 0; r < kResiduals; ++r) {
      const double level = std::pow(10.0, -0.2 * static_cast<double>(r)) *
                           (std::exp(-i * std::log(10.0) * 5.0 / 200000.0) + 1e-6) *
                           (1.0 + noise(0.2));
      scientific(level, 4);
    }
    end();
  }

  // One row of a force or moment file: "T itnl" and one value per body and
  // sub-body, settling with noise; 7 significant digits.
  void forceRow(std::int64_t iteration, double scale) {
    room(kMaxRowChars);
    const double i = static_cast<double>(iteration);
    fixed(0.001 * i, 3);  // T
    integer(iteration);
    const double settle = std::exp(-i / 20000.0);
    for (std::size_t v = 0; v < kValuesPerForceRow; ++v) {
      const double share = 1.0 / static_cast<double>(v + 1);
      general(scale * share * (1.0 + 0.3 * settle * std::cos(i / 700.0)) + noise(0.5 * share), 7);
    }
    end();
  }

  // One row of the actuator-disk table: the time, then thrust and torque of
  // two disks.
  void diskRow(std::int64_t step) {
    room(kMaxRowChars);
    fixed(0.05 * static_cast<double>(step), 2);
    general(902.5 + noise(5.0), 7);
    general(57.07 + noise(0.5), 7);
    general(843.6 + noise(5.0), 7);
    general(53.22 + noise(0.5), 7);
    end();
  }

 private:
  static constexpr std::size_t kMaxRowChars = 512;
};

// The 18 force and moment files in table order (the force files, then the
// moment files), each with its quantity name and the magnitude of its values.
struct ComponentFileLayout {
  std::string_view fileName;
  std::string quantity;
  double scale;
};

std::vector<ComponentFileLayout> componentFiles() {
  std::vector<ComponentFileLayout> files;
  for (const auto* table : {&marine::kForceFileNames, &marine::kMomentFileNames}) {
    for (std::size_t f = 0; f < table->size(); ++f) {
      const std::string_view name = (*table)[f];
      // "eff_FxP.dat" holds "FxP".
      const std::string quantity(name.substr(4, name.size() - 8));
      const double part = f % 3 == 0 ? 1.0 : (f % 3 == 1 ? 0.8 : 0.2);
      const double scale = (table == &marine::kForceFileNames ? -2100.0 : 9500.0) * part /
                           static_cast<double>(1 + f / 3);
      files.push_back({name, quantity, scale});
    }
  }
  return files;
}

void writeBodyBlocks(RowWriter& writer) {
  for (const BodyLayout& body : kBodies) {
    writer.text("#QV_BEGIN\nBODY\nNAME ");
    writer.text(body.name);
    writer.text("\nGRAVITY_CENTER");
    for (const double coordinate : body.gravityCentre) {
      std::array<char, 32> number{};
      const auto end = std::to_chars(number.data(), number.data() + number.size(), coordinate).ptr;
      writer.text(" ");
      writer.text(std::string_view(number.data(), static_cast<std::size_t>(end - number.data())));
    }
    writer.text("\n");
    for (const std::string_view sub : body.subBodies) {
      writer.text("#QV_BEGIN\nSUBBODY\nNAME ");
      writer.text(sub);
      writer.text("\n#QV_END\n");
    }
    writer.text("#QV_END\n");
  }
}

// "hull hull:keel hull:bulb rudder ...".
std::string columnNames() {
  std::string names;
  for (const BodyLayout& body : kBodies) {
    names += ' ';
    names += body.name;
    for (const std::string_view sub : body.subBodies) {
      names += ' ';
      names += body.name;
      names += ':';
      names += sub;
    }
  }
  return names;
}

// One case folder: the residual file, the body description, the 18 force
// and moment files and the actuator-disk table.
class CaseFolder {
 public:
  CaseFolder(fs::path folder, CaseSize size) : folder_(std::move(folder)), size_(size) {
    fs::create_directories(folder_);
    writeResidualFile();
    writeBodyDescription();
    const auto files = componentFiles();
    for (std::size_t f = 0; f < files.size(); ++f) writeComponentFile(files[f], f == 0);
    writeDiskTable();
    lastIteration_ = static_cast<std::int64_t>(size_.residualRows);
  }

  const fs::path& folder() const { return folder_; }
  fs::path residualPath() const { return folder_ / "case.res"; }
  const CaseSize& size() const { return size_; }

  std::uint64_t totalBytes() const {
    std::uint64_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(folder_)) bytes += entry.file_size();
    return bytes;
  }

  // One more iteration: a row appended to the residual file and to each
  // force and moment file, each the way the solver does (open, write,
  // close).
  void appendRow() {
    const std::int64_t iteration = ++lastIteration_;
    {
      const File file = openFile(residualPath(), "ab");
      RowWriter writer(file.get());
      writer.residualRow(iteration);
    }
    for (const ComponentFileLayout& layout : componentFiles_) {
      const File file = openFile(folder_ / layout.fileName, "ab");
      RowWriter writer(file.get());
      writer.forceRow(iteration, layout.scale);
    }
  }

 private:
  void writeResidualFile() {
    const File file = openFile(residualPath(), "wb");
    RowWriter writer(file.get());
    writer.text("#CREATED 14/03/2026 09:12:45\n#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n");
    writer.text("#COLUMNS itnl cpums ResU ResV ResW ResP ResK\n");
    for (std::size_t i = 1; i <= size_.residualRows; ++i)
      writer.residualRow(static_cast<std::int64_t>(i));
  }

  void writeBodyDescription() {
    const File file = openFile(folder_ / "case_body_param.dat", "wb");
    RowWriter writer(file.get());
    writeBodyBlocks(writer);
  }

  void writeComponentFile(const ComponentFileLayout& layout, bool reference) {
    const File file = openFile(folder_ / layout.fileName, "wb");
    RowWriter writer(file.get());
    if (reference) {
      writer.text("#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n");
      writeBodyBlocks(writer);
    }
    writer.text("#QV_BEGIN\nVARIABLES = T itnl");
    for (std::size_t v = 0; v < kValuesPerForceRow; ++v) {
      writer.text(" ");
      writer.text(layout.quantity);
    }
    writer.text("\nNAMES =");
    writer.text(columnNames());
    writer.text("\n#QV_END\n#COLUMNS T itnl");
    writer.text(columnNames());
    writer.text("\n");
    // The forces of the last iteration of each group of five, so that the
    // last force row and the last residual row share their iteration.
    const std::size_t first = size_.residualRows - size_.forceRows * kIterationsPerForceRow;
    for (std::size_t row = 1; row <= size_.forceRows; ++row) {
      writer.forceRow(static_cast<std::int64_t>(first + row * kIterationsPerForceRow),
                      layout.scale);
    }
  }

  void writeDiskTable() {
    const File file = openFile(folder_ / "eff_AD.dat", "wb");
    RowWriter writer(file.get());
    writer.text(
        "VARIABLES = \"T\" \"Thrust1\" \"Torque1\" \"Thrust2\" \"Torque2\"\nZONE T=\"actuator "
        "disks\"\n");
    for (std::size_t step = 1; step <= kDiskRows; ++step)
      writer.diskRow(static_cast<std::int64_t>(step));
  }

  fs::path folder_;
  CaseSize size_;
  std::vector<ComponentFileLayout> componentFiles_ = componentFiles();
  std::int64_t lastIteration_ = 0;
};

// The temporary folder and the cases in it, written on first use and removed
// when the program ends.
class Workspace {
 public:
  static Workspace& instance() {
    static Workspace workspace;
    return workspace;
  }

  ~Workspace() {
    full_.reset();
    std::error_code ignored;
    if (!folder_.empty()) fs::remove_all(folder_, ignored);
  }

  // The full-size case, never changed once written.
  const CaseFolder& fullCase() {
    if (!full_) full_ = std::make_unique<CaseFolder>(folder_ / "full", fullSize());
    return *full_;
  }

  // A fresh case for appending to.
  std::unique_ptr<CaseFolder> growingCase(GrowingCase kind) {
    const fs::path path = folder_ / ("grow_" + std::to_string(static_cast<int>(kind)));
    fs::remove_all(path);
    const CaseSize size = kind == GrowingCase::small  ? smallSize()
                          : kind == GrowingCase::full ? fullSize()
                                                      : fullCapacitySize();
    return std::make_unique<CaseFolder>(path, size);
  }

 private:
  Workspace() {
    std::string pattern = (fs::temp_directory_path() / "marine_project_bench.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot make a temporary folder");
    folder_ = pattern;
  }

  fs::path folder_;
  std::unique_ptr<CaseFolder> full_;
};

// Doubles the project holds: the residual values and every force and moment
// history of every body and sub-body.
std::size_t storedDoubles(const marine::ProjectMonitorMarine& project) {
  std::size_t count = project.resFile().recordCount() * project.resFile().residualCount();
  const auto histories = [&count](const marine::ComponentHistories& object) {
    for (const marine::Component component :
         {marine::Component::force, marine::Component::moment}) {
      for (int quantity = 0; quantity < 18; quantity += 2) {
        if (const std::vector<double>* values = object.history(component, quantity))
          count += values->size();
      }
    }
  };
  for (const marine::BodyObject& body : project.bodies()) {
    histories(body);
    for (std::size_t s = 0; s < body.subBodyCount(); ++s) histories(body.subBody(s));
  }
  return count;
}

// Whether the project holds every row of the case, `extra` rows appended
// included.
bool holdsWholeCase(const marine::ProjectMonitorMarine& project, const CaseSize& size,
                    std::size_t extra = 0) {
  if (!project.loaded() || project.bodies().size() != kBodies.size()) return false;
  if (project.resFile().recordCount() != size.residualRows + extra ||
      project.resFile().residualCount() != kResiduals) {
    return false;
  }
  if (project.componentFiles().size() != 18) return false;
  for (const marine::ComponentFile& file : project.componentFiles()) {
    if (file.rowsRead() != size.forceRows + extra) return false;
  }
  return storedDoubles(project) == (size.residualRows + extra) * kResiduals +
                                       (size.forceRows + extra) * kValuesPerForceRow * 18;
}

// Resident memory after the load of the full-size case: what the histories
// take per stored double.
void MemoryPerDouble(benchmark::State& state) {
  const CaseFolder& data = Workspace::instance().fullCase();
  std::ostringstream discarded;
  for (auto _ : state) {
    const std::uint64_t before = residentBytes();
    auto project = std::make_unique<marine::ProjectMonitorMarine>(data.residualPath().string());
    {
      const platform::ConsoleRedirect silence(discarded);
      project->load();
      project->refresh();
    }
    const std::uint64_t after = residentBytes();
    if (!holdsWholeCase(*project, data.size())) {
      state.SkipWithError("the case did not load whole");
      break;
    }
    const double stored = static_cast<double>(storedDoubles(*project));
    const double growth = static_cast<double>(after > before ? after - before : 0);
    state.counters["stored_doubles"] = stored;
    state.counters["rss_growth_MB"] = growth / 1e6;
    state.counters["bytes_per_double"] = growth / stored;
    discarded.str({});
  }
}

// load() and the first refresh(), which reads every row; the rate is over
// the bytes of all the case's files.
void FullLoad(benchmark::State& state) {
  const CaseFolder& data = Workspace::instance().fullCase();
  const auto bytes = static_cast<std::int64_t>(data.totalBytes());
  std::ostringstream discarded;
  const double cpuStart = processCpuSeconds();
  for (auto _ : state) {
    marine::ProjectMonitorMarine project(data.residualPath().string());
    {
      const platform::ConsoleRedirect silence(discarded);
      project.load();
      project.refresh();
    }
    if (!holdsWholeCase(project, data.size())) {
      state.SkipWithError("the case did not load whole");
      break;
    }
    benchmark::DoNotOptimize(
        project.resFile().record(project.resFile().recordCount() - 1).valueAt(0));
    discarded.str({});
  }
  const double cpu = processCpuSeconds() - cpuStart;
  state.SetBytesProcessed(bytes * state.iterations());
  state.counters["case_MB"] = static_cast<double>(bytes) / 1e6;
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

// state.range(0): 0 for the case of 1/20 of the full size, 1 for the full
// size, 2 for the case of 262144 force rows. Only refresh() is timed; each
// iteration appends one row to the residual file and to the 18 force and
// moment files first. Besides the mean, the slowest refresh is reported:
// a history that has to grow its storage copies it whole. The slowest in
// processor time leaves out the time slices lost to other work on a shared
// machine (a refresh that loses one shows up as 4 ms or so of wall-clock).
void RefreshAfterOneRow(benchmark::State& state) {
  const std::unique_ptr<CaseFolder> data =
      Workspace::instance().growingCase(static_cast<GrowingCase>(state.range(0)));
  const double caseBytes = static_cast<double>(data->totalBytes());
  std::ostringstream discarded;
  const platform::ConsoleRedirect silence(discarded);
  marine::ProjectMonitorMarine project(data->residualPath().string());
  project.load();
  project.refresh();
  if (!holdsWholeCase(project, data->size())) {
    state.SkipWithError("the case did not load whole");
    return;
  }
  std::size_t appended = 0;
  double slowest = 0.0;
  double slowestCpu = 0.0;
  for (auto _ : state) {
    data->appendRow();
    ++appended;
    const double cpuStart = threadCpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    const marine::ProjectMonitorMarine::Refresh result = project.refresh();
    const auto stop = std::chrono::steady_clock::now();
    const double cpu = threadCpuSeconds() - cpuStart;
    const double seconds = std::chrono::duration<double>(stop - start).count();
    state.SetIterationTime(seconds);
    slowest = std::max(slowest, seconds);
    slowestCpu = std::max(slowestCpu, cpu);
    if (!result.succeeded || !result.changed ||
        project.resFile().recordCount() != data->size().residualRows + appended) {
      state.SkipWithError("the appended rows were not read");
      break;
    }
    discarded.str({});
  }
  if (!holdsWholeCase(project, data->size(), appended)) state.SkipWithError("rows went missing");
  state.counters["case_MB"] = caseBytes / 1e6;
  state.counters["residual_rows"] = static_cast<double>(project.resFile().recordCount());
  state.counters["force_rows"] = static_cast<double>(project.componentFiles().front().rowsRead());
  state.counters["slowest_ms"] = slowest * 1e3;
  state.counters["slowest_cpu_ms"] = slowestCpu * 1e3;
  const fs::path folder = data->folder();
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

}  // namespace

// The memory figure first, while the allocator holds nothing of the loads.
BENCHMARK(MemoryPerDouble)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(FullLoad)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(RefreshAfterOneRow)
    ->ArgName("case")
    ->Arg(0)
    ->Arg(1)
    ->Arg(2)
    ->Iterations(500)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
