// The dominant period of an oscillating series (waves in an unsteady run, a
// propeller's blade passing). The series, smoothed, is followed up through
// its mean with a hysteresis band, first with a light smoothing for a rough
// period and then with a smoothing of a tenth of it; the crossing times,
// interpolated between samples, give the period over many cycles. A period
// counts only when the autocorrelation is positive at one period and
// negative at half of it, which a correlated noise without oscillation
// never shows.
//
// Long series are looked at twice: their last 65 536 values at full
// resolution (short periods), then the whole series averaged down to that
// many values (long periods), so that the cost stays bounded.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace convergence {

struct Oscillation {
  // Positions (fractional, into the values) where the series went up
  // through its mean; empty when no period was found. At least four.
  std::vector<double> upCrossings;

  bool found() const { return !upCrossings.empty(); }
  double periodInSamples() const {
    return (upCrossings.back() - upCrossings.front()) / static_cast<double>(upCrossings.size() - 1);
  }
};

Oscillation findOscillation(std::span<const double> values);

}  // namespace convergence
