// The values the simulated solver reports, shaped like a converging run.
//
// Residuals fall with noise: in a steady run steadily down to a floor, in an
// unsteady run within each time step, from a level that falls slowly from
// one step to the next. Forces and moments, motions, actuator-disk loads and
// user quantities settle (see SettlingSignal); in an unsteady run the forces
// and moments reach the value of each time step through inner iterations
// that converge geometrically.
#pragma once

#include <cstddef>
#include <vector>

#include "solver_simulator/case_setup.h"
#include "solver_simulator/run_rhythm.h"
#include "solver_simulator/settling_signal.h"
#include "solver_simulator/solver_noise.h"
#include "solver_simulator/solver_vocabulary.h"

namespace solver_simulator {

class FlowSignals {
 public:
  // Runs of the same case differ by their `run` number.
  FlowSignals(const CaseSetup& setup, int run);

  // `equation` is a position in kResidualNames.
  double residual(std::size_t equation, const IterationPlace& place) const;
  // CPU seconds spent since the start of the run, at the end of an iteration.
  double cpuSeconds(int iteration) const;
  double load(const LoadColumn& column, const LoadFile& file, const IterationPlace& place) const;
  // `body` counts the moving bodies only; `column` is a position in kMotionColumns.
  double motion(std::size_t body, std::size_t column, const IterationPlace& place) const;
  // `disk` counts from 0; `quantity` is a position in kDiskQuantities.
  double disk(int disk, std::size_t quantity, const IterationPlace& place) const;
  // `quantity` is a position in the case's user quantities.
  double user(std::size_t quantity, const IterationPlace& place) const;

 private:
  double loadPart(const LoadColumn& column, int component, LoadPart part,
                  const IterationPlace& place) const;
  double valueAt(const SettlingSignal& signal, const IterationPlace& place) const;

  bool unsteady_;
  std::vector<double> userLevels_;
  SolverNoise noise_;
};

}  // namespace solver_simulator
