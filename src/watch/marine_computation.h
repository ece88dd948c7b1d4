// A marine computation followed through the marine model, with the custom
// curves of --formula added as its custom plots once it is loaded.
#pragma once

#include <set>

#include "marine/project_monitor_marine.h"
#include "watch/followed_computation.h"
#include "watch/marine_catalogue.h"

namespace watch {

class MarineComputation final : public FollowedComputation {
 public:
  MarineComputation(const std::string& residualPath, std::vector<CustomFormula> formulas);

  Mode mode() const override { return Mode::marine; }
  RefreshOutcome refresh() override;
  std::optional<std::string> stamp() const override;
  std::size_t rows() const override { return project_.resFile().recordCount(); }
  std::vector<NamedCurve> curves() override;

 private:
  // Adds the formulas not added yet; true when one was. A formula the
  // computation cannot compute (a name it does not have) is told once and
  // tried again at later refreshes.
  bool addPendingFormulas();

  marine::ProjectMonitorMarine project_;
  std::vector<CustomFormula> pending_;
  std::vector<FormulaCurve> added_;
  std::set<std::string> told_;
};

}  // namespace watch
