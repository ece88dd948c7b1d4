// The motion files of moving bodies.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "console_capture.h"
#include "fileformat/line_helpers.h"
#include "marine/motion_history.h"
#include "scratch_folder.h"

namespace {

using marine::MotionHistory;
using Doubles = std::vector<double>;
using Names = std::vector<std::string>;
using fileformat::Update;

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
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(motion.update(), Update::appended);
  EXPECT_EQ(console.text(),
            "Bad File Format\nBad File Format\nBad File Format\n"
            "Bad File Format\nFile End is reached\n");
  EXPECT_EQ(motion.columnNames(), (Names{"X", "Z"}));
  EXPECT_EQ(motion.times(), (Doubles{0.0, 0.2, 1.0}));
  EXPECT_EQ(motion.values(0), (Doubles{1.5, 1.125, 1.0}));
  EXPECT_EQ(motion.values(1), (Doubles{2.5, 2.125, 1.0}));
  // Every update ends with the same line, new rows or not.
  append("Mvt_hull.dat", " 0.75\n");
  EXPECT_EQ(motion.update(), Update::appended);
  EXPECT_EQ(motion.update(), Update::unchanged);
  EXPECT_EQ(motion.values(1).back(), 0.75);
  EXPECT_EQ(console.text().substr(console.text().rfind("Bad File Format\n") + 16),
            "File End is reached\nFile End is reached\nFile End is reached\n");
}

TEST_F(MarineMotion, ColumnsLineMissingThenWritten) {
  write("Mvt_hull.dat", "0.0 1.5 2.5\n");
  MotionHistory motion;
  ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  EXPECT_TRUE(motion.columnNames().empty());
  // Looked for again, quietly, on every update.
  EXPECT_EQ(motion.update(), Update::unchanged);
  EXPECT_EQ(console.text(), "#COLUMNS line is not found in " + pathOf("Mvt_hull.dat") + "\n");
  append("Mvt_hull.dat", "#COLUMNS T = X Z\n0.5 1.25 2.25\n");
  EXPECT_NE(motion.update(), Update::missing);
  EXPECT_EQ(motion.columnNames(), (Names{"X", "Z"}));
  EXPECT_EQ(motion.times(), Doubles{0.5});
  EXPECT_EQ(motion.values(1), Doubles{2.25});
}

TEST_F(MarineMotion, MissingFileFolderOrNoFileAtAll) {
  for (const std::string& path : {pathOf("Mvt_absent.dat"), folder_.string(), std::string()}) {
    MotionHistory motion;
    ConsoleCapture console;
    if (!path.empty()) motion.open(path);
    EXPECT_EQ(motion.isOpen(), !path.empty());
    EXPECT_EQ(motion.update(), Update::missing) << path;
    EXPECT_EQ(console.text(), path.empty() ? "" : "#COLUMNS line is not found in " + path + "\n");
  }
}

// A header naming more columns than any computation has: the first ones are
// kept and the cut is told.
TEST_F(MarineMotion, ColumnsPastTheMostAreCut) {
  std::string names;
  for (std::size_t c = 0; c < fileformat::kMaxColumns + 10; ++c) names += " q";
  write("Mvt_hull.dat", "#COLUMNS T =" + names + "\n");
  MotionHistory motion;
  const ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  EXPECT_EQ(motion.columnNames().size(), fileformat::kMaxColumns);
  EXPECT_EQ(console.text(), "More than 65536 columns in " + pathOf("Mvt_hull.dat") +
                                "; the columns after them are not read\n");
}

}  // namespace
