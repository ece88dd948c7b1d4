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

}  // namespace
