#include "solver_simulator/settling_signal.h"

#include <cmath>
#include <numbers>

namespace solver_simulator {

namespace {

constexpr double kSteadyDampingIterations = 10.0;
constexpr double kSteadyAngularStep = 0.5;  // radians per iteration
constexpr double kUnsteadyFadingSteps = 6.0;

}  // namespace

double SettlingSignal::steady(int iteration) const {
  const double damping = std::exp(-iteration / kSteadyDampingIterations);
  const double angle = kSteadyAngularStep * iteration + phase;
  return level * (1.0 + transient * damping * std::cos(angle)) + swing * damping * std::sin(angle);
}

double SettlingSignal::unsteady(int step) const {
  const double fading = std::exp(-step / kUnsteadyFadingSteps);
  return level * (1.0 + transient * fading) +
         swing * std::sin(2.0 * std::numbers::pi * step / period + phase);
}

}  // namespace solver_simulator
