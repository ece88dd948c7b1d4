// The "VARIABLES" header and the column-table reader.
#include "fileformat/dat_table_reader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"

namespace {

using fileformat::QuantityGroup;
using Names = std::vector<std::string>;

TEST(VariablesHeader, ColumnNamesAndDiagnoses) {
  const struct {
    const char* line;
    Names names;
    const char* console;
  } cases[] = {
      {R"(VARIABLES = "Time" "Load1" "Speed1")", {"Time", "Load1", "Speed1"}, ""},
      {R"(VARIABLES="Thrust 1","Torque1")", {"Thrust 1", "Torque1"}, ""},
      {"VARIABLES = Load1,Speed1, Load2", {"Load1", "Speed1", "Load2"}, ""},
      {"VARIABLES\t=\tA1", {"A1"}, ""},
      // Unquoted names separated only by blanks are one name.
      {"VARIABLES = Load1 Speed1", {"Load1 Speed1"}, ""},
      {R"(VARIABLES = "Load1" Speed1)", {"Load1", "Speed1"}, ""},
      {"VARIABLES = ", {}, ""},
      {"ZONE T=\"a\"", {}, "Error! parseHeader: wrong .dat file header: 'ZONE T=\"a\"'.\n"},
      {" VARIABLES = A1", {}, "Error! parseHeader: wrong .dat file header: ' VARIABLES = A1'.\n"},
      {"variables = A1", {}, "Error! parseHeader: wrong .dat file header: 'variables = A1'.\n"},
      {"VARIABLES Load1", {}, "Error! parseHeader: cannot find '=': 'VARIABLES Load1'.\n"},
      {"VARIABLES   ", {}, "Error! parseHeader: cannot find '=': 'VARIABLES   '.\n"},
  };
  for (const auto& c : cases) {
    ConsoleCapture console;
    EXPECT_EQ(fileformat::parseVariablesHeader(c.line), c.names) << c.line;
    EXPECT_EQ(console.text(), c.console) << c.line;
  }
}

class TableFile : public ScratchFolder {};

// Columns whose names end in 1, 2, ... in order, a group's columns side by
// side, feed the groups; other columns are read and dropped.
TEST_F(TableFile, Tables) {
  const struct {
    std::string text;
    const char* groups;  // per group, each quantity and its values
    const char* console;
  } cases[] = {
      {"# actuator disks\nVARIABLES = \"Time\" \"Load1\" \"Speed1\" \"Load2\" \"Speed2\" \"Iter\"\n"
       "0.5 1 2 3 4 10\n\n# restart\n   \t\n  # an indented note\n1.0 -1.5 2.5e3 +3 4.25 11\n",
       "| Load 1 -1.5 Speed 2 2500| Load 3 3 Speed 4 4.25", ""},
      {"VARIABLES = \"A1\" \"B3\"\n1 2\n", "| A 1", ""},  // a number that skips a group
      {"VARIABLES = \"A1\" \"A2\" \"B1\"\n1 2 3\n", "| A 1| A 2", ""},  // B1 comes late
      {"VARIABLES = Load1 Speed1\n7\n", "| Load1 Speed 7", ""},
      {"VARIABLES = \"T\" \"X0\" \"Y\"\n1 2 3\n", "", ""},
      {"VARIABLES = \"Load1\" \"Speed1\" \"Time\"\n1 2 3\n4 5\n6 7 x\n8 9 10 11\n+ 1 2\n",
       "| Load 1 8 Speed 2 9", "wrong syntax\nwrong syntax\nwrong syntax\n"},
      {"VARIABLES = \"Load1\"\nZONE T=\"disk\"\n1.5\nZONE T=\"second\"\n", "| Load 1.5", ""},
      {"TITLE = \"disks\"\n1 2\nVARIABLES=\"A1\"\nVARIABLES = \"A1\"\n3\n", "| A 3", ""},
      {"VARIABLES Load1\n1\n2\n", "",
       "Error! parseHeader: cannot find '=': 'VARIABLES Load1'.\nwrong syntax\nwrong syntax\n"},
  };
  for (const auto& c : cases) {
    write("eff_AD.dat", c.text);
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
    EXPECT_EQ(shown.str(), c.groups) << c.text;
    EXPECT_EQ(console.text(), c.console) << c.text;
  }
}

}  // namespace
