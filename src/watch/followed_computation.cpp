#include "watch/followed_computation.h"

#include "watch/marine_computation.h"
#include "watch/messages.h"
#include "watch/turbo_computation.h"

namespace watch {

std::unique_ptr<FollowedComputation> followComputation(const std::string& residualPath, Mode mode,
                                                       const std::vector<CustomFormula>& formulas) {
  if (mode == Mode::marine) return std::make_unique<MarineComputation>(residualPath, formulas);
  if (!formulas.empty()) {
    tell(residualPath + ": formulas are computed over marine computations only; " +
         "this one is a turbomachinery computation");
  }
  return std::make_unique<TurboComputation>(residualPath);
}

}  // namespace watch
