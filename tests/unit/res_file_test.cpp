#include "turbo/res_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "turbo/blade_files.h"
#include "turbo/project_monitor.h"

namespace {

using turbo::ResFile;

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

// Steady records: the file's text and its history.
std::pair<std::string, std::string> records(int first, int last, std::size_t count) {
  std::ostringstream file, shown;
  for (int i = first; i <= last; ++i) {
    std::ostringstream values;
    for (std::size_t k = 0; k < count; ++k) values << ' ' << k + (i % 1000) * 0.25;
    file << i << values.str() << '\n';
    shown << "-1 " << i << " 0:" << values.str() << '\n';
  }
  return {file.str(), shown.str()};
}

// The header, the blocks x equations, the last index and iteration, the history.
std::string stateOf(const ResFile& file) {
  std::string text = file.version() + ' ' + file.module() + ' ' + file.turbulence() + " [";
  for (const std::string& name : file.extraNames1()) text += name + ' ';
  text += "] [";
  for (const std::string& name : file.extraNames2()) text += name + ' ';
  return text + "] " + std::to_string(file.headerInt()) + ' ' + file.mode() + ' ' +
         file.application() + ' ' + std::to_string(file.nbBlocks()) + 'x' +
         std::to_string(file.nbVars()) + ' ' + std::to_string(file.lastIndex()) + ' ' +
         std::to_string(file.lastIterationNumber()) + '\n' + historyOf(file);
}

class ResidualFile : public ScratchFolder {
 protected:
  static std::string cannotOpen(const std::string& path, const char* who = "ResFile") {
    return std::string("*** ") + who + "  :: read() Cannot open the file :\n\t\t\t      " + path +
           "\n";
  }
  std::string path_ = pathOf("stage.res");
};

// More header versions through the commands: turbo_project_commands_test.
TEST_F(ResidualFile, HeaderForms) {
  const std::pair<const char*, const char*> cases[] = {
      {"1 2\n", " 3D NO-K-E [] [] 0  TURBO 1x2"},
      {"100001 3.0 1 TF K-E 0 0 4 STEADY TURBO\n", "3.0 TF K-E [] [] 4 STEADY TURBO 1x8"},
      {"0 3.0 2 B2B SPL-ALM 0 0 0 STEADY TURBO\n", "3.0 B2B SPL-ALM [] [] 0 STEADY TURBO 2x6"},
      {"0 1.0 1 3D NO-K-E 2 H1 H2\nSTEADY TURBO\n", "1.0 3D NO-K-E [H1 H2 ] [] 0 STEADY TURBO 1x7"},
      {"0 2.0 2 TF SPL-ALM 1 A 2 B C STEADY NOZZLE\n",
       "2.0 TF SPL-ALM [A ] [B C ] 0 STEADY NOZZLE 2x10"},
      {"0 3.0 1 B2B K-E 1 sp1 1 h1 3 STEADY TURBO\n",
       "3.0 B2B K-E [sp1 ] [h1 ] 3 STEADY TURBO 1x9"},
      {"0 2.5 1 3D NO-K-E 0 1 Z 9 STEADY TURBO\n", "2.5 3D NO-K-E [] [Z ] 9 STEADY TURBO 1x6"},
      {"0 3.0 1 3D NO-K-E 0 0 0 Unsteady TURBO\n", "3.0 3D NO-K-E [] [] 0 Unsteady TURBO 1x5"}};
  for (const auto& [header, fields] : cases) {
    write("stage.res", header);
    ResFile file(path_);
    const int headerOnly = file.read();
    const auto [text, shown] = records(1, 2, 9 + 2 * file.nbBlocks() * file.nbVars());
    append("stage.res", text);
    ConsoleCapture console;
    const int whole = file.read();
    EXPECT_EQ(
        std::to_string(headerOnly) + std::to_string(whole) + ' ' + stateOf(file) + console.text(),
        "21 " + std::string(fields) + " 1 2\n" + shown);
  }
}

TEST_F(ResidualFile, UnreadableFiles) {
  const auto notHistory = [&](const char* what) {
    return "*** ResFile  :: read() " +
           (what + (" equations are not a residual history :\n\t\t\t      " + path_ + "\n"));
  };
  const std::string noWord = "read:: string value not read !!!\n";
  const std::string binary("\x7f\x45\x4c\x46 \x02\x01 \x00\x00 \xff\xfe\n\x01\x02", 16);
  // clang-format off
  const std::pair<std::string, std::string> cases[] = {
      {"", ""}, {"0 3.0 1 TF K-E 0\n", ""}, {"0 3.0 1 TF K-E 0 0 4 STEADY\n", noWord},
      {"0 3.0 1 XYZ K-E 0 0 0 STEADY TURBO\n1 2 3\n", "unkown module XYZ\n"}, {"hello world\n", ""},
      {"0 3.0 1\n", noWord}, {"0 3.0 1 3D NO-K-E -1 0 0 STEADY TURBO\n1 2\n", ""},
      {binary, "unkown module \xff\xfe\n"}, {"3 -2\n1 2 3\n", notHistory("3 blocks of -2")},
      {"0 3.0 -1 3D NO-K-E 0 0 0 STEADY TURBO\n1 2\n", notHistory("-1 blocks of 5")},
      {"0 3.0 2000000000 3D K-E 0 0 1 STEADY TURBO\n1\n", notHistory("2000000000 blocks of 7")}};
  // clang-format on
  for (const auto& [text, told] : cases) {
    write("stage.res", text);
    ResFile file(path_);
    ConsoleCapture console;
    const int answer = file.read();
    EXPECT_EQ(std::to_string(answer) + console.text() + stateOf(file),
              "0" + told + " 3D NO-K-E [] [] 0  TURBO 0x0 0 0\n")
        << text;
  }
}

// Longer than the reader takes in one piece.
TEST_F(ResidualFile, LongHistory) {
  const auto [text, shown] = records(1, 60000, 17);
  write("stage.res", "1 4\n" + text);
  ResFile file(path_);
  ASSERT_EQ(file.read(), 1);
  const auto [more, moreShown] = records(99999, 99999, 17);
  append("stage.res", more);
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(file.lastIndex(), 60000);
  EXPECT_TRUE(historyOf(file) == shown + moreShown);
}

TEST_F(ResidualFile, AMissingFileIsToldAtEveryReadAndAVanishedOneLeavesItsHistory) {
  turbo::ProjectMonitor project(path_, false);
  ConsoleCapture console;
  EXPECT_EQ(project.update() + project.update() + ResFile(folder_.string()).read(), 0);
  const auto [text, shown] = records(1, 1, 11);
  write("stage.res", "1 1\n" + text);
  EXPECT_EQ(project.update(), 1);
  std::filesystem::remove(path_);
  EXPECT_EQ(project.update(), 0);
  EXPECT_EQ(project.name() + '\n' + historyOf(project.resFile()) + console.text(),
            path_ + '\n' + shown + cannotOpen(path_) + cannotOpen(path_) +
                cannotOpen(folder_.string()) + "File " + path_ +
                " has disappeared; what was read from it stays shown\n" + cannotOpen(path_));
}

using BladeFile = ResidualFile;

// A curve never shrinks; a count past the file or negative ends the read.
TEST_F(BladeFile, Reads) {
  const std::tuple<bool, const char*, const char*> cases[] = {
      {true, "2\n0.1 0.2 1.5 2.5\n0.3 0.4 -1e-2 3\n1\n5 6 7 8\n",
       "| 0 0.1 1.5 0.3 -0.01 0| 0 0.2 2.5 0.4 3 0| 0 5 7 0| 0 6 8 0"},
      {true, "3 1 2 3 4 5 6 7 8 9 10 11 12\n2 13 14 15 16 17 18 19 20\n",
       "| 0 1 3 5 7 9 11 0| 0 2 4 6 8 10 12 0| 0 13 15 17 19 0| 0 14 16 18 20 0"},
      {true, "0 1 5 6 7 8\n", "| 0 1| 0 2| 0 5 7 17| 0 6 8 18"},
      {true, "1 1 2 3 4\n2000000000 1 2 3 4\n", "| 0 1 3 5| 0 2 4 6| 0 5| 0 6"},
      {true, "-1 1 2 3 4\n", "| 0 1| 0 2| 0 5| 0 6"},
      {false, "2\n1 2\n3 4\n1\n-5 6.5\n", "| 0 1 2 3 4 0| 0 -5 6.5 0"},
      {false, "1 1 2 2000000000 3 4\n", "| 0 1 2 3| 0 -5"}};
  turbo::DiagFile diagram(path_);
  turbo::ProfFile profile(path_);
  turbo::BladeSectionFile* const files[] = {&profile, &diagram};
  for (const auto& [isDiagram, text, curves] : cases) {
    write("stage.res", text);
    turbo::BladeSectionFile& file = *files[isDiagram];
    const ConsoleCapture console;
    std::ostringstream shown;
    shown << file.read();
    for (const char* name : isDiagram
                                ? std::vector{"Extrado_1", "Extrado_2", "Intrado_1", "Intrado_2"}
                                : std::vector{"Extrado", "Intrado"}) {
      shown << '|';
      for (int n = -1; n <= 2 * file.nbPts(name); ++n) shown << ' ' << file.value(name, n);
    }
    EXPECT_EQ(shown.str() + console.text(), std::string("1") + curves) << text;
  }
}

// The registries' rereads are in turbo_blade_commands_test.
TEST_F(BladeFile, MonitorsAndTheirRegistry) {
  turbo::DiagramMonitor inactive(path_);
  turbo::BladeFileRegistry<turbo::DiagramMonitor> diagrams;
  int busy = 7;
  ConsoleCapture console;
  inactive.update();
  write("stage.res", "1 1 2 3 4 0\n");
  diagrams.add(path_, busy);
  EXPECT_EQ(busy, 0);
  EXPECT_EQ(diagrams.find(path_ + " "), nullptr);
  ASSERT_NE(diagrams.find(path_), nullptr);
  EXPECT_EQ(diagrams.find(path_)->name(), path_);
  EXPECT_EQ(diagrams.find(path_)->file().nbPts("Extrado_1"), 1);
  EXPECT_EQ(turbo::DiagFile(folder_.string()).read(), 0);
  EXPECT_EQ(console.text(), cannotOpen(folder_.string(), "Diagram file"));
}

}  // namespace
