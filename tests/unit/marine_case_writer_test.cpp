// The marine solver stand-in read by the monitor's marine reader: the case it
// writes loads whole, grows by exactly the rows appended (never by half a
// line), and a restart shows as a new run.
#include "solver_simulator/marine_case_writer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "console_capture.h"
#include "marine/marine_names.h"
#include "marine/project_monitor_marine.h"

namespace {

namespace fs = std::filesystem;
using marine::ProjectMonitorMarine;
using solver_simulator::CaseSetup;
using solver_simulator::defaultCaseSetup;
using solver_simulator::LineEnd;
using solver_simulator::MarineCaseWriter;
using solver_simulator::RunMode;
using solver_simulator::RunStamp;

int occurrences(const std::string& text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos;
       at = text.find(part, at + part.size()))
    ++count;
  return count;
}

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// What the project holds, in counts.
struct Counts {
  std::size_t residualRecords;
  int forceRows;      // per body, per force file
  int convergedRows;  // per body, per converged series
  std::size_t motionRows;
  int diskSteps;
};

class MarineCaseWriterTest : public testing::Test {
 protected:
  MarineCaseWriterTest() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("marine_case_writer_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
  }
  ~MarineCaseWriterTest() override { fs::remove_all(folder_); }

  static MarineCaseWriter written(const CaseSetup& setup, int iterations) {
    MarineCaseWriter writer(setup);
    writer.writeHeaders();
    for (int i = 0; i < iterations; ++i) writer.appendIteration();
    return writer;
  }

  // Checks that every body and sub-body holds the same number of rows in
  // each of its force and moment histories, and answers the counts.
  static Counts countsOf(const ProjectMonitorMarine& project) {
    const marine::BodyObject& hull = project.bodies().at(0);
    Counts counts{
        project.resFile().recordCount(), hull.realTimesteps(marine::Component::force, "Fx"),
        project.unsteady() ? hull.convergedLength(marine::Component::force, 1) : 0,
        project.motionBodies().empty() ? 0 : project.motionBodies()[0]->motion().rowCount(),
        project.actuatorDisks().diskCount() == 0 ? 0 : project.actuatorDisks().disk(0).stepCount()};
    const auto expectSameRows = [&](const marine::ComponentHistories& owner,
                                    const std::string& name) {
      for (std::size_t q = 0; q < marine::kForceNames.size(); q += 2) {
        EXPECT_EQ(owner.realTimesteps(marine::Component::force, marine::kForceNames[q]),
                  counts.forceRows)
            << name;
        EXPECT_EQ(owner.realTimesteps(marine::Component::moment, marine::kMomentNames[q]),
                  counts.forceRows)
            << name;
        if (!project.unsteady()) continue;
        EXPECT_EQ(owner.convergedLength(marine::Component::force, static_cast<int>(q + 1)),
                  counts.convergedRows)
            << name;
        EXPECT_EQ(owner.convergedLength(marine::Component::moment, static_cast<int>(q + 1)),
                  counts.convergedRows)
            << name;
      }
    };
    for (const marine::BodyObject& body : project.bodies()) {
      expectSameRows(body, body.name());
      EXPECT_EQ(body.times().size(), static_cast<std::size_t>(counts.forceRows)) << body.name();
      for (std::size_t s = 0; s < body.subBodyCount(); ++s) {
        expectSameRows(body.subBody(s), body.subBody(s).name());
      }
    }
    for (int d = 0; d < project.actuatorDisks().diskCount(); ++d) {
      EXPECT_EQ(project.actuatorDisks().disk(d).stepCount(), counts.diskSteps);
    }
    return counts;
  }

  static void expectCounts(const ProjectMonitorMarine& project, const Counts& expected) {
    const Counts counts = countsOf(project);
    EXPECT_EQ(counts.residualRecords, expected.residualRecords);
    EXPECT_EQ(counts.forceRows, expected.forceRows);
    EXPECT_EQ(counts.convergedRows, expected.convergedRows);
    EXPECT_EQ(counts.motionRows, expected.motionRows);
    EXPECT_EQ(counts.diskSteps, expected.diskSteps);
  }

  // Messages of a reader that found something wrong in the files.
  static void expectNoComplaint(const std::string& console) {
    for (const std::string_view complaint :
         {"Unknown body", "Wrong eff file format", "Bad File Format", "wrong index", "is not found",
          "Cannot read", "Error", "BAD FILE FORMAT", "Warning"}) {
      EXPECT_EQ(occurrences(console, complaint), 0) << complaint << " in:\n" << console;
    }
  }

  fs::path folder_;
};

TEST_F(MarineCaseWriterTest, TheDefaultUnsteadyCaseLoadsWhole) {
  const MarineCaseWriter writer = written(defaultCaseSetup(folder_), 60);
  ProjectMonitorMarine project(writer.setup().residualPath().string());
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  EXPECT_TRUE(project.refresh().succeeded);
  expectNoComplaint(console.text());

  EXPECT_TRUE(project.unsteady());
  EXPECT_EQ(project.creationStamp(), "21/11/2026 14:05:09");
  ASSERT_EQ(project.bodies().size(), 2u);
  const marine::BodyObject& hull = project.bodies()[0];
  EXPECT_EQ(hull.name(), "hull");
  ASSERT_EQ(hull.subBodyCount(), 2u);
  EXPECT_EQ(hull.subBody(0).name(), "keel");
  EXPECT_EQ(hull.subBody(1).name(), "bulb");
  ASSERT_TRUE(hull.hasGravityCentre());
  EXPECT_EQ(hull.gravityCentre(), (std::array<double, 3>{61.2, 0.0, -1.5}));
  EXPECT_EQ(project.bodies()[1].name(), "rudder");
  EXPECT_EQ(project.bodies()[1].subBodyCount(), 0u);
  EXPECT_FALSE(project.bodies()[1].hasGravityCentre());

  // 12 time steps of 5 iterations.
  expectCounts(project, {60, 60, 12, 12, 12});
  EXPECT_EQ(project.resFile().residualCount(), 6u);
  EXPECT_EQ(project.resFile().record(59).iterationNumber(), 60);
  EXPECT_EQ(hull.iterations().back(), 60);
  EXPECT_DOUBLE_EQ(hull.times().front(), 0.05);
  ASSERT_EQ(hull.convergedTimes().size(), 12u);
  EXPECT_DOUBLE_EQ(hull.convergedTimes().back(), 0.6);
  // A time step's converged value is its last iteration's.
  EXPECT_EQ(hull.converged(marine::Component::force, 1, 11),
            hull.element(marine::Component::force, "Fx", 59));
  // The total is the pressure part plus the viscous part (7 digits each).
  EXPECT_NEAR(hull.element(marine::Component::force, "Fx", 59),
              hull.element(marine::Component::force, "FxP", 59) +
                  hull.element(marine::Component::force, "FxV", 59),
              1e-2);

  ASSERT_EQ(project.motionBodies().size(), 1u);
  EXPECT_EQ(project.motionBodies()[0]->name(), "hull");
  EXPECT_EQ(project.motionBodies()[0]->motion().columnNames(),
            (std::vector<std::string>{"X", "Y", "Z", "PHI", "THETA", "PSI"}));
  ASSERT_EQ(project.actuatorDisks().diskCount(), 2);
  EXPECT_EQ(project.actuatorDisks().disk(1).quantityName(0), "Thrust");
  EXPECT_EQ(project.actuatorDisks().disk(1).quantityName(1), "Torque");

  // The monitor does not read the user quantities: their titles and one row
  // per time step.
  const std::string userData = contents(folder_ / "user_data.csv");
  EXPECT_TRUE(
      userData.starts_with("Time [s]\tHeave force [N]\tPitch moment [N.m]\tFroude number\n0.05\t"));
  EXPECT_EQ(occurrences(userData, "\n"), 13);
}

TEST_F(MarineCaseWriterTest, TheSteadyCaseHasOneStepPerIterationAndNoConvergedRows) {
  const MarineCaseWriter writer = written(defaultCaseSetup(folder_, RunMode::steady), 40);
  ProjectMonitorMarine project(writer.setup().residualPath().string());
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  expectNoComplaint(console.text());

  EXPECT_FALSE(project.unsteady());
  expectCounts(project, {40, 40, 0, 40, 40});
  const marine::BodyObject& hull = project.bodies()[0];
  EXPECT_EQ(hull.convergedSeriesCount(marine::Component::force), 0);
  EXPECT_TRUE(hull.convergedTimes().empty());
  EXPECT_DOUBLE_EQ(hull.times().back(), 40 * 0.05);
}

TEST_F(MarineCaseWriterTest, ARestartShowsOnlyTheNewRun) {
  MarineCaseWriter writer = written(defaultCaseSetup(folder_), 60);
  ProjectMonitorMarine project(writer.setup().residualPath().string());
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();

  const RunStamp later = writer.setup().stamp.plusSeconds(3600);
  writer.restart(later);
  for (int i = 0; i < 7; ++i) writer.appendIteration();
  const std::string before = console.text();
  EXPECT_TRUE(project.refresh().changed);
  EXPECT_EQ(occurrences(console.text().substr(before.size()), "Different solver run detected"), 1);
  EXPECT_EQ(project.creationStamp(), "21/11/2026 15:05:09");
  expectCounts(project, {7, 7, 1, 1, 1});
  EXPECT_EQ(project.resFile().record(0).iterationNumber(), 1);

  for (int i = 0; i < 3; ++i) writer.appendIteration();
  project.refresh();
  expectCounts(project, {10, 10, 2, 2, 2});
  EXPECT_EQ(occurrences(console.text(), "Different solver run detected"), 1);
}

TEST_F(MarineCaseWriterTest, AnAppendInTwoPiecesWritesTheSameFilesAsAWholeOne) {
  written(defaultCaseSetup(folder_ / "whole"), 23);
  MarineCaseWriter inPieces(defaultCaseSetup(folder_ / "pieces"));
  inPieces.writeHeaders();
  for (int i = 0; i < 23; ++i)
    inPieces.appendIteration(i % 3 == 0 ? LineEnd::cutLastLine : LineEnd::whole);
  inPieces.completeLines();

  int files = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_ / "whole")) {
    EXPECT_EQ(contents(entry.path()), contents(folder_ / "pieces" / entry.path().filename()))
        << entry.path().filename();
    ++files;
  }
  // The residual file, the body description, 18 force and moment files, the
  // hull's motion, the disks and the user quantities.
  EXPECT_EQ(files, 23);
}

TEST_F(MarineCaseWriterTest, AResumedRunCompletesItsHalfWrittenLinesAndGoesOn) {
  written(defaultCaseSetup(folder_ / "whole"), 13);
  {
    // Iteration 10 completes time step 2: every file holds half a line.
    MarineCaseWriter cut(defaultCaseSetup(folder_ / "resumed"));
    cut.writeHeaders();
    for (int i = 0; i < 10; ++i)
      cut.appendIteration(i == 9 ? LineEnd::cutLastLine : LineEnd::whole);
  }
  MarineCaseWriter resumed(defaultCaseSetup(folder_ / "resumed"));
  resumed.resume(10);
  for (int i = 0; i < 3; ++i) resumed.appendIteration();
  EXPECT_EQ(resumed.iterationsWritten(), 13);
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_ / "whole")) {
    EXPECT_EQ(contents(entry.path()), contents(folder_ / "resumed" / entry.path().filename()))
        << entry.path().filename();
  }

  // Files of another run are not taken up.
  CaseSetup other = defaultCaseSetup(folder_ / "resumed");
  other.seed = 2;
  MarineCaseWriter wrong(other);
  EXPECT_THROW(wrong.resume(13), std::runtime_error);
}

TEST_F(MarineCaseWriterTest, TheSeedAloneDecidesTheNumbers) {
  CaseSetup other = defaultCaseSetup(folder_ / "other");
  other.seed = 2;
  written(defaultCaseSetup(folder_ / "first"), 10);
  written(defaultCaseSetup(folder_ / "again"), 10);
  written(other, 10);
  EXPECT_EQ(contents(folder_ / "first" / "eff_Fx.dat"), contents(folder_ / "again" / "eff_Fx.dat"));
  EXPECT_NE(contents(folder_ / "first" / "eff_Fx.dat"), contents(folder_ / "other" / "eff_Fx.dat"));
}

TEST(RunStamp, ReadsAndWritesTheCreationStampAndCarriesSecondsOver) {
  const std::optional<RunStamp> stamp = RunStamp::parse("31/12/2026 23:59:30");
  ASSERT_TRUE(stamp);
  EXPECT_EQ(stamp->text(), "31/12/2026 23:59:30");
  EXPECT_EQ(stamp->plusSeconds(45).text(), "01/01/2027 00:00:15");
  EXPECT_LT(*stamp, stamp->plusSeconds(1));
  EXPECT_FALSE(RunStamp::parse("30/02/2026 10:00:00"));
  EXPECT_FALSE(RunStamp::parse("1/12/2026 10:00:00"));
  EXPECT_FALSE(RunStamp::parse("01/12/2026 24:00:00"));
}

}  // namespace
