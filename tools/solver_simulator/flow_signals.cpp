#include "solver_simulator/flow_signals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

namespace solver_simulator {
namespace {

// Residuals, per equation: log10 of the first residual, decades lost per
// iteration (steady) and per inner iteration (unsteady).
using PerEquation = std::array<double, kResidualNames.size()>;
constexpr PerEquation kResidualStart = {0.0, -0.1, -0.15, 0.05, -0.3, -0.4};
constexpr PerEquation kSteadyDecadesPerIteration = {0.070, 0.066, 0.066, 0.060, 0.052, 0.056};
constexpr PerEquation kInnerDecadesPerIteration = {0.55, 0.52, 0.52, 0.48, 0.42, 0.45};
constexpr double kSteadyFloor = -7.0;
constexpr double kUnsteadyFloor = -8.0;
// Every time step starts a little lower than the one before, down to this.
constexpr double kStepStartFloor = -3.0;
constexpr double kStepStartDecadesPerStep = 0.05;
constexpr double kResidualNoiseDecades = 0.12;

constexpr double kCpuSecondsPerIteration = 0.41;

// Loads of the whole ship per component (N, N.m) and the viscous share.
using PerComponent = std::array<double, kLoadComponents.size()>;
constexpr PerComponent kLoadLevel = {-1520.0, 35.0, 98000.0, 120.0, -4300.0, 60.0};
constexpr PerComponent kViscousShare = {0.62, 0.15, 0.01, 0.05, 0.02, 0.12};
// Inner iterations close this fraction of what is left at each iteration.
constexpr double kInnerContraction = 0.3;

// Motions: equilibrium, oscillation amplitude and period (time steps).
using PerMotionColumn = std::array<double, kMotionColumns.size()>;
constexpr PerMotionColumn kMotionLevel = {0.0, 0.0, -0.10, 0.0, 0.010, 0.0};
constexpr PerMotionColumn kMotionSwing = {0.012, 0.0, 0.02, 0.003, 0.004, 0.0008};
constexpr PerMotionColumn kMotionPeriod = {16.0, 16.0, 16.0, 24.0, 16.0, 32.0};

// Actuator disks: thrust (N) and torque (N.m) of the first disk.
constexpr std::array<double, kDiskQuantities.size()> kDiskLevel = {760.0, 48.0};

std::string loadChannel(int component, LoadPart part, const LoadColumn& column) {
  return std::string(kLoadComponents[static_cast<std::size_t>(component)]) +
         (part == LoadPart::pressure ? "P " : "V ") + column.name;
}

}  // namespace

FlowSignals::FlowSignals(const CaseSetup& setup, int run)
    : unsteady_(setup.unsteady()), noise_(setup.seed, run) {
  for (const UserQuantity& quantity : setup.userQuantities) {
    userLevels_.push_back(quantity.level);
  }
}

double FlowSignals::valueAt(const SettlingSignal& signal, const IterationPlace& place) const {
  return unsteady_ ? signal.unsteady(place.step) : signal.steady(place.iteration);
}

double FlowSignals::residual(std::size_t equation, const IterationPlace& place) const {
  const double start = kResidualStart[equation];
  double decades = 0.0;
  if (unsteady_) {
    const double stepStart =
        std::max(kStepStartFloor, start - kStepStartDecadesPerStep * (place.step - 1));
    decades = std::max(kUnsteadyFloor,
                       stepStart - kInnerDecadesPerIteration[equation] * (place.inner - 1));
  } else {
    decades = std::max(kSteadyFloor,
                       start - kSteadyDecadesPerIteration[equation] * (place.iteration - 1));
  }
  const std::string channel(kResidualNames[equation]);
  return std::pow(10.0,
                  decades + kResidualNoiseDecades * noise_.signedUnit(channel, place.iteration));
}

double FlowSignals::cpuSeconds(int iteration) const {
  // A tenth of an iteration's worth of jitter either way: the time only grows.
  return kCpuSecondsPerIteration * (iteration + 0.1 * noise_.signedUnit("cpu", iteration));
}

double FlowSignals::loadPart(const LoadColumn& column, int component, LoadPart part,
                             const IterationPlace& place) const {
  const auto c = static_cast<std::size_t>(component);
  const bool viscous = part == LoadPart::viscous;
  const double level =
      kLoadLevel[c] * column.share * (viscous ? kViscousShare[c] : 1.0 - kViscousShare[c]);
  const std::string channel = loadChannel(component, part, column);
  SettlingSignal signal;
  signal.level = level;
  signal.transient = viscous ? 0.5 : 0.35;
  signal.swing = std::abs(level) * (viscous ? 0.008 : 0.03);
  signal.phase = 2.0 * std::numbers::pi * noise_.unit(channel, 0);
  const double noise = noise_.signedUnit(channel, place.iteration);
  if (!unsteady_) {
    return valueAt(signal, place) +
           0.004 * std::abs(level) * std::exp(-place.iteration / 25.0) * noise;
  }
  // Inner iterations move from the value of the previous time step to the
  // value of this one.
  const double target = signal.unsteady(place.step);
  const double previous = signal.unsteady(place.step - 1);
  const double left = std::pow(kInnerContraction, place.inner);
  return target + (previous - target) * left + 0.002 * std::abs(level) * left * noise;
}

double FlowSignals::load(const LoadColumn& column, const LoadFile& file,
                         const IterationPlace& place) const {
  if (file.part != LoadPart::total) return loadPart(column, file.component, file.part, place);
  return loadPart(column, file.component, LoadPart::pressure, place) +
         loadPart(column, file.component, LoadPart::viscous, place);
}

double FlowSignals::motion(std::size_t body, std::size_t column,
                           const IterationPlace& place) const {
  SettlingSignal signal;
  signal.level = kMotionLevel[column];
  signal.transient = -1.0;  // from rest
  signal.swing = kMotionSwing[column];
  signal.period = kMotionPeriod[column];
  signal.phase = 0.4 * static_cast<double>(column) + 0.5 * static_cast<double>(body);
  const std::string channel =
      "motion " + std::to_string(body) + " " + std::string(kMotionColumns[column]);
  return valueAt(signal, place) +
         0.02 * kMotionSwing[column] * noise_.signedUnit(channel, place.step);
}

double FlowSignals::disk(int disk, std::size_t quantity, const IterationPlace& place) const {
  SettlingSignal signal;
  signal.level = kDiskLevel[quantity] * (1.0 - 0.05 * disk);
  signal.transient = 0.2;
  signal.swing = 0.02 * signal.level;
  signal.period = 4.0;
  signal.phase = 0.5 * std::numbers::pi * disk;
  const std::string channel =
      "disk " + std::to_string(disk) + " " + std::string(kDiskQuantities[quantity]);
  return valueAt(signal, place) + 0.003 * signal.level * noise_.signedUnit(channel, place.step);
}

double FlowSignals::user(std::size_t quantity, const IterationPlace& place) const {
  SettlingSignal signal;
  signal.level = userLevels_[quantity];
  signal.transient = 0.1;
  signal.swing = 0.02 * std::abs(signal.level);
  signal.phase = 0.9 * static_cast<double>(quantity);
  const std::string channel = "user " + std::to_string(quantity);
  return valueAt(signal, place) +
         0.002 * std::abs(signal.level) * noise_.signedUnit(channel, place.step);
}

}  // namespace solver_simulator
