// The user quantities of "user_data.csv": titles split into name and unit,
// data lines read (short ones padded with a warning), and a file that grows,
// appears late or is written again, each of its lines stored exactly once.
#include "marine/extra_quantities.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console_capture.h"

namespace {

namespace fs = std::filesystem;
using marine::ExtraQuantities;
using marine::ExtraQuantity;
using Doubles = std::vector<double>;

TEST(ExtraQuantityTitle, SplitsIntoNameAndUnitDroppingTheCharacterBeforeTheBracket) {
  const struct {
    std::string_view title;
    std::string name;
    std::string unit;
  } rows[] = {
      {"Heave force [N]", "Heave force", "N"},
      {"Pitch moment [N.m]", "Pitch moment", "N.m"},
      {"Trim", "Trim", ""},
      {"Froude number", "Froude number", ""},
      {"Force[N]", "Forc", "N"},  // no blank before "[": the name loses its last letter
      {"  Speed   [ m/s ]  ", "Speed", "m/s"},
      {"Time [s] ", "Time", "s"},
      {"Ratio []", "Ratio", ""},
      {"A [b] [c]", "A", "b] [c"},  // the first "[" and the last "]"
      {"x[]", "", ""},
      {"[N] force", "[N] force", ""},  // a "[" first is no unit
      {"Force ]N[", "Force ]N[", ""},  // nor a "]" before the "["
      {"Force [N", "Force [N", ""},
      {"Force N]", "Force N]", ""},
      {"", "", ""},
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
      {"1 2 3", 3, {1, 2, 3}, ""},
      {"1\t2\t3", 3, {1, 2, 3}, ""},
      {"  0.05 \t 1520.3\t\t-4.5e-2  ", 3, {0.05, 1520.3, -0.045}, ""},
      {"1 2 3 4 5", 3, {1, 2, 3}, ""},
      {"7", 0, {}, ""},
      {"1 2", 3, {1, 2, 0}, "Warning! Unfinished line '1 2. Expected 3 values in the line.\n"},
      {"1\t2", 3, {1, 2, 0}, "Warning! Unfinished line '1\t2. Expected 3 values in the line.\n"},
      {"", 2, {0, 0}, "Warning! Unfinished line '. Expected 2 values in the line.\n"},
      {"1 abc 3",
       3,
       {1, 0, 0},
       "Warning! Unfinished line '1 abc 3. Expected 3 values in the line.\n"},
      {"1,5 2", 2, {1, 0}, "Warning! Unfinished line '1,5 2. Expected 2 values in the line.\n"},
      {"x", 1, {0}, "Warning! Unfinished line 'x. Expected 1 values in the line.\n"},
  };
  for (const auto& row : rows) {
    const ConsoleCapture console;
    EXPECT_EQ(marine::readDataLine(row.line, row.count), row.values) << row.line;
    EXPECT_EQ(console.text(), row.console) << row.line;
  }
}

class ExtraQuantitiesFile : public testing::Test {
 protected:
  ExtraQuantitiesFile() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("extra_quantities_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    fs::create_directories(folder_);
  }
  ~ExtraQuantitiesFile() override { fs::remove_all(folder_); }

  std::string folderText() const { return folder_.string() + "/"; }
  fs::path file() const { return folder_ / "user_data.csv"; }

  void write(std::string_view text) const {
    std::ofstream out(file(), std::ios::binary | std::ios::trunc);
    out << text;
  }
  void append(std::string_view text) const {
    std::ofstream out(file(), std::ios::binary | std::ios::app);
    out << text;
  }

  // Reads the folder's file afresh and answers what the console showed.
  std::string readAfresh(ExtraQuantities& quantities) const {
    const ConsoleCapture console;
    quantities.reset(folderText());
    quantities.update();
    return console.text();
  }

  static std::string update(ExtraQuantities& quantities) {
    const ConsoleCapture console;
    quantities.update();
    return console.text();
  }

  fs::path folder_;
};

// The titles and every value of each quantity, one line per quantity, the
// values in their shortest exact form.
std::string describe(const std::vector<ExtraQuantity>& quantities) {
  std::string text;
  for (const ExtraQuantity& quantity : quantities) {
    text += quantity.name + " [" + quantity.unit + "]:";
    for (const double value : quantity.values) {
      char number[32];
      text += ' ';
      text.append(number, std::to_chars(number, number + sizeof number, value).ptr);
    }
    text += "\n";
  }
  return text;
}

constexpr std::string_view kThreeRows =
    "Time [s]\tHeave force [N]\tTrim\n"
    "0.05\t1520.3\t0.01\n"
    "0.1\t1519.8\t0.02\n"
    "0.15\t1519.5\t0.025\n";

constexpr std::string_view kThreeRowsRead =
    "Time [s]: 0.05 0.1 0.15\n"
    "Heave force [N]: 1520.3 1519.8 1519.5\n"
    "Trim []: 0.01 0.02 0.025\n";

TEST_F(ExtraQuantitiesFile, ReadsTheTitlesAndOneValuePerDataLine) {
  write(kThreeRows);
  ExtraQuantities quantities;
  EXPECT_EQ(readAfresh(quantities), "");
  EXPECT_EQ(describe(quantities.quantities()), kThreeRowsRead);
  for (const ExtraQuantity& quantity : quantities.quantities())
    EXPECT_EQ(quantity.currentIteration, 0);
}

TEST_F(ExtraQuantitiesFile, AShortLineIsPaddedWithZerosAndExtraValuesAreIgnored) {
  write("A\tB\tC\r\n1\t2\r\n4 5 6 7 8\n9\t10\t11\n");
  ExtraQuantities quantities;
  EXPECT_EQ(readAfresh(quantities),
            "Warning! Unfinished line '1\t2. Expected 3 values in the line.\n");
  EXPECT_EQ(describe(quantities.quantities()),
            "A []: 1 4 9\n"
            "B []: 2 5 10\n"
            "C []: 0 6 11\n");
}

TEST_F(ExtraQuantitiesFile, TitlesWithAndWithoutUnits) {
  write("Force[N]\tHeave force [N]\tFroude number\t Speed [m/s] \n1 2 3 4\n");
  ExtraQuantities quantities;
  readAfresh(quantities);
  EXPECT_EQ(describe(quantities.quantities()),
            "Forc [N]: 1\n"
            "Heave force [N]: 2\n"
            "Froude number []: 3\n"
            "Speed [m/s]: 4\n");
}

TEST_F(ExtraQuantitiesFile, AMissingFileGivesNoQuantities) {
  ExtraQuantities quantities;
  EXPECT_EQ(readAfresh(quantities), "");
  EXPECT_TRUE(quantities.quantities().empty());
  EXPECT_EQ(update(quantities), "");
  EXPECT_TRUE(quantities.quantities().empty());
}

TEST_F(ExtraQuantitiesFile, AHeaderAloneGivesQuantitiesWithoutValues) {
  write("Time [s]\tTrim\n");
  ExtraQuantities quantities;
  readAfresh(quantities);
  EXPECT_EQ(describe(quantities.quantities()), "Time [s]:\nTrim []:\n");
}

TEST_F(ExtraQuantitiesFile, ARewrittenFileIsReadAgainAndTheChosenPositionsStay) {
  write(kThreeRows);
  ExtraQuantities quantities;
  readAfresh(quantities);
  quantities.quantities()[0].currentIteration = 2;
  quantities.quantities()[2].currentIteration = 1;

  // A new run: new titles, fewer lines.
  write("Time [s]\tSinkage [m]\n0.05\t-0.1\n");
  EXPECT_EQ(update(quantities), "");
  EXPECT_EQ(describe(quantities.quantities()), "Time [s]: 0.05\nSinkage [m]: -0.1\n");
  EXPECT_EQ(quantities.quantities()[0].currentIteration, 2);
  EXPECT_EQ(quantities.quantities()[1].currentIteration, 0);

  // Same length, different last line.
  write("Time [s]\tSinkage [m]\n0.05\t-0.2\n");
  update(quantities);
  EXPECT_EQ(describe(quantities.quantities()), "Time [s]: 0.05\nSinkage [m]: -0.2\n");

  append("0.1\t-0.3\n");
  update(quantities);
  EXPECT_EQ(describe(quantities.quantities()), "Time [s]: 0.05 0.1\nSinkage [m]: -0.2 -0.3\n");
}

}  // namespace
