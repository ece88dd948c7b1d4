#include "solver_simulator/case_setup.h"

namespace solver_simulator {

CaseSetup defaultCaseSetup(std::filesystem::path folder, RunMode mode) {
  CaseSetup setup;
  setup.folder = std::move(folder);
  setup.mode = mode;
  setup.bodies = {
      {"hull", {"keel", "bulb"}, true, std::array<double, 3>{61.2, 0.0, -1.5}},
      {"rudder", {}, false, std::nullopt},
  };
  setup.actuatorDisks = 2;
  setup.userQuantities = {
      {"Heave force", "N", 98000.0},
      {"Pitch moment", "N.m", -4300.0},
      {"Froude number", "", 0.28},
  };
  setup.stamp = {2026, 11, 21, 14, 5, 9};
  return setup;
}

std::vector<LoadColumn> loadColumns(const CaseSetup& setup) {
  std::vector<LoadColumn> columns;
  for (std::size_t b = 0; b < setup.bodies.size(); ++b) {
    const BodySetup& body = setup.bodies[b];
    // The first body carries most of the loads, the others less and less.
    const double bodyShare = 1.0 / static_cast<double>((2 * b + 1) * (2 * b + 1));
    columns.push_back({body.name, bodyShare});
    for (std::size_t s = 0; s < body.subBodies.size(); ++s) {
      columns.push_back(
          {body.name + ":" + body.subBodies[s], bodyShare * 0.15 / static_cast<double>(s + 1)});
    }
  }
  return columns;
}

}  // namespace solver_simulator
