// The dominant period of an oscillating series (waves in an unsteady run, a
// propeller's blade passing). The series, smoothed by a moving average, is
// followed up through its mean with a hysteresis band of half its deviation;
// the crossing times, interpolated between samples, give the period over
// many cycles.
//
// The smoothing is not known beforehand: it is widened step by step (1, 3,
// 7, 15, ... values) until the crossings come at least six widths apart,
// which smoothed white noise does not do (its crossings come every 3 to 4.5
// widths). The period is then measured again with a smoothing of a sixth of
// it, which keeps 95 % of a sine's amplitude and takes out most of the noise,
// until two measures agree within 1 %. A
// period counts only when the autocorrelation is positive at one period and
// negative at half of it, which a correlated noise without oscillation never
// shows; otherwise the widening goes on, for a slower oscillation under a
// faster noise.
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

// The amplitude of the fundamental at the period given: twice the modulus of
// the values' Fourier coefficient at that period. Over whole periods it is
// the amplitude of a sine, and noise adds little to it (unlike the
// deviation, which holds the noise too).
double fundamentalAmplitude(std::span<const double> values, double periodInSamples);

}  // namespace convergence
