// A turbomachinery computation: its residual history, read by the model's
// reader. A history found rewritten (the solver started again) is read again
// from its top as a new run.
#pragma once

#include "turbo/res_file.h"
#include "watch/followed_computation.h"

namespace watch {

class TurboComputation final : public FollowedComputation {
 public:
  explicit TurboComputation(const std::string& residualPath)
      : FollowedComputation(residualPath), file_(residualPath) {}

  Mode mode() const override { return Mode::turbomachinery; }
  RefreshOutcome refresh() override;
  // The turbomachinery residual file carries no creation stamp.
  std::optional<std::string> stamp() const override { return std::nullopt; }
  std::size_t rows() const override { return file_.recordCount(); }
  std::vector<NamedCurve> curves() override;

 private:
  turbo::ResFile file_;
};

}  // namespace watch
