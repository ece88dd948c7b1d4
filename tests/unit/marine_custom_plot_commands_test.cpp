// The marine commands on custom plots: adding, editing and removing plots
// defined by formulas over the histories, reading their points, and the
// messages for a bad project, plot or point.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

// A steady run of three iterations and a fourth, iteration 7, whose forces
// are written here: hull 1520.5, keel 210.25.
class MarineCustomPlotCommands : public MarineCommandTest {
 protected:
  MarineCustomPlotCommands() {
    const CaseSetup setup = caseSetup("case", RunMode::steady);
    written(setup, 3);
    append(setup.folder / "eff_Fx.dat", "0.2 7 1520.5 210.25 95 12.125\n");
    path_ = load(setup.residualPath().string());
  }

  std::string add(const std::string& formula) {
    return run("itm_add_custom_plot", {path_, formula}).result;
  }

  std::string path_;
};

TEST_F(MarineCustomPlotCommands, PlotsAreNumberedInCreationOrderAndRenumberedWhenOneIsRemoved) {
  EXPECT_EQ(run("itm_add_custom_plot", {path_, "Fx_hull+Fx_keel"}), Answer{"0"});
  EXPECT_EQ(run("itm_add_custom_plot", {path_, "2*t"}), Answer{"1"});
  EXPECT_EQ(run("itm_add_custom_plot", {path_, "Fy_rudder"}), Answer{"2"});
  EXPECT_EQ(run("itm_get_custom_plots_no", {path_}), Answer{"3"});

  EXPECT_EQ(run("itm_remove_custom_plot", {path_, "0"}), Answer{""});
  EXPECT_EQ(run("itm_get_custom_plots_no", {path_}), Answer{"2"});
  EXPECT_EQ(run("itm_get_custom_plot_formula", {path_, "0"}), Answer{"2*t"});
  EXPECT_EQ(run("itm_get_custom_plot_formula", {path_, "1"}), Answer{"Fy_rudder"});
}

TEST_F(MarineCustomPlotCommands, PointsStandAtTheIterationsOfTheFirstBodysFxHistory) {
  add("Fx_hull+Fx_keel");
  add("2*t");
  EXPECT_EQ(run("itm_get_custom_plot_points_no", {path_, "0"}), Answer{"4"});
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "0", "3"}), Answer{"7 1730.75"});
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "1", "3"}), Answer{"7 14"});
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "1", "0"}), Answer{"1 2"});
}

TEST_F(MarineCustomPlotCommands, AFormulaThatFailsAddsNoPlot) {
  add("2*t");
  EXPECT_EQ(run("itm_add_custom_plot", {path_, "Fx_nobody"}), Answer{"-1"});
  EXPECT_EQ(run("itm_add_custom_plot", {path_, "2*(t+1"}), Answer{"-1"});
  EXPECT_EQ(run("itm_get_custom_plots_no", {path_}), Answer{"1"});
}

TEST_F(MarineCustomPlotCommands, EditingChangesTheFormulaOnlyWhenTheNewOneWorks) {
  add("Fx_hull");
  EXPECT_EQ(run("itm_edit_custom_plot", {path_, "0", "2*t"}), Answer{"1"});
  EXPECT_EQ(run("itm_get_custom_plot_formula", {path_, "0"}), Answer{"2*t"});
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "0", "3"}), Answer{"7 14"});

  EXPECT_EQ(run("itm_edit_custom_plot", {path_, "0", "Fx_nobody"}), Answer{"0"});
  EXPECT_EQ(run("itm_get_custom_plot_formula", {path_, "0"}), Answer{"2*t"});
  EXPECT_EQ(run("itm_get_custom_plot_points_no", {path_, "0"}), Answer{"0"});
}

TEST_F(MarineCustomPlotCommands, ARunWithoutBodiesGivesPlotsWithoutPoints) {
  CaseSetup bare = caseSetup("bare", RunMode::steady);
  bare.bodies.clear();
  const std::string path = load(bare, 3);
  EXPECT_EQ(run("itm_add_custom_plot", {path, "2*t"}), Answer{"0"});
  EXPECT_EQ(run("itm_get_custom_plot_points_no", {path, "0"}), Answer{"0"});
}

TEST_F(MarineCustomPlotCommands, PlotsFollowTheRunAsItGrows) {
  MarineCaseWriter writer = written(caseSetup("growing"), 10);
  const std::string path = load(writer.setup().residualPath().string());
  run("itm_add_custom_plot", {path, "Fx_hull-Fx_rudder"});
  EXPECT_EQ(run("itm_get_custom_plot_points_no", {path, "0"}), Answer{"10"});
  writer.appendIteration();
  run("itf_update_now_monitor_KELP");
  EXPECT_EQ(run("itm_get_custom_plot_points_no", {path, "0"}), Answer{"11"});
}

TEST_F(MarineCustomPlotCommands, AWrongPointNumberNamesThePlotItsFormulaAndItsPointCount) {
  add("Fx_hull+Fx_keel");
  const std::string tail =
      " for custom plot #0 'Fx_hull+Fx_keel' in project '" + path_ + "'. Number of points is 4.\n";
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "0", "4"}),
            (Answer{"0 0", "Error in get_custom_plot_point! Wrong point number 4" + tail}));
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "0", "-1"}),
            (Answer{"0 0", "Error in get_custom_plot_point! Wrong point number -1" + tail}));
}

TEST_F(MarineCustomPlotCommands, AWrongPlotNumberIsReportedInEachCommandsOwnWords) {
  add("2*t");
  const std::string in = " in project '" + path_ + "'";
  const std::string count = " Number of custom plots in the project: 1.\n";
  EXPECT_EQ(run("itm_edit_custom_plot", {path_, "1", "t"}),
            (Answer{"0", "Error in edit_custom_plot! Cannot find plot #1" + in + "." + count}));
  EXPECT_EQ(
      run("itm_get_custom_plot_points_no", {path_, "-1"}),
      (Answer{"0", "Error in get_custom_plot_points_no! Cannot find plot #-1" + in + "." + count}));
  EXPECT_EQ(run("itm_get_custom_plot_point", {path_, "1", "0"}),
            (Answer{"0 0", "Error in get_custom_plot_point! Cannot find custom plot #1" + in + "." +
                               count}));
  EXPECT_EQ(
      run("itm_remove_custom_plot", {path_, "1"}),
      (Answer{"", "Error in remove_custom_plot! Cannot find custom plot #1" + in + "!" + count}));
  EXPECT_EQ(run("itm_get_custom_plot_formula", {path_, "1"}),
            (Answer{"", "Error in get_custom_plot_formula! Cannot find custom plot #1" + in + "!" +
                            count}));
  EXPECT_EQ(run("itm_get_custom_plots_no", {path_}), Answer{"1"});
}

TEST_F(MarineCustomPlotCommands, AMissingProjectIsReportedWithoutTheCommandsPrefix) {
  const struct {
    const char* command;
    std::vector<std::string> arguments;
    const char* answer;
    const char* words;
  } cases[] = {
      {"itm_add_custom_plot", {"other.res", "t"}, "-1", "add_custom_plot"},
      {"itm_edit_custom_plot", {"other.res", "0", "t"}, "0", "edit_custom_plot"},
      {"itm_get_custom_plot_points_no", {"other.res", "0"}, "0", "get_custom_plot_points_no"},
      {"itm_get_custom_plot_point", {"other.res", "0", "0"}, "0 0", "get_custom_plot_point"},
      {"itm_remove_custom_plot", {"other.res", "0"}, "", "remove_custom_plot"},
      {"itm_get_custom_plots_no", {"other.res"}, "0", "get_custom_plots_no"},
      {"itm_get_custom_plot_formula", {"other.res", "0"}, "", "get_custom_plot_formula"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.command, c.arguments),
              (Answer{c.answer, missingProject(c.words, "other.res")}));
  }
}

}  // namespace
}  // namespace marine_commands_test
