// The marine commands: what each answers and prints for good requests, at the
// edges of every index and for missing projects, in each command's own words.
#include <cmath>

#include "marine/commands/command_support.h"
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

const std::vector<Row> kReadings = {
    // Projects and the script's values.
    {"itf_read_running_project_KELP", "2 {$U}  {$S} "},
    {"itf_get_current_nb_blocks_KELP", "1"},
    {"get_KELP_stational_mode_KELP $S", "Nonlinear Iterations"},
    {"get_KELP_stational_mode_KELP $U", "Time [s]"},
    {"get_preference REFRESH 1", "5"},
    {"itm_check_runs_consistency $S $S", "1"},
    {"itm_check_runs_consistency $U $S", "0"},
    {"itm_check_runs_consistency $S y.res", "1",
     "Error in check_runs_consistency! Cannot find project 'y.res'!"},
    {"get_number_of_bodies_KELP $U", "3"},
    {"get_body_name_KELP $U 2", "buoy"},
    {"get_body_name_KELP $U 3", "", "!Wrong body index 3, the valid range is [0..3)"},
    {"get_sub_object_number_KELP $U 0", "2"},
    {"get_sub_object_number_KELP $U 3", "0", "!Wrong body index 3 (0..3)"},
    {"get_subbody_name_KELP $U 0 1", "bulb"},
    {"get_subbody_name_KELP $U 1", "rudder"},
    {"get_subbody_name_KELP $U 0 2", "", "!Wrong sub-body index 2 (0..2)"},
    {"get_subbody_name_KELP $U 3 0", "", "!Wrong body index 3 (0..3)"},
    {"itm_get_body_gravity_center $U 0", "61.2 0 -1.5"},
    {"itm_is_body_gravity_center_available $U 0", "1"},
    {"itm_is_body_gravity_center_available $U 1", "0"},
    {"itm_is_body_gravity_center_available $U -1", "0",
     "Error in is_body_gravity_center_available! Wrong body index -1, the valid range is [0..3)"},
    // Iteration counts: per iteration, per time step for the "Dyn" quantities.
    {"itf_get_nbIter_KELP $U", "10"},
    {"itf_get_nbIter_KELP x.res", ""},
    {"itf_get_nbIter_force_KELP $U 0 -1 3", "3"},
    {"itf_get_nbIter_force_KELP $U 0 0 3", "2"},
    {"itf_get_nbIter_force_KELP $S 0 -1 1", "0"},
    {"itf_get_nbIter_moment_KELP $U 1 0 0", "0", "!Wrong sub-body index 0 (0..0)"},
    {"itf_get_nbIter_motion_KELP $U 0", "3"},
    {"itf_get_nbIter_motion_KELP $U 1", "0"},
    // Converged values of the time steps.
    {"itf_get_force_conv_length $U 0 1 3", "2"},
    {"itf_get_moment_conv_length $U 1 -1 11", "3"},
    {"itf_get_current_force_conv_iter $U 0 0 1", "3"},
    {"itf_get_current_moment_conv_iter $U 1 -1 11", "3"},
    {"itf_get_force_conv_value 1 $U 0 -1 2", "7.25"},
    {"itf_get_force_conv_value 13 $U 0 -1 2", "3.40282346638529e+38"},
    {"itf_get_force_conv_value 13 $U 0 0 2", "3.40282346638529e+38"},
    {"itf_get_force_conv_value 13 $U 0 1 2", "9.99999968028569e+37"},
    {"itf_get_moment_conv_value 11 $U 1 -1 2", "-1"},
    {"itf_get_force_conv_value 1 $U 0 -1 3", "0", "!Wrong iteration index 3 (0..3)"},
    {"itf_get_moment_conv_value 11 $U 0 1 -1", "0", "!Wrong iteration index -1 (0..3)"},
    {"itf_get_force_conv_value 1 x.res 9 9 99", "0", "!Cannot find project 'x.res'!"},
    {"itf_get_force_conv_value 18 $U 9 9 99", "0", "!Wrong force index 18 (0..18)"},
    {"itf_get_moment_conv_value 21 $U 0 -1 0", "0", "!Wrong force index 21 (0..21)"},
    {"itf_get_force_conv_value 1 $U 9 9 99", "0", "!Wrong body index 9 (0..3)"},
    {"is_unsteady_conv_available $U", "1"},
    {"is_unsteady_conv_available $S", "0"},
    // Curve points: at the iteration number of a steady run, at the time of
    // an unsteady one; missing values as the largest float.
    {"itf_get_curve_value_KELP $S Forces 0 -1 0 3", "7 1520.5"},
    {"itf_get_curve_value_KELP $S Forces 0 -1 0 0", "1 -1092.69702148438"},
    {"itf_get_curve_value_KELP $S Resids 0 -1 0 0", "1 0.84867000579834"},
    {"itf_get_curve_value_KELP $S Motions 0 9 5 3", "7 3.40282346638529e+38"},
    {"itf_get_curve_value_KELP $S Motions 0 -1 6 3", "7 0"},
    {"itf_get_curve_value_KELP $S Motions 0 -1 0 4", "0 0"},
    {"itf_get_curve_value_KELP $S Resids 9 9 5 3", "7 3.40282346638529e+38"},
    {"itf_get_curve_value_KELP $S Resids 0 -1 8 3", "7 0.5"},
    {"itf_get_curve_value_KELP $S Resids 0 -1 0 4", "0 0"},
    {"itf_get_curve_value_KELP $S Forces 0 -1 0 4", "0 0",
     "Error in BodyObject::getForce! Curve 'Fx' has only 4 elements while element #4 was "
     "requested."},
    {"itf_get_curve_value_KELP $S Forces 0 -1 18 3", "7 0",
     "Error in BodyObject::getForce! Curve '' is not found."},
    {"itf_get_curve_value_KELP $U Forces 0 -1 1 2", "0.0500000007450581 7.25"},
    {"itf_get_curve_value_KELP $U Motions 0 -1 5 2", "0.150000005960464 3.40282346638529e+38"},
    {"itf_get_curve_value_KELP x.res Forces 0 -1 0 0", "",
     "!Cannot find project 'x.res'! category = Forces"},
    {"itf_get_curve_value_KELP $S Forces 2 -1 0 3", "",
     "!Wrong body index 2 (0..2) category Forces"},
    {"itf_get_curve_value_KELP $S forces 0 -1 0 3", "", "!Unknown category name forces"},
    // The names of the curves and whether a run writes them.
    {"itf_get_KELP_vars_forces {} 4", "-1 {FxV} "},
    {"itf_get_KELP_vars_forces $U 1", "1 {FxDyn} "},
    {"itf_get_KELP_vars_forces $S 1", "0 {FxDyn} "},
    {"itf_get_KELP_vars_forces $S 10", "0 {FyV} "},
    {"itf_get_KELP_vars_moments $U 15", "1 {MzPDyn} "},
    {"itf_get_KELP_vars_moments $U 20", "0 {} "},
    {"itf_get_KELP_vars_forces $U 18", "-1 {} ", "!Wrong force index: 18"},
    {"itf_get_KELP_vars_forces {} -1", "-1 {} ", "!Wrong force index: -1"},
    {"itf_get_KELP_vars_moments x.res 21", "-1 {} ", "!Wrong moment index: 21"},
    {"itf_get_KELP_vars_forces x.res 2", "-1 {} ", "!Cannot find project 'x.res'!"},
    {"itf_get_KELP_vars_resids {} 8", "-1 {} "},
    {"itf_get_KELP_vars_resids $U 0", "1 {ResU} "},
    {"itf_get_KELP_vars_resids $U 6", "0 {ResE} "},
    {"itf_get_KELP_vars_resids $U -1", "0 {} "},
    {"itf_get_KELP_vars_motions $U 0", "1 {X} "},
    {"itf_get_KELP_vars_motions $U 6", "-1 {} ", "!Wrong force index: 6"},
    {"itf_get_KELP_vars_motions {} 2", "-1 {} ", "!Cannot find project ''!"},
    {"itf_get_motions_number_KELP $U", "6"},
    {"itf_is_motion_used $U 0", "1"},
    {"itf_is_motion_used $U 1", "0"},
    {"itf_is_motion_used $U 3", "0", "!Wrong body index 3 (0..3)"},
    {"itf_has_forces $U 1", "1"},
    {"itf_has_forces $U 2", "0"},
    {"itf_has_forces $U 3", "0", "!Wrong body index 3 (0..3)"},
    {"itf_get_disk_count $U", "2"},
    {"itf_get_disk_count x.res", "0", "!No project x.res present."},
    {"itf_get_disk_quantity_count $U 1", "2"},
    {"itf_get_disk_quantity_name $U 0 0", "Thrust"},
    {"itf_get_disk_steps $U 1", "3"},
    {"itf_get_disk_quantity_value $U 0 0 2", "100.5"},
    {"itf_get_disk_steps $U 2", "0", "!No actuator disk object with index 2."},
    {"itf_get_disk_quantity_name $U 1 2", "", "!No quantity #2 for body #1."},
    {"itf_get_disk_quantity_value $U 0 0 3", "0", "!Wrong step number 3 for disk 0."},
    {"itm_get_number_of_extra_quantities $U", "4"},
    {"itm_get_number_of_extra_quantities x.res", "0", ":wrong project path 'x.res'."},
    {"itm_get_extra_quantity_name $U 0", "Time"},
    {"itm_get_extra_quantity_unit $U 2", "N.m"},
    {"itm_get_extra_quantity_unit $U 3", ""},
    {"itm_get_extra_quantity_capacity $U 1", "3"},
    {"itm_get_extra_quantity_value $U 1 2", "98000.5"},
    {"itm_get_extra_quantity_value $U 1 3", "0",
     ":wrong iteration number 3. The plot for quantity 'Heave force' in project '$U' has 3 points "
     "overall."},
    {"itm_get_extra_quantity_iter $U 4", "0",
     ":wrong quantity number 4 in project '$U'. 4 quantities available."},
    {"itm_get_extra_quantity_name $U 4", "",
     ":wrong quantity number 4. 4 quantities available in the project '$U'."},
};

TEST_F(MarineCommands, AnswerAndReport) { expectRows(kReadings); }

TEST_F(MarineCommands, CurrentPositionsAreKeptPerTargetAndSetOnlyWithinRange) {
  expectRows({
      {"itf_set_current_nbIter_force_KELP $U 0 -1 4 25", ""},
      {"itf_set_current_nbIter_force_KELP $U 0 1 4 7", ""},
      {"itf_set_current_nbIter_moment_KELP $U 1 -1 20 3", ""},
      {"itf_set_current_nbIter_force_KELP $U 0 2 4 9", "", "!Wrong sub-body index 2 (0..2)"},
      {"itf_get_current_nbIter_force_KELP $U 0 -1 4", "25"},
      {"itf_get_current_nbIter_force_KELP $U 0 1 4", "7"},
      {"itf_get_current_nbIter_force_KELP $U 0 0 4", "0"},
      {"itf_get_current_nbIter_force_KELP $U 0 -1 5", "0"},
      {"itf_get_current_nbIter_moment_KELP $U 0 -1 4", "0"},
      {"itf_get_current_nbIter_moment_KELP $U 1 -1 20", "3"},
      // Per motion of a moving body; a fixed body keeps none.
      {"itf_set_current_nbIter_motion_KELP $U 0 2 9", ""},
      {"itf_set_current_nbIter_motion_KELP $U 1 2 9", ""},
      {"itf_get_current_nbIter_motion_KELP $U 0 2", "9"},
      {"itf_get_current_nbIter_motion_KELP $U 1 2", "0"},
      {"itf_set_current_nbIter_motion_KELP $U 3 0 1", "", "!Wrong body index 3 (0..3)"},
      {"itf_get_current_nbIter_motion_KELP $U 3 0", "0", "!Wrong body index 3 (0..3)"},
      // The project's table of 47 slots.
      {"itf_set_current_nbIter_KELP 0 $U 11", ""},
      {"itf_set_current_nbIter_KELP 46 $U 12", ""},
      {"itf_set_current_nbIter_KELP 47 $U 13", ""},
      {"itf_set_current_nbIter_KELP 3 x.res 5", "",
       "Error in itf_get_current_nbIter_KELP! Cannot find project 'x.res'!"},
      {"itf_get_current_nbIter_KELP 0 $U", "11"},
      {"itf_get_current_nbIter_KELP 46 $U", "12"},
      {"itf_get_current_nbIter_KELP 47 $U", "0"},
      // A user quantity's position goes up to its capacity itself.
      {"itm_set_extra_quantity_iter $U 1 3", ""},
      {"itm_set_extra_quantity_iter $U 1 4", "",
       ":cannot set current iteration number for quantity 'Heave force' in project '$U', maximum "
       "3"},
      {"itm_get_extra_quantity_iter $U 1", "3"},
      {"itm_get_extra_quantity_iter $U 2", "0"},
      {"itm_set_extra_quantity_iter $U 1 0", ""},
      {"itm_get_extra_quantity_iter $U 1", "0"},
  });
}

TEST_F(MarineCommands, CustomPlotsAreAddedEditedAndRemovedByNumber) {
  const std::string count = " Number of custom plots in the project: ";
  expectRows({
      {"itm_add_custom_plot $S Fx_hull+Fx_keel", "0"},
      {"itm_add_custom_plot $S 2*t", "1"},
      {"itm_add_custom_plot $S Fx_nobody", "-1"},
      {"itm_get_custom_plots_no $S", "2"},
      {"itm_get_custom_plot_points_no $S 0", "4"},
      {"itm_get_custom_plot_point $S 0 3", "7 1730.75"},
      {"itm_get_custom_plot_point $S 0 4", "0 0",
       "Error in get_custom_plot_point! Wrong point number 4 for custom plot #0 'Fx_hull+Fx_keel' "
       "in project '$S'. Number of points is 4."},
      {"itm_get_custom_plot_point $S 2 0", "0 0",
       "Error in get_custom_plot_point! Cannot find custom plot #2 in project '$S'." + count +
           "2."},
      {"itm_edit_custom_plot $S 0 t", "1"},
      {"itm_edit_custom_plot $S 0 Fx_nobody", "0"},
      {"itm_get_custom_plot_formula $S 0", "t"},
      {"itm_edit_custom_plot $S 2 t", "0",
       "Error in edit_custom_plot! Cannot find plot #2 in project '$S'." + count + "2."},
      {"itm_remove_custom_plot $S 0", ""},
      {"itm_get_custom_plots_no $S", "1"},
      {"itm_get_custom_plot_formula $S 0", "2*t"},
      {"itm_remove_custom_plot $S 1", "",
       "Error in remove_custom_plot! Cannot find custom plot #1 in project '$S'!" + count + "1."},
  });
}

TEST_F(MarineCommands, ProjectsAreAddedAgainRemovedByPathAndAllAtOnce) {
  expectRows({
      {"itf_add_res_file_KELP nowhere.res", "1 {nowhere.res} ",
       "Residual file nowhere.res is not found"},
      {"itf_add_res_file_KELP nowhere.res", "1 {nowhere.res} ",
       "Project already loaded\nResidual file nowhere.res is not found"},
      {"itf_read_running_project_KELP", "4 {$U}  {$S}  {nowhere.res}  {nowhere.res} "},
      {"itf_remove_res_file_KELP 3 $U|missing.res|nowhere.res", "",
       "Error! Could not remove project missing.res\nFile End is reached\nResidual file "
       "nowhere.res is not found"},
      {"itf_read_running_project_KELP", "2 {$S}  {nowhere.res} "},
      {"itf_remove_ALL_res_files_KELP", ""},
      {"itf_read_running_project_KELP", "0"},
      {"itf_get_current_nb_blocks_KELP", "0", "itf_get_current_nb_blocks - res is: zero"},
  });
}

TEST_F(MarineCommands, SelectingTheCurrentProjectAndRefreshingNow) {
  expectRows({{"itf_set_current_project_KELP $S", ""}, {"itf_set_current_project_KELP x.res", ""}});
  EXPECT_EQ(monitor_->currentProject, 1);
  monitor_->currentBlock = 4;
  append("s/ship.res", "8 1 1 1 1 1 1 1\n");
  // Each refresh reads the motion files of both runs to their ends.
  const std::string motionsRead = "File End is reached\nFile End is reached";
  expectRows({{"itf_update_now_monitor_KELP", "1", motionsRead},
              {"itf_update_now_monitor_KELP", "0", motionsRead},
              {"itf_remove_res_file_KELP 0", "", motionsRead}});
  EXPECT_EQ(monitor_->currentProject, 0);
  EXPECT_EQ(monitor_->currentBlock, 0);
}

TEST_F(MarineCommands, InWorkUnitsResidualsStandAtTheTimesOfTheFirstBody) {
  fileformat::workUnit = 1;
  expectRows({{"itf_get_work_unit_KELP", "1"},
              {"itf_get_curve_value_KELP $S Resids 0 -1 1 3", "0.200000002980232 0.25"},
              {"itf_get_curve_value_KELP $S Resids 0 -1 1 4", "0 0"}});
}

TEST(MarineMissingPoints, NotANumberReadsAsTheLargestFloat) {
  EXPECT_EQ(marine::sanitised(std::nan("")), marine::kMissingPoint);
}

}  // namespace
}  // namespace marine_commands_test
