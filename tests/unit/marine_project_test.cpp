// A marine computation loaded and refreshed while the solver writes, starts over or loses a file.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/project_monitor_marine.h"
#include "marine/run_comparison.h"
#include "marine/script_hooks.h"
#include "scratch_folder.h"

namespace {

namespace fs = std::filesystem;
using marine::BodyObject;
using marine::ProjectMonitorMarine;
using Doubles = std::vector<double>;
constexpr marine::Component kF = marine::Component::force;
constexpr marine::Component kM = marine::Component::moment;

class RecordingEvaluator : public marine::ScriptEvaluator {
 public:
  RecordingEvaluator() { marine::setScriptEvaluator(this); }
  ~RecordingEvaluator() override { marine::setScriptEvaluator(nullptr); }
  void evaluate(const std::string& script) override { scripts.push_back(script); }
  std::vector<std::string> scripts;
};

const std::string kStamp = "#CREATED 07/03/2018 13:34:44\n";
std::string residualText(const std::string& stamp, const std::string& rows,
                         const std::string& mode = "UNSTEADY") {
  return stamp + "#QV_BEGIN\nCALCUL\nMODE " + mode +
         "\n#QV_END\n#COLUMNS itnl cpums t ResU ResP\n" + rows;
}
const std::string kResidualRows = "1 0.4 0.0 0.5 0.25\n2 0.8 0.0 0.375 0.125\n";
const std::string kFxBodies =
    "#QV_BEGIN\nBODY\nNAME hull\n#QV_BEGIN\nSUBBODY\nNAME keel\n#QV_END\n#QV_END\n"
    "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n";
const std::string kColumns =
    "#QV_BEGIN\nVARIABLES = T itnl Q Q Q\nNAMES = hull hull:keel rudder\n#QV_END\n#COLUMNS T itnl "
    "hull hull:keel rudder\n";
const std::string kMode = "#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n";

// A value that tells its file k, plain row r (the converged row: r = 5) and column c.
double valueOf(int file, int row, int column) { return file * 10 + row + (column + 1) * 0.125; }

std::string rowText(double time, int iteration, int file, int row) {
  std::string text = std::to_string(time) + " " + std::to_string(iteration);
  for (int c = 0; c < 3; ++c) text += " " + std::to_string(valueOf(file, row, c));
  return text + "\n";
}

// What the console shows of a load ('@' stands for the folder).
const std::string kStampLine = "File '@ship.res' created on 07/03/2018 13:34:44\n";
const std::string kReadFx = "Reading eff_Fx.dat for steadiness...\n";
const std::string kReadDescription = "Reading ...body_param.dat file for body structure ...\n";
const std::string kFallback =
    kReadFx + "Mode: UNSTEADY\nFallback body: hull\nFallback body: rudder\n" + kReadDescription;
const std::string kTrueBodies = "True body: hull\nTrue body: rudder\nTrue body: skeg\n";
const std::string kNoMotion = "Body Motion List is empty\n";
const std::string kNoBodies =
    "Warning! Couldn't find bodies in @ship_body_param.dat.\nGoing to fallback mode...\n";

class MarineProject : public ScratchFolder {
 protected:
  std::string res() const { return folder_.string() + "/ship.res"; }
  std::string expand(std::string text) const {
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
      text.replace(at, 1, folder_.string() + "/");
    return text;
  }
  // The residual file, the 18 force and moment files, each with its own
  // values (two plain rows, the converged row of the first step between
  // them), a body description with one body more than eff_Fx.dat, a disk and
  // a user quantity.
  void writeCase() {
    write("ship.res", residualText(kStamp, kResidualRows));
    const auto rows = [](int k) {
      return rowText(0.0, 1, k, 0) + rowText(-0.05, 1, k, 5) + rowText(0.05, 2, k, 1);
    };
    for (int k = 0; k < 9; ++k) {
      write(std::string(marine::kForceFileNames[k]),
            (k == 0 ? kMode + kFxBodies : "") + kColumns + rows(k));
      write(std::string(marine::kMomentFileNames[k]), kColumns + rows(10 + k));
    }
    write("ship_body_param.dat", kFxBodies + "#QV_BEGIN\nBODY\nNAME skeg\n#QV_END\n");
    write("eff_AD.dat", "VARIABLES = \"T\" \"Load1\"\n0.0 1.5\n0.05 2.5\n");
    write("user_data.csv", "Time [s]\n0.0\n0.05\n");
  }
};

TEST_F(MarineProject, RunsAreConsistentOnlyWithTheSameResidualColumns) {
  writeCase();
  const ConsoleCapture quiet;
  const auto loaded = [&] {
    auto project = std::make_unique<ProjectMonitorMarine>(res());
    project->refresh();
    return project;
  };
  const auto first = loaded();
  std::string residuals = residualText(kStamp, kResidualRows);
  write("ship.res", residuals.replace(residuals.find("ResP"), 4, "ResV"));
  EXPECT_FALSE(marine::runsConsistent(*first, *loaded()));
  writeCase();
  EXPECT_TRUE(marine::runsConsistent(*first, *loaded()));
}

TEST_F(MarineProject, LoadsOfDamagedAndIncompleteCases) {
  const std::string none = "<none>", folder = "<folder>";
  const std::string noDescription =
      "Cannot read file @ship_body_param.dat. Please check if the file exists \n";
  const std::string badResiduals = " catch { itm_error_badfile Residuals }";
  const std::string loaded = kStampLine + kFallback + kTrueBodies;
  const std::string undefined =
      "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.\n";
  const struct {
    const char* names;  // the files written over the whole case with `text`
    std::string text;
    std::string outcome;  // loaded, mode, bodies, scripts run
    std::string console;
  } cases[] = {
      {"ship_body_param.dat", none, "loaded unsteady 2",
       kStampLine + kFallback + noDescription + kNoBodies + kNoMotion},
      {"eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n" + kFxBodies, "loaded steady 3",
       kStampLine + kReadFx + "Mode: STEADY\nFallback body: hull\nFallback body: rudder\n" +
           kReadDescription + kTrueBodies + kNoMotion},
      {"eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE SOMETIMES\n#QV_END\n" + kFxBodies, "loaded steady 3",
       kStampLine + kReadFx + "Mode: SOMETIMES\n" + undefined + undefined + kReadDescription +
           kTrueBodies + kNoMotion},
      {"ship_body_param.dat Mvt_hull.dat eff_FxP.dat eff_AD.dat", folder, "loaded unsteady 2",
       kStampLine + kFallback + noDescription + kNoBodies + "No file @eff_FxP.dat\n" + kNoMotion},
      {"eff_Fx.dat", none, "failed steady 0 catch { itm_error_badfile Forces/Moments }",
       kStampLine + kReadFx + "Cannot read @eff_Fx.dat. Please check if the file exists \n"},
      {"ship.res", residualText(kStamp, kResidualRows, "SOMETIMES"),
       "failed unsteady 3" + badResiduals, loaded + "BAD FILE FORMAT .res\n"},
      {"ship.res ship_body_param.dat eff_Fx.dat eff_FxP.dat Mvt_hull.dat", "",
       "failed steady 0" + badResiduals,
       "No #CREATED tag found in the .res file.\nRe-running the solver may give a wrong "
       "picture.\n" +
           kReadFx + kReadDescription + kNoBodies + "BAD FILE FORMAT .res\n"},
  };
  for (const auto& c : cases) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    writeCase();
    std::istringstream names(c.names);
    for (std::string name; names >> name;) {
      fs::remove(folder_ / name);
      if (c.text == folder) fs::create_directories(folder_ / name);
      if (c.text != none && c.text != folder)
        write(name, c.text + (name == "eff_Fx.dat" && !c.text.empty() ? kColumns : ""));
    }
    ProjectMonitorMarine project(res());
    RecordingEvaluator evaluator;
    ConsoleCapture console;
    const bool loads = project.load();
    std::string outcome = (project.loaded() ? "loaded " : "failed ") +
                          std::string(project.unsteady() ? "unsteady " : "steady ") +
                          std::to_string(project.bodies().size());
    for (const std::string& script : evaluator.scripts) outcome += " " + script;
    EXPECT_EQ(outcome + console.text(), c.outcome + expand(c.console)) << c.names << c.text;
    // A failed load is tried again, with its report, by every refresh.
    EXPECT_EQ(project.refresh().succeeded, loads) << c.names << c.text;
    EXPECT_EQ(evaluator.scripts.size(), loads ? 0u : 2u);
    if (loads) continue;
    writeCase();
    EXPECT_TRUE(project.refresh().succeeded && project.bodies()[0].realTimesteps(kF, "Fx") == 2);
  }
}

// One run loaded, refreshed while the solver writes, then started again on a new stamp.
TEST_F(MarineProject, LoadRefreshesAndANewRun) {
  writeCase();
  write("Mvt_hull.dat", "#COLUMNS T = X Z\n0.0 0.5 0.25\n0.05 0.75 0.375\n");
  ProjectMonitorMarine project(res());
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  const std::string loaded =
      expand(kStampLine + kFallback + kTrueBodies + "Found Mvt body: hull\n");
  EXPECT_EQ(console.text(), loaded);
  // The refresh's answer, what it printed, the residual records, Fx of the hull, the rudder's
  // times.
  auto refreshed = [&, before = console.text().size()]() mutable {
    const ProjectMonitorMarine::Refresh r = project.refresh();
    const std::string said = console.text().substr(before);
    before = console.text().size();
    return std::to_string(r.succeeded) + std::to_string(r.changed) + std::to_string(r.newRun) +
           "|" + said + std::to_string(project.resFile().recordCount()) + " " +
           std::to_string(project.bodies()[0].realTimesteps(kF, "Fx")) + " " +
           std::to_string(project.bodies()[1].times().size());
  };
  const std::string end = "File End is reached\n";
  EXPECT_EQ(refreshed(), "110|" + end + "2 2 2");
  const BodyObject& hull = project.bodies()[0];
  const BodyObject& rudder = project.bodies()[1];
  const char* forces[] = {"Fx", "FxP", "FxV", "Fy", "FyP", "FyV", "Fz", "FzP", "FzV"};
  for (int k = 0; k < 9; ++k) {
    EXPECT_EQ(hull.element(kF, forces[k], 0), valueOf(k, 0, 0)) << forces[k];
    EXPECT_EQ(rudder.element(kF, forces[k], 1), valueOf(k, 1, 2)) << forces[k];
    EXPECT_EQ(hull.converged(kF, 2 * k + 1, 0), valueOf(k, 5, 0)) << forces[k];
    EXPECT_EQ(rudder.converged(kM, 2 * k + 1, 0), valueOf(10 + k, 5, 2)) << forces[k];
  }
  // A body of the description that no file names has the rows' times only.
  const BodyObject& skeg = project.bodies()[2];
  EXPECT_EQ(skeg.realTimesteps(kF, "Fx") + skeg.times().size() + skeg.iterations().back(), 4u);
  EXPECT_EQ(skeg.times().back(), 0.05);
  EXPECT_EQ(hull.convergedTimes(), Doubles{0.05});
  EXPECT_EQ(project.motionBodies().at(0)->motion().values(1), (Doubles{0.25, 0.375}));

  EXPECT_EQ(refreshed(), "100|" + end + "2 2 2");
  append("ship.res", "3 1.2 0.1 0.25 0.0625\n4 1.6");
  append("eff_Fx.dat", rowText(0.1, 3, 0, 2) + "0.15 4 1.5");
  EXPECT_EQ(refreshed(), "110|" + end + "3 3 3");
  write("ship.res", residualText("#CREATED 08/03/2018 09:00:00\n", "1 0.3 0.0 0.0625 0.03125\n"));
  write("eff_Fx.dat", kMode + kFxBodies + kColumns + rowText(0.0, 1, 20, 0));
  EXPECT_EQ(refreshed(),
            "111|" +
                expand("Different solver run detected, currently displayed run started at "
                       "2018-03-07 13:34:44, the run from 2018-03-08 09:00:00 is on the disk now.\n"
                       "Re-initializing the data...\nFile '@ship.res' created on 08/03/2018 "
                       "09:00:00\n" +
                       kFallback + kTrueBodies + "Found Mvt body: hull\n") +
                end + "1 1 1");
  // The same run from now on.
  append("ship.res", "2 0.6 0.0 0.03125 0.015625\n");
  EXPECT_EQ(refreshed(), "110|" + end + "2 1 1");
}

// Any file of the computation may disappear between two refreshes: it is said
// once, its curves stay, the refresh tells which file is gone, and the file
// is read again from its top when it comes back.
TEST_F(MarineProject, AFileThatDisappearsIsToldOnceAndReadAgainWhenItComesBack) {
  // The rows held from each file, which stay while it is gone.
  const auto held = [](ProjectMonitorMarine& p) {
    return std::to_string(p.resFile().recordCount()) +
           std::to_string(p.bodies()[0].times().size()) +
           std::to_string(p.bodies()[0].realTimesteps(kF, "FyV")) +
           std::to_string(p.actuatorDisks().disk(0).stepCount()) +
           std::to_string(p.extraQuantities().quantities()[0].values.size());
  };
  // A residual, force or moment file read again from its top is a new run.
  const char* files[] = {"ship.res", "eff_Fx.dat", "eff_FyV.dat", "eff_AD.dat", "user_data.csv"};
  for (int f = 0; f < 5; ++f) {
    const char* file = files[f];
    const bool newRun = f < 3;
    writeCase();
    ProjectMonitorMarine project(res());
    ConsoleCapture console;
    ASSERT_TRUE(project.load() && project.refresh().succeeded) << file;
    project.currentIterations()[3] = 7;
    fs::remove(pathOf(file));
    const std::size_t before = console.text().size();
    for (int refresh = 0; refresh < 2; ++refresh) {
      const ProjectMonitorMarine::Refresh answer = project.refresh();
      EXPECT_FALSE(answer.succeeded) << file;
      EXPECT_EQ(answer.lostFiles, std::vector<std::string>{pathOf(file)}) << file;
      EXPECT_EQ(held(project), "22222") << file;
    }
    EXPECT_EQ(console.text().substr(before),
              "File " + pathOf(file) + " has disappeared; what was read from it stays shown\n");
    writeCase();
    const ProjectMonitorMarine::Refresh back = project.refresh();
    EXPECT_TRUE(back.succeeded && back.newRun == newRun) << file;
    EXPECT_EQ(project.currentIterations()[3], newRun ? 0 : 7) << file;
    EXPECT_EQ(held(project), "22222") << file << ": read again from its top, once";
  }
}

}  // namespace
