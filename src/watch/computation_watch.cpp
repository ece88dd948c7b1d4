#include "watch/computation_watch.h"

#include "watch/messages.h"

namespace watch {

ComputationWatch::ComputationWatch(std::unique_ptr<FollowedComputation> computation)
    : computation_(std::move(computation)) {
  report_.path = computation_->path();
  report_.mode = computation_->mode();
}

RefreshOutcome ComputationWatch::refresh(const CurveChoice& choice,
                                         const convergence::Settings& criteria) {
  const RefreshOutcome outcome = computation_->refresh();
  if (outcome.newRun) {
    const std::optional<std::string> stamp = computation_->stamp();
    tell(report_.path + ": a new run" + (stamp ? " stamped " + *stamp : std::string()) +
         " replaced the one followed; its curves start over");
    // A curve the old run lacked may exist in the new one, and the other way round.
    toldMissing_.clear();
  }
  report_.stamp = computation_->stamp();
  report_.rows = computation_->rows();
  report_.fresh = outcome.changed || !judged_;
  if (!report_.fresh) return outcome;

  const std::vector<NamedCurve> curves = computation_->curves();
  report_.curves.clear();
  for (const SelectedCurve& selected : selectCurves(curves, choice)) {
    report_.curves.push_back(judgeCurve(*selected.curve, selected.shown, criteria));
  }
  tellMissing(curves, choice);
  judged_ = true;
  return outcome;
}

void ComputationWatch::tellMissing(const std::vector<NamedCurve>& curves,
                                   const CurveChoice& choice) {
  // Before the first rows the computation may not have said what it holds.
  if (report_.rows == 0) return;
  for (const std::string& name : namesMissing(curves, choice)) {
    if (toldMissing_.insert(name).second) tell(report_.path + ": no curve " + name);
  }
}

}  // namespace watch
