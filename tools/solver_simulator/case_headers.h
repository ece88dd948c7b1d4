// The headers the solver writes at the start of a run, file by file.
#pragma once

#include <string>

#include "solver_simulator/case_setup.h"
#include "solver_simulator/solver_vocabulary.h"

namespace solver_simulator {

// <case>.res: the creation stamp, the run's mode and the columns.
std::string residualHeader(const CaseSetup& setup);
// <case>_body_param.dat: one block per body, holding its sub-bodies.
std::string bodyDescription(const CaseSetup& setup);
// eff_<quantity>.dat: the columns block and the #COLUMNS line; with
// `runBlocks` (eff_Fx.dat), first the run's mode and the body blocks.
std::string loadFileHeader(const CaseSetup& setup, const LoadFile& file, bool runBlocks);
// Mvt_<body>.dat.
std::string motionHeader();
// eff_AD.dat: the columns of every disk, then the zone line.
std::string diskHeader(const CaseSetup& setup);
// user_data.csv: the tab-separated titles.
std::string userDataHeader(const CaseSetup& setup);

}  // namespace solver_simulator
