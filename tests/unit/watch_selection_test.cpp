// Which curves monitor-watch judges and shows (--curves, --until-converged),
// and when the curves it waits for count as converged.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "watch/awaited_curves.h"
#include "watch/curve_selection.h"

namespace {

using Strings = std::vector<std::string>;
using watch::CurveChoice;
using watch::NamedCurve;

std::vector<NamedCurve> curvesNamed(const Strings& names) {
  std::vector<NamedCurve> curves;
  for (const std::string& name : names) curves.push_back({name, false, nullptr});
  return curves;
}

TEST(WatchSelection, ShownCurvesInTheOrderAskedThenAwaitedOnes) {
  const std::vector<NamedCurve> curves = curvesNamed({"ResU", "Fx_hull", "X_hull", "mean"});
  const struct {
    CurveChoice choice;
    Strings selected;
    std::vector<bool> shown;
    Strings missing;
  } cases[] = {
      {{{}, {}}, {"ResU", "Fx_hull", "X_hull", "mean"}, {true, true, true, true}, {}},
      {{{}, {"Fx_hull"}}, {"ResU", "Fx_hull", "X_hull", "mean"}, {true, true, true, true}, {}},
      {{{"X_hull", "ResU"}, {}}, {"X_hull", "ResU"}, {true, true}, {}},
      {{{"X_hull", "X_hull"}, {"X_hull"}}, {"X_hull"}, {true}, {}},
      {{{"ResU"}, {"mean", "Fz_hull"}}, {"ResU", "mean"}, {true, false}, {"Fz_hull"}},
      {{{"nothing", "ResU"}, {"nothing"}}, {"ResU"}, {true}, {"nothing"}},
  };
  for (const auto& c : cases) {
    Strings selected;
    std::vector<bool> shown;
    for (const watch::SelectedCurve& s : watch::selectCurves(curves, c.choice)) {
      selected.push_back(s.curve->name);
      shown.push_back(s.shown);
    }
    EXPECT_EQ(selected, c.selected);
    EXPECT_EQ(shown, c.shown);
    EXPECT_EQ(watch::namesMissing(curves, c.choice), c.missing);
  }
}

TEST(WatchSelection, AwaitedCurvesMustConvergeInEveryComputation) {
  const auto report = [](std::vector<std::pair<std::string, convergence::State>> curves) {
    watch::ComputationReport computation;
    for (const auto& [name, state] : curves) {
      watch::CurveReport curve;
      curve.name = name;
      curve.verdict.state = state;
      computation.curves.push_back(std::move(curve));
    }
    return computation;
  };
  using convergence::State;
  const watch::ComputationReport both =
      report({{"Fx_hull", State::converged}, {"ResU", State::converged}});
  const watch::ComputationReport oneWide =
      report({{"Fx_hull", State::converged}, {"ResU", State::wide}});
  const watch::ComputationReport withoutResU = report({{"Fx_hull", State::converged}});
  const watch::ComputationReport notLoaded = report({});
  const struct {
    std::vector<const watch::ComputationReport*> computations;
    Strings awaited;
    bool converged;
  } cases[] = {
      {{&both}, {"Fx_hull", "ResU"}, true},      {{&both, &both}, {"ResU"}, true},
      {{&oneWide}, {"Fx_hull"}, true},           {{&oneWide}, {"Fx_hull", "ResU"}, false},
      {{&both, &oneWide}, {"ResU"}, false},      {{&both, &withoutResU}, {"ResU"}, false},
      {{&both, &notLoaded}, {"Fx_hull"}, false}, {{}, {"Fx_hull"}, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(watch::allAwaitedConverged(c.computations, c.awaited), c.converged);
  }
}

}  // namespace
