#include "solver_simulator/solver_noise.h"

namespace solver_simulator {
namespace {

// The finaliser of the SplitMix64 generator: every input bit stirs every
// output bit.
std::uint64_t mix(std::uint64_t value) {
  value += 0x9e3779b97f4a7c15ULL;
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ULL;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebULL;
  return value ^ (value >> 31);
}

// FNV-1a.
std::uint64_t hashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325ULL;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001b3ULL;
  }
  return hash;
}

}  // namespace

double SolverNoise::unit(std::string_view channel, long long index) const {
  std::uint64_t state = mix(seed_);
  state = mix(state ^ static_cast<std::uint64_t>(run_));
  state = mix(state ^ hashOf(channel));
  state = mix(state ^ static_cast<std::uint64_t>(index));
  // The top 53 bits, as a double in [0, 1).
  return static_cast<double>(state >> 11) * 0x1.0p-53;
}

}  // namespace solver_simulator
