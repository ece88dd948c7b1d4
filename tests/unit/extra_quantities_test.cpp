// The user quantities of "user_data.csv": titles split into name and unit,
// data lines read (short ones padded with a warning), a file written again.
#include "marine/extra_quantities.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "fileformat/line_helpers.h"
#include "scratch_folder.h"

namespace {

using marine::ExtraQuantities;
using marine::ExtraQuantity;
using Doubles = std::vector<double>;

std::string describe(const ExtraQuantities& quantities) {
  std::ostringstream text;
  for (const ExtraQuantity& quantity : quantities.quantities()) {
    text << quantity.name << " [" << quantity.unit << "]:";
    for (const double value : quantity.values) text << ' ' << value;
    text << '\n';
  }
  return text.str();
}

TEST(ExtraQuantityTitle, SplitsIntoNameAndUnitDroppingTheCharacterBeforeTheBracket) {
  const struct {
    std::string_view title;
    std::string name;
    std::string unit;
  } rows[] = {
      {"Heave force [N]", "Heave force", "N"},
      {"Trim", "Trim", ""},
      {"Force[N]", "Forc", "N"},  // no blank before "[": the name loses its last letter
      {"  Speed   [ m/s ]  ", "Speed", "m/s"},
      {"Ratio []", "Ratio", ""},
      {"A [b] [c]", "A", "b] [c"},  // the first "[" and the last "]"
      {"x[]", "", ""},
      {"[N] force", "[N] force", ""},  // a "[" first is no unit
      {"Force ]N[", "Force ]N[", ""},  // nor a "]" before the "["
      {"Force [N", "Force [N", ""},
      {"Force N]", "Force N]", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(marine::splitTitle(row.title), std::make_pair(row.name, row.unit)) << row.title;
  }
}

TEST(ExtraQuantityLine, ReadsTheExpectedCountPaddingAShortLineWithZeros) {
  const struct {
    std::string_view line;
    std::size_t count;
    Doubles values;
    std::string console;
  } rows[] = {
      {"  0.05 \t +1520.3\t\t-4.5e-2  ", 3, {0.05, 1520.3, -0.045}, ""},
      {"1 2 3 4 5", 3, {1, 2, 3}, ""},
      {"7", 0, {}, ""},
      {"1 2", 3, {1, 2, 0}, "Warning! Unfinished line '1 2. Expected 3 values in the line.\n"},
      {"", 2, {0, 0}, "Warning! Unfinished line '. Expected 2 values in the line.\n"},
      {"1 a 3", 3, {1, 0, 0}, "Warning! Unfinished line '1 a 3. Expected 3 values in the line.\n"},
      {"1,5 2", 2, {1, 0}, "Warning! Unfinished line '1,5 2. Expected 2 values in the line.\n"},
  };
  for (const auto& row : rows) {
    const ConsoleCapture console;
    EXPECT_EQ(marine::readDataLine(row.line, row.count), row.values) << row.line;
    EXPECT_EQ(console.text(), row.console) << row.line;
  }
}

// What a fresh read of the folder's file prints, then the titles and values
// of each quantity, one line per quantity.
std::string readAfresh(ExtraQuantities& quantities, const std::string& folder) {
  const ConsoleCapture console;
  quantities.reset(folder + "/");
  quantities.update();
  return console.text() + "|" + describe(quantities);
}

using ExtraQuantitiesFile = ScratchFolder;

TEST_F(ExtraQuantitiesFile, TitlesAndOneValuePerDataLine) {
  const struct {
    std::string text;
    std::string read;
  } cases[] = {
      {"", "|"},  // no file
      {"Time [s]\tHeave force [N]\tTrim\n0.05\t1520.3\t0.01\n0.1\t1519.8\t0.02\n",
       "|Time [s]: 0.05 0.1\nHeave force [N]: 1520.3 1519.8\nTrim []: 0.01 0.02\n"},
      // A short line is padded, extra values are ignored.
      {"A\tB\tC\r\n1\t2\r\n4 5 6 7 8\n",
       "Warning! Unfinished line '1\t2. Expected 3 values in the line.\n|A []: 1 4\nB []: 2 5\nC "
       "[]: 0 6\n"},
      {"Time [s]\tTrim\n", "|Time [s]:\nTrim []:\n"},
  };
  for (const auto& c : cases) {
    if (!c.text.empty()) write("user_data.csv", c.text);
    ExtraQuantities quantities;
    EXPECT_EQ(readAfresh(quantities, folder_.string()), c.read) << c.text;
  }
}

TEST_F(ExtraQuantitiesFile, ARewrittenFileIsReadAgainAndTheChosenPositionsStay) {
  write("user_data.csv", "Time [s]\tHeave force [N]\tTrim\n0.05\t1520.3\t0.01\n");
  ExtraQuantities quantities;
  readAfresh(quantities, folder_.string());
  quantities.quantities()[0].currentIteration = 2;
  quantities.quantities()[2].currentIteration = 1;
  // A new run: new titles, fewer lines.
  write("user_data.csv", "Time [s]\tSinkage [m]\n0.05\t-0.1\n");
  EXPECT_EQ(quantities.update(), fileformat::Update::rewritten);
  EXPECT_EQ(describe(quantities), "Time [s]: 0.05\nSinkage [m]: -0.1\n");
  EXPECT_EQ(quantities.quantities()[0].currentIteration, 2);
  EXPECT_EQ(quantities.quantities()[1].currentIteration, 0);
}

TEST_F(ExtraQuantitiesFile, TitlesPastTheMostColumnsAreCut) {
  write("user_data.csv", std::string(fileformat::kMaxColumns + 10, '\t') + "\n");
  ExtraQuantities quantities;
  const std::string read = readAfresh(quantities, folder_.string());
  EXPECT_EQ(read.substr(0, read.find('|')), "More than 65536 columns in " +
                                                pathOf("user_data.csv") +
                                                "; the columns after them are not read\n");
  EXPECT_EQ(quantities.quantities().size(), fileformat::kMaxColumns);
}

}  // namespace
