// The exit condition of --until-converged.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "watch/curve_report.h"

namespace watch {

// Whether every awaited curve is converged in every computation followed.
// A computation without one of them (not loaded yet, or without a curve of
// that name) holds the watch.
bool allAwaitedConverged(std::span<const ComputationReport* const> computations,
                         const std::vector<std::string>& awaited);

}  // namespace watch
