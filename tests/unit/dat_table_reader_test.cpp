// The "VARIABLES" header and the incremental column-table reader, on real
// files that grow the way a running solver writes them.
#include "fileformat/dat_table_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"

namespace {

using fileformat::DatTableReader;
using fileformat::parseVariablesHeader;
using fileformat::QuantityGroup;
using Names = std::vector<std::string>;
using Values = std::vector<std::vector<double>>;

class TableFile : public ScratchFolder {
 protected:
  void write(const std::string& text) { ScratchFolder::write(kFile, text); }
  void append(const std::string& text) { ScratchFolder::append(kFile, text); }

  static constexpr const char* kFile = "eff_AD.dat";
  std::string path_ = pathOf(kFile);
};

void expectGroup(const QuantityGroup& group, const Names& names, const Values& values) {
  EXPECT_EQ(group.names, names);
  EXPECT_EQ(group.values, values);
}

TEST(VariablesHeader, ColumnNames) {
  const struct {
    const char* line;
    Names names;
  } cases[] = {
      {R"(VARIABLES = "Time" "Load1" "Speed1")", {"Time", "Load1", "Speed1"}},
      {R"(VARIABLES="Thrust 1","Torque1")", {"Thrust 1", "Torque1"}},
      {"VARIABLES = Load1,Speed1, Load2", {"Load1", "Speed1", "Load2"}},
      {"VARIABLES\t=\tA1", {"A1"}},
      // Unquoted names separated only by blanks are one name.
      {"VARIABLES = Load1 Speed1", {"Load1 Speed1"}},
      {R"(VARIABLES = "Load1" Speed1)", {"Load1", "Speed1"}},
      {"VARIABLES = ", {}},
  };
  for (const auto& c : cases) {
    ConsoleCapture console;
    EXPECT_EQ(parseVariablesHeader(c.line), c.names) << c.line;
    EXPECT_EQ(console.text(), "") << c.line;
  }
}

TEST(VariablesHeader, Diagnoses) {
  const std::pair<const char*, const char*> cases[] = {
      {"ZONE T=\"a\"", "Error! parseHeader: wrong .dat file header: 'ZONE T=\"a\"'.\n"},
      {" VARIABLES = A1", "Error! parseHeader: wrong .dat file header: ' VARIABLES = A1'.\n"},
      {"variables = A1", "Error! parseHeader: wrong .dat file header: 'variables = A1'.\n"},
      {"VARIABLES Load1", "Error! parseHeader: cannot find '=': 'VARIABLES Load1'.\n"},
      {"VARIABLES   ", "Error! parseHeader: cannot find '=': 'VARIABLES   '.\n"},
      {"VARIABLES", "Error! parseHeader: cannot find '=': 'VARIABLES'.\n"},
  };
  for (const auto& [line, message] : cases) {
    ConsoleCapture console;
    EXPECT_EQ(parseVariablesHeader(line), Names{}) << line;
    EXPECT_EQ(console.text(), message);
  }
}

TEST_F(TableFile, GroupsFollowTheTrailingNumbers) {
  write(
      "# actuator disks\n"
      "VARIABLES = \"Time\" \"Load1\" \"Speed1\" \"Load2\" \"Speed2\" \"Iter\"\n"
      "0.5 1 2 3 4 10\n"
      "\n"
      "# restart\n"
      "   \t\n"
      "  # an indented note\n"
      "1.0 -1.5 2.5e3 +3 4.25 11\n");
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  ConsoleCapture console;
  reader.update(groups);
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(reader.columnNames(), (Names{"Time", "Load1", "Speed1", "Load2", "Speed2", "Iter"}));
  EXPECT_EQ(reader.state(), DatTableReader::State::rows);
  ASSERT_EQ(groups.size(), 2u);
  expectGroup(groups[0], {"Load", "Speed"}, {{1, -1.5}, {2, 2500}});
  expectGroup(groups[1], {"Load", "Speed"}, {{3, 3}, {4, 4.25}});
}

TEST_F(TableFile, GroupNumbersMustFollowEachOther) {
  const struct {
    const char* header;
    const char* row;
    std::vector<Names> names;
    std::vector<Values> values;
  } cases[] = {
      // A number that skips a group leaves its column unused.
      {R"(VARIABLES = "A1" "B3")", "1 2\n", {{"A"}}, {{{1}}}},
      // A group whose columns are not side by side: the late column is unused.
      {R"(VARIABLES = "A1" "A2" "B1")", "1 2 3\n", {{"A"}, {"A"}}, {{{1}}, {{2}}}},
      // Blank-separated names form one column, numbered by its last digits.
      {"VARIABLES = Load1 Speed1", "7\n", {{"Load1 Speed"}}, {{{7}}}},
      {R"(VARIABLES = "T" "X0" "Y")", "1 2 3\n", {}, {}},
  };
  for (const auto& c : cases) {
    write(std::string(c.header) + "\n" + c.row);
    std::vector<QuantityGroup> groups;
    DatTableReader reader;
    reader.reset(path_);
    reader.update(groups);
    ASSERT_EQ(groups.size(), c.names.size()) << c.header;
    for (std::size_t g = 0; g < groups.size(); ++g) expectGroup(groups[g], c.names[g], c.values[g]);
  }
}

TEST_F(TableFile, ShortRowsAreDroppedWithADiagnosis) {
  write(
      "VARIABLES = \"Load1\" \"Speed1\" \"Time\"\n"
      "1 2 3\n"
      "4 5\n"
      "6 7 x\n"
      "8 9 10 11\n");
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  ConsoleCapture console;
  reader.update(groups);
  EXPECT_EQ(console.text(), "wrong syntax\nwrong syntax\n");
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"Load", "Speed"}, {{1, 8}, {2, 9}});
}

// The header stage goes straight to the rows, so a ZONE line after the header
// is read as a row: it is reported and dropped, and the rows after it count.
TEST_F(TableFile, ZoneLinesAmongTheRowsAreSkipped) {
  write(
      "VARIABLES = \"Load1\"\n"
      "ZONE T=\"disk\"\n"
      "1.5\n"
      "ZONE T=\"second\"\n");
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  ConsoleCapture console;
  reader.update(groups);
  EXPECT_EQ(console.text(), "");
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"Load"}, {{1.5}});
}

TEST_F(TableFile, LinesBeforeAProperHeaderAreIgnored) {
  write(
      "TITLE = \"disks\"\n"
      "1 2\n"
      "VARIABLES=\"A1\"\n");
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  ConsoleCapture console;
  reader.update(groups);
  EXPECT_EQ(reader.state(), DatTableReader::State::header);
  EXPECT_TRUE(groups.empty());

  append("VARIABLES = \"A1\"\n3\n");
  reader.update(groups);
  EXPECT_EQ(console.text(), "");
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"A"}, {{3}});
}

TEST_F(TableFile, HeaderWithoutEqualsSignMakesEveryRowWrong) {
  write("VARIABLES Load1\n1\n2\n");
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  ConsoleCapture console;
  reader.update(groups);
  EXPECT_EQ(console.text(),
            "Error! parseHeader: cannot find '=': 'VARIABLES Load1'.\n"
            "wrong syntax\n"
            "wrong syntax\n");
  EXPECT_TRUE(groups.empty());
}

// The solver appends the file in pieces of any length; every update may come
// between two of them. Whatever the cut, each row is stored once, whole, and
// only after its line feed arrived.
TEST_F(TableFile, GrowingFileCutAtEveryByte) {
  for (const std::string eol : {"\n", "\r\n"}) {
    const std::vector<std::string> lines = {
        "# disks",
        "VARIABLES = \"Time\", \"Load1\", \"Speed1\", \"Load2\", \"Speed2\"",
        "0.1 1.5 -2 30 4e-2",
        "",
        "0.2 5 6.25 7 8",
        "# restart",
        "0.3 9 10 11.125 -12",
    };
    const Values disk1 = {{1.5, 5, 9}, {-2, 6.25, 10}};
    const Values disk2 = {{30, 7, 11.125}, {4e-2, 8, -12}};
    std::string text;
    std::vector<std::size_t> rowEnds;  // offset just past each row's line feed
    std::size_t headerEnd = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      text += lines[i] + eol;
      if (i == 1) headerEnd = text.size();
      if (i == 2 || i == 4 || i == 6) rowEnds.push_back(text.size());
    }
    const auto expectedAfter = [&](std::size_t length, std::vector<QuantityGroup>& groups) {
      if (length < headerEnd) {
        EXPECT_TRUE(groups.empty()) << length;
        return;
      }
      std::size_t rows = 0;
      while (rows < rowEnds.size() && rowEnds[rows] <= length) ++rows;
      ASSERT_EQ(groups.size(), 2u) << length;
      Values first = disk1, second = disk2;
      for (auto* values : {&first, &second}) {
        for (auto& column : *values) column.resize(rows);
      }
      expectGroup(groups[0], {"Load", "Speed"}, first);
      expectGroup(groups[1], {"Load", "Speed"}, second);
    };

    // One byte at a time, with an update after each.
    {
      write("");
      std::vector<QuantityGroup> groups;
      DatTableReader reader;
      reader.reset(path_);
      ConsoleCapture console;
      for (std::size_t length = 1; length <= text.size(); ++length) {
        append(text.substr(length - 1, 1));
        reader.update(groups);
        expectedAfter(length, groups);
      }
      EXPECT_EQ(console.text(), "");
    }
    // Two pieces, cut at every position (the longer line ends cover every
    // cut of the shorter ones).
    for (std::size_t cut = 0; eol == "\r\n" && cut <= text.size(); ++cut) {
      write(text.substr(0, cut));
      std::vector<QuantityGroup> groups;
      DatTableReader reader;
      reader.reset(path_);
      ConsoleCapture console;
      reader.update(groups);
      expectedAfter(cut, groups);
      append(text.substr(cut));
      reader.update(groups);
      expectedAfter(text.size(), groups);
      reader.update(groups);
      expectedAfter(text.size(), groups);
      EXPECT_EQ(console.text(), "") << cut;
    }
  }
}

TEST_F(TableFile, MissingFileIsReadOnceItAppears) {
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  ConsoleCapture console;
  reader.update(groups);
  reader.update(groups);
  EXPECT_TRUE(groups.empty());
  EXPECT_EQ(reader.file().offset(), 0u);
  EXPECT_EQ(reader.state(), DatTableReader::State::header);

  write("VARIABLES = \"Load1\"\n2\n");
  reader.update(groups);
  EXPECT_EQ(console.text(), "");
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"Load"}, {{2}});
}

TEST_F(TableFile, FileRewrittenShorterIsReadAgainFromItsStart) {
  write(
      "VARIABLES = \"Load1\" \"Load2\"\n"
      "1 2\n"
      "3 4\n"
      "5 6\n"
      "7");  // a row not finished yet
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  reader.update(groups);
  ASSERT_EQ(groups.size(), 2u);

  write(
      "VARIABLES = \"Thrust1\"\n"
      "9\n");
  ConsoleCapture console;
  reader.update(groups);
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(reader.columnNames(), Names{"Thrust1"});
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"Thrust"}, {{9}});

  append("10\n");
  reader.update(groups);
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"Thrust"}, {{9, 10}});
}

TEST_F(TableFile, ResetStartsAgainFromTheFirstByte) {
  write("VARIABLES = \"Load1\"\n1\n2\n");
  std::vector<QuantityGroup> groups;
  DatTableReader reader;
  reader.reset(path_);
  reader.update(groups);
  ASSERT_EQ(groups.size(), 1u);

  groups.clear();
  reader.reset(path_);
  EXPECT_EQ(reader.file().offset(), 0u);
  EXPECT_TRUE(reader.columnNames().empty());
  reader.update(groups);
  ASSERT_EQ(groups.size(), 1u);
  expectGroup(groups[0], {"Load"}, {{1, 2}});
}

}  // namespace
