// Where a non-linear iteration stands in the run.
//
// An unsteady run solves time step k (from 1) at the time k x dt with the
// iterations (k-1)n+1 ... kn, n iterations per time step; the last of them
// completes the step. In a steady run every iteration is a step of its own,
// at the pseudo-time i x dt.
#pragma once

#include "solver_simulator/case_setup.h"

namespace solver_simulator {

struct IterationPlace {
  int iteration = 1;
  int step = 1;   // the time step (unsteady) or the iteration (steady)
  int inner = 1;  // the iteration's place within its time step, from 1
  double time = 0.0;
  bool completesStep = true;
};

// Iterations count from 1.
IterationPlace placeOf(const CaseSetup& setup, int iteration);

}  // namespace solver_simulator
