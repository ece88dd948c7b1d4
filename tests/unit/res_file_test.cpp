// The turbomachinery residual history read from files as the solver writes,
// rewrites and sometimes damages them, and the project that wraps it with the
// script's bookmarks.
#include "turbo/res_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "console_capture.h"
#include "scratch_folder.h"
#include "turbo/project_monitor.h"

namespace {

using turbo::ResFile;

// The history: per record its step, iteration, physical time and values.
std::string historyOf(const ResFile& file) {
  std::ostringstream text;
  for (std::size_t r = 0; r < file.recordCount(); ++r) {
    const turbo::IteRes record = file.record(r);
    text << record.timeStep() << ' ' << record.iterationNumber() << ' ' << record.physicalTime()
         << (record.unsteady() ? " u:" : ":");
    for (const float value : record.values()) text << ' ' << value;
    text << '\n';
  }
  return text.str();
}

// Steady records of iterations first..last with `count` values each, as the
// file holds them and as historyOf shows them.
std::pair<std::string, std::string> records(int first, int last, std::size_t count) {
  std::ostringstream file, shown;
  for (int i = first; i <= last; ++i) {
    file << i;
    shown << "-1 " << i << " 0:";
    for (std::size_t k = 0; k < count; ++k) {
      file << ' ' << k + (i % 1000) * 0.25;
      shown << ' ' << k + (i % 1000) * 0.25;
    }
    file << '\n';
    shown << '\n';
  }
  return {file.str(), shown.str()};
}

// What a header set, in one line.
std::string headerOf(const ResFile& file) {
  std::string text = file.version() + ' ' + file.module() + ' ' + file.turbulence() + " [";
  for (const std::string& name : file.extraNames1()) text += name + ' ';
  text += "] [";
  for (const std::string& name : file.extraNames2()) text += name + ' ';
  return text + "] " + std::to_string(file.headerInt()) + ' ' + file.mode() + ' ' +
         file.application();
}

const std::string kDefaultHeader = " 3D NO-K-E [] [] 0  TURBO";

class ResidualFile : public ScratchFolder {
 protected:
  std::string cannotOpen(const std::string& path) const {
    return "*** ResFile  :: read() Cannot open the file :\n\t\t\t      " + path + "\n";
  }
  std::string path_ = pathOf("stage.res");
};

// Two records follow every header, so a header read one token too far or
// too short would misplace every value.
TEST_F(ResidualFile, HeaderForms) {
  const std::pair<const char*, const char*> cases[] = {
      // A first integer in 1..100000 is the block count of the short form.
      {"1 2\n", " 3D NO-K-E [] [] 0  TURBO 1x2"},
      {"100000 0\n", " 3D NO-K-E [] [] 0  TURBO 100000x0"},
      // 0 or above 100000 only announces the long form.
      {"100001 3.0 1 TF K-E 0 0 4 STEADY TURBO\n", "3.0 TF K-E [] [] 4 STEADY TURBO 1x8"},
      {"0 3.0 2 B2B SPL-ALM 0 0 0 STEADY TURBO\n", "3.0 B2B SPL-ALM [] [] 0 STEADY TURBO 2x6"},
      // "1.0": no second list, no extra integer; "2.0": no extra integer.
      {"0 1.0 1 3D NO-K-E 2 H1 H2\nSTEADY TURBO\n", "1.0 3D NO-K-E [H1 H2 ] [] 0 STEADY TURBO 1x7"},
      {"0 2.0 2 TF SPL-ALM 1 A 2 B C STEADY NOZZLE\n",
       "2.0 TF SPL-ALM [A ] [B C ] 0 STEADY NOZZLE 2x10"},
      {"0 3.0 1 B2B K-E 1 sp1 1 h1 3 STEADY TURBO\n",
       "3.0 B2B K-E [sp1 ] [h1 ] 3 STEADY TURBO 1x9"},
      {"0 2.5 1 3D NO-K-E 0 1 Z 9 STEADY TURBO\n", "2.5 3D NO-K-E [] [Z ] 9 STEADY TURBO 1x6"},
  };
  for (const auto& [header, fields] : cases) {
    write("stage.res", header);
    ResFile file(path_);
    EXPECT_EQ(file.read(), 2) << header;
    const auto [text, shown] = records(1, 2, 9 + 2 * file.nbBlocks() * file.nbVars());
    append("stage.res", text);
    ConsoleCapture console;
    ASSERT_EQ(file.read(), 1) << header;
    EXPECT_EQ(headerOf(file) + ' ' + std::to_string(file.nbBlocks()) + 'x' +
                  std::to_string(file.nbVars()),
              fields)
        << header;
    EXPECT_EQ(historyOf(file), shown) << header;
    EXPECT_EQ(file.lastIndex(), 1);
    EXPECT_EQ(file.lastIterationNumber(), 2u);
    EXPECT_EQ(console.text(), "");
  }
}

// Files that give no history; the object keeps its defaults.
TEST_F(ResidualFile, UnreadableFiles) {
  const struct {
    const char* what;
    std::string text;
    int result;
    std::string console;
  } cases[] = {
      {"empty", "", 0, ""},
      {"header only", "0 3.0 1 TF K-E 0 0 4 STEADY TURBO\n", 2, ""},
      {"short header only", "1 5\n", 2, ""},
      {"header cut short", "0 3.0 1 TF K-E 0\n", 0, ""},
      {"header without its application", "0 3.0 1 TF K-E 0 0 4 STEADY\n", 0,
       "read:: string value not read !!!\n"},
      {"unknown module", "0 3.0 1 XYZ K-E 0 0 0 STEADY TURBO\n1 2 3\n", 0, "unkown module XYZ\n"},
      {"words cut short", "hello world\n", 0, ""},
      {"header ends before the module", "0 3.0 1\n", 0, "read:: string value not read !!!\n"},
      {"binary", std::string("\x7f\x45\x4c\x46 \x02\x01 \x00\x00 \xff\xfe\n\x01\x02", 16), 0,
       "unkown module \xff\xfe\n"},
      {"negative name count", "0 3.0 1 3D NO-K-E -1 0 0 STEADY TURBO\n1 2\n", 0, ""},
      {"negative equation count", "3 -2\n1 2 3\n", 0, "3 blocks of -2"},
      {"negative block count", "0 3.0 -1 3D NO-K-E 0 0 0 STEADY TURBO\n1 2\n", 0, "-1 blocks of 5"},
      // Refused at once, before any record is made room for.
      {"two billion blocks", "0 3.0 2000000000 3D K-E 0 0 1 STEADY TURBO\n1 0.5 0.5 0.5\n", 0,
       "2000000000 blocks of 7"},
  };
  for (const auto& c : cases) {
    write("stage.res", c.text);
    ResFile file(path_);
    ConsoleCapture console;
    EXPECT_EQ(file.read(), c.result) << c.what;
    EXPECT_EQ(console.text(), c.console.find(" blocks of ") == std::string::npos
                                  ? c.console
                                  : "*** ResFile  :: read() " + c.console +
                                        " equations are not a residual history :\n\t\t\t      " +
                                        path_ + "\n")
        << c.what;
    EXPECT_EQ(file.recordCount(), 0u) << c.what;
    EXPECT_EQ(headerOf(file), kDefaultHeader) << c.what;
    EXPECT_EQ(file.lastIndex() + file.lastIterationNumber(), 0u) << c.what;
  }
}

TEST_F(ResidualFile, AMissingFileIsReportedAtEveryReadUntilItComes) {
  ResFile file(path_);
  ResFile folder(folder_.string());
  ConsoleCapture console;
  EXPECT_EQ(file.read(), 0);
  EXPECT_EQ(file.read(), 0);
  EXPECT_EQ(folder.read(), 0);
  EXPECT_EQ(console.text(), cannotOpen(path_) + cannotOpen(path_) + cannotOpen(folder_.string()));
  const auto [text, shown] = records(1, 1, 11);
  write("stage.res", "1 1\n" + text);
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(historyOf(file), shown);
}

// The third real of an unsteady record is its physical time; records may
// span lines and end in CR LF. Only the exact word makes a run unsteady.
TEST_F(ResidualFile, RecordLayouts) {
  const std::string v = " 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19";
  const std::pair<std::string, std::string> cases[] = {
      {"0 3.0 1 3D NO-K-E 0 0 0 UNSTEADY TURBO\n3 40 1 2 0.125" + v + "\n4 1 -1 -2 0.25" + v + "\n",
       "3 40 0.125 u: 1 2" + v + "\n4 1 0.25 u: -1 -2" + v + "\n"},
      {"0 3.0 1 3D NO-K-E 0 0 0 Unsteady TURBO\n7 1 2" + v + "\n", "-1 7 0: 1 2" + v + "\n"},
      {"0 2.0 1 3D NO-K-E 0 0\r\nSTEADY TURBO\r\n1 1\r\n2 3 4\n5 6 7 8 9 10 11 12 13 14 15 16 "
       "17 18 19\r\n2 1 2" +
           v + "\r\n",
       "-1 1 0: 1 2" + v + "\n-1 2 0: 1 2" + v + "\n"},
  };
  for (const auto& [text, shown] : cases) {
    write("stage.res", text);
    ResFile file(path_);
    ConsoleCapture console;
    ASSERT_EQ(file.read(), 1) << text;
    EXPECT_EQ(historyOf(file), shown) << text;
    EXPECT_EQ(console.text(), "");
  }
}

// A history longer than the reader takes in one piece: records that straddle
// the pieces are read whole, and appending afterwards still resumes.
TEST_F(ResidualFile, LongHistory) {
  const auto [text, shown] = records(1, 60000, 17);
  write("stage.res", "1 4\n" + text);
  ResFile file(path_);
  ASSERT_EQ(file.read(), 1);
  EXPECT_TRUE(historyOf(file) == shown);
  const auto [more, moreShown] = records(99999, 99999, 17);
  append("stage.res", more);
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(file.lastIndex(), 60000);
  EXPECT_TRUE(historyOf(file) == shown + moreShown);
}

TEST(Bookmarks, CellsAreIndependentAndStartAtZero) {
  turbo::BookmarkGrid grid;
  const std::pair<int, int> cells[] = {{0, 0}, {0, 9999}, {1, 0}, {999, 0}, {999, 9999}};
  for (const auto& [i, j] : cells) grid.set(i, j, i - j - 2);
  grid.set(999, 0, 0);
  for (const auto& [i, j] : cells) EXPECT_EQ(grid.get(i, j), i == 999 && j == 0 ? 0 : i - j - 2);
  EXPECT_EQ(grid.get(0, 1) + grid.get(998, 9999), 0);
  grid.clear();
  EXPECT_EQ(grid.get(0, 9999), 0);
}

// Growth keeps the bookmarks, a rewrite clears them and yields the new
// history in the same update; a file gone leaves the history.
TEST_F(ResidualFile, ProjectKeepsItsBookmarksWhileTheFileGrows) {
  write("stage.res", "1 1\n" + records(1, 2, 11).first);
  turbo::ProjectMonitor project(path_, false);
  EXPECT_EQ(project.name(), path_);
  ASSERT_EQ(project.update(), 1);
  project.currentIter().set(999, 9999, 7);
  append("stage.res", records(3, 3, 11).first);
  EXPECT_EQ(project.update(), 1);
  EXPECT_EQ(project.resFile().recordCount(), 3u);
  EXPECT_EQ(project.currentIter().get(999, 9999), 7);
  const auto [text, shown] = records(1, 1, 11);
  write("stage.res", "1 1\n" + text);
  EXPECT_EQ(project.update(), 1);
  EXPECT_EQ(historyOf(project.resFile()), shown);
  EXPECT_EQ(project.currentIter().get(999, 9999), 0);
  std::filesystem::remove(path_);
  ConsoleCapture console;
  EXPECT_EQ(project.update(), 0);
  EXPECT_EQ(historyOf(project.resFile()), shown);
  EXPECT_EQ(console.text(), "File " + path_ +
                                " has disappeared; what was read from it stays shown\n" +
                                cannotOpen(path_));
}

}  // namespace
