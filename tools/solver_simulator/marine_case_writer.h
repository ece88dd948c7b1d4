// Writes a marine computation the way the solver does: every file from its
// start, with its header, when a run begins; then one non-linear iteration
// at a time.
//
// What an iteration writes (where it stands in the run: run_rhythm.h):
//   - always a row of <case>.res and, in each of the 18 force and moment
//     files eff_*.dat, a row at the time of its step;
//   - in an unsteady run, the iteration that completes a time step then
//     writes in each force and moment file the converged row of the step
//     (the step's time made negative, the iteration's values), a row in
//     Mvt_<body>.dat for each moving body, a row in eff_AD.dat and a row in
//     user_data.csv;
//   - in a steady run every iteration writes those motion, disk and user
//     rows, at its pseudo-time, and no converged row.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "solver_simulator/case_setup.h"
#include "solver_simulator/flow_signals.h"
#include "solver_simulator/run_rhythm.h"
#include "solver_simulator/solver_output_file.h"

namespace solver_simulator {

class MarineCaseWriter {
 public:
  // Throws std::invalid_argument for a time step or an iteration count per
  // time step that is not positive.
  explicit MarineCaseWriter(CaseSetup setup);

  // Starts the run: creates the folder and writes every file from its start
  // with its header. Throws std::runtime_error when a file cannot be written.
  void writeHeaders();
  // Appends the next iteration. With LineEnd::cutLastLine, the last line
  // written to each file stops halfway; its end is written by the next call.
  void appendIteration(LineEnd end = LineEnd::whole);
  // Writes the ends of lines that an append held back.
  void completeLines();
  // Starts a new run of the case, stamped `stamp`: every file from its start,
  // iterations from 1 again, values that differ from the previous run's.
  void restart(const RunStamp& stamp);
  // Takes up the run that an earlier writer of the same setup left after
  // `iterations` iterations: writes the ends of the lines it left
  // half-written, and goes on from there. Throws std::runtime_error when the
  // files hold something else.
  void resume(int iterations);

  const CaseSetup& setup() const { return setup_; }
  int iterationsWritten() const { return iteration_; }
  int timeStepsCompleted() const;

 private:
  void appendLoadRows(const IterationPlace& place, LineEnd end);
  void appendStepRows(const IterationPlace& place, LineEnd end);
  template <typename Action>
  void forEachFile(Action action);

  CaseSetup setup_;
  int run_ = 0;
  int iteration_ = 0;
  FlowSignals signals_;
  SolverOutputFile residuals_;
  SolverOutputFile bodyDescription_;
  std::vector<SolverOutputFile> loadFiles_;    // in the order of kLoadFiles
  std::vector<SolverOutputFile> motionFiles_;  // one per moving body, in body order
  std::optional<SolverOutputFile> disks_;
  std::optional<SolverOutputFile> userData_;
};

}  // namespace solver_simulator
