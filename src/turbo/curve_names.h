// The names by which the scripts ask for turbomachinery curves, and the
// position of each curve's value in an iteration record.
//
// A record of a file with B blocks and V equations holds 9 global values and
// then, per block b and equation e, the maximum residual at 9 + 2Vb + 2e and
// the rms residual one further. Equations 0 to 4 are the flow equations;
// 5 and 6 the blade force or the turbulence equations; from 5 + t on (t being
// the turbulence model's equation count) the species or harmonics.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace turbo {

inline constexpr int kGlobalNameCount = 9;
inline constexpr int kFlowEquationCount = 5;
inline constexpr int kSpeciesCount = 12;
inline constexpr int kHarmonicCount = 500;

// Builds the name tables; called once at start-up, before any lookup.
void buildCurveNameTables();

// The global names, in record order ("WorkUnit", "pu", "Lift", ...).
const std::vector<std::string>& globalNames();

// Equations the turbulence model adds: 2 for "K-E" and "K-O", 1 for
// "SPL-ALM", none otherwise.
int turbulenceEquationCount(std::string_view turbulence);

// Position of the named curve of `block` in a record with `nbVars` equations
// per block, for a run whose turbulence model adds `turbulenceCount`
// equations. An unknown name gives 0, the "WorkUnit" position. The position
// is not checked against any record.
std::int64_t indexOf(std::string_view name, std::int64_t block, std::int64_t nbVars,
                     int turbulenceCount);

}  // namespace turbo
