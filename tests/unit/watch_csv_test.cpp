// --csv: each shown curve as FOLDER/<computation>/<curve>.csv, written whole
// and renamed, numbers that read back exactly.
#include <gtest/gtest.h>

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

TEST(WatchCsv, FolderAndFileNames) {
  EXPECT_EQ(watch::computationFolderNames(
                {"runs/a/ship.res", "runs/b/ship.res", "stage.res", "/x/ship.res", "noext", "/"}),
            (Strings{"ship", "ship-2", "stage", "ship-3", "noext", "computation"}));
  EXPECT_EQ(watch::curveFileName("Res`w a/b\\c\t\x1f"), "Res`w a_b_c__.csv");
  EXPECT_EQ(watch::curveFileName(".."), "...csv");
  EXPECT_EQ(watch::curveFileName(""), "_.csv");
}

class WatchCsvFiles : public ScratchFolder {
 protected:
  static watch::ComputationReport computationWith(std::vector<double> x, std::vector<double> y) {
    watch::ComputationReport computation;
    computation.curves.resize(2);
    computation.curves[0].name = "Fx_hull";
    computation.curves[0].points.append(x, y);
    computation.curves[1].name = "awaited only";
    computation.curves[1].shown = false;
    return computation;
  }
  std::string written() {
    std::ifstream in(folder_ / "csv" / "ship" / "Fx_hull.csv");
    return (std::ostringstream() << in.rdbuf()).str();
  }
  void save(const std::vector<const watch::ComputationReport*>& computations) {
    files_.write(computations);
  }
  watch::CsvFiles files_{folder_ / "csv", {"runs/ship.res"}};
};

TEST_F(WatchCsvFiles, WrittenWholeAndReplacedAtEachRefreshOfTheCurve) {
  watch::ComputationReport computation = computationWith({1, 2, 3}, {-1520.5, 0.1, 1.0 / 3.0});
  const watch::ComputationReport beyondTheFolders = computationWith({1}, {8});
  save({&computation, &beyondTheFolders});
  EXPECT_EQ(written(), "abscissa,value\n1,-1520.5\n2,0.1\n3,0.3333333333333333\n");
  // Curves not shown get no file, and nothing is left beside the files.
  Strings names;
  for (const auto& entry : fs::recursive_directory_iterator(folder_ / "csv")) {
    names.push_back(fs::relative(entry.path(), folder_ / "csv").generic_string());
  }
  EXPECT_EQ(names, (Strings{"ship", "ship/Fx_hull.csv"}));

  computation = computationWith({1}, {7});
  save({&computation});
  EXPECT_EQ(written(), "abscissa,value\n1,7\n");
  computation = computationWith({}, {});
  computation.fresh = false;
  save({&computation});
  EXPECT_EQ(written(), "abscissa,value\n1,7\n");
}

TEST_F(WatchCsvFiles, AFileThatCannotBeWrittenIsToldOnceUntilItCanBeAgain) {
  const fs::path folder = folder_ / "csv" / "ship";
  const std::string told = "monitor-watch: cannot write " + (folder / "Fx_hull.csv").string() +
                           "; the watch goes on without it\n";
  const watch::ComputationReport computation = computationWith({1}, {2});
  ConsoleCapture console;
  // A file where the folder should be, then a folder where the file should be.
  fs::create_directories(folder_ / "csv");
  ScratchFolder::write("csv/ship", "");
  save({&computation});
  save({&computation});
  EXPECT_EQ(console.text(), told);
  fs::remove(folder);
  save({&computation});
  EXPECT_EQ(written(), "abscissa,value\n1,2\n");
  fs::remove(folder / "Fx_hull.csv");
  fs::create_directories(folder / "Fx_hull.csv" / "in the way");
  save({&computation});
  EXPECT_EQ(console.text(), told + told);
  EXPECT_EQ(fs::directory_iterator(folder)->path().filename(), "Fx_hull.csv");
  // More residual files than computations read.
  watch::CsvFiles(folder_ / "two", {"a.res", "b.res"})
      .write(std::vector<const watch::ComputationReport*>{&computation});
  EXPECT_TRUE(fs::exists(folder_ / "two" / "a" / "Fx_hull.csv"));
}

}  // namespace
