// Deterministic noise: a value depends only on the seed, the run, a channel
// name and an index, never on what was asked before, so that a run written
// in pieces holds the same numbers as one written at once.
#pragma once

#include <cstdint>
#include <string_view>

namespace solver_simulator {

class SolverNoise {
 public:
  SolverNoise(std::uint64_t seed, int run) : seed_(seed), run_(run) {}

  // In [0, 1).
  double unit(std::string_view channel, long long index) const;
  // In [-1, 1).
  double signedUnit(std::string_view channel, long long index) const {
    return 2.0 * unit(channel, index) - 1.0;
  }

 private:
  std::uint64_t seed_;
  int run_;
};

}  // namespace solver_simulator
