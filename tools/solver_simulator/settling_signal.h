// A quantity that settles to `level` after a start-up departure of
// `transient` x level. In a steady run it gets there through an oscillation
// damped over the iterations; in an unsteady run the departure fades with
// the time steps while the flow keeps a periodic oscillation of amplitude
// `swing` and a period of `period` time steps.
#pragma once

namespace solver_simulator {

struct SettlingSignal {
  double level = 0.0;
  double transient = 0.0;
  double swing = 0.0;
  double period = 8.0;
  double phase = 0.0;

  double steady(int iteration) const;
  double unsteady(int step) const;
};

}  // namespace solver_simulator
