// Has a curve converged? For the finite points of a series (missing points,
// the program's mark for them and non-finite values are left out):
//   - where its start-up transient ends (MSER-5, see transient.h);
//   - over the rest, the mean and its interval at the confidence asked,
//     corrected for the correlation of successive values (batch means, see
//     batch_means.h), and whether a trend is left;
//   - for an oscillating series, its period, and its mean, interval and
//     amplitude over a whole number of periods;
//   - for a residual, the orders of magnitude it dropped from its early
//     maximum and whether it still falls.
// The verdict: converged when the steady part spans enough independent
// samples, holds no trend and its interval is within the tolerance of the
// mean; otherwise the first reason it is not (short, transient, drifting,
// wide).
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace convergence {

struct Settings {
  double confidence = 0.95;
  // The largest half-width of the interval, relative to the mean.
  double tolerance = 0.01;
};

enum class State { converged, transient, drifting, wide, shortSeries };

std::string_view stateName(State state);

struct Verdict {
  State state = State::shortSeries;
  std::size_t samples = 0;             // in the steady part (whole periods for an oscillation)
  std::optional<double> transientEnd;  // abscissa of the steady part's first point
  double mean = 0.0;
  double halfWidth = 0.0;
  double confidence = 0.95;
  bool drift = false;
  std::optional<double> period;  // in abscissa units
  std::optional<double> amplitude;
  std::optional<double> ordersDropped;  // residuals only
  bool stillFalling = false;
};

// A series of fewer points than this is short.
inline constexpr std::size_t kFewestSamples = 100;

Verdict judge(std::span<const double> abscissae, std::span<const double> values,
              const Settings& settings, bool residual = false);

}  // namespace convergence
