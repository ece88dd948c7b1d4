// The marine commands on the loaded projects: the table the scripts call,
// loading and removing projects, the current project, refreshes, the work
// unit, the axis title, the preferences and the comparison of two runs.
#include "fileformat/work_unit.h"
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

TEST(MarineCommandTable, ListsTheSixtySevenCommandsInTheirOrder) {
  const std::vector<std::string_view> expected = {
      "itf_add_res_file_KELP",
      "itf_remove_res_file_KELP",
      "itf_remove_ALL_res_files_KELP",
      "itf_set_current_project_KELP",
      "itf_get_current_nb_blocks_KELP",
      "itf_read_running_project_KELP",
      "itf_update_now_monitor_KELP",
      "itf_quit_command_KELP",
      "itf_get_work_unit_KELP",
      "get_KELP_stational_mode_KELP",
      "get_preference",
      "itm_check_runs_consistency",
      "itf_get_nbIter_KELP",
      "itf_get_nbIter_force_KELP",
      "itf_get_nbIter_moment_KELP",
      "itf_get_nbIter_motion_KELP",
      "itf_get_current_nbIter_force_KELP",
      "itf_set_current_nbIter_force_KELP",
      "itf_get_current_nbIter_moment_KELP",
      "itf_set_current_nbIter_moment_KELP",
      "itf_get_current_nbIter_motion_KELP",
      "itf_set_current_nbIter_motion_KELP",
      "itf_get_current_nbIter_KELP",
      "itf_set_current_nbIter_KELP",
      "itf_get_force_conv_length",
      "itf_get_moment_conv_length",
      "itf_get_current_force_conv_iter",
      "itf_get_current_moment_conv_iter",
      "itf_get_force_conv_value",
      "itf_get_moment_conv_value",
      "is_unsteady_conv_available",
      "itf_get_curve_value_KELP",
      "itf_get_KELP_vars_forces",
      "itf_get_KELP_vars_moments",
      "itf_get_KELP_vars_motions",
      "itf_get_KELP_vars_resids",
      "itf_get_forces_number_KELP",
      "itf_get_moments_number_KELP",
      "itf_get_resids_number_KELP",
      "itf_get_motions_number_KELP",
      "itf_is_motion_used",
      "itf_has_forces",
      "get_number_of_bodies_KELP",
      "get_body_name_KELP",
      "get_sub_object_number_KELP",
      "get_subbody_name_KELP",
      "itm_get_body_gravity_center",
      "itm_is_body_gravity_center_available",
      "itf_get_disk_count",
      "itf_get_disk_quantity_count",
      "itf_get_disk_quantity_name",
      "itf_get_disk_steps",
      "itf_get_disk_quantity_value",
      "itm_get_number_of_extra_quantities",
      "itm_get_extra_quantity_iter",
      "itm_set_extra_quantity_iter",
      "itm_get_extra_quantity_capacity",
      "itm_get_extra_quantity_value",
      "itm_get_extra_quantity_name",
      "itm_get_extra_quantity_unit",
      "itm_add_custom_plot",
      "itm_edit_custom_plot",
      "itm_get_custom_plot_points_no",
      "itm_get_custom_plot_point",
      "itm_remove_custom_plot",
      "itm_get_custom_plots_no",
      "itm_get_custom_plot_formula",
  };
  std::vector<std::string_view> names;
  for (const CommandRow& row : marine::kMarineCommands) names.push_back(row.name);
  EXPECT_EQ(names, expected);
}

using MarineProjectCommands = MarineCommandTest;

TEST_F(MarineProjectCommands, AddingAnswersOneAndTheProjectsPathAndLoadsItAgainWhenAlreadyLoaded) {
  const std::string path = written(caseSetup("a"), 5).setup().residualPath().string();
  const Answer first = run("itf_add_res_file_KELP", {path});
  EXPECT_EQ(first.result, resultOf(1, path));
  EXPECT_FALSE(first.console.starts_with("Project already loaded"));

  run("itf_add_res_file_KELP", {path});
  const Answer third = run("itf_add_res_file_KELP", {path});
  EXPECT_EQ(third.result, resultOf(1, path));
  EXPECT_TRUE(third.console.starts_with("Project already loaded\nProject already loaded\nFile '" +
                                        path + "'"))
      << third.console;
  EXPECT_EQ(monitor_->projects().size(), 3u);
}

TEST_F(MarineProjectCommands, AddingAMissingFileKeepsTheProjectForLaterRefreshes) {
  const std::string path = (folder_ / "nowhere.res").string();
  EXPECT_EQ(run("itf_add_res_file_KELP", {path}),
            (Answer{resultOf(1, path), "Residual file " + path + " is not found\n"}));
  EXPECT_EQ(run("itf_read_running_project_KELP"), Answer{resultOf(1, path)});
}

TEST_F(MarineProjectCommands, ListsTheLoadedProjectsInLoadingOrder) {
  EXPECT_EQ(run("itf_read_running_project_KELP"), Answer{"0"});
  const std::string a = load(caseSetup("a"), 5);
  const std::string b = load(caseSetup("b"), 5);
  EXPECT_EQ(run("itf_read_running_project_KELP", {"ignored"}), Answer{resultOf(2, a, b)});
}

// What a refresh prints for each moving body: it read its motion file to the end.
const std::string kMotionRead = "File End is reached\n";

TEST_F(MarineProjectCommands,
       RemovingByPathReportsEachPathNotLoadedThenRefreshesAndResetsTheCurrentIndexes) {
  const std::string a = load(caseSetup("a"), 5);
  const std::string b = load(caseSetup("b"), 5);
  const std::string c = load(caseSetup("c"), 5);
  run("itf_set_current_project_KELP", {c});
  monitor_->currentBlock = 4;
  EXPECT_EQ(monitor_->currentProject, 2);

  EXPECT_EQ(run("itf_remove_res_file_KELP", {"3", a + " missing.res " + c}),
            (Answer{"", "Error! Could not remove project missing.res\n" + kMotionRead}));
  EXPECT_EQ(run("itf_read_running_project_KELP"), Answer{resultOf(1, b)});
  EXPECT_EQ(monitor_->currentProject, 0);
  EXPECT_EQ(monitor_->currentBlock, 0);
}

TEST_F(MarineProjectCommands, RemovingReadsOnlyAsManyPathsAsCounted) {
  const std::string a = load(caseSetup("a"), 5);
  const std::string b = load(caseSetup("b"), 5);
  EXPECT_EQ(run("itf_remove_res_file_KELP", {"1", a + " " + b}), (Answer{"", kMotionRead}));
  EXPECT_EQ(run("itf_read_running_project_KELP"), Answer{resultOf(1, b)});
  EXPECT_EQ(run("itf_remove_res_file_KELP", {"0"}), (Answer{"", kMotionRead}));
  EXPECT_EQ(run("itf_remove_res_file_KELP"), (Answer{"", kMotionRead}));
  EXPECT_EQ(run("itf_read_running_project_KELP"), Answer{resultOf(1, b)});
}

TEST_F(MarineProjectCommands, RemovingEverythingLeavesNoProject) {
  load(caseSetup("a"), 5);
  load(caseSetup("b"), 5);
  EXPECT_EQ(run("itf_remove_ALL_res_files_KELP"), Answer{""});
  EXPECT_EQ(run("itf_read_running_project_KELP"), Answer{"0"});
}

TEST_F(MarineProjectCommands, TheCurrentProjectIsChosenByPathAndGivesOneBlock) {
  EXPECT_EQ(run("itf_get_current_nb_blocks_KELP"),
            (Answer{"0", "itf_get_current_nb_blocks - res is: zero\n"}));
  const std::string a = load(caseSetup("a"), 5);
  const std::string b = load(caseSetup("b"), 5);
  EXPECT_EQ(run("itf_set_current_project_KELP", {b}), Answer{""});
  EXPECT_EQ(monitor_->currentProject, 1);
  EXPECT_EQ(run("itf_set_current_project_KELP", {"unknown.res"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_project_KELP"), Answer{""});
  EXPECT_EQ(monitor_->currentProject, 1);
  EXPECT_EQ(run("itf_get_current_nb_blocks_KELP"), Answer{"1"});

  run("itf_remove_res_file_KELP", {"1", a});
  run("itf_remove_ALL_res_files_KELP");
  EXPECT_EQ(run("itf_get_current_nb_blocks_KELP"),
            (Answer{"0", "itf_get_current_nb_blocks - res is: zero\n"}));
}

TEST_F(MarineProjectCommands, RefreshingNowAnswersWhetherAnyProjectChanged) {
  EXPECT_EQ(run("itf_update_now_monitor_KELP"), Answer{"0"});
  MarineCaseWriter writer = written(caseSetup("a"), 5);
  load(writer.setup().residualPath().string());
  load(caseSetup("b"), 5);
  EXPECT_EQ(run("itf_update_now_monitor_KELP").result, "0");
  writer.appendIteration();
  EXPECT_EQ(run("itf_update_now_monitor_KELP").result, "1");
  EXPECT_EQ(run("itf_update_now_monitor_KELP").result, "0");
}

TEST_F(MarineProjectCommands, TheWorkUnitIsTheProcessFlag) {
  EXPECT_EQ(run("itf_get_work_unit_KELP"), Answer{"0"});
  fileformat::workUnit = 1;
  EXPECT_EQ(run("itf_get_work_unit_KELP"), Answer{"1"});
}

TEST_F(MarineProjectCommands,
       TheAxisTitleFollowsTheRunModeAndAMissingProjectIsNamedAfterAnotherCommand) {
  const std::string steady = load(caseSetup("steady", RunMode::steady), 3);
  const std::string unsteady = load(caseSetup("unsteady"), 5);
  EXPECT_EQ(run("get_KELP_stational_mode_KELP", {steady}), Answer{"Nonlinear Iterations"});
  EXPECT_EQ(run("get_KELP_stational_mode_KELP", {unsteady}), Answer{"Time [s]"});
  EXPECT_EQ(
      run("get_KELP_stational_mode_KELP", {"other.res"}),
      (Answer{"Nonlinear Iterations", missingProject("itf_get_moment_conv_value", "other.res")}));
  EXPECT_EQ(run("get_KELP_stational_mode_KELP"),
            (Answer{"Nonlinear Iterations", missingProject("itf_get_moment_conv_value", "")}));
}

TEST_F(MarineProjectCommands, PreferencesAreReadFromTheMonitorGroup) {
  fs::create_directories(folder_);
  const fs::path preferences = folder_ / "preferences.dat";
  std::ofstream(preferences)
      << "PRODUCT Other\nRefresh 9\nEND_PRODUCT\nPRODUCT Monitor\nRefresh 5\nEmpty\nEND_PRODUCT\n";
  monitor_.reset();
  monitor_.emplace(std::vector<std::string>{"monitor"}, preferences.string());

  EXPECT_EQ(run("get_preference", {"REFRESH", "1"}), Answer{"5"});
  EXPECT_EQ(run("get_preference", {"Size", "640 480"}), Answer{"640 480"});
  EXPECT_EQ(run("get_preference", {"empty", "fallback"}), Answer{""});
  EXPECT_EQ(run("get_preference", {"size"}), Answer{""});
}

TEST_F(MarineProjectCommands, RunsOfTheSameSetUpAreConsistentAndMissingProjectsCountAsConsistent) {
  const std::string a = load(caseSetup("a"), 5);
  const std::string b = load(caseSetup("b", RunMode::steady), 3);
  CaseSetup single = caseSetup("single");
  single.bodies.pop_back();
  const std::string c = load(single, 5);

  EXPECT_EQ(run("itm_check_runs_consistency", {a, b}), Answer{"1"});
  EXPECT_EQ(run("itm_check_runs_consistency", {a, c}), Answer{"0"});
  EXPECT_EQ(run("itm_check_runs_consistency", {"x.res", a}),
            (Answer{"1", missingProject("check_runs_consistency", "x.res")}));
  EXPECT_EQ(run("itm_check_runs_consistency", {a, "y.res"}),
            (Answer{"1", missingProject("check_runs_consistency", "y.res")}));
  EXPECT_EQ(run("itm_check_runs_consistency", {"x.res", "y.res"}),
            (Answer{"1", missingProject("check_runs_consistency", "x.res")}));
  EXPECT_EQ(run("itm_check_runs_consistency", {a}),
            (Answer{"1", missingProject("check_runs_consistency", "")}));
}

}  // namespace
}  // namespace marine_commands_test
