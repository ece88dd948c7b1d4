// A whole marine computation: loading it from its folder (the progress lines,
// the bodies in use, what the scripts are told about bad files) and
// refreshing it while the solver writes, starts over or loses a file.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/project_monitor_marine.h"
#include "marine/script_hooks.h"
#include "scratch_folder.h"

namespace {

namespace fs = std::filesystem;
using marine::BodyObject;
using marine::ProjectMonitorMarine;
using Doubles = std::vector<double>;
constexpr marine::Component kF = marine::Component::force;
constexpr marine::Component kM = marine::Component::moment;

// Records what the program asks the scripts to evaluate.
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
// The body description: one body more than eff_Fx.dat states.
const std::string kBodyDescription = kFxBodies + "#QV_BEGIN\nBODY\nNAME skeg\n#QV_END\n";
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

// Two plain rows and, between them, the converged row of the first step.
std::string effRows(int file) {
  return rowText(0.0, 1, file, 0) + rowText(-0.05, 1, file, 5) + rowText(0.05, 2, file, 1);
}

// What the console shows of a load ('@' stands for the folder).
const std::string kStampLine = "File '@ship.res' created on 07/03/2018 13:34:44\n";
const std::string kNoStamp =
    "No #CREATED tag found in the .res file.\nRe-running the solver may give a wrong picture.\n";
const std::string kReadFx = "Reading eff_Fx.dat for steadiness...\n";
const std::string kReadDescription = "Reading ...body_param.dat file for body structure ...\n";
const std::string kFallback =
    kReadFx + "Mode: UNSTEADY\nFallback body: hull\nFallback body: rudder\n" + kReadDescription;
const std::string kTrueBodies = "True body: hull\nTrue body: rudder\nTrue body: skeg\n";
const std::string kNoMotion = "Body Motion List is empty\n";
const std::string kNoBodies =
    "Warning! Couldn't find bodies in @ship_body_param.dat.\nGoing to fallback mode...\n";
const std::string kUndefined =
    "Error! Cannot read body information from eff_Fx.dat: steadiness is undefined so far.\n";

class MarineProject : public ScratchFolder {
 protected:
  std::string dir() const { return folder_.string() + "/"; }
  std::string res() const { return dir() + "ship.res"; }
  std::string expand(std::string text) const {
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
      text.replace(at, 1, dir());
    return text;
  }
  // The residual file, the 18 force and moment files, each with its own
  // values, and the body description.
  void writeCase(const std::string& stamp = kStamp) {
    write("ship.res", residualText(stamp, kResidualRows));
    for (int k = 0; k < 9; ++k) {
      write(std::string(marine::kForceFileNames[k]),
            (k == 0 ? kMode + kFxBodies : "") + kColumns + effRows(k));
      write(std::string(marine::kMomentFileNames[k]), kColumns + effRows(10 + k));
    }
    write("ship_body_param.dat", kBodyDescription);
  }
};

TEST_F(MarineProject, LoadThenFirstRefreshDistributesEveryFile) {
  writeCase();
  write("Mvt_hull.dat", "#COLUMNS T = X Z\n0.0 0.5 0.25\n0.05 0.75 0.375\n");
  write("eff_AD.dat", "VARIABLES = \"T\" \"Load1\" \"Load2\"\n0.0 1.5 2.5\n");
  ProjectMonitorMarine project(res());
  RecordingEvaluator evaluator;
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  EXPECT_EQ(console.text(),
            expand(kStampLine + kFallback + kTrueBodies + "Found Mvt body: hull\n"));
  EXPECT_TRUE(evaluator.scripts.empty());
  EXPECT_EQ(project.creationStamp(), "07/03/2018 13:34:44");
  // Nothing of the rows yet: they come with the refreshes.
  EXPECT_EQ(project.resFile().recordCount(), 0u);
  EXPECT_EQ(project.bodies()[0].realTimesteps(kF, "Fx"), 0);

  const std::size_t loadOutput = console.text().size();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded && refresh.changed && !refresh.newRun);
  EXPECT_EQ(console.text().substr(loadOutput), "File End is reached\n");
  EXPECT_EQ(project.resFile().record(1).valueOf("ResU"), 0.375);
  const BodyObject& hull = project.bodies()[0];
  const BodyObject& rudder = project.bodies()[1];
  const char* forces[] = {"Fx", "FxP", "FxV", "Fy", "FyP", "FyV", "Fz", "FzP", "FzV"};
  for (int k = 0; k < 9; ++k) {
    EXPECT_EQ(hull.element(kF, forces[k], 0), valueOf(k, 0, 0)) << forces[k];
    EXPECT_EQ(hull.subBody(0).element(kF, forces[k], 1), valueOf(k, 1, 1)) << forces[k];
    EXPECT_EQ(rudder.element(kF, forces[k], 1), valueOf(k, 1, 2)) << forces[k];
    EXPECT_EQ(hull.converged(kF, 2 * k + 1, 0), valueOf(k, 5, 0)) << forces[k];
    EXPECT_EQ(rudder.converged(kM, 2 * k + 1, 0), valueOf(10 + k, 5, 2)) << forces[k];
  }
  EXPECT_EQ(hull.element(kM, "Mx", 0), valueOf(10, 0, 0));
  EXPECT_EQ(rudder.element(kM, "MzV", 1), valueOf(18, 1, 2));
  EXPECT_EQ(hull.subBody(0).converged(kM, 11, 0), valueOf(15, 5, 1));
  // A body of the description that no file names has the rows' times only.
  const BodyObject& skeg = project.bodies()[2];
  EXPECT_EQ(skeg.realTimesteps(kF, "Fx"), 0);
  EXPECT_EQ(skeg.times(), (Doubles{0.0, 0.05}));
  EXPECT_EQ(skeg.iterations(), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(hull.convergedTimes(), Doubles{0.05});
  ASSERT_EQ(project.motionBodies().size(), 1u);
  EXPECT_EQ(project.motionBodies()[0]->motion().values(1), (Doubles{0.25, 0.375}));
  EXPECT_EQ(project.actuatorDisks().disk(1).value(0, 0), 2.5);
}

TEST_F(MarineProject, LoadsOfDamagedAndIncompleteCases) {
  const std::string none = "<none>", folder = "<folder>";
  const std::string noDescription =
      "Cannot read file @ship_body_param.dat. Please check if the file exists \n";
  const std::string badResiduals = " catch { itm_error_badfile Residuals }";
  const struct {
    const char* what;
    const char* names;  // the files written over the whole case, with `text`
    std::string text;
    std::string outcome;  // loaded, mode, bodies, scripts run
    std::string console;
  } cases[] = {
      {"no body description", "ship_body_param.dat", none, "loaded unsteady 2",
       kStampLine + kFallback + noDescription + kNoBodies + kNoMotion},
      {"body description without bodies", "ship_body_param.dat",
       "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n", "loaded unsteady 2",
       kStampLine + kFallback + kNoBodies + kNoMotion},
      {"stray line between bodies", "ship_body_param.dat",
       kFxBodies.substr(0, 69) + "hull of 2018\n" + kFxBodies.substr(69), "loaded unsteady 2",
       kStampLine + kFallback + "True body: hull\nTrue body: rudder\n" + kNoMotion},
      {"steady force file", "eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n" + kFxBodies,
       "loaded steady 3",
       kStampLine + kReadFx + "Mode: STEADY\nFallback body: hull\nFallback body: rudder\n" +
           kReadDescription + kTrueBodies + kNoMotion},
      {"unknown mode", "eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE SOMETIMES\n#QV_END\n" + kFxBodies,
       "loaded steady 3",
       kStampLine + kReadFx + "Mode: SOMETIMES\n" + kUndefined + kUndefined + kReadDescription +
           kTrueBodies + kNoMotion},
      {"no mode block", "eff_Fx.dat", kFxBodies, "loaded steady 3",
       kStampLine + kReadFx + kUndefined + kUndefined + kReadDescription + kTrueBodies + kNoMotion},
      {"component files missing", "eff_MzP.dat eff_FxV.dat", none, "loaded unsteady 3",
       kStampLine + kFallback + kTrueBodies + "No file @eff_FxV.dat\nNo file @eff_MzP.dat\n" +
           kNoMotion},
      {"motion file without columns", "Mvt_rudder.dat", "0.0 1.0\n", "loaded unsteady 3",
       kStampLine + kFallback + kTrueBodies +
           "Found Mvt body: rudder\n#COLUMNS line is not found in @Mvt_rudder.dat\n"},
      {"folders where files belong", "ship_body_param.dat Mvt_hull.dat eff_FxP.dat eff_AD.dat",
       folder, "loaded unsteady 2",
       kStampLine + kFallback + noDescription + kNoBodies + "No file @eff_FxP.dat\n" + kNoMotion},
      {"no residual file", "ship.res", none, "failed steady 0",
       "Residual file @ship.res is not found\n"},
      {"no force file", "eff_Fx.dat", none,
       "failed steady 0 catch { itm_error_badfile Forces/Moments }",
       kStampLine + kReadFx + "Cannot read @eff_Fx.dat. Please check if the file exists \n"},
      {"bad residual mode", "ship.res", residualText(kStamp, kResidualRows, "SOMETIMES"),
       "failed unsteady 3" + badResiduals,
       kStampLine + kFallback + kTrueBodies + "BAD FILE FORMAT .res\n"},
      {"empty files", "ship.res ship_body_param.dat eff_Fx.dat eff_FxP.dat Mvt_hull.dat", "",
       "failed steady 0" + badResiduals,
       kNoStamp + kReadFx + kReadDescription + kNoBodies + "BAD FILE FORMAT .res\n"},
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
    EXPECT_EQ(loads, project.loaded()) << c.what;
    std::string outcome = (project.loaded() ? "loaded " : "failed ") +
                          std::string(project.unsteady() ? "unsteady " : "steady ") +
                          std::to_string(project.bodies().size());
    for (const std::string& script : evaluator.scripts) outcome += " " + script;
    EXPECT_EQ(outcome, c.outcome) << c.what;
    EXPECT_EQ(console.text(), expand(c.console)) << c.what;
    if (project.loaded()) {
      EXPECT_TRUE(project.refresh().succeeded) << c.what;
    }
  }
}

TEST_F(MarineProject, FailedLoadIsTriedAgainByTheNextRefresh) {
  write("ship.res", residualText(kStamp, kResidualRows));
  ProjectMonitorMarine project(res());
  RecordingEvaluator evaluator;
  ConsoleCapture console;
  EXPECT_FALSE(project.load());
  EXPECT_FALSE(project.refresh().succeeded);
  EXPECT_EQ(evaluator.scripts.size(), 2u);
  writeCase();
  const ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.changed);
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_EQ(evaluator.scripts.size(), 2u);
  EXPECT_EQ(project.resFile().recordCount(), 2u);
  EXPECT_EQ(project.bodies()[0].realTimesteps(kF, "Fx"), 2);
}

// One run refreshed while the solver writes, then started again on the same
// stamp (a rewritten force or moment file) and on a new one.
TEST_F(MarineProject, RefreshesWhileTheSolverWritesAndStartsOver) {
  writeCase();
  ProjectMonitorMarine project(res());
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  auto said = [&, before = console.text().size()]() mutable {
    const std::string text = console.text().substr(before);
    before = console.text().size();
    return text;
  };
  said();
  const auto refreshed = [&] {
    const ProjectMonitorMarine::Refresh r = project.refresh();
    return std::to_string(r.succeeded) + std::to_string(r.changed) + std::to_string(r.newRun);
  };
  EXPECT_EQ(refreshed(), "100");
  append("ship.res", "3 1.2 0.1 0.25 0.0625\n4 1.6");
  append("eff_Fx.dat", rowText(0.1, 3, 0, 2) + "0.15 4 1.5");
  EXPECT_EQ(refreshed(), "110");
  EXPECT_EQ(project.resFile().recordCount(), 3u);
  EXPECT_EQ(project.bodies()[0].element(kF, "Fx", 2), valueOf(0, 2, 0));
  EXPECT_EQ(project.bodies()[1].times(), (Doubles{0.0, 0.05, 0.1}));
  // The solver does not flush all its files at once: rows of another file
  // alone are a change too.
  append("eff_FyP.dat", rowText(0.1, 3, 4, 2));
  EXPECT_EQ(refreshed(), "110");
  EXPECT_EQ(project.bodies()[0].element(kF, "FyP", 2), valueOf(4, 2, 0));
  EXPECT_EQ(said(), "");

  write("eff_Mz.dat", kColumns + rowText(0.0, 1, 40, 0));
  project.currentIterations()[3] = 7;
  EXPECT_EQ(refreshed(), "111");
  EXPECT_EQ(said(), expand(kStampLine + kFallback + kTrueBodies + kNoMotion));
  EXPECT_EQ(project.bodies()[0].element(kM, "Mz", 0), valueOf(40, 0, 0));
  EXPECT_EQ(project.bodies()[0].realTimesteps(kM, "Mz"), 1);
  EXPECT_EQ(project.resFile().recordCount(), 3u);
  EXPECT_EQ(project.currentIterations()[3], 0);

  write("ship.res", residualText("#CREATED 08/03/2018 09:00:00\n", "1 0.3 0.0 0.0625 0.03125\n"));
  write("eff_Fx.dat", kMode + kFxBodies + kColumns + rowText(0.0, 1, 20, 0));
  EXPECT_EQ(refreshed(), "111");
  EXPECT_EQ(
      said(),
      expand("Different solver run detected, currently displayed run started at 2018-03-07 "
             "13:34:44, the run from 2018-03-08 09:00:00 is on the disk now.\n"
             "Re-initializing the data...\nFile '@ship.res' created on 08/03/2018 09:00:00\n" +
             kFallback + kTrueBodies + kNoMotion));
  EXPECT_EQ(project.resFile().recordCount(), 1u);
  EXPECT_EQ(project.bodies()[0].element(kF, "Fx", 0), valueOf(20, 0, 0));
  EXPECT_EQ(project.bodies()[0].convergedLength(kF, 1), 0);
  EXPECT_EQ(project.bodies()[0].times(), Doubles{0.0});
  // The same run from now on.
  append("ship.res", "2 0.6 0.0 0.03125 0.015625\n");
  EXPECT_EQ(refreshed(), "110");
  EXPECT_EQ(said(), "");
}

// Any file of the computation may disappear between two refreshes: it is said
// once, its curves stay, the refresh tells which file is gone, and the file
// is read again from its top when it comes back.
TEST_F(MarineProject, AFileThatDisappearsIsToldOnceAndReadAgainWhenItComesBack) {
  const auto writeAll = [this] {
    writeCase();
    write("Mvt_hull.dat", "#COLUMNS T = X\n0.0 0.5\n0.05 0.75\n");
    write("eff_AD.dat", "VARIABLES = \"T\" \"Load1\"\n0.0 1.5\n0.05 2.5\n");
    write("user_data.csv", "Time [s]\n0.0\n0.05\n");
  };
  // The rows held from each file, which stay while it is gone.
  const auto held = [](ProjectMonitorMarine& p) {
    return std::to_string(p.resFile().recordCount()) +
           std::to_string(p.bodies()[0].times().size()) +
           std::to_string(p.bodies()[0].realTimesteps(kF, "FyV")) +
           std::to_string(p.motionBodies()[0]->motion().rowCount()) +
           std::to_string(p.actuatorDisks().disk(0).stepCount()) +
           std::to_string(p.extraQuantities().quantities()[0].values.size());
  };
  const std::pair<const char*, bool> cases[] = {{"ship.res", true},    {"eff_Fx.dat", true},
                                                {"eff_FyV.dat", true}, {"Mvt_hull.dat", false},
                                                {"eff_AD.dat", false}, {"user_data.csv", false}};
  for (const auto& [file, newRun] : cases) {
    writeAll();
    ProjectMonitorMarine project(res());
    ConsoleCapture console;
    ASSERT_TRUE(project.load()) << file;
    ASSERT_TRUE(project.refresh().succeeded) << file;
    ASSERT_EQ(held(project), "222222") << file;
    fs::remove(pathOf(file));
    const std::size_t before = console.text().size();
    for (int refresh = 0; refresh < 2; ++refresh) {
      const ProjectMonitorMarine::Refresh answer = project.refresh();
      EXPECT_FALSE(answer.succeeded) << file;
      EXPECT_EQ(answer.lostFiles, std::vector<std::string>{pathOf(file)}) << file;
      EXPECT_EQ(held(project), "222222") << file;
    }
    // Beside the motion file's "File End is reached" at every refresh: the
    // disappearance, once.
    std::string said = console.text().substr(before);
    for (std::size_t at = said.find("File End is reached\n"); at != std::string::npos;
         at = said.find("File End is reached\n"))
      said.erase(at, 20);
    EXPECT_EQ(said,
              "File " + pathOf(file) + " has disappeared; what was read from it stays shown\n");
    writeAll();
    const ProjectMonitorMarine::Refresh back = project.refresh();
    // A residual, force or moment file read again from its top is a new run.
    EXPECT_EQ(back.newRun, newRun) << file;
    EXPECT_TRUE(back.succeeded) << file;
    EXPECT_EQ(held(project), "222222") << file << ": read again from its top, once";
  }
}

}  // namespace
