#include "fileformat/growing_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "console_capture.h"
#include "fileformat/dat_table_reader.h"
#include "scratch_folder.h"

namespace {

using fileformat::GrowingFile;
using fileformat::Update;
using Lines = std::vector<std::string>;
using Read = std::pair<Update, Lines>;
using fileformat::QuantityGroup;

class GrowingFileTest : public ScratchFolder {
 protected:
  Read read() {  // the answer and the lines taken
    Lines lines;
    const Update status = file_.readLines([&](std::string_view line) {
      lines.emplace_back(line);
      return true;
    });
    return {status, lines};
  }
  GrowingFile file_{pathOf("run.dat")};
};

TEST_F(GrowingFileTest, OffersWholeLinesOnceWithoutTheirLineEnds) {
  const std::pair<const char*, Read> steps[] = {
      {"1 2\r\n3 4\n5 6", {Update::appended, {"1 2", "3 4"}}},
      {"", {Update::unchanged, {}}},
      {"\r", {Update::unchanged, {}}},
      {"\n\n", {Update::appended, {"5 6", ""}}}};
  for (const auto& [more, expected] : steps) {
    append("run.dat", more);
    EXPECT_EQ(read(), expected) << more;
  }
  EXPECT_EQ(file_.offset(), 15u);
}

TEST_F(GrowingFileTest, AFileThatNoLongerContinuesWhatWasTakenIsRewritten) {
  const std::string header = "#QV_BEGIN\nMODE STEADY\n#QV_END\n";
  const std::string rows = "1 0.5 0.25\n2 0.375 0.1875\n";
  const std::string cases[] = {
      "",
      header + "1 0.5 0.25\n",
      header + "1 0.5 0.25\n2 0.375 0.1876\n",          // the same length, the last row changed
      header + "1 0.5 0.25\n2 0.375 0.1875 \n3 1 1\n",  // longer, the last row changed
      "#QV_BEGIN \nMODE STEADY\n#QV_END\n" + rows + "3 1 1\n",  // longer, the first line changed
      header + rows + "3"};  // shorter than the unfinished line seen
  for (const std::string& now : cases) {
    file_ = GrowingFile(pathOf("run.dat"));
    write("run.dat", header + rows + "3 0.2");
    ASSERT_EQ(read().first, Update::appended) << now;
    write("run.dat", now);
    const ConsoleCapture console;
    EXPECT_EQ(read(), Read(Update::rewritten, {})) << now;
    EXPECT_EQ(file_.offset(), 0u) << now;
    EXPECT_EQ(read().second.size() + console.text().size(), std::ranges::count(now, '\n')) << now;
  }
}

// Told once and read again when it returns: marine_project_test.
TEST_F(GrowingFileTest, AFileNeverSeenOrAFolderIsMissingAndUntold) {
  ConsoleCapture console;
  EXPECT_EQ(read().first, Update::missing);
  std::filesystem::create_directories(pathOf("run.dat"));
  EXPECT_EQ(read().first, Update::missing);
  EXPECT_FALSE(file_.lost());
  EXPECT_EQ(console.text(), "");
}

TEST_F(GrowingFileTest, WhatAReaderLeavesIsOfferedAgain) {
  write("run.dat", "header\nrow 1\n1 2 3\n4 5");
  EXPECT_EQ(file_.readLines([](std::string_view line) { return line == "header"; }),
            Update::appended);
  Lines offered;
  const auto takeRecordsEndingInEight = [&](std::string_view text) {
    offered.emplace_back(text);
    return fileformat::Taken{text.ends_with("8\n") ? text.size() : 0, false};
  };
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::unchanged);
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::unchanged);
  append("run.dat", " 6 7 8\n");
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::appended);
  EXPECT_EQ(offered, (Lines{"row 1\n1 2 3\n", "row 1\n1 2 3\n4 5 6 7 8\n"}));
}

TEST_F(GrowingFileTest, ALineOverTheLimitIsDroppedOnceAndReadingGoesOnAfterIt) {
  const auto dropped = [&](const char* at, const std::string& name) {
    return "Line of more than 33554432 bytes at byte " + std::string(at) + " of " + pathOf(name) +
           " dropped; reading goes on after its end\n";
  };
  const std::string longLine(GrowingFile::kMaxLineBytes + 10, 'x');
  write("run.dat", "first\n" + longLine.substr(0, GrowingFile::kMaxLineBytes / 2));
  ConsoleCapture console;
  EXPECT_EQ(read(), Read(Update::appended, {"first"}));
  append("run.dat", longLine.substr(GrowingFile::kMaxLineBytes / 2));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  append("run.dat", "yy");
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  append("run.dat", "\nnext\n");
  EXPECT_EQ(read(), Read(Update::appended, {"next"}));
  write("other.dat", "");
  std::filesystem::resize_file(pathOf("other.dat"), 3 * GrowingFile::kMaxLineBytes);
  file_ = GrowingFile(pathOf("other.dat"));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  EXPECT_EQ(console.text(), dropped("6", "run.dat") + dropped("0", "other.dat"));
  append("other.dat", "\nrow\n");
  EXPECT_EQ(read(), Read(Update::appended, {"row"}));
}

TEST(VariablesHeader, ColumnNamesAndDiagnoses) {
  // clang-format off
  const std::tuple<const char*, Lines, char> cases[] = {
      {R"(VARIABLES = "Time" "Load1" "Speed1")", {"Time", "Load1", "Speed1"}, 0},
      {R"(VARIABLES="Thrust 1","Torque1")", {"Thrust 1", "Torque1"}, 0},
      {"VARIABLES = Load1,Speed1, Load2", {"Load1", "Speed1", "Load2"}, 0},
      {"VARIABLES\t=\tA1", {"A1"}, 0}, {"VARIABLES = Load1 Speed1", {"Load1 Speed1"}, 0},
      {R"(VARIABLES = "Load1" Speed1)", {"Load1", "Speed1"}, 0}, {"VARIABLES = ", {}, 0},
      {"ZONE T=\"a\"", {}, 'w'}, {" VARIABLES = A1", {}, 'w'}, {"variables = A1", {}, 'w'},
      {"VARIABLES Load1", {}, '='}, {"VARIABLES   ", {}, '='}};
  // clang-format on
  for (const auto& [line, names, error] : cases) {
    ConsoleCapture console;
    EXPECT_EQ(fileformat::parseVariablesHeader(line), names) << line;
    const char* what = error == 'w' ? "wrong .dat file header" : "cannot find '='";
    EXPECT_EQ(
        console.text(),
        error == 0 ? "" : "Error! parseHeader: " + (what + (": '" + std::string(line) + "'.\n")))
        << line;
  }
}

using TableFile = ScratchFolder;

TEST_F(TableFile, Tables) {
  const std::pair<std::string, const char*> cases[] = {
      {"# actuator disks\nVARIABLES = \"Time\" \"Load1\" \"Speed1\" \"Load2\" \"Speed2\" \"Iter\"\n"
       "0.5 1 2 3 4 10\n\n# restart\n   \t\n  # an indented note\n1.0 -1.5 2.5e3 +3 4.25 11\n",
       "| Load 1 -1.5 Speed 2 2500| Load 3 3 Speed 4 4.25"},
      {"VARIABLES = \"A1\" \"B3\"\n1 2\n", "| A 1"},
      {"VARIABLES = \"A1\" \"A2\" \"B1\"\n1 2 3\n", "| A 1| A 2"},
      {"VARIABLES = Load1 Speed1\n7\n", "| Load1 Speed 7"},
      {"VARIABLES = \"T\" \"X0\" \"Y\"\n1 2 3\n", ""},
      {"VARIABLES = \"Load1\" \"Speed1\" \"Time\"\n1 2 3\n4 5\n6 7 x\n8 9 10 11\n+ 1 2\n",
       "| Load 1 8 Speed 2 9wrong syntax\nwrong syntax\nwrong syntax\n"},
      {"VARIABLES = \"Load1\"\nZONE T=\"disk\"\n1.5\nZONE T=\"second\"\n", "| Load 1.5"},
      {"TITLE = \"disks\"\n1 2\nVARIABLES=\"A1\"\nVARIABLES = \"A1\"\n3\n", "| A 3"},
      {"VARIABLES Load1\n1\n2\n",
       "Error! parseHeader: cannot find '=': 'VARIABLES Load1'.\nwrong syntax\nwrong syntax\n"}};
  for (const auto& [text, expected] : cases) {
    write("eff_AD.dat", text);
    std::vector<QuantityGroup> groups;
    fileformat::DatTableReader reader;
    reader.reset(pathOf("eff_AD.dat"));
    ConsoleCapture console;
    reader.update(groups);
    std::ostringstream shown;
    for (const QuantityGroup& group : groups) {
      shown << '|';
      for (std::size_t q = 0; q < group.names.size(); ++q) {
        shown << ' ' << group.names[q];
        for (const double value : group.values[q]) shown << ' ' << value;
      }
    }
    EXPECT_EQ(shown.str() + console.text(), expected) << text;
  }
}

}  // namespace
