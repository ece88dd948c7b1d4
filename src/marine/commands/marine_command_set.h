// The script commands of marine mode, in the order in which they are
// registered.
#pragma once

#include <array>

#include "script/command.h"

class ArgStream;
class ResultStream;

namespace marine {

// The loaded projects and the script's current values.
void addResFile(ArgStream& arguments, ResultStream& result);
void removeResFile(ArgStream& arguments, ResultStream& result);
void removeAllResFiles(ArgStream& arguments, ResultStream& result);
void setCurrentProject(ArgStream& arguments, ResultStream& result);
void getCurrentNbBlocks(ArgStream& arguments, ResultStream& result);
void readRunningProject(ArgStream& arguments, ResultStream& result);
void updateNowMonitor(ArgStream& arguments, ResultStream& result);
// itf_quit_command_KELP: ends the main loop after the current event.
void quitCommand(ArgStream& arguments, ResultStream& result);
void getWorkUnit(ArgStream& arguments, ResultStream& result);
void getStationalMode(ArgStream& arguments, ResultStream& result);
void getPreference(ArgStream& arguments, ResultStream& result);
void checkRunsConsistency(ArgStream& arguments, ResultStream& result);

// Iteration counts and the scripts' current positions.
void getNbIter(ArgStream& arguments, ResultStream& result);
void getNbIterForce(ArgStream& arguments, ResultStream& result);
void getNbIterMoment(ArgStream& arguments, ResultStream& result);
void getNbIterMotion(ArgStream& arguments, ResultStream& result);
void getCurrentNbIterForce(ArgStream& arguments, ResultStream& result);
void setCurrentNbIterForce(ArgStream& arguments, ResultStream& result);
void getCurrentNbIterMoment(ArgStream& arguments, ResultStream& result);
void setCurrentNbIterMoment(ArgStream& arguments, ResultStream& result);
void getCurrentNbIterMotion(ArgStream& arguments, ResultStream& result);
void setCurrentNbIterMotion(ArgStream& arguments, ResultStream& result);
void getCurrentNbIter(ArgStream& arguments, ResultStream& result);
void setCurrentNbIter(ArgStream& arguments, ResultStream& result);

// Converged values of the time steps.
void getForceConvLength(ArgStream& arguments, ResultStream& result);
void getMomentConvLength(ArgStream& arguments, ResultStream& result);
void getCurrentForceConvIter(ArgStream& arguments, ResultStream& result);
void getCurrentMomentConvIter(ArgStream& arguments, ResultStream& result);
void getForceConvValue(ArgStream& arguments, ResultStream& result);
void getMomentConvValue(ArgStream& arguments, ResultStream& result);
void isUnsteadyConvAvailable(ArgStream& arguments, ResultStream& result);

// Curve points and the names of the curves.
void getCurveValue(ArgStream& arguments, ResultStream& result);
void getVarsForces(ArgStream& arguments, ResultStream& result);
void getVarsMoments(ArgStream& arguments, ResultStream& result);
void getVarsMotions(ArgStream& arguments, ResultStream& result);
void getVarsResids(ArgStream& arguments, ResultStream& result);
void getForcesNumber(ArgStream& arguments, ResultStream& result);
void getMomentsNumber(ArgStream& arguments, ResultStream& result);
void getResidsNumber(ArgStream& arguments, ResultStream& result);
void getMotionsNumber(ArgStream& arguments, ResultStream& result);
void isMotionUsed(ArgStream& arguments, ResultStream& result);
void hasForces(ArgStream& arguments, ResultStream& result);

// Bodies and sub-bodies.
void getNumberOfBodies(ArgStream& arguments, ResultStream& result);
void getBodyName(ArgStream& arguments, ResultStream& result);
void getSubObjectNumber(ArgStream& arguments, ResultStream& result);
void getSubbodyName(ArgStream& arguments, ResultStream& result);
void getBodyGravityCenter(ArgStream& arguments, ResultStream& result);
void isBodyGravityCenterAvailable(ArgStream& arguments, ResultStream& result);

// Actuator disks.
void getDiskCount(ArgStream& arguments, ResultStream& result);
void getDiskQuantityCount(ArgStream& arguments, ResultStream& result);
void getDiskQuantityName(ArgStream& arguments, ResultStream& result);
void getDiskSteps(ArgStream& arguments, ResultStream& result);
void getDiskQuantityValue(ArgStream& arguments, ResultStream& result);

// The user quantities of user_data.csv.
void getNumberOfExtraQuantities(ArgStream& arguments, ResultStream& result);
void getExtraQuantityIter(ArgStream& arguments, ResultStream& result);
void setExtraQuantityIter(ArgStream& arguments, ResultStream& result);
void getExtraQuantityCapacity(ArgStream& arguments, ResultStream& result);
void getExtraQuantityValue(ArgStream& arguments, ResultStream& result);
void getExtraQuantityName(ArgStream& arguments, ResultStream& result);
void getExtraQuantityUnit(ArgStream& arguments, ResultStream& result);

// Curves defined by formulas.
void addCustomPlot(ArgStream& arguments, ResultStream& result);
void editCustomPlot(ArgStream& arguments, ResultStream& result);
void getCustomPlotPointsNo(ArgStream& arguments, ResultStream& result);
void getCustomPlotPoint(ArgStream& arguments, ResultStream& result);
void removeCustomPlot(ArgStream& arguments, ResultStream& result);
void getCustomPlotsNo(ArgStream& arguments, ResultStream& result);
void getCustomPlotFormula(ArgStream& arguments, ResultStream& result);

inline constexpr std::array<CommandRow, 67> kMarineCommands{{
    {"itf_add_res_file_KELP", addResFile},
    {"itf_remove_res_file_KELP", removeResFile},
    {"itf_remove_ALL_res_files_KELP", removeAllResFiles},
    {"itf_set_current_project_KELP", setCurrentProject},
    {"itf_get_current_nb_blocks_KELP", getCurrentNbBlocks},
    {"itf_read_running_project_KELP", readRunningProject},
    {"itf_update_now_monitor_KELP", updateNowMonitor},
    {"itf_quit_command_KELP", quitCommand},
    {"itf_get_work_unit_KELP", getWorkUnit},
    {"get_KELP_stational_mode_KELP", getStationalMode},
    {"get_preference", getPreference},
    {"itm_check_runs_consistency", checkRunsConsistency},
    {"itf_get_nbIter_KELP", getNbIter},
    {"itf_get_nbIter_force_KELP", getNbIterForce},
    {"itf_get_nbIter_moment_KELP", getNbIterMoment},
    {"itf_get_nbIter_motion_KELP", getNbIterMotion},
    {"itf_get_current_nbIter_force_KELP", getCurrentNbIterForce},
    {"itf_set_current_nbIter_force_KELP", setCurrentNbIterForce},
    {"itf_get_current_nbIter_moment_KELP", getCurrentNbIterMoment},
    {"itf_set_current_nbIter_moment_KELP", setCurrentNbIterMoment},
    {"itf_get_current_nbIter_motion_KELP", getCurrentNbIterMotion},
    {"itf_set_current_nbIter_motion_KELP", setCurrentNbIterMotion},
    {"itf_get_current_nbIter_KELP", getCurrentNbIter},
    {"itf_set_current_nbIter_KELP", setCurrentNbIter},
    {"itf_get_force_conv_length", getForceConvLength},
    {"itf_get_moment_conv_length", getMomentConvLength},
    {"itf_get_current_force_conv_iter", getCurrentForceConvIter},
    {"itf_get_current_moment_conv_iter", getCurrentMomentConvIter},
    {"itf_get_force_conv_value", getForceConvValue},
    {"itf_get_moment_conv_value", getMomentConvValue},
    {"is_unsteady_conv_available", isUnsteadyConvAvailable},
    {"itf_get_curve_value_KELP", getCurveValue},
    {"itf_get_KELP_vars_forces", getVarsForces},
    {"itf_get_KELP_vars_moments", getVarsMoments},
    {"itf_get_KELP_vars_motions", getVarsMotions},
    {"itf_get_KELP_vars_resids", getVarsResids},
    {"itf_get_forces_number_KELP", getForcesNumber},
    {"itf_get_moments_number_KELP", getMomentsNumber},
    {"itf_get_resids_number_KELP", getResidsNumber},
    {"itf_get_motions_number_KELP", getMotionsNumber},
    {"itf_is_motion_used", isMotionUsed},
    {"itf_has_forces", hasForces},
    {"get_number_of_bodies_KELP", getNumberOfBodies},
    {"get_body_name_KELP", getBodyName},
    {"get_sub_object_number_KELP", getSubObjectNumber},
    {"get_subbody_name_KELP", getSubbodyName},
    {"itm_get_body_gravity_center", getBodyGravityCenter},
    {"itm_is_body_gravity_center_available", isBodyGravityCenterAvailable},
    {"itf_get_disk_count", getDiskCount},
    {"itf_get_disk_quantity_count", getDiskQuantityCount},
    {"itf_get_disk_quantity_name", getDiskQuantityName},
    {"itf_get_disk_steps", getDiskSteps},
    {"itf_get_disk_quantity_value", getDiskQuantityValue},
    {"itm_get_number_of_extra_quantities", getNumberOfExtraQuantities},
    {"itm_get_extra_quantity_iter", getExtraQuantityIter},
    {"itm_set_extra_quantity_iter", setExtraQuantityIter},
    {"itm_get_extra_quantity_capacity", getExtraQuantityCapacity},
    {"itm_get_extra_quantity_value", getExtraQuantityValue},
    {"itm_get_extra_quantity_name", getExtraQuantityName},
    {"itm_get_extra_quantity_unit", getExtraQuantityUnit},
    {"itm_add_custom_plot", addCustomPlot},
    {"itm_edit_custom_plot", editCustomPlot},
    {"itm_get_custom_plot_points_no", getCustomPlotPointsNo},
    {"itm_get_custom_plot_point", getCustomPlotPoint},
    {"itm_remove_custom_plot", removeCustomPlot},
    {"itm_get_custom_plots_no", getCustomPlotsNo},
    {"itm_get_custom_plot_formula", getCustomPlotFormula},
}};

void registerMarineCommands();

}  // namespace marine
