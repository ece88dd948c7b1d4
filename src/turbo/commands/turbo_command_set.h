// The script commands of turbomachinery mode (and of its "open" variant), in
// the order in which they are registered.
#pragma once

#include <array>

#include "script/command.h"

class ArgStream;
class ResultStream;

namespace turbo {

// Curves of the residual history.
void getHarmonicCurveBlockValue(ArgStream& arguments, ResultStream& result);
void getCurveValue(ArgStream& arguments, ResultStream& result);
void getCurveBlockValue(ArgStream& arguments, ResultStream& result);

// Diagram and profile files.
void updateDiagFile(ArgStream& arguments, ResultStream& result);
void addDiagFile(ArgStream& arguments, ResultStream& result);
void getNbPts(ArgStream& arguments, ResultStream& result);
void getExtradoValue(ArgStream& arguments, ResultStream& result);
void getIntradoValue(ArgStream& arguments, ResultStream& result);
void updateProfFile(ArgStream& arguments, ResultStream& result);
void addProfFile(ArgStream& arguments, ResultStream& result);
void getProfNbPts(ArgStream& arguments, ResultStream& result);
void getProfExtradoValue(ArgStream& arguments, ResultStream& result);
void getProfIntradoValue(ArgStream& arguments, ResultStream& result);

// Projects, their shape and the script's current values.
void addResFile(ArgStream& arguments, ResultStream& result);
void removeResFile(ArgStream& arguments, ResultStream& result);
void setCurrentProject(ArgStream& arguments, ResultStream& result);
void getCurrentNbBlocks(ArgStream& arguments, ResultStream& result);
void setCurrentBlock(ArgStream& arguments, ResultStream& result);
void getCurrentMode(ArgStream& arguments, ResultStream& result);
void getMode(ArgStream& arguments, ResultStream& result);
void readRunningProject(ArgStream& arguments, ResultStream& result);
void getNbIter(ArgStream& arguments, ResultStream& result);
void getRealNbIter(ArgStream& arguments, ResultStream& result);
void getCurrentNbIter(ArgStream& arguments, ResultStream& result);
void setCurrentNbIter(ArgStream& arguments, ResultStream& result);
void getNbBlock(ArgStream& arguments, ResultStream& result);
void setWorkUnit(ArgStream& arguments, ResultStream& result);
void getWorkUnit(ArgStream& arguments, ResultStream& result);
void updateNowMonitor(ArgStream& arguments, ResultStream& result);
void print(ArgStream& arguments, ResultStream& result);
void quitCommand(ArgStream& arguments, ResultStream& result);
void getResidualsPerRowChoice(ArgStream& arguments, ResultStream& result);

inline constexpr std::array<CommandRow, 32> kTurboCommands{{
    {"itf_get_harmonic_curve_block_value", getHarmonicCurveBlockValue},
    {"itf_update_diag_file", updateDiagFile},
    {"itf_add_diag_file", addDiagFile},
    {"itf_get_nbPts", getNbPts},
    {"itf_get_extrado_value", getExtradoValue},
    {"itf_get_intrado_value", getIntradoValue},
    {"itf_update_prof_file", updateProfFile},
    {"itf_add_prof_file", addProfFile},
    {"itf_get_prof_nbPts", getProfNbPts},
    {"itf_get_prof_extrado_value", getProfExtradoValue},
    {"itf_get_prof_intrado_value", getProfIntradoValue},
    {"itf_add_res_file", addResFile},
    {"itf_remove_res_file", removeResFile},
    {"itf_set_current_project", setCurrentProject},
    {"itf_get_current_nb_blocks", getCurrentNbBlocks},
    {"itf_set_current_block", setCurrentBlock},
    {"itf_get_current_mode", getCurrentMode},
    {"itf_get_mode", getMode},
    {"itf_read_running_project", readRunningProject},
    {"itf_get_nbIter", getNbIter},
    {"itf_get_real_nbIter", getRealNbIter},
    {"itf_get_current_nbIter", getCurrentNbIter},
    {"itf_set_current_nbIter", setCurrentNbIter},
    {"itf_get_nbBlock", getNbBlock},
    {"itf_get_curve_value", getCurveValue},
    {"itf_get_curve_block_value", getCurveBlockValue},
    {"itf_work_unit", setWorkUnit},
    {"itf_get_work_unit", getWorkUnit},
    {"itf_update_now_monitor", updateNowMonitor},
    {"itf_print", print},
    {"itf_quit_command", quitCommand},
    {"itf_get_residuals_per_row_choice", getResidualsPerRowChoice},
}};

void registerTurboCommands();

}  // namespace turbo
