#include "watch/marine_computation.h"

#include <algorithm>

#include "watch/messages.h"

namespace watch {

MarineComputation::MarineComputation(const std::string& residualPath,
                                     std::vector<CustomFormula> formulas)
    : FollowedComputation(residualPath), project_(residualPath), pending_(std::move(formulas)) {}

RefreshOutcome MarineComputation::refresh() {
  const marine::ProjectMonitorMarine::Refresh read = project_.refresh();
  const bool formulaAdded = addPendingFormulas();
  return {read.changed, read.changed || formulaAdded, read.newRun};
}

std::optional<std::string> MarineComputation::stamp() const {
  if (project_.creationStamp().empty()) return std::nullopt;
  return project_.creationStamp();
}

bool MarineComputation::addPendingFormulas() {
  if (!project_.loaded()) return false;
  bool added = false;
  for (auto formula = pending_.begin(); formula != pending_.end();) {
    const int plot = project_.customPlots().add(formula->expression);
    if (plot < 0) {
      if (told_.insert(formula->name).second) {
        tell(path() + ": formula " + formula->name + " cannot be computed: " + formula->expression +
             " names what the computation does not have");
      }
      ++formula;
      continue;
    }
    added_.push_back({formula->name, static_cast<std::size_t>(plot)});
    formula = pending_.erase(formula);
    added = true;
  }
  return added;
}

std::vector<NamedCurve> MarineComputation::curves() {
  std::vector<NamedCurve> curves = marineCurves(project_);
  const std::size_t modelCurves = curves.size();
  for (NamedCurve& formula : formulaCurves(project_, added_)) {
    const auto end = curves.begin() + static_cast<std::ptrdiff_t>(modelCurves);
    if (std::none_of(curves.begin(), end,
                     [&formula](const NamedCurve& curve) { return curve.name == formula.name; })) {
      curves.push_back(std::move(formula));
    } else if (told_.insert(formula.name).second) {
      tell(path() + ": formula " + formula.name + " is named like a curve of the computation; " +
           "the curve is shown");
    }
  }
  return curves;
}

}  // namespace watch
