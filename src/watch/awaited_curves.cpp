#include "watch/awaited_curves.h"

#include <algorithm>

namespace watch {

bool allAwaitedConverged(std::span<const ComputationReport* const> computations,
                         const std::vector<std::string>& awaited) {
  return !computations.empty() &&
         std::all_of(computations.begin(), computations.end(),
                     [&awaited](const ComputationReport* computation) {
                       return std::all_of(awaited.begin(), awaited.end(),
                                          [computation](const std::string& name) {
                                            const CurveReport* curve = computation->find(name);
                                            return curve != nullptr && curve->converged();
                                          });
                     });
}

}  // namespace watch
