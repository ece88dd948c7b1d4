// Which curves monitor-watch judges and shows (--curves, --until-converged),
// and when the curves it waits for count as converged.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "watch/awaited_curves.h"
#include "watch/curve_selection.h"

namespace {

using Strings = std::vector<std::string>;
using convergence::State;

TEST(WatchSelection, ShownCurvesInTheOrderAskedThenAwaitedOnes) {
  std::vector<watch::NamedCurve> curves;
  for (const char* name : {"ResU", "Fx_hull", "X_hull", "mean"})
    curves.push_back({name, false, nullptr});
  const struct {
    watch::CurveChoice choice;
    std::string selected;  // name, then * when shown
    Strings missing;
  } cases[] = {
      {{{}, {}}, "ResU* Fx_hull* X_hull* mean* ", {}},
      {{{}, {"Fx_hull"}}, "ResU* Fx_hull* X_hull* mean* ", {}},
      {{{"X_hull", "ResU"}, {}}, "X_hull* ResU* ", {}},
      {{{"X_hull", "X_hull"}, {"X_hull"}}, "X_hull* ", {}},
      {{{"ResU"}, {"mean", "Fz_hull"}}, "ResU* mean ", {"Fz_hull"}},
      {{{"nothing", "ResU"}, {"nothing"}}, "ResU* ", {"nothing"}},
  };
  for (const auto& c : cases) {
    std::string selected;
    for (const watch::SelectedCurve& s : watch::selectCurves(curves, c.choice)) {
      selected += s.curve->name + (s.shown ? "* " : " ");
    }
    EXPECT_EQ(selected, c.selected);
    EXPECT_EQ(watch::namesMissing(curves, c.choice), c.missing) << c.selected;
  }
}

TEST(WatchSelection, AwaitedCurvesMustConvergeInEveryComputation) {
  const auto report = [](std::vector<std::pair<std::string, State>> curves) {
    watch::ComputationReport computation;
    for (const auto& [name, state] : curves) {
      computation.curves.emplace_back().name = name;
      computation.curves.back().verdict.state = state;
    }
    return computation;
  };
  const auto both = report({{"Fx_hull", State::converged}, {"ResU", State::converged}});
  const auto oneWide = report({{"Fx_hull", State::converged}, {"ResU", State::wide}});
  const auto withoutResU = report({{"Fx_hull", State::converged}});
  const auto notLoaded = report({});
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
    EXPECT_EQ(watch::allAwaitedConverged(c.computations, c.awaited), c.converged)
        << c.computations.size() << " " << c.awaited.back();
  }
}

}  // namespace
