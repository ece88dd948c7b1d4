#include "solver_simulator/run_rhythm.h"

namespace solver_simulator {

IterationPlace placeOf(const CaseSetup& setup, int iteration) {
  IterationPlace place;
  place.iteration = iteration;
  if (setup.unsteady()) {
    const int perStep = setup.iterationsPerTimeStep;
    place.step = (iteration - 1) / perStep + 1;
    place.inner = (iteration - 1) % perStep + 1;
    place.completesStep = place.inner == perStep;
  } else {
    place.step = iteration;
  }
  place.time = place.step * setup.timeStep;
  return place;
}

}  // namespace solver_simulator
