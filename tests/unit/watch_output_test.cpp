// What monitor-watch writes: the JSON lines (null for what a curve lacks, text escaped whatever
// bytes it holds) and the --csv files (each shown curve as FOLDER/<computation>/<curve>.csv,
// written whole and renamed, numbers that read back exactly).
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "watch/csv_files.h"
#include "watch/json_lines.h"

namespace {

using convergence::State;
using watch::ComputationReport;
using watch::CurveReport;
using Strings = std::vector<std::string>;
namespace fs = std::filesystem;

CurveReport curveWith(std::string name, std::vector<double> y, bool shown = true) {
  CurveReport curve;
  curve.name = std::move(name);
  curve.shown = shown;
  std::vector<double> x(y.size());
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i + 1);
  curve.points.append(x, y);
  return curve;
}

std::string lineOf(const std::vector<const ComputationReport*>& computations) {
  std::ostringstream out;
  watch::writeJsonLine(out, "2026-11-21T14:05:09.250Z", computations);
  return out.str();
}

TEST(WatchJson, OneLineOfTheDocumentedShape) {
  ComputationReport marine;
  marine.path = "/runs/a/ship.res";
  marine.stamp = "21/11/2026 14:05:09";
  marine.rows = 250;
  CurveReport judged = curveWith("Fx_hull", {3.0, 2.0, 1.5});
  // state, samples, transientEnd, mean, halfWidth, confidence, drift, period
  judged.verdict = {State::converged, 3, 12.5, -1520.25, 0.75, 0.99, true, 0.4};
  marine.curves.push_back(std::move(judged));
  // Too few points to judge: the verdict's mean of 0 must not pass for a mean.
  CurveReport unjudged = curveWith("short", {1.0, std::numeric_limits<double>::infinity()});
  unjudged.verdict.transientEnd = 1.0;
  marine.curves.push_back(std::move(unjudged));
  CurveReport wide = curveWith("wide", {});
  wide.verdict.state = State::wide;
  marine.curves.push_back(std::move(wide));
  marine.curves.push_back(curveWith("awaited only", {1.0}, false));
  ComputationReport turbo;
  turbo.path = "stage.res";
  turbo.mode = watch::Mode::turbomachinery;
  EXPECT_EQ(
      lineOf({&marine, &turbo}),
      R"({"time":"2026-11-21T14:05:09.250Z","computations":[{"path":"/runs/a/ship.res",)"
      R"("mode":"marine","stamp":"21/11/2026 14:05:09","rows":250,"curves":[)"
      R"({"name":"Fx_hull","points":3,"last":1.5,"transientEnd":12.5,"mean":-1520.25,)"
      R"("halfWidth":0.75,"confidence":0.99,"drift":true,"period":0.4,"verdict":"converged"},)"
      R"({"name":"short","points":2,"last":null,"transientEnd":1,"mean":null,"halfWidth":null,)"
      R"("confidence":0.95,"drift":false,"period":null,"verdict":"short"},)"
      R"({"name":"wide","points":0,"last":null,"transientEnd":null,"mean":0,"halfWidth":0,)"
      R"("confidence":0.95,"drift":false,"period":null,"verdict":"wide"}]},)"
      R"({"path":"stage.res","mode":"turbomachinery","stamp":null,"rows":0,"curves":[]}]})"
      "\n");
}

TEST(WatchJson, PathsAndNamesAreEscaped) {
  const std::string bad = "\xef\xbf\xbd";  // U+FFFD
  const std::pair<std::string, std::string> cases[] = {
      // text, what reads back if not the text
      {"/runs/\"quoted\"/C:\\ship.res line\nfeed\ttab\rreturn", ""},
      {std::string("nul\0byte\x01\x1f\x7f", 12), ""},
      {"caf\xc3\xa9 \xc2\x80\xdf\xbf \xe2\x82\xac \xf0\x9f\x9a\xa2 "
       "\xe0\xa0\x80\xed\x9f\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
       ""},
      // Not UTF-8: a stray continuation byte, a cut lead byte, overlong forms,
      // a surrogate, a code point beyond U+10FFFF, bytes never used.
      {"a\x80z", "a" + bad + "z"},
      {"cut\xc3", "cut" + bad},
      {"\xc1\xbf|\xe0\x9f\xbf|\xed\xa0\x80",
       bad + bad + "|" + bad + bad + bad + "|" + bad + bad + bad},
      {"\xf0\x8f\xbf\xbf|\xf4\x90\x80\x80", bad + bad + bad + bad + "|" + bad + bad + bad + bad},
      {"\xe2\x82z|\xf5\xff", bad + bad + "z|" + bad + bad},
  };
  for (const auto& [text, readBack] : cases) {
    ComputationReport computation;
    computation.path = text;
    computation.stamp = text;
    computation.curves.push_back(curveWith(text, {1.0}));
    const std::string line = lineOf({&computation});
    const std::string expected = readBack.empty() ? text : readBack;
    EXPECT_EQ(line.find('\n'), line.size() - 1) << expected;
    const nlohmann::json read = nlohmann::json::parse(line)["computations"][0];
    EXPECT_EQ(read["path"].get<std::string>() + "|" + read["stamp"].get<std::string>() + "|" +
                  read["curves"][0]["name"].get<std::string>(),
              expected + "|" + expected + "|" + expected);
  }
}

TEST(WatchCsv, FolderAndFileNames) {
  EXPECT_EQ(watch::computationFolderNames(
                {"runs/a/ship.res", "runs/b/ship.res", "stage.res", "/x/ship.res", "noext", "/"}),
            (Strings{"ship", "ship-2", "stage", "ship-3", "noext", "computation"}));
  EXPECT_EQ(watch::curveFileName("Res`w a/b\\c\t\x1f") + watch::curveFileName("..") +
                watch::curveFileName(""),
            "Res`w a_b_c__.csv...csv_.csv");
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
  void save(const watch::ComputationReport& computation) { files_.write({{&computation}}); }
  watch::CsvFiles files_{folder_ / "csv", {"runs/ship.res"}};
};

TEST_F(WatchCsvFiles, WrittenWholeAndReplacedAtEachRefreshOfTheCurve) {
  watch::ComputationReport computation = computationWith({1, 2, 3}, {-1520.5, 0.1, 1.0 / 3.0});
  const watch::ComputationReport beyondTheFolders = computationWith({1}, {8});
  files_.write(std::vector<const watch::ComputationReport*>{&computation, &beyondTheFolders});
  EXPECT_EQ(written(), "abscissa,value\n1,-1520.5\n2,0.1\n3,0.3333333333333333\n");
  // Curves not shown get no file, and nothing is left beside the files.
  Strings names;
  for (const auto& entry : fs::recursive_directory_iterator(folder_ / "csv"))
    names.push_back(fs::relative(entry.path(), folder_ / "csv").generic_string());
  EXPECT_EQ(names, (Strings{"ship", "ship/Fx_hull.csv"}));
  save(computationWith({1}, {7}));
  EXPECT_EQ(written(), "abscissa,value\n1,7\n");
  computation = computationWith({}, {});
  computation.fresh = false;
  save(computation);
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
  save(computation);
  save(computation);
  EXPECT_EQ(console.text(), told);
  fs::remove(folder);
  save(computation);
  EXPECT_EQ(written(), "abscissa,value\n1,2\n");
  fs::remove(folder / "Fx_hull.csv");
  fs::create_directories(folder / "Fx_hull.csv" / "in the way");
  save(computation);
  EXPECT_EQ(console.text(), told + told);
  EXPECT_EQ(fs::directory_iterator(folder)->path().filename(), "Fx_hull.csv");
  // More residual files than computations read.
  watch::CsvFiles(folder_ / "two", {"a.res", "b.res"}).write({{&computation}});
  EXPECT_TRUE(fs::exists(folder_ / "two" / "a" / "Fx_hull.csv"));
}

}  // namespace
