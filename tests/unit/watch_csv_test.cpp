// --csv: each shown curve as FOLDER/<computation>/<curve>.csv, written whole
// and renamed, numbers that read back exactly.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "watch/csv_files.h"

namespace {

using Strings = std::vector<std::string>;
namespace fs = std::filesystem;

TEST(WatchCsv, ComputationFoldersAreTheResidualFileNames) {
  EXPECT_EQ(watch::computationFolderNames(
                {"runs/a/ship.res", "runs/b/ship.res", "stage.res", "/x/ship.res", "noext"}),
            (Strings{"ship", "ship-2", "stage", "ship-3", "noext"}));
}

TEST(WatchCsv, CurveFileNamesHoldNoSeparators) {
  const struct {
    std::string curve;
    std::string file;
  } cases[] = {
      {"Fx_hull", "Fx_hull.csv"},
      {"Res`w", "Res`w.csv"},
      {"Heave force", "Heave force.csv"},
      {"a/b\\c", "a_b_c.csv"},
      {"tab\there", "tab_here.csv"},
      {"..", "...csv"},
      {"", "_.csv"},
  };
  for (const auto& c : cases) EXPECT_EQ(watch::curveFileName(c.curve), c.file) << c.curve;
}

class WatchCsvFiles : public ScratchFolder {
 protected:
  static watch::ComputationReport computationWith(std::vector<double> x, std::vector<double> y) {
    watch::ComputationReport computation;
    computation.path = "runs/ship.res";
    watch::CurveReport curve;
    curve.name = "Fx_hull";
    curve.points.append(x, y);
    computation.curves.push_back(std::move(curve));
    watch::CurveReport hidden;
    hidden.name = "awaited only";
    hidden.shown = false;
    computation.curves.push_back(std::move(hidden));
    return computation;
  }

  Strings linesOf(const fs::path& path) {
    std::ifstream in(path);
    Strings lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }
};

TEST_F(WatchCsvFiles, WrittenWholeAndReplacedAtEachRefresh) {
  watch::CsvFiles files(folder_ / "csv", {"runs/ship.res"});
  const fs::path written = folder_ / "csv" / "ship" / "Fx_hull.csv";

  const watch::ComputationReport first = computationWith({1, 2, 3}, {-1520.5, 0.1, 1.0 / 3.0});
  files.write(std::vector<const watch::ComputationReport*>{&first});
  const Strings lines = linesOf(written);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "abscissa,value");
  EXPECT_EQ(lines[1], "1,-1520.5");
  EXPECT_EQ(lines[2], "2,0.1");
  EXPECT_EQ(std::strtod(lines[3].substr(2).c_str(), nullptr), 1.0 / 3.0);

  const watch::ComputationReport second = computationWith({1}, {7});
  files.write(std::vector<const watch::ComputationReport*>{&second});
  EXPECT_EQ(linesOf(written), (Strings{"abscissa,value", "1,7"}));

  // Curves not shown get no file, and nothing is left beside the files.
  Strings names;
  for (const auto& entry : fs::directory_iterator(folder_ / "csv" / "ship")) {
    names.push_back(entry.path().filename().string());
  }
  EXPECT_EQ(names, Strings{"Fx_hull.csv"});
}

TEST_F(WatchCsvFiles, CurvesNotJudgedAgainAreNotWrittenAgain) {
  watch::CsvFiles files(folder_ / "csv", {"runs/ship.res"});
  const fs::path written = folder_ / "csv" / "ship" / "Fx_hull.csv";
  watch::ComputationReport computation = computationWith({1}, {2});
  files.write(std::vector<const watch::ComputationReport*>{&computation});
  fs::remove(written);
  computation.fresh = false;
  files.write(std::vector<const watch::ComputationReport*>{&computation});
  EXPECT_FALSE(fs::exists(written));
}

TEST_F(WatchCsvFiles, AFolderThatCannotBeWrittenIsToldOnceAndTheWatchGoesOn) {
  write("csv", "a file where the folder should be");
  ConsoleCapture console;
  watch::CsvFiles files(folder_ / "csv", {"runs/ship.res"});
  const watch::ComputationReport computation = computationWith({1}, {2});
  files.write(std::vector<const watch::ComputationReport*>{&computation});
  files.write(std::vector<const watch::ComputationReport*>{&computation});
  EXPECT_EQ(console.text(), "monitor-watch: cannot write " +
                                (folder_ / "csv" / "ship" / "Fx_hull.csv").string() +
                                "; the watch goes on without it\n");
}

}  // namespace
