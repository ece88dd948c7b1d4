// Loading a marine computation from its folder and refreshing it while the
// solver writes: the progress lines, the bodies in use, what the scripts are
// told about bad files, and what happens when the solver starts over.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/marine_names.h"
#include "marine/monitor_marine.h"
#include "marine/project_monitor_marine.h"
#include "marine/script_hooks.h"

namespace {

namespace fs = std::filesystem;
using marine::BodyObject;
using marine::ProjectMonitorMarine;
using Doubles = std::vector<double>;

// Records what the program asks the scripts to evaluate.
class RecordingEvaluator : public marine::ScriptEvaluator {
 public:
  RecordingEvaluator() { marine::setScriptEvaluator(this); }
  ~RecordingEvaluator() override { marine::setScriptEvaluator(nullptr); }
  void evaluate(const std::string& script) override { scripts.push_back(script); }
  std::vector<std::string> scripts;
};

const std::string kStamp = "07/03/2018 13:34:44";
const std::string kLaterStamp = "08/03/2018 09:00:00";

std::string residualText(const std::string& stamp, const std::string& rows,
                         const std::string& mode = "UNSTEADY") {
  return (stamp.empty() ? "" : "#CREATED " + stamp + "\n") + "#QV_BEGIN\nCALCUL\nMODE " + mode +
         "\n#QV_END\n#COLUMNS itnl cpums t ResU ResP\n" + rows;
}

const std::string kResidualRows = "1 0.4 0.0 0.5 0.25\n2 0.8 0.0 0.375 0.125\n";

// The bodies as eff_Fx.dat states them.
const std::string kFxBodies =
    "#QV_BEGIN\nBODY\nNAME hull\n#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_END\n"
    "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n";

// The bodies as the body description states them: one more.
const std::string kBodyDescription =
    "#QV_BEGIN\nBODY\nNAME hull\nGRAVITY_CENTER 61.2 0.0 -1.5\n#QV_BEGIN\nSUBBODY\nNAME "
    "keel\n#QV_END\n#QV_END\n"
    "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n"
    "#QV_BEGIN\nBODY\nNAME skeg\n#QV_END\n";

const std::string kColumns =
    "#QV_BEGIN\nVARIABLES = T itnl Q Q Q\nNAMES = hull hull:keel rudder\n#QV_END\n#COLUMNS T itnl "
    "hull hull:keel rudder\n";

// A value that tells which file, row and column it came from: file k, plain
// row r (or the converged row, r = 5), column c.
double valueOf(int file, int row, int column) { return file * 10 + row + (column + 1) * 0.125; }

std::string rowText(double time, int iteration, int file, int row) {
  std::string text = std::to_string(time) + " " + std::to_string(iteration);
  for (int c = 0; c < 3; ++c) text += " " + std::to_string(valueOf(file, row, c));
  return text + "\n";
}

// Two plain rows and, between them, the converged row of the first step.
std::string effRows(int file) {
  return rowText(0.0, 1, file, 0) + rowText(-0.05, 1, file, 5) + rowText(0.05, 2, file, 1);
}

class MarineProject : public testing::Test {
 protected:
  MarineProject() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("marine_case_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    fs::create_directories(folder_);
    dir_ = folder_.string() + "/";
    res_ = dir_ + "ship.res";
  }
  ~MarineProject() override { fs::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) {
    std::ofstream(dir_ + name, std::ios::binary | std::ios::trunc) << text;
  }
  void append(const std::string& name, const std::string& text) {
    std::ofstream(dir_ + name, std::ios::binary | std::ios::app) << text;
  }

  std::string fxHeader(const std::string& mode = "UNSTEADY") const {
    return "#QV_BEGIN\nCALCUL\nMODE " + mode + "\n#QV_END\n" + kFxBodies + kColumns;
  }

  // The 18 force and moment files, each with its own values.
  void writeComponentFiles(const std::string& mode = "UNSTEADY") {
    for (int k = 0; k < 9; ++k) {
      const std::string force(marine::kForceFileNames[static_cast<std::size_t>(k)]);
      write(force, (k == 0 ? fxHeader(mode) : kColumns) + effRows(k));
      write(std::string(marine::kMomentFileNames[static_cast<std::size_t>(k)]),
            kColumns + effRows(10 + k));
    }
  }

  void writeCase() {
    write("ship.res", residualText(kStamp, kResidualRows));
    writeComponentFiles();
    write("ship_body_param.dat", kBodyDescription);
  }

  std::string stampLine(const std::string& stamp = kStamp) const {
    return "File '" + res_ + "' created on " + stamp + "\n";
  }
  std::string fallbackLines() const {
    return "Reading eff_Fx.dat for steadiness...\nMode: UNSTEADY\nFallback body: hull\nFallback "
           "body: rudder\n"
           "Reading ...body_param.dat file for body structure ...\n";
  }
  static constexpr const char* kTrueBodyLines =
      "True body: hull\nTrue body: rudder\nTrue body: skeg\n";

  fs::path folder_;
  std::string dir_;
  std::string res_;
};

// ---------------------------------------------------------------------------
// Loading

TEST_F(MarineProject, LoadWithBodyDescriptionAndMotionBody) {
  writeCase();
  write("Mvt_hull.dat", "#COLUMNS T = X Z\n0.0 0.5 0.25\n");
  ProjectMonitorMarine project(res_);
  RecordingEvaluator evaluator;
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  EXPECT_EQ(console.text(),
            stampLine() + fallbackLines() + kTrueBodyLines + "Found Mvt body: hull\n");
  EXPECT_TRUE(evaluator.scripts.empty());
  EXPECT_TRUE(project.loaded());
  EXPECT_TRUE(project.unsteady());
  EXPECT_EQ(project.folder(), dir_);
  EXPECT_EQ(project.creationStamp(), kStamp);

  ASSERT_EQ(project.bodies().size(), 3u);
  EXPECT_EQ(project.bodies()[0].name(), "hull");
  EXPECT_TRUE(project.bodies()[0].hasGravityCentre());
  ASSERT_EQ(project.bodies()[0].subBodyCount(), 1u);
  EXPECT_EQ(project.bodies()[0].subBody(0).name(), "keel");
  EXPECT_EQ(project.bodies()[2].name(), "skeg");
  ASSERT_EQ(project.motionBodies().size(), 1u);
  EXPECT_EQ(project.motionBodies()[0]->name(), "hull");
  // Nothing of the rows yet: they come with the refreshes.
  EXPECT_EQ(project.resFile().recordCount(), 0u);
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "Fx"), 0);
}

TEST_F(MarineProject, FirstRefreshDistributesEveryFile) {
  writeCase();
  write("Mvt_hull.dat", "#COLUMNS T = X Z\n0.0 0.5 0.25\n0.05 0.75 0.375\n");
  write("eff_AD.dat", "VARIABLES = \"T\" \"Load1\" \"Load2\"\n0.0 1.5 2.5\n");
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  const std::size_t loadOutput = console.text().size();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_TRUE(refresh.changed);
  EXPECT_EQ(console.text().substr(loadOutput), "File End is reached\n");

  EXPECT_EQ(project.resFile().recordCount(), 2u);
  EXPECT_EQ(project.resFile().record(1).valueOf("ResU"), 0.375);
  const BodyObject& hull = project.bodies()[0];
  const BodyObject& rudder = project.bodies()[1];
  const BodyObject& skeg = project.bodies()[2];
  const struct {
    const char* quantity;
    int file;
  } forces[] = {{"Fx", 0},  {"FxP", 1}, {"FxV", 2}, {"Fy", 3}, {"FyP", 4},
                {"FyV", 5}, {"Fz", 6},  {"FzP", 7}, {"FzV", 8}};
  for (const auto& f : forces) {
    EXPECT_EQ(hull.element(marine::Component::force, f.quantity, 0), valueOf(f.file, 0, 0))
        << f.quantity;
    EXPECT_EQ(hull.element(marine::Component::force, f.quantity, 1), valueOf(f.file, 1, 0))
        << f.quantity;
    EXPECT_EQ(hull.subBody(0).element(marine::Component::force, f.quantity, 1),
              valueOf(f.file, 1, 1))
        << f.quantity;
    EXPECT_EQ(rudder.element(marine::Component::force, f.quantity, 0), valueOf(f.file, 0, 2))
        << f.quantity;
    EXPECT_EQ(hull.converged(marine::Component::force, 2 * f.file + 1, 0), valueOf(f.file, 5, 0))
        << f.quantity;
    EXPECT_EQ(rudder.converged(marine::Component::force, 2 * f.file + 1, 0), valueOf(f.file, 5, 2))
        << f.quantity;
  }
  EXPECT_EQ(hull.element(marine::Component::moment, "Mx", 0), valueOf(10, 0, 0));
  EXPECT_EQ(rudder.element(marine::Component::moment, "MzV", 1), valueOf(18, 1, 2));
  EXPECT_EQ(hull.subBody(0).converged(marine::Component::moment, 11, 0), valueOf(15, 5, 1));
  EXPECT_EQ(hull.realTimesteps(marine::Component::force, "Fx"), 2);
  EXPECT_EQ(hull.convergedIterations(marine::Component::moment, 1), 1);
  // A body of the description that no file names has the rows' times only.
  EXPECT_EQ(skeg.realTimesteps(marine::Component::force, "Fx"), 0);
  EXPECT_EQ(skeg.times(), (Doubles{0.0, 0.05}));
  EXPECT_EQ(skeg.iterations(), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(hull.convergedTimes(), Doubles{0.05});

  ASSERT_EQ(project.motionBodies().size(), 1u);
  EXPECT_EQ(project.motionBodies()[0]->motion().times(), (Doubles{0.0, 0.05}));
  EXPECT_EQ(project.motionBodies()[0]->motion().values(1), (Doubles{0.25, 0.375}));
  EXPECT_EQ(project.actuatorDisks().diskCount(), 2);
  EXPECT_EQ(project.actuatorDisks().disk(1).value(0, 0), 2.5);
}

TEST_F(MarineProject, FallbackBodiesWithoutBodyDescription) {
  write("ship.res", residualText(kStamp, kResidualRows));
  writeComponentFiles();
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  EXPECT_EQ(console.text(), stampLine() + fallbackLines() + "Cannot read file " + dir_ +
                                "ship_body_param.dat. Please check if the file exists \n"
                                "Warning! Couldn't find bodies in " +
                                dir_ +
                                "ship_body_param.dat.\nGoing to fallback mode...\n"
                                "Body Motion List is empty\n");
  ASSERT_EQ(project.bodies().size(), 2u);
  EXPECT_EQ(project.bodies()[0].name(), "hull");
  EXPECT_EQ(project.bodies()[0].subBodyCount(), 1u);
  EXPECT_FALSE(project.bodies()[0].hasGravityCentre());
  EXPECT_EQ(project.bodies()[1].name(), "rudder");
  EXPECT_TRUE(project.motionBodies().empty());
  project.refresh();
  EXPECT_EQ(project.bodies()[1].element(marine::Component::force, "FzP", 1), valueOf(7, 1, 2));
  EXPECT_EQ(project.bodies()[0].subBody(0).converged(marine::Component::force, 1, 0),
            valueOf(0, 5, 1));
}

TEST_F(MarineProject, BodyDescriptionWithoutBodiesAlsoFallsBack) {
  write("ship.res", residualText(kStamp, kResidualRows));
  writeComponentFiles();
  write("ship_body_param.dat", "# no bodies yet\n#QV_BEGIN\nCALCUL\n#QV_END\n");
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  EXPECT_EQ(console.text(),
            stampLine() + fallbackLines() + "Warning! Couldn't find bodies in " + dir_ +
                "ship_body_param.dat.\nGoing to fallback mode...\nBody Motion List is empty\n");
  EXPECT_EQ(project.bodies().size(), 2u);
}

TEST_F(MarineProject, BodyDescriptionFollowsTheCaseName) {
  write("ship.res", residualText(kStamp, kResidualRows));
  write("boat.res", residualText("", kResidualRows));
  writeComponentFiles();
  write("boat_body_param.dat",
        "#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n#QV_BEGIN\nBODY\nNAME barge\n#QV_END\n");
  {
    ProjectMonitorMarine ship(res_);
    ConsoleCapture console;
    ASSERT_TRUE(ship.load());
    EXPECT_NE(
        console.text().find("Warning! Couldn't find bodies in " + dir_ + "ship_body_param.dat.\n"),
        std::string::npos);
    EXPECT_EQ(ship.bodies().size(), 2u);
  }
  ProjectMonitorMarine boat(dir_ + "boat.res");
  ConsoleCapture console;
  ASSERT_TRUE(boat.load());
  EXPECT_EQ(
      console.text(),
      "No #CREATED tag found in the .res file.\nRe-running the solver may give a wrong picture.\n" +
          fallbackLines() +
          "True body: hull\nTrue body: barge\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknown body: hull:keel\nUnknown body: rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Unknow body hull:keel\nUnknow body rudder\n"
          "Body Motion List is empty\n");
  ASSERT_EQ(boat.bodies().size(), 2u);
  EXPECT_EQ(boat.bodies()[1].name(), "barge");
  boat.refresh();
  EXPECT_EQ(boat.bodies()[0].element(marine::Component::force, "Fx", 1), valueOf(0, 1, 0));
  EXPECT_EQ(boat.bodies()[1].realTimesteps(marine::Component::force, "Fx"), 0);
}

TEST_F(MarineProject, MissingComponentFilesAreNamedInTableOrder) {
  write("ship.res", residualText(kStamp, kResidualRows));
  write("eff_Fx.dat", fxHeader() + effRows(0));
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  std::string missing;
  for (const char* name :
       {"eff_FxP.dat", "eff_FxV.dat", "eff_Fy.dat", "eff_FyP.dat", "eff_FyV.dat", "eff_Fz.dat",
        "eff_FzP.dat", "eff_FzV.dat", "eff_Mx.dat", "eff_MxP.dat", "eff_MxV.dat", "eff_My.dat",
        "eff_MyP.dat", "eff_MyV.dat", "eff_Mz.dat", "eff_MzP.dat", "eff_MzV.dat"}) {
    missing += "No file " + dir_ + name + "\n";
  }
  EXPECT_EQ(console.text(), stampLine() + fallbackLines() + "Cannot read file " + dir_ +
                                "ship_body_param.dat. Please check if the file exists \n"
                                "Warning! Couldn't find bodies in " +
                                dir_ + "ship_body_param.dat.\nGoing to fallback mode...\n" +
                                missing + "Body Motion List is empty\n");
  // A file that appears later is read on a later refresh.
  project.refresh();
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "Fy"), 0);
  write("eff_Fy.dat", kColumns + effRows(3));
  const std::size_t before = console.text().size();
  project.refresh();
  EXPECT_EQ(console.text().substr(before), "");
  EXPECT_EQ(project.bodies()[0].element(marine::Component::force, "Fy", 1), valueOf(3, 1, 0));
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "Fx"), 2);
}

TEST_F(MarineProject, ModeOfTheForceFile) {
  const struct {
    const char* what;
    std::string modeBlock;
    std::string lines;
    bool unsteady;
  } cases[] = {
      {"steady", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n",
       "Mode: STEADY\nFallback body: hull\nFallback body: rudder\n", false},
      {"unknown mode", "#QV_BEGIN\nCALCUL\nMODE SOMETIMES\n#QV_END\n",
       "Mode: SOMETIMES\n"
       "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.\n"
       "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.\n",
       false},
      {"no mode block", "",
       "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.\n"
       "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.\n",
       false},
  };
  for (const auto& c : cases) {
    write("ship.res", residualText(kStamp, kResidualRows));
    writeComponentFiles();
    write("eff_Fx.dat", c.modeBlock + kFxBodies + kColumns + effRows(0));
    write("ship_body_param.dat", kBodyDescription);
    ProjectMonitorMarine project(res_);
    ConsoleCapture console;
    EXPECT_TRUE(project.load()) << c.what;
    EXPECT_EQ(console.text(), stampLine() + "Reading eff_Fx.dat for steadiness...\n" + c.lines +
                                  "Reading ...body_param.dat file for body structure ...\n" +
                                  kTrueBodyLines + "Body Motion List is empty\n")
        << c.what;
    EXPECT_EQ(project.unsteady(), c.unsteady) << c.what;
    EXPECT_EQ(project.bodies()[0].convergedSeriesCount(marine::Component::force), 0) << c.what;
  }
}

TEST_F(MarineProject, MissingForceFileIsABadForcesFile) {
  write("ship.res", residualText(kStamp, kResidualRows));
  write("ship_body_param.dat", kBodyDescription);
  for (const bool asFolder : {false, true}) {
    if (asFolder) fs::create_directories(folder_ / "eff_Fx.dat");
    ProjectMonitorMarine project(res_);
    RecordingEvaluator evaluator;
    ConsoleCapture console;
    EXPECT_FALSE(project.load());
    EXPECT_FALSE(project.loaded());
    EXPECT_EQ(console.text(), stampLine() + "Reading eff_Fx.dat for steadiness...\nCannot read " +
                                  dir_ + "eff_Fx.dat. Please check if the file exists \n");
    EXPECT_EQ(evaluator.scripts,
              std::vector<std::string>{"catch { itm_error_badfile Forces/Moments }"});
  }
}

TEST_F(MarineProject, BadResidualHeaderIsABadResidualsFile) {
  const struct {
    const char* what;
    std::string text;
    std::string message;
  } cases[] = {
      {"bad mode", residualText(kStamp, kResidualRows, "SOMETIMES"), "BAD FILE FORMAT .res\n"},
      {"unknown residual",
       "#CREATED " + kStamp +
           "\n#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n#COLUMNS itnl cpums t ResU Resid\n",
       "*** Parameter : Resid in file: @ is not found\n"},
  };
  for (const auto& c : cases) {
    write("ship.res", c.text);
    writeComponentFiles();
    write("ship_body_param.dat", kBodyDescription);
    ProjectMonitorMarine project(res_);
    RecordingEvaluator evaluator;
    ConsoleCapture console;
    EXPECT_FALSE(project.load()) << c.what;
    std::string message = c.message;
    if (const std::size_t at = message.find('@'); at != std::string::npos)
      message.replace(at, 1, res_);
    EXPECT_EQ(console.text(), stampLine() + fallbackLines() + kTrueBodyLines + message) << c.what;
    EXPECT_EQ(evaluator.scripts, std::vector<std::string>{"catch { itm_error_badfile Residuals }"})
        << c.what;
  }
}

TEST_F(MarineProject, MissingResidualFile) {
  writeComponentFiles();
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  EXPECT_FALSE(project.load());
  EXPECT_EQ(console.text(), "Residual file " + res_ + " is not found\n");
  EXPECT_FALSE(project.loaded());
}

TEST_F(MarineProject, MotionFileWithoutColumnsLeavesTheOtherFilesRead) {
  writeCase();
  write("Mvt_rudder.dat", "0.0 1.0\n");
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  EXPECT_EQ(console.text(), stampLine() + fallbackLines() + kTrueBodyLines +
                                "Found Mvt body: rudder\n" + "#COLUMNS line is not found in " +
                                dir_ + "Mvt_rudder.dat\n");
  const std::size_t before = console.text().size();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.changed);
  EXPECT_EQ(console.text().substr(before), "");
  // The other files were read all the same.
  EXPECT_EQ(project.resFile().recordCount(), 2u);
  EXPECT_EQ(project.bodies()[1].element(marine::Component::force, "Fx", 0), valueOf(0, 0, 2));
}

TEST_F(MarineProject, FailedLoadIsTriedAgainByTheNextRefresh) {
  write("ship.res", residualText(kStamp, kResidualRows));
  write("ship_body_param.dat", kBodyDescription);
  ProjectMonitorMarine project(res_);
  RecordingEvaluator evaluator;
  ConsoleCapture console;
  EXPECT_FALSE(project.load());
  EXPECT_FALSE(project.refresh().succeeded);
  EXPECT_EQ(evaluator.scripts.size(), 2u);
  writeComponentFiles();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.changed);
  EXPECT_TRUE(project.loaded());
  EXPECT_EQ(evaluator.scripts.size(), 2u);
  project.refresh();
  EXPECT_EQ(project.resFile().recordCount(), 2u);
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "Fx"), 2);
}

TEST_F(MarineProject, MonitorKeepsProjectsByPath) {
  writeCase();
  ConsoleCapture console;
  marine::MonitorMarine monitor({"monitor"}, dir_ + "no_preferences.dat");
  marine::ProjectMonitorMarine& added = monitor.addProject(res_);
  EXPECT_TRUE(added.loaded());
  marine::ProjectMonitorMarine& broken = monitor.addProject(dir_ + "other.res");
  EXPECT_FALSE(broken.loaded());
  EXPECT_EQ(monitor.projects().size(), 2u);
  EXPECT_EQ(monitor.findProject(res_), &added);
  EXPECT_EQ(monitor.findProject(dir_ + "./ship.res"), nullptr);
  EXPECT_TRUE(monitor.removeProject(dir_ + "other.res"));
  EXPECT_FALSE(monitor.removeProject(dir_ + "other.res"));
  EXPECT_EQ(monitor.projects().size(), 1u);
}

// ---------------------------------------------------------------------------
// Refreshing while the solver runs

using MarineRunRefresh = MarineProject;

TEST_F(MarineRunRefresh, AppendedRowsOnlyAreRead) {
  write("ship.res", residualText(kStamp, kResidualRows));
  writeComponentFiles();
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  const std::size_t before = console.text().size();
  ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_FALSE(refresh.changed);

  append("ship.res", "3 1.2 0.1 0.25 0.0625\n4 1.6");
  append("eff_Fx.dat", rowText(0.1, 3, 0, 2) + "0.15 4 1.5");
  refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_TRUE(refresh.changed);
  EXPECT_EQ(console.text().substr(before), "");
  EXPECT_EQ(project.resFile().recordCount(), 3u);
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "Fx"), 3);
  EXPECT_EQ(project.bodies()[0].element(marine::Component::force, "Fx", 2), valueOf(0, 2, 0));
  EXPECT_EQ(project.bodies()[1].times(), (Doubles{0.0, 0.05, 0.1}));
}

// The solver does not flush all its files at once: rows may reach a force
// file after the reference file's row of the same iteration was read.
TEST_F(MarineRunRefresh, RowsOfOneForceFileAloneCountAsAChange) {
  writeCase();
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  append("eff_Fx.dat", rowText(0.1, 3, 0, 2));
  EXPECT_TRUE(project.refresh().changed);
  append("eff_FyP.dat", rowText(0.1, 3, 4, 2));
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_EQ(project.bodies()[0].element(marine::Component::force, "FyP", 2), valueOf(4, 2, 0));
  EXPECT_TRUE(refresh.changed);
}

TEST_F(MarineRunRefresh, NewStampReloadsTheNewRunOnce) {
  writeCase();
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  ASSERT_EQ(project.resFile().recordCount(), 2u);
  project.currentIterations()[3] = 7;

  // The solver starts over: a new stamp and one row so far in every file.
  write("ship.res", residualText(kLaterStamp, "1 0.3 0.0 0.0625 0.03125\n"));
  for (int k = 0; k < 9; ++k) {
    write(std::string(marine::kForceFileNames[static_cast<std::size_t>(k)]),
          (k == 0 ? fxHeader() : kColumns) + rowText(0.0, 1, 20 + k, 0));
    write(std::string(marine::kMomentFileNames[static_cast<std::size_t>(k)]),
          kColumns + rowText(0.0, 1, 30 + k, 0));
  }
  const std::size_t before = console.text().size();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_TRUE(refresh.changed);
  EXPECT_EQ(console.text().substr(before),
            "Different solver run detected, currently displayed run started at 2018-03-07 "
            "13:34:44, the run from "
            "2018-03-08 09:00:00 is on the disk now.\nRe-initializing the data...\n" +
                stampLine(kLaterStamp) + fallbackLines() + kTrueBodyLines +
                "Body Motion List is empty\n");
  EXPECT_EQ(project.creationStamp(), kLaterStamp);
  EXPECT_EQ(project.currentIterations()[3], 0);
  ASSERT_EQ(project.resFile().recordCount(), 1u);
  EXPECT_EQ(project.resFile().record(0).valueOf("ResU"), 0.0625);
  const BodyObject& hull = project.bodies()[0];
  EXPECT_EQ(hull.realTimesteps(marine::Component::force, "Fx"), 1);
  EXPECT_EQ(hull.element(marine::Component::force, "Fx", 0), valueOf(20, 0, 0));
  EXPECT_EQ(hull.element(marine::Component::moment, "MzV", 0), valueOf(38, 0, 0));
  EXPECT_EQ(hull.convergedLength(marine::Component::force, 1), 0);
  EXPECT_EQ(hull.times(), Doubles{0.0});

  // The same run from now on.
  append("ship.res", "2 0.6 0.0 0.03125 0.015625\n");
  const std::size_t after = console.text().size();
  EXPECT_TRUE(project.refresh().changed);
  EXPECT_EQ(console.text().substr(after), "");
  EXPECT_EQ(project.resFile().recordCount(), 2u);
}

TEST_F(MarineRunRefresh, FileWithoutStampIsNeverReloadedByItsStamp) {
  write("ship.res", residualText("", kResidualRows));
  writeComponentFiles();
  write("ship_body_param.dat", kBodyDescription);
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  const std::size_t before = console.text().size();
  project.refresh();
  append("ship.res", "3 1.2 0.1 0.25 0.0625\n");
  project.refresh();
  append("ship.res", "4 1.6 0.15 0.125 0.0625\n");
  project.refresh();
  EXPECT_EQ(console.text().substr(before), "");
  EXPECT_EQ(project.resFile().recordCount(), 4u);
  EXPECT_EQ(project.creationStamp(), "");
}

TEST_F(MarineRunRefresh, RewrittenResidualFileReloadsTheRun) {
  write("ship.res", residualText("", kResidualRows));
  writeComponentFiles();
  write("ship_body_param.dat", kBodyDescription);
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  ASSERT_EQ(project.resFile().recordCount(), 2u);
  write("ship.res", residualText("", "1 0.3 0.0 0.0625 0.03125\n"));
  const std::size_t before = console.text().size();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.changed);
  EXPECT_EQ(
      console.text().substr(before),
      "No #CREATED tag found in the .res file.\nRe-running the solver may give a wrong picture.\n" +
          fallbackLines() + kTrueBodyLines + "Body Motion List is empty\n");
  ASSERT_EQ(project.resFile().recordCount(), 1u);
  EXPECT_EQ(project.resFile().record(0).valueOf("ResP"), 0.03125);
}

TEST_F(MarineRunRefresh, RewrittenForceFileReloadsTheRun) {
  writeCase();
  ProjectMonitorMarine project(res_);
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  ASSERT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "FyV"), 2);
  write("eff_FyV.dat", kColumns + rowText(0.0, 1, 40, 0));
  EXPECT_TRUE(project.refresh().changed);
  project.refresh();
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "FyV"), 1);
  EXPECT_EQ(project.bodies()[0].element(marine::Component::force, "FyV", 0), valueOf(40, 0, 0));
  EXPECT_EQ(project.bodies()[0].realTimesteps(marine::Component::force, "Fx"), 2);
  EXPECT_EQ(project.resFile().recordCount(), 2u);
}

}  // namespace

namespace {

// Any file of the computation may disappear between two refreshes (a user
// cleaning the folder, a network file system): it is said once, its curves
// stay, the refresh tells which file is gone, and the file is read again
// from its top when it comes back.
TEST_F(MarineProject, AFileThatDisappearsIsToldOnceAndReadAgainWhenItComesBack) {
  const struct {
    std::string file;
    std::function<std::size_t(const ProjectMonitorMarine&)> held;
  } cases[] = {
      {"ship.res", [](const ProjectMonitorMarine& p) { return p.resFile().recordCount(); }},
      {"eff_Fx.dat", [](const ProjectMonitorMarine& p) { return p.bodies()[0].times().size(); }},
      {"eff_FyV.dat",
       [](const ProjectMonitorMarine& p) {
         return static_cast<std::size_t>(
             p.bodies()[0].realTimesteps(marine::Component::force, "FyV"));
       }},
      {"Mvt_hull.dat",
       [](const ProjectMonitorMarine& p) { return p.motionBodies()[0]->motion().rowCount(); }},
      {"eff_AD.dat",
       [](const ProjectMonitorMarine& p) {
         return static_cast<std::size_t>(p.actuatorDisks().disk(0).stepCount());
       }},
      {"user_data.csv",
       [](const ProjectMonitorMarine& p) {
         return const_cast<ProjectMonitorMarine&>(p)
             .extraQuantities()
             .quantities()[0]
             .values.size();
       }},
  };
  for (const auto& c : cases) {
    writeCase();
    write("Mvt_hull.dat", "#COLUMNS T = X\n0.0 0.5\n0.05 0.75\n");
    write("eff_AD.dat", "VARIABLES = \"T\" \"Load1\"\n0.0 1.5\n0.05 2.5\n");
    write("user_data.csv", "Time [s]\n0.0\n0.05\n");
    ProjectMonitorMarine project(res_);
    ConsoleCapture console;
    ASSERT_TRUE(project.load()) << c.file;
    ASSERT_TRUE(project.refresh().succeeded) << c.file;
    const std::size_t held = c.held(project);
    ASSERT_EQ(held, 2u) << c.file;

    std::ifstream in(dir_ + c.file, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    in.close();
    fs::remove(dir_ + c.file);
    const std::size_t before = console.text().size();
    for (int refresh = 0; refresh < 2; ++refresh) {
      const ProjectMonitorMarine::Refresh answer = project.refresh();
      EXPECT_FALSE(answer.succeeded) << c.file;
      EXPECT_EQ(answer.lostFiles, std::vector<std::string>{dir_ + c.file}) << c.file;
      EXPECT_EQ(c.held(project), held) << c.file;
    }
    const std::string gone =
        "File " + dir_ + c.file + " has disappeared; what was read from it stays shown\n";
    // Beside the motion file's "File End is reached" at every refresh: the
    // disappearance, once.
    std::string said = console.text().substr(before);
    for (std::size_t at = said.find("File End is reached\n"); at != std::string::npos;
         at = said.find("File End is reached\n")) {
      said.erase(at, 20);
    }
    EXPECT_EQ(said, gone) << c.file;

    write(c.file, text);
    EXPECT_TRUE(project.refresh().succeeded) << c.file;
    EXPECT_EQ(c.held(project), held) << c.file << ": read again from its top, once";
  }
}

}  // namespace
