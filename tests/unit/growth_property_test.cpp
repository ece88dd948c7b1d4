// Growth in random chunks cut at any byte, then a restart, over every reader.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "console_capture.h"
#include "marine/project_monitor_marine.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"
#include "turbo/project_monitor.h"
#include "watch/marine_catalogue.h"

namespace {

namespace fs = std::filesystem;
using Reader = std::function<std::string()>;  // refreshes, answers what it holds

Reader marineProjectReader(const fs::path& folder) {
  auto project = std::make_shared<marine::ProjectMonitorMarine>((folder / "ship.res").string());
  return [project] {
    project->refresh();
    std::ostringstream text;
    text.precision(17);
    for (const watch::NamedCurve& curve : watch::marineCurves(*project)) {
      std::vector<plot::Point> points(curve.source->size());
      curve.source->read(0, points);
      text << curve.name << ':';
      for (const plot::Point& point : points) text << ' ' << point.x << ',' << point.y;
      text << '\n';
    }
    return text.str();
  };
}

Reader turboResidualReader(const fs::path& folder) {
  auto project = std::make_shared<turbo::ProjectMonitor>((folder / "stage.res").string(), false);
  return [project] {
    project->update();
    const turbo::ResFile& file = project->resFile();
    std::ostringstream text;
    text.precision(9);
    text << file.mode();
    for (std::size_t r = 0; r < file.recordCount(); ++r) {
      text << '\n' << file.record(r).iterationNumber() << ':';
      for (const float value : file.record(r).values()) text << ' ' << value;
    }
    return text.str();
  };
}

struct RunFile {
  std::string name, header, rows;
};
using RunFiles = std::vector<RunFile>;

// 2 blocks of K-E and one extra equation: 41 values a record.
std::vector<RunFiles> turboResidualRuns() {
  std::vector<RunFiles> runs;
  for (const double scale : {1.0, -3.5}) {
    std::ostringstream text;
    text.precision(9);
    text << "0\n3.0\n2\n3D\nK-E\n1 sp1\n0\n1\nSTEADY\nTURBO\n";
    for (int i = 1; i <= 30; ++i) {
      text << i;
      for (int k = 1; k <= 41; ++k)
        text << ' ' << scale * (0.5 + i * 1.125 + k * 0.0625) * (k % 2 == 0 ? 1e-3 : -1.0);
      text << (i % 3 == 0 ? "\r\n" : "\n");
    }
    runs.push_back({{"stage.res", "", text.str()}});
  }
  return runs;
}

std::vector<RunFiles> marineProjectRuns(const fs::path& folder) {
  solver_simulator::MarineCaseWriter writer(
      solver_simulator::defaultCaseSetup(folder, solver_simulator::RunMode::unsteady));
  const auto snapshot = [&] {
    RunFiles run;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      std::ifstream in(entry.path(), std::ios::binary);
      run.push_back({entry.path().filename().string(), {std::istreambuf_iterator<char>(in), {}}});
    }
    std::sort(run.begin(), run.end(), [](auto& a, auto& b) { return a.name < b.name; });
    return run;
  };
  const auto grown = [&](RunFiles run) {
    for (int i = 0; i < 30; ++i) writer.appendIteration();
    const RunFiles whole = snapshot();
    for (std::size_t f = 0; f < whole.size(); ++f) {
      int line = 0;  // every third line ends in CR LF
      for (const char c : whole[f].header.substr(run[f].header.size()))
        (c == '\n' && ++line % 3 == 0 ? run[f].rows += '\r' : run[f].rows) += c;
    }
    return run;
  };
  writer.writeHeaders();
  const RunFiles first = grown(snapshot());
  writer.restart(writer.setup().stamp.plusSeconds(600));
  return {first, grown(snapshot())};
}

using GrowthProperty = ScratchFolder;

TEST_F(GrowthProperty, EveryReaderHoldsEachWholeRowOnceAndOnlyTheNewRunAfterARestart) {
  const ConsoleCapture console;
  const std::tuple<const char*, Reader (*)(const fs::path&), std::vector<RunFiles>, int> cases[] = {
      {"turbomachinery residual file", turboResidualReader, turboResidualRuns(), 20},
      {"marine computation", marineProjectReader, marineProjectRuns(folder_ / "case"), 8}};
  std::mt19937 random(20261123);
  const fs::path growing = folder_ / "growing", reference = folder_ / "reference";
  fs::create_directories(reference);
  for (const auto& [what, open, runs, trials] : cases) {
    // Replaced, not truncated: a truncated file is flushed on closing.
    const auto expected = [&](const std::vector<std::string>& written) {
      for (std::size_t f = 0; f < written.size(); ++f) {
        fs::remove(reference / runs[0][f].name);
        write("reference/" + runs[0][f].name, written[f].substr(0, written[f].rfind('\n') + 1));
      }
      return open(reference)();
    };
    for (int trial = 0; trial < trials; ++trial) {
      SCOPED_TRACE(std::string(what) + ", trial " + std::to_string(trial));
      const auto emptied = [&] { fs::remove_all(growing), fs::create_directories(growing); };
      emptied();
      Reader reader;
      std::vector<std::string> written(runs[0].size());
      for (const RunFiles& run : runs) {
        if (reader && trial % 2 == 1) emptied(), reader();  // deleted, seen missing
        for (std::size_t f = 0; f < run.size(); ++f)
          write("growing/" + run[f].name, written[f] = run[f].header);
        if (!reader) reader = open(growing);
        for (std::size_t step = 0, complete = 0; complete < run.size(); ++step) {
          complete = 0;
          for (std::size_t f = 0; f < run.size(); ++f) {
            const std::string whole = run[f].header + run[f].rows;
            const std::size_t longest = random() % 4 == 0 ? 400 : 40;  // mostly short chunks
            const std::string chunk = whole.substr(written[f].size(), random() % (longest + 1));
            append("growing/" + run[f].name, chunk);
            complete += (written[f] += chunk).size() == whole.size();
          }
          ASSERT_EQ(reader(), expected(written)) << "step " << step;
        }
      }
    }
  }
}

}  // namespace
