// Motion files of moving bodies and the actuator-disk table, both read while
// the solver is still appending to them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/actuator_disks.h"
#include "marine/motion_history.h"
#include "scratch_folder.h"

namespace {

using marine::MotionHistory;
using Doubles = std::vector<double>;
using Names = std::vector<std::string>;

class MarineFolder : public ScratchFolder {};

using MarineMotion = MarineFolder;

TEST_F(MarineMotion, ColumnsAndGrowingRows) {
  write("Mvt_hull.dat",
        "# hull motion\n#COLUMNS T = X Y Z PHI THETA PSI\n"
        "0.00 0.0 0.0 -0.125 0.0 0.5 0.0\n");
  MotionHistory motion;
  ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(motion.columnNames(), (Names{"X", "Y", "Z", "PHI", "THETA", "PSI"}));
  EXPECT_EQ(motion.rowCount(), 0u);
  EXPECT_NE(motion.update(), fileformat::Update::missing);
  EXPECT_EQ(console.text(), "File End is reached\n");

  append("Mvt_hull.dat", "0.05 0.25 0.0 -0.25 0.0 0.75 0.0\n0.10 0.5 0.0");
  EXPECT_NE(motion.update(), fileformat::Update::missing);
  EXPECT_EQ(motion.rowCount(), 2u);
  append("Mvt_hull.dat", " -0.375 0.0 1.0 0.0\n");
  EXPECT_NE(motion.update(), fileformat::Update::missing);
  EXPECT_EQ(console.text(), "File End is reached\nFile End is reached\nFile End is reached\n");
  EXPECT_EQ(motion.times(), (Doubles{0.0, 0.05, 0.10}));
  EXPECT_EQ(motion.values(0), (Doubles{0.0, 0.25, 0.5}));
  EXPECT_EQ(motion.values(2), (Doubles{-0.125, -0.25, -0.375}));
  EXPECT_EQ(motion.values(4), (Doubles{0.5, 0.75, 1.0}));
}

TEST_F(MarineMotion, ShortRowIsReportedAndSkipped) {
  write("Mvt_hull.dat",
        "#COLUMNS T = X Z\r\n0.0 1.5 2.5\r\n0.1 1.25\r\n\r\n# comment\r\n0.2 1.125 2.125 "
        "9.0\r\n0.3\r\n");
  MotionHistory motion;
  ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  EXPECT_NE(motion.update(), fileformat::Update::missing);
  EXPECT_EQ(console.text(), "Bad File Format\nBad File Format\nFile End is reached\n");
  EXPECT_EQ(motion.columnNames(), (Names{"X", "Z"}));
  EXPECT_EQ(motion.times(), (Doubles{0.0, 0.2}));
  EXPECT_EQ(motion.values(0), (Doubles{1.5, 1.125}));
  EXPECT_EQ(motion.values(1), (Doubles{2.5, 2.125}));
}

TEST_F(MarineMotion, ColumnsLineMissingThenWritten) {
  write("Mvt_hull.dat", "0.0 1.5 2.5\n");
  MotionHistory motion;
  ConsoleCapture console;
  motion.open(pathOf("Mvt_hull.dat"));
  EXPECT_EQ(console.text(), "#COLUMNS line is not found in " + pathOf("Mvt_hull.dat") + "\n");
  EXPECT_TRUE(motion.columnNames().empty());
  EXPECT_EQ(motion.update(), fileformat::Update::unchanged);
  // Looked for again, quietly, on every update.
  EXPECT_EQ(console.text(), "#COLUMNS line is not found in " + pathOf("Mvt_hull.dat") + "\n");
  append("Mvt_hull.dat", "#COLUMNS T = X Z\n0.5 1.25 2.25\n");
  EXPECT_NE(motion.update(), fileformat::Update::missing);
  EXPECT_EQ(motion.columnNames(), (Names{"X", "Z"}));
  EXPECT_EQ(motion.times(), Doubles{0.5});
  EXPECT_EQ(motion.values(1), Doubles{2.25});
}

TEST_F(MarineMotion, MissingFileAndFolder) {
  for (const std::string& path : {pathOf("Mvt_absent.dat"), folder_.string()}) {
    MotionHistory motion;
    ConsoleCapture console;
    motion.open(path);
    EXPECT_EQ(motion.update(), fileformat::Update::missing);
    EXPECT_EQ(console.text(), "#COLUMNS line is not found in " + path + "\n");
    EXPECT_EQ(motion.rowCount(), 0u);
  }
}

TEST_F(MarineMotion, NotOpenedMeansNoMotion) {
  MotionHistory motion;
  EXPECT_FALSE(motion.isOpen());
  ConsoleCapture console;
  EXPECT_EQ(motion.update(), fileformat::Update::missing);
  EXPECT_EQ(console.text(), "");
}

// ---------------------------------------------------------------------------
// Actuator disks

using MarineActuatorDisks = MarineFolder;

TEST_F(MarineActuatorDisks, TwoDisksWithTwoQuantities) {
  write("eff_AD.dat",
        "VARIABLES = \"T\" \"Load1\" \"Speed1\" \"Load2\" \"Speed2\"\n"
        "0.0 1.5 10.0 2.5 20.0\n"
        "0.1 1.25 11.0 2.25 21.0\n"
        "0.2 1.125 12.0 2.125 22.0\n");
  marine::ActuatorDiskTable table;
  table.reset(folder_.string() + "/");
  EXPECT_EQ(table.diskCount(), 0);
  ConsoleCapture console;
  table.update();
  EXPECT_EQ(console.text(), "");
  ASSERT_EQ(table.diskCount(), 2);
  for (int d = 0; d < 2; ++d) {
    const marine::ActuatorDisk disk = table.disk(d);
    ASSERT_EQ(disk.quantityCount(), 2) << d;
    EXPECT_EQ(disk.quantityName(0), "Load") << d;
    EXPECT_EQ(disk.quantityName(1), "Speed") << d;
    EXPECT_EQ(disk.stepCount(), 3) << d;
  }
  EXPECT_EQ(table.disk(0).value(0, 2), 1.125);
  EXPECT_EQ(table.disk(0).value(1, 0), 10.0);
  EXPECT_EQ(table.disk(1).value(0, 1), 2.25);
  EXPECT_EQ(table.disk(1).value(1, 2), 22.0);
}

TEST_F(MarineActuatorDisks, MissingFileGivesNoDiskAndNoMessage) {
  marine::ActuatorDiskTable table;
  table.reset(folder_.string() + "/");
  ConsoleCapture console;
  table.update();
  table.update();
  EXPECT_EQ(table.diskCount(), 0);
  EXPECT_EQ(console.text(), "");
  // It may appear later.
  write("eff_AD.dat", "VARIABLES = \"Load1\"\n1.5\n");
  table.update();
  ASSERT_EQ(table.diskCount(), 1);
  EXPECT_EQ(table.disk(0).stepCount(), 1);
  // A reset forgets the disks until the file is read again.
  table.reset(folder_.string() + "/");
  EXPECT_EQ(table.diskCount(), 0);
  table.update();
  EXPECT_EQ(table.diskCount(), 1);
  EXPECT_EQ(table.disk(0).stepCount(), 1);
}

}  // namespace
