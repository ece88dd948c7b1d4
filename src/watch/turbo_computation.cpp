#include "watch/turbo_computation.h"

#include "watch/turbo_catalogue.h"

namespace watch {
namespace {

// What ResFile::read answers.
constexpr int kReadAgainFromTop = 2;

}  // namespace

RefreshOutcome TurboComputation::refresh() {
  const std::size_t held = file_.recordCount();
  const std::uint32_t lastHeld = held == 0 ? 0 : file_.lastIterationNumber();
  RefreshOutcome outcome;
  if (file_.read() == kReadAgainFromTop) {
    outcome.newRun = held > 0;
    file_.read();
  }
  const bool moved = file_.recordCount() != held || (held > 0 && file_.recordCount() > 0 &&
                                                     file_.lastIterationNumber() != lastHeld);
  outcome.grew = outcome.newRun || moved;
  outcome.changed = outcome.grew;
  return outcome;
}

std::vector<NamedCurve> TurboComputation::curves() { return turboCurves(file_); }

}  // namespace watch
