// What the simulated marine solver computes: the case, its bodies and the
// quantities it reports, and the run (mode, time step, start, seed).
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "solver_simulator/run_stamp.h"

namespace solver_simulator {

enum class RunMode { steady, unsteady };

struct BodySetup {
  std::string name;
  std::vector<std::string> subBodies;
  // A moving body has its motion file Mvt_<name>.dat.
  bool moving = false;
  std::optional<std::array<double, 3>> gravityCentre;
};

// A quantity of user_data.csv: its title is the name and, when there is one,
// the unit in brackets ("Heave force [N]").
struct UserQuantity {
  std::string name;
  std::string unit;
  double level = 1.0;  // the value the quantity settles to
};

struct CaseSetup {
  std::filesystem::path folder;
  std::string caseName = "ship";
  RunMode mode = RunMode::unsteady;
  // Physical time step of an unsteady run; in a steady run the pseudo-time
  // step, so that the time columns hold iteration x time step.
  double timeStep = 0.05;
  // Non-linear iterations per physical time step (unsteady runs).
  int iterationsPerTimeStep = 5;
  std::vector<BodySetup> bodies;
  int actuatorDisks = 0;
  std::vector<UserQuantity> userQuantities;
  RunStamp stamp;
  std::uint64_t seed = 1;

  bool unsteady() const { return mode == RunMode::unsteady; }
  std::filesystem::path residualPath() const { return folder / (caseName + ".res"); }
};

// The case used by the tests and the examples: the body "hull" with the
// sub-bodies "keel" and "bulb", moving; the body "rudder", fixed; two
// actuator disks; three user quantities.
CaseSetup defaultCaseSetup(std::filesystem::path folder, RunMode mode = RunMode::unsteady);

// One value column of the force and moment files: a body ("hull") or a
// sub-body ("hull:keel"), and its share of the loads of the whole ship.
struct LoadColumn {
  std::string name;
  double share = 1.0;
};

// The value columns of the force and moment files: each body followed by
// its sub-bodies.
std::vector<LoadColumn> loadColumns(const CaseSetup& setup);

}  // namespace solver_simulator
