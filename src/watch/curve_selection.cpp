#include "watch/curve_selection.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace watch {
namespace {

std::unordered_map<std::string_view, const NamedCurve*> byName(
    const std::vector<NamedCurve>& curves) {
  std::unordered_map<std::string_view, const NamedCurve*> found;
  for (const NamedCurve& curve : curves) found.emplace(curve.name, &curve);
  return found;
}

}  // namespace

std::vector<SelectedCurve> selectCurves(const std::vector<NamedCurve>& curves,
                                        const CurveChoice& choice) {
  std::vector<SelectedCurve> selected;
  const auto named = byName(curves);
  std::unordered_set<const NamedCurve*> taken;
  const auto take = [&](const std::string& name, bool shown) {
    const auto found = named.find(name);
    if (found != named.end() && taken.insert(found->second).second) {
      selected.push_back({found->second, shown});
    }
  };
  if (choice.shown.empty()) {
    for (const NamedCurve& curve : curves) take(curve.name, true);
  } else {
    for (const std::string& name : choice.shown) take(name, true);
  }
  for (const std::string& name : choice.awaited) take(name, false);
  return selected;
}

std::vector<std::string> namesMissing(const std::vector<NamedCurve>& curves,
                                      const CurveChoice& choice) {
  const auto named = byName(curves);
  std::vector<std::string> missing;
  for (const auto* names : {&choice.shown, &choice.awaited}) {
    for (const std::string& name : *names) {
      if (!named.contains(name) &&
          std::find(missing.begin(), missing.end(), name) == missing.end()) {
        missing.push_back(name);
      }
    }
  }
  return missing;
}

}  // namespace watch
