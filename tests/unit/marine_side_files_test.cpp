// The files beside the residual file: the motions of moving bodies and the
// user quantities of "user_data.csv".
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

#include "console_capture.h"
#include "marine/extra_quantities.h"
#include "marine/motion_history.h"
#include "scratch_folder.h"

namespace {

using fileformat::Update;
using marine::MotionHistory;

// The update's answer, what it printed, then the columns with their values, the times first.
std::string updated(MotionHistory& motion) {
  const ConsoleCapture console;
  const Update status = motion.update();
  std::ostringstream text;
  text << (status == Update::appended  ? "appended"
           : status == Update::missing ? "missing"
                                       : "")
       << '|' << console.text() << 'T';
  for (const double time : motion.times()) text << ' ' << time;
  for (std::size_t c = 0; c < motion.columnNames().size(); ++c) {
    text << '|' << motion.columnNames()[c];
    for (const double value : motion.values(c)) text << ' ' << value;
  }
  return text.str();
}

using MarineMotion = ScratchFolder;

TEST_F(MarineMotion, RowsAndTheirMessages) {
  const std::string binary("\x01\x02\xff\xfe\x00\x7f\x80", 7);
  write("Mvt_hull.dat",
        "# hull motion\r\n#COLUMNS T = X Z\r\n0.0 1.5 2.5\r\n0.1 1.25\r\n\r\n# comment\r\n"
        "0.2 1.125 2.125 9.0\r\n0.3\r\nhello world\n" +
            binary + "\n+INF NaN -INF\n0.4 0.5");
  MotionHistory motion;
  ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  const std::string bad = "Bad File Format\n";
  EXPECT_EQ(updated(motion), "appended|" + bad + bad + bad + bad +
                                 "File End is reached\nT 0 0.2 1|X 1.5 1.125 1|Z 2.5 2.125 1");
  // Every update ends with the same line, new rows or not.
  append("Mvt_hull.dat", " 0.75\n");
  const std::string all = "File End is reached\nT 0 0.2 1 0.4|X 1.5 1.125 1 0.5|Z 2.5 2.125 1 0.75";
  EXPECT_EQ(updated(motion), "appended|" + all);
  EXPECT_EQ(updated(motion), "|" + all);
}

// Without a file, or before its columns line is written, the columns line
// is looked for again, quietly, at every update.
TEST_F(MarineMotion, ColumnsLineLookedForUntilWritten) {
  MotionHistory motion;
  ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  EXPECT_EQ(updated(motion), "missing|T");
  write("Mvt_hull.dat", "0.0 1.5 2.5\n");
  EXPECT_EQ(updated(motion), "|T");
  EXPECT_EQ(console.text(), "#COLUMNS line is not found in " + pathOf("Mvt_hull.dat") + "\n");
  append("Mvt_hull.dat", "#COLUMNS T = X Z\n0.5 1.25 2.25\n");
  EXPECT_EQ(updated(motion), "appended|File End is reached\nT 0.5|X 1.25|Z 2.25");
}

using marine::ExtraQuantities;

std::string describe(const ExtraQuantities& quantities) {
  std::ostringstream text;
  for (const marine::ExtraQuantity& quantity : quantities.quantities()) {
    text << quantity.name << " [" << quantity.unit << "]:";
    for (const double value : quantity.values) text << ' ' << value;
    text << '\n';
  }
  return text.str();
}

// Without a blank before "[" the name loses its last letter; the unit runs
// from the first "[" to the last "]".
TEST(ExtraQuantityTitle, SplitsIntoNameAndUnit) {
  std::string split;
  for (const char* title :
       {"Heave force [N]", "Trim", "Force[N]", "  Speed   [ m/s ]  ", "Ratio []", "A [b] [c]",
        "x[]", "[N] force", "Force ]N[", "Force [N", "Force N]"}) {
    const auto [name, unit] = marine::splitTitle(title);
    split += name + "|" + unit + ";";
  }
  EXPECT_EQ(split,
            "Heave force|N;Trim|;Forc|N;Speed|m/s;Ratio|;A|b] [c;|;[N] force|;Force ]N[|;"
            "Force [N|;Force N]|;");
}

TEST(ExtraQuantityLine, ReadsTheExpectedCountPaddingAShortLineWithZeros) {
  const auto read = [](std::string_view line, std::size_t count) {
    const ConsoleCapture console;
    std::ostringstream text;
    for (const double value : marine::readDataLine(line, count)) text << value << ' ';
    return text.str() + console.text();
  };
  const std::string unfinished = "Warning! Unfinished line '";
  EXPECT_EQ(read("  0.05 \t +1520.3\t\t-4.5e-2  ", 3), "0.05 1520.3 -0.045 ");
  EXPECT_EQ(read("1-2 3 4 5", 3), "1 -2 3 ");
  EXPECT_EQ(read("7", 0), "");
  EXPECT_EQ(read("1 2", 3), "1 2 0 " + unfinished + "1 2. Expected 3 values in the line.\n");
  EXPECT_EQ(read("", 2), "0 0 " + unfinished + ". Expected 2 values in the line.\n");
  EXPECT_EQ(read("1 a 3", 3), "1 0 0 " + unfinished + "1 a 3. Expected 3 values in the line.\n");
}

using ExtraQuantitiesFile = ScratchFolder;

TEST_F(ExtraQuantitiesFile, TitlesDataLinesAndARewrittenFile) {
  ExtraQuantities quantities;
  // What a fresh read of the file prints, then each quantity.
  const auto read = [&](const std::string& text) {
    if (!text.empty()) write("user_data.csv", text);
    const ConsoleCapture console;
    quantities.reset(folder_.string() + "/");
    quantities.update();
    return console.text() + "|" + describe(quantities);
  };
  EXPECT_EQ(read(""), "|");
  EXPECT_EQ(
      read("A\tB\tC\r\n1\t2\r\n4 5 6 7 8\n"),
      "Warning! Unfinished line '1\t2. Expected 3 values in the line.\n|A []: 1 4\nB []: 2 5\n"
      "C []: 0 6\n");
  EXPECT_EQ(read("Time [s]\tTrim\n"), "|Time [s]:\nTrim []:\n");
  EXPECT_EQ(read("Time [s]\tHeave force [N]\tTrim\n0.05\t1520.3\t0.01\n"),
            "|Time [s]: 0.05\nHeave force [N]: 1520.3\nTrim []: 0.01\n");
  // A new run: the positions chosen in the quantities kept stay where a quantity remains.
  quantities.quantities()[0].currentIteration = 2;
  quantities.quantities()[2].currentIteration = 1;
  write("user_data.csv", "Time [s]\tSinkage [m]\n0.05\t-0.1\n");
  EXPECT_EQ(quantities.update(), fileformat::Update::rewritten);
  EXPECT_EQ(describe(quantities) + std::to_string(quantities.quantities()[0].currentIteration) +
                std::to_string(quantities.quantities()[1].currentIteration),
            "Time [s]: 0.05\nSinkage [m]: -0.1\n20");
}

}  // namespace
