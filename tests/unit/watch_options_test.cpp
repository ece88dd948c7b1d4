// The command line of monitor-watch (what each option sets, the one line a bad command line gets,
// a help text that documents every option), the curves it shows and when the awaited converge.
#include "watch/watch_options.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "watch/awaited_curves.h"
#include "watch/curve_selection.h"
#include "watch/help_text.h"

namespace {

using Strings = std::vector<std::string>;
using convergence::State;

// The options a command line (words separated by spaces) sets as one text, or its error.
std::string parsed(const std::string& line) {
  std::vector<std::string> words;
  for (std::size_t at = 0;; at = line.find(' ', at) + 1) {
    words.push_back(line.substr(at, line.find(' ', at) - at));
    if (line.find(' ', at) == std::string::npos) break;
  }
  const std::vector<std::string_view> arguments(words.begin(), words.end());
  const watch::ParsedArguments result = watch::parseWatchArguments(arguments);
  if (!result.options) return result.error;
  const watch::WatchOptions& o = *result.options;
  std::ostringstream text;
  text << (o.mode ? (*o.mode == watch::Mode::marine ? "marine" : "turbo") : "any") << " every "
       << o.everySeconds << (o.once ? " once" : "") << (o.help ? " help" : "")
       << (o.format == watch::OutputFormat::json ? " json" : "") << " csv "
       << o.csvFolder.value_or("-").string() << " timeout " << o.timeoutSeconds.value_or(-1)
       << " stall " << o.stallSeconds.value_or(-1) << " level " << o.criteria.confidence << " tol "
       << o.criteria.tolerance << " curves";
  for (const std::string& name : o.curves) text << " " << name;
  for (const watch::CustomFormula& formula : o.formulas)
    text << " formula " << formula.name << "|" << formula.expression;
  text << " until";
  for (const std::string& name : o.untilConverged) text << " " << name;
  text << " paths";
  for (const std::string& path : o.residualPaths) text << " " << path;
  return text.str();
}

TEST(WatchOptions, WhatEachCommandLineSetsOrTheOneLineThatSaysWhyNot) {
  const std::string seconds = " takes a number of seconds above 0, not ";
  const std::string names = " takes curve names separated by commas, not ";
  const std::string formula = "--formula takes NAME=EXPRESSION (a name without commas), not ";
  const std::string defaults = " csv - timeout -1 stall -1 level 0.95 tol 0.01 curves until paths";
  const std::pair<std::string, std::string> cases[] = {
      {"case/ship.res", "any every 5" + defaults + " case/ship.res"},
      {"--marine --every=0.25 --json --csv out --curves ResU,Fx_hull --curves=X_hull --formula "
       "mean=(Fx_hull+Fx_rudder)/2 --formula ratio=a=b --until-converged Fx_hull,mean --timeout "
       "3600 --stall 600 --confidence 0.99 --tolerance=0 a.res - -- --odd.res",
       "marine every 0.25 json csv out timeout 3600 stall 600 level 0.99 tol 0 curves ResU "
       "Fx_hull X_hull formula mean|(Fx_hull+Fx_rudder)/2 formula ratio|a=b until Fx_hull mean "
       "paths a.res - --odd.res"},
      {"--turbo --once a", "turbo every 5 once" + defaults + " a"},
      {"--help", "any every 5 help" + defaults},
      {"--bogus -h", "any every 5 help" + defaults},
      {"--every 0 --help", "any every 5 help" + defaults},
      {"-- --help", "any every 5" + defaults + " --help"},
      {"--json", "no residual file given (see --help)"},
      {"--bogus a.res", "unknown option --bogus (see --help)"},
      {"--once=1 a.res", "unknown option --once=1 (see --help)"},
      {"a.res --every", "--every needs a value"},
      {"--every 0 a.res", "--every" + seconds + "\"0\""},
      {"--every 5s a.res", "--every" + seconds + "\"5s\""},
      {"--every inf a.res", "--every" + seconds + "\"inf\""},
      {"--every= a.res", "--every" + seconds + "\"\""},
      {"--stall nan a.res", "--stall" + seconds + "\"nan\""},
      {"--confidence 1 a.res", "--confidence takes a level between 0 and 1, not \"1\""},
      {"--confidence 0 a.res", "--confidence takes a level between 0 and 1, not \"0\""},
      {"--tolerance -0.1 a.res",
       "--tolerance takes a fraction of the mean, 0 or more, not \"-0.1\""},
      {"--curves ,ResU a.res", "--curves" + names + "\",ResU\""},
      {"--until-converged ResU, a.res", "--until-converged" + names + "\"ResU,\""},
      {"--formula Fx_hull a.res", formula + "\"Fx_hull\""},
      {"--formula =Fx_hull a.res", formula + "\"=Fx_hull\""},
      {"--formula a,b=1 a.res", formula + "\"a,b=1\""},
      {"--formula drag= a.res", formula + "\"drag=\""},
      {"--formula drag=Fx_hull* a.res", "--formula drag: the formula does not parse: Fx_hull*"},
      {"--formula drag=sqr(Fx_hull) a.res", "--formula drag: Unknown function \"sqr\""},
      {"--formula deep=" + std::string(300, '(') + "1" + std::string(300, ')') + " a.res",
       "--formula deep: Formula nested deeper than 256 levels"},
      {"--csv= a.res", "--csv takes a folder"},
      {"--marine --turbo a.res", "--marine and --turbo exclude each other"},
      {"--timeout 60 a.res", "--timeout needs --until-converged: the curves it waits for"},
      {"--once --stall 5 a.res",
       "--once reads the files once: --timeout and --stall need a watch that goes on"},
  };
  for (const auto& [line, expected] : cases) EXPECT_EQ(parsed(line), expected) << line;
  const std::string_view help = watch::helpText();
  for (const std::string_view option : watch::optionNames())
    EXPECT_NE(help.find(option), std::string_view::npos) << option;
}

TEST(WatchSelection, ShownCurvesInTheOrderAskedThenAwaitedOnes) {
  std::vector<watch::NamedCurve> curves;
  for (const char* name : {"ResU", "Fx_hull", "X_hull", "mean"})
    curves.push_back({name, false, nullptr});
  const std::tuple<watch::CurveChoice, std::string, Strings> cases[] = {
      // name, * when shown
      {{{}, {}}, "ResU* Fx_hull* X_hull* mean* ", {}},
      {{{}, {"Fx_hull"}}, "ResU* Fx_hull* X_hull* mean* ", {}},
      {{{"X_hull", "ResU"}, {}}, "X_hull* ResU* ", {}},
      {{{"X_hull", "X_hull"}, {"X_hull"}}, "X_hull* ", {}},
      {{{"ResU"}, {"mean", "Fz_hull"}}, "ResU* mean ", {"Fz_hull"}},
      {{{"nothing", "ResU"}, {"nothing"}}, "ResU* ", {"nothing"}},
  };
  for (const auto& [choice, expected, missing] : cases) {
    std::string selected;
    for (const watch::SelectedCurve& s : watch::selectCurves(curves, choice))
      selected += s.curve->name + (s.shown ? "* " : " ");
    EXPECT_EQ(selected, expected);
    EXPECT_EQ(watch::namesMissing(curves, choice), missing) << expected;
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
  const std::tuple<std::vector<const watch::ComputationReport*>, Strings, bool> cases[] = {
      {{&both}, {"Fx_hull", "ResU"}, true},      {{&both, &both}, {"ResU"}, true},
      {{&oneWide}, {"Fx_hull"}, true},           {{&oneWide}, {"Fx_hull", "ResU"}, false},
      {{&both, &oneWide}, {"ResU"}, false},      {{&both, &withoutResU}, {"ResU"}, false},
      {{&both, &notLoaded}, {"Fx_hull"}, false}, {{}, {"Fx_hull"}, false},
  };
  for (const auto& [computations, awaited, converged] : cases)
    EXPECT_EQ(watch::allAwaitedConverged(computations, awaited), converged)
        << computations.size() << " " << awaited.back();
}

}  // namespace
