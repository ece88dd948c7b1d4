// Diagram and profile files, and the monitors the scripts load them into.
#include "turbo/blade_files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_capture.h"

namespace {

using turbo::DiagFile;
using turbo::ProfFile;
using Floats = std::vector<float>;

class BladeFile : public testing::Test {
 protected:
  BladeFile() {
    static int serial = 0;
    folder_ = std::filesystem::temp_directory_path() /
              ("blade_files_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    std::filesystem::create_directories(folder_);
    path_ = (folder_ / "row1.dia").string();
  }
  ~BladeFile() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& text) { std::ofstream(path_, std::ios::trunc) << text; }
  std::string cannotOpen(const char* kind) const {
    return std::string("*** ") + kind + " file  :: read() Cannot open the file :\n\t\t\t      " +
           path_ + "\n";
  }

  std::filesystem::path folder_;
  std::string path_;
};

// The first `count` numbers of a curve.
template <typename File>
Floats curve(const File& file, const char* name, int count) {
  Floats values;
  for (int n = 0; n < count; ++n) values.push_back(file.value(name, n));
  return values;
}

long peakMemoryKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST_F(BladeFile, DiagramHoldsBothSurfacesOfTwoSections) {
  // Per point: x of section 1, x of section 2, y of section 1, y of section 2.
  write(
      "2\n"
      "0.1 0.2 1.5 2.5\n"
      "0.3 0.4 -1e-2 3\n"
      "1\n"
      "5 6 7 8\n");
  DiagFile file(path_);
  ConsoleCapture console;
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(file.nbPts("Extrado_1"), 2);
  EXPECT_EQ(file.nbPts("Extrado_2"), 2);
  EXPECT_EQ(file.nbPts("Intrado_1"), 1);
  EXPECT_EQ(file.nbPts("Intrado_2"), 1);
  EXPECT_EQ(curve(file, "Extrado_1", 4), (Floats{0.1f, 1.5f, 0.3f, -1e-2f}));
  EXPECT_EQ(curve(file, "Extrado_2", 4), (Floats{0.2f, 2.5f, 0.4f, 3.0f}));
  EXPECT_EQ(curve(file, "Intrado_1", 2), (Floats{5, 7}));
  EXPECT_EQ(curve(file, "Intrado_2", 2), (Floats{6, 8}));

  for (const char* other : {"Extrado", "Intrado", "extrado_1", "Extrado_3", ""}) {
    EXPECT_EQ(file.nbPts(other), 0) << other;
    EXPECT_EQ(file.value(other, 0), 0.0f) << other;
  }
}

TEST_F(BladeFile, DiagramWithoutIntradoPoints) {
  write("2 1 2 3 4 5 6 7 8 0\n");
  DiagFile file(path_);
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(file.nbPts("Extrado_1"), 2);
  EXPECT_EQ(file.nbPts("Extrado_2"), 2);
  EXPECT_EQ(file.nbPts("Intrado_1"), 0);
  EXPECT_EQ(file.nbPts("Intrado_2"), 0);
  EXPECT_EQ(curve(file, "Extrado_1", 4), (Floats{1, 3, 5, 7}));
  EXPECT_EQ(curve(file, "Extrado_2", 4), (Floats{2, 4, 6, 8}));
}

TEST_F(BladeFile, ProfileHoldsOneSection) {
  write("2\n1 2\n3 4\n1\n-5 6.5\n");
  ProfFile file(path_);
  ConsoleCapture console;
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(file.nbPts("Extrado"), 2);
  EXPECT_EQ(file.nbPts("Intrado"), 1);
  EXPECT_EQ(curve(file, "Extrado", 4), (Floats{1, 2, 3, 4}));
  EXPECT_EQ(curve(file, "Intrado", 2), (Floats{-5, 6.5f}));
  for (const char* other : {"Extrado_1", "Intrado_2", "extrado", ""}) {
    EXPECT_EQ(file.nbPts(other), 0) << other;
    EXPECT_EQ(file.value(other, 0), 0.0f) << other;
  }
}

TEST_F(BladeFile, MissingFiles) {
  DiagFile diagram(path_);
  ProfFile profile(path_);
  {
    ConsoleCapture console;
    EXPECT_EQ(diagram.read(), 0);
    EXPECT_EQ(console.text(), cannotOpen("Diagram"));
  }
  {
    ConsoleCapture console;
    EXPECT_EQ(profile.read(), 0);
    EXPECT_EQ(console.text(), cannotOpen("Profile"));
  }
  EXPECT_EQ(diagram.nbPts("Extrado_1"), 0);
  EXPECT_EQ(profile.nbPts("Intrado"), 0);

  // A folder is no file either.
  const std::string folder = folder_.string();
  DiagFile folderDiagram(folder);
  ConsoleCapture console;
  EXPECT_EQ(folderDiagram.read(), 0);
  EXPECT_EQ(console.text(),
            "*** Diagram file  :: read() Cannot open the file :\n\t\t\t      " + folder + "\n");
}

// Each read starts from the top; larger counts make room for the new points.
TEST_F(BladeFile, RereadAfterTheSolverRewroteTheFile) {
  write("1 1 2 3 4 1 5 6 7 8\n");
  DiagFile diagram(path_);
  ASSERT_EQ(diagram.read(), 1);

  write("1 10 20 30 40 1 50 60 70 80\n");
  ASSERT_EQ(diagram.read(), 1);
  EXPECT_EQ(curve(diagram, "Extrado_1", 2), (Floats{10, 30}));
  EXPECT_EQ(curve(diagram, "Intrado_2", 2), (Floats{60, 80}));

  write("3 1 2 3 4 5 6 7 8 9 10 11 12\n2 13 14 15 16 17 18 19 20\n");
  ASSERT_EQ(diagram.read(), 1);
  EXPECT_EQ(diagram.nbPts("Extrado_2"), 3);
  EXPECT_EQ(diagram.nbPts("Intrado_1"), 2);
  EXPECT_EQ(curve(diagram, "Extrado_1", 6), (Floats{1, 3, 5, 7, 9, 11}));
  EXPECT_EQ(curve(diagram, "Extrado_2", 6), (Floats{2, 4, 6, 8, 10, 12}));
  EXPECT_EQ(curve(diagram, "Intrado_1", 4), (Floats{13, 15, 17, 19}));
  EXPECT_EQ(curve(diagram, "Intrado_2", 4), (Floats{14, 16, 18, 20}));

  write("1 1 2\n3 1 2 3 4 5 6\n");
  ProfFile profile(path_);
  ASSERT_EQ(profile.read(), 1);
  write("2 1 2 3 4\n4 5 6 7 8 9 10 11 12\n");
  ASSERT_EQ(profile.read(), 1);
  EXPECT_EQ(profile.nbPts("Extrado"), 2);
  EXPECT_EQ(profile.nbPts("Intrado"), 4);
  EXPECT_EQ(curve(profile, "Extrado", 4), (Floats{1, 2, 3, 4}));
  EXPECT_EQ(curve(profile, "Intrado", 8), (Floats{5, 6, 7, 8, 9, 10, 11, 12}));
}

// A count that the file cannot possibly hold is a damaged file, not a request
// for gigabytes.
TEST_F(BladeFile, HugeCountsInASmallFile) {
  const long before = peakMemoryKilobytes();
  const auto start = std::chrono::steady_clock::now();
  write("2000000000\n1 2 3 4\n");
  DiagFile diagram(path_);
  EXPECT_EQ(diagram.read(), 1);
  write("1 1 2 3 4\n2000000000 1 2 3 4\n");
  EXPECT_EQ(diagram.read(), 1);
  EXPECT_EQ(curve(diagram, "Extrado_1", 2), (Floats{1, 3}));
  write("2000000000 1 2\n");
  ProfFile profile(path_);
  EXPECT_EQ(profile.read(), 1);
  write("1 1 2 2000000000 3 4\n");
  EXPECT_EQ(profile.read(), 1);
  EXPECT_EQ(curve(profile, "Extrado", 2), (Floats{1, 2}));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  EXPECT_LT(peakMemoryKilobytes() - before, 100 * 1024);
}

TEST_F(BladeFile, DiagramMonitorReportsAFileItCannotRead) {
  turbo::DiagramMonitor monitor(path_);
  EXPECT_EQ(monitor.name(), path_);
  {
    // Inactive: reads nothing.
    ConsoleCapture console;
    monitor.update();
    EXPECT_EQ(console.text(), "");
  }
  monitor.active = true;
  {
    ConsoleCapture console;
    monitor.update();
    monitor.update();
    const std::string lines = cannotOpen("Diagram") + "can not read diagram file!\n";
    EXPECT_EQ(console.text(), lines + lines);
  }
  write("1 1 2 3 4 0\n");
  ConsoleCapture console;
  monitor.update();
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(monitor.file().nbPts("Extrado_1"), 1);
}

TEST_F(BladeFile, ProfileMonitorReportsOnlyTheOpenFailure) {
  turbo::ProfileMonitor monitor(path_);
  monitor.active = true;
  ConsoleCapture console;
  monitor.update();
  EXPECT_EQ(console.text(), cannotOpen("Profile"));
}

// Adding a path twice gives two monitors; lookups find the first. Every add
// and update rereads every monitor of that kind.
TEST_F(BladeFile, RegistryKeepsEveryAddedFile) {
  turbo::BladeFileRegistry<turbo::DiagramMonitor> diagrams;
  int busy = 7;
  const std::string missing = cannotOpen("Diagram") + "can not read diagram file!\n";
  {
    ConsoleCapture console;
    diagrams.add(path_, busy);
    EXPECT_EQ(console.text(), missing);
  }
  EXPECT_EQ(busy, 0);
  turbo::DiagramMonitor* first = diagrams.find(path_);
  ASSERT_NE(first, nullptr);
  EXPECT_TRUE(first->active);
  {
    ConsoleCapture console;
    diagrams.add(path_, busy);
    EXPECT_EQ(console.text(), missing + missing);
  }
  EXPECT_EQ(diagrams.find(path_), first);
  EXPECT_EQ(diagrams.find(path_ + " "), nullptr);
  {
    ConsoleCapture console;
    diagrams.updateAll();
    EXPECT_EQ(console.text(), missing + missing);
  }

  write("1 1 2 3 4 0\n");
  ConsoleCapture console;
  diagrams.updateAll();
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(first->file().nbPts("Extrado_1"), 1);

  turbo::BladeFileRegistry<turbo::ProfileMonitor> profiles;
  profiles.add(path_, busy);
  EXPECT_EQ(profiles.find(path_)->file().nbPts("Extrado"), 1);
  EXPECT_EQ(curve(profiles.find(path_)->file(), "Extrado", 2), (Floats{1, 2}));
}

}  // namespace
