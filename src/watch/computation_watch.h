// One followed computation and what the watch last made of it: it refreshes
// the computation, judges the chosen curves again when they may have
// changed, and tells standard error what the user should know (a new run,
// a curve asked for that the computation does not have).
#pragma once

#include <memory>
#include <set>
#include <string>

#include "watch/curve_report.h"
#include "watch/curve_selection.h"
#include "watch/followed_computation.h"

namespace watch {

class ComputationWatch {
 public:
  explicit ComputationWatch(std::unique_ptr<FollowedComputation> computation);

  // Refreshes and judges; answers what the refresh found.
  RefreshOutcome refresh(const CurveChoice& choice, const convergence::Settings& criteria);

  const ComputationReport& report() const { return report_; }

 private:
  void tellMissing(const std::vector<NamedCurve>& curves, const CurveChoice& choice);

  std::unique_ptr<FollowedComputation> computation_;
  ComputationReport report_;
  std::set<std::string> toldMissing_;
  bool judged_ = false;
};

}  // namespace watch
