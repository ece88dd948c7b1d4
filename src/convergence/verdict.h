// Has a curve converged? For the finite points of a series (missing points,
// the program's mark for them and non-finite values are left out):
//   - where its start-up transient ends (MSER-5, see transient.h);
//   - over the rest, the mean and its interval at the confidence asked,
//     corrected for the correlation of successive values (batch means, see
//     batch_means.h), and whether a trend is left;
//   - for an oscillating series, its period, and its mean, interval and
//     amplitude over a whole number of periods (see oscillation.h);
//   - for a residual, the orders of magnitude it dropped from its early
//     maximum and whether it still falls.
// The verdict is the first of these that holds:
//   short      fewer than kFewestSamples finite points;
//   transient  the start-up transient has not ended (or a trend keeps the
//              steady part from starting before 40 % of the series);
//   short      the steady part (whole periods for an oscillation) holds fewer
//              than kFewestSamples points or ten correlation times;
//   drifting   a trend is left in it, beyond the noise at the 99 % level;
//   wide       the interval's half-width exceeds the tolerance times |mean|;
//   converged  otherwise.
// A series of equal values has an interval of zero width and is converged.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace convergence {

struct Settings {
  double confidence = 0.95;
  // The largest half-width of the interval, relative to the mean (so a mean
  // of zero is converged only with an interval of zero width).
  double tolerance = 0.01;
};

enum class State { converged, transient, drifting, wide, shortSeries };

std::string_view stateName(State state);

struct Verdict {
  State state = State::shortSeries;
  // Points of the steady part the mean is taken over (whole periods for an
  // oscillation); all the finite points when there are fewer than
  // kFewestSamples.
  std::size_t samples = 0;
  std::optional<double> transientEnd;  // abscissa of the steady part's first point
  double mean = 0.0;
  double halfWidth = 0.0;
  double confidence = 0.95;
  bool drift = false;
  std::optional<double> period;         // in abscissa units
  std::optional<double> amplitude;      // of the oscillation's fundamental
  std::optional<double> ordersDropped;  // residuals only
  bool stillFalling = false;
};

// A series of fewer points than this is short.
inline constexpr std::size_t kFewestSamples = 100;

Verdict judge(std::span<const double> abscissae, std::span<const double> values,
              const Settings& settings, bool residual = false);

}  // namespace convergence
