// Diagram and profile files, and the monitors the scripts load them into.
#include "turbo/blade_files.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"

namespace {

class BladeFile : public ScratchFolder {
 protected:
  std::string cannotOpen(const char* kind, const std::string& path) const {
    return std::string("*** ") + kind + " file  :: read() Cannot open the file :\n\t\t\t      " +
           path + "\n";
  }
  std::string path_ = pathOf("row1.dia");
};

// Each curve of the file's kind from the position before it to the one
// after its points.
std::string curvesOf(const turbo::BladeSectionFile& file, bool diagram) {
  const std::vector<std::string> names =
      diagram ? std::vector<std::string>{"Extrado_1", "Extrado_2", "Intrado_1", "Intrado_2"}
              : std::vector<std::string>{"Extrado", "Intrado"};
  std::ostringstream text;
  for (const std::string& name : names) {
    text << '|';
    for (int n = -1; n <= 2 * file.nbPts(name); ++n) text << ' ' << file.value(name, n);
  }
  return text.str();
}

// Each read starts from the top; a larger count makes room for the new
// points and a curve never shrinks. A count larger than the file or negative
// is a damaged file: that side and the rest are not read.
TEST_F(BladeFile, Reads) {
  const struct {
    bool diagram;
    const char* text;
    const char* curves;
  } cases[] = {
      // Per point the x of each section, then the y of each.
      {true, "2\n0.1 0.2 1.5 2.5\n0.3 0.4 -1e-2 3\n1\n5 6 7 8\n",
       "| 0 0.1 1.5 0.3 -0.01 0| 0 0.2 2.5 0.4 3 0| 0 5 7 0| 0 6 8 0"},
      {true, "3 1 2 3 4 5 6 7 8 9 10 11 12\n2 13 14 15 16 17 18 19 20\n",
       "| 0 1 3 5 7 9 11 0| 0 2 4 6 8 10 12 0| 0 13 15 17 19 0| 0 14 16 18 20 0"},
      {true, "0 1 5 6 7 8\n", "| 0 1| 0 2| 0 5 7 17| 0 6 8 18"},
      {true, "1 1 2 3 4\n2000000000 1 2 3 4\n", "| 0 1 3 5| 0 2 4 6| 0 5| 0 6"},
      {true, "-1 1 2 3 4\n", "| 0 1| 0 2| 0 5| 0 6"},
      {false, "2\n1 2\n3 4\n1\n-5 6.5\n", "| 0 1 2 3 4 0| 0 -5 6.5 0"},
      {false, "1 1 2 2000000000 3 4\n", "| 0 1 2 3| 0 -5"},
  };
  turbo::DiagFile diagram(path_);
  turbo::ProfFile profile(path_);
  for (const auto& c : cases) {
    write("row1.dia", c.text);
    turbo::BladeSectionFile& file = c.diagram ? static_cast<turbo::BladeSectionFile&>(diagram)
                                              : static_cast<turbo::BladeSectionFile&>(profile);
    const ConsoleCapture console;
    EXPECT_EQ(file.read(), 1) << c.text;
    EXPECT_EQ(curvesOf(file, c.diagram), c.curves) << c.text;
    EXPECT_EQ(console.text(), "") << c.text;
  }
  // Names are whole and case-sensitive, and each kind has its own.
  for (const char* other : {"Extrado", "Intrado_3", "extrado_1", ""})
    EXPECT_EQ(diagram.nbPts(other) + diagram.value(other, 0), 0) << other;
  for (const char* other : {"Extrado_1", "intrado", ""})
    EXPECT_EQ(profile.nbPts(other) + profile.value(other, 0), 0) << other;
}

// Only an active monitor reads, a diagram monitor telling a file it cannot
// read. Adding a path twice gives two monitors, lookups find the first, and
// every add and update rereads every monitor of that kind.
TEST_F(BladeFile, MonitorsAndTheirRegistry) {
  const std::string missing = cannotOpen("Diagram", path_) + "can not read diagram file!\n";
  turbo::DiagramMonitor inactive(path_);
  turbo::BladeFileRegistry<turbo::DiagramMonitor> diagrams;
  turbo::BladeFileRegistry<turbo::ProfileMonitor> profiles;
  int busy = 7;
  ConsoleCapture console;
  inactive.update();
  diagrams.add(path_, busy);
  EXPECT_EQ(busy, 0);
  turbo::DiagramMonitor* first = diagrams.find(path_);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->name(), path_);
  diagrams.add(path_, busy);
  EXPECT_EQ(diagrams.find(path_), first);
  EXPECT_EQ(diagrams.find(path_ + " "), nullptr);
  diagrams.updateAll();
  profiles.add(path_, busy);
  EXPECT_EQ(console.text(),
            missing + missing + missing + missing + missing + cannotOpen("Profile", path_));
  write("row1.dia", "1 1 2 3 4 0\n");
  diagrams.updateAll();
  profiles.updateAll();
  EXPECT_EQ(first->file().nbPts("Extrado_1"), 1);
  EXPECT_EQ(profiles.find(path_)->file().value("Extrado", 1), 2);
  EXPECT_EQ(turbo::DiagFile(folder_.string()).read(), 0);
  EXPECT_EQ(console.text(), missing + missing + missing + missing + missing +
                                cannotOpen("Profile", path_) +
                                cannotOpen("Diagram", folder_.string()));
}

}  // namespace
