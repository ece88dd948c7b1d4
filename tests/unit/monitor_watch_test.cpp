// monitor-watch: its command line, the curves it follows and shows, when the awaited ones
// converge, and what it writes (JSON lines, --csv files).
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"
#include "watch/awaited_curves.h"
#include "watch/computation_mode.h"
#include "watch/csv_files.h"
#include "watch/curve_report.h"
#include "watch/curve_selection.h"
#include "watch/followed_computation.h"
#include "watch/help_text.h"
#include "watch/json_lines.h"
#include "watch/turbo_catalogue.h"
#include "watch/watch_loop.h"
#include "watch/watch_options.h"

namespace {

using convergence::State;
using solver_simulator::RunMode;
using watch::ComputationReport;
using watch::CurveReport;
using Strings = std::vector<std::string>;
namespace fs = std::filesystem;

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
       << o.criteria.tolerance;
  const auto list = [&](const char* what, const Strings& names) {
    text << " " << what;
    for (const std::string& name : names) text << " " << name;
  };
  list("curves", o.curves);
  for (const watch::CustomFormula& formula : o.formulas)
    text << " formula " << formula.name << "|" << formula.expression;
  list("until", o.untilConverged);
  list("paths", o.residualPaths);
  return text.str();
}

TEST(WatchOptions, WhatEachCommandLineSetsOrTheOneLineThatSaysWhyNot) {
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
      {"--bogus -h", "any every 5 help" + defaults},
      {"-- --help", "any every 5" + defaults + " --help"},
      {"--json", "no residual file given (see --help)"},
      {"--bogus a.res", "unknown option --bogus (see --help)"},
      {"--once=1 a.res", "unknown option --once=1 (see --help)"},
      {"a.res --every", "--every needs a value"},
      {"--every 0 a.res", "--every takes a number of seconds above 0, not \"0\""},
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
      {"--csv= a.res", "--csv takes a folder"},
      {"--marine --turbo a.res", "--marine and --turbo exclude each other"},
      {"--timeout 60 a.res", "--timeout needs --until-converged: the curves it waits for"},
      {"--once --stall 5 a.res",
       "--once reads the files once: --timeout and --stall need a watch that goes on"},
  };
  testing::internal::CaptureStderr();  // the formula parser's complaints are held
  for (const auto& [line, expected] : cases) EXPECT_EQ(parsed(line), expected) << line;
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  const std::string_view help = watch::helpText();
  for (const std::string_view option : watch::optionNames())
    EXPECT_NE(help.find(option), std::string_view::npos) << option;
}

TEST(WatchSelection, ShownCurvesInTheOrderAskedThenAwaitedOnes) {
  std::vector<watch::NamedCurve> curves;
  for (const char* name : {"ResU", "Fx_hull", "X_hull", "mean"})
    curves.push_back({name, false, nullptr});
  const std::tuple<watch::CurveChoice, std::string, Strings> cases[] = {
      {{{}, {}}, "ResU* Fx_hull* X_hull* mean* ", {}},
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

CurveReport curveWith(std::string name, std::vector<double> y, bool shown = true,
                      convergence::Verdict verdict = {}) {
  CurveReport curve;
  curve.name = std::move(name);
  curve.shown = shown;
  curve.verdict = verdict;
  std::vector<double> x(y.size());
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i + 1);
  curve.points.append(x, y);
  return curve;
}

std::string lineOf(const std::vector<const ComputationReport*>& computations) {
  std::ostringstream out;
  watch::writeJsonLine(out, "2026-11-21T14:05:09.250Z", computations);
  return out.str();
}

TEST(WatchJson, OneLineOfTheDocumentedShape) {
  ComputationReport marine;
  marine.path = "/runs/a/ship.res";
  marine.stamp = "21/11/2026 14:05:09";
  marine.rows = 250;
  // state, samples, transientEnd, mean, halfWidth, confidence, drift, period
  const convergence::Verdict judged{State::converged, 3, 12.5, -1520.25, 0.75, 0.99, true, 0.4};
  marine.curves = {curveWith("Fx_hull", {3.0, 2.0, 1.5}, true, judged),
                   curveWith("short", {1.0, std::numeric_limits<double>::infinity()}, true,
                             {.transientEnd = 1.0}),
                   curveWith("wide", {}, true, {.state = State::wide}),
                   curveWith("awaited only", {1.0}, false)};
  ComputationReport turbo;
  turbo.path = "stage.res";
  turbo.mode = watch::Mode::turbomachinery;
  EXPECT_EQ(
      lineOf({&marine, &turbo}),
      R"({"time":"2026-11-21T14:05:09.250Z","computations":[{"path":"/runs/a/ship.res",)"
      R"("mode":"marine","stamp":"21/11/2026 14:05:09","rows":250,"curves":[)"
      R"({"name":"Fx_hull","points":3,"last":1.5,"transientEnd":12.5,"mean":-1520.25,)"
      R"("halfWidth":0.75,"confidence":0.99,"drift":true,"period":0.4,"verdict":"converged"},)"
      R"({"name":"short","points":2,"last":null,"transientEnd":1,"mean":null,"halfWidth":null,)"
      R"("confidence":0.95,"drift":false,"period":null,"verdict":"short"},)"
      R"({"name":"wide","points":0,"last":null,"transientEnd":null,"mean":0,"halfWidth":0,)"
      R"("confidence":0.95,"drift":false,"period":null,"verdict":"wide"}]},)"
      R"({"path":"stage.res","mode":"turbomachinery","stamp":null,"rows":0,"curves":[]}]})"
      "\n");
}

TEST(WatchJson, PathsAndNamesAreEscaped) {
  const std::string bad = "\xef\xbf\xbd";  // U+FFFD
  // Each text, and what reads back when it is not the text.
  const std::pair<std::string, std::string> cases[] = {
      {"/runs/\"quoted\"/C:\\ship.res line\nfeed\ttab\rreturn", ""},
      {std::string("nul\0byte\x01\x1f\x7f", 12), ""},
      {"caf\xc3\xa9 \xc2\x80\xdf\xbf \xe2\x82\xac \xf0\x9f\x9a\xa2 "
       "\xe0\xa0\x80\xed\x9f\xbf\xef\xbf\xbd\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
       ""},
      // Not UTF-8: a stray continuation byte, a cut lead byte, overlong forms,
      // a surrogate, a code point beyond U+10FFFF, bytes never used.
      {"a\x80z|cut\xc3", "a" + bad + "z|cut" + bad},
      {"\xc1\xbf|\xe0\x9f\xbf|\xed\xa0\x80|\xf0\x8f\xbf\xbf|\xf4\x90\x80\x80|\xe2\x82z|\xf5\xff",
       bad + bad + "|" + bad + bad + bad + "|" + bad + bad + bad + "|" + bad + bad + bad + bad +
           "|" + bad + bad + bad + bad + "|" + bad + bad + "z|" + bad + bad},
  };
  for (const auto& [text, readBack] : cases) {
    ComputationReport computation;
    computation.path = text;
    const std::string line = lineOf({&computation});
    EXPECT_EQ(line.find('\n'), line.size() - 1) << text;
    EXPECT_EQ(nlohmann::json::parse(line)["computations"][0]["path"],
              readBack.empty() ? text : readBack);
  }
}

TEST(WatchCsv, FolderAndFileNames) {
  EXPECT_EQ(watch::computationFolderNames(
                {"runs/a/ship.res", "runs/b/ship.res", "stage.res", "/x/ship.res", "noext", "/"}),
            (Strings{"ship", "ship-2", "stage", "ship-3", "noext", "computation"}));
  EXPECT_EQ(watch::curveFileName("Res`w a/b\\c\t\x1f") + watch::curveFileName("..") +
                watch::curveFileName(""),
            "Res`w a_b_c__.csv...csv_.csv");
}

using WatchCsvFiles = ScratchFolder;

TEST_F(WatchCsvFiles, WrittenWholeReplacedAndToldOnceWhenTheyCannotBe) {
  const auto computationWith = [](std::vector<double> y) {
    ComputationReport computation;
    computation.curves = {curveWith("Fx_hull", std::move(y)), curveWith("awaited only", {}, false)};
    return computation;
  };
  const fs::path folder = folder_ / "csv" / "ship";
  const auto written = [&] {
    return (std::ostringstream() << std::ifstream(folder / "Fx_hull.csv").rdbuf()).str();
  };
  watch::CsvFiles files(folder_ / "csv", {"runs/ship.res"});
  ComputationReport computation = computationWith({-1520.5, 0.1, 1.0 / 3.0});
  const ComputationReport beyondTheFolders = computationWith({8});
  files.write(std::vector<const ComputationReport*>{&computation, &beyondTheFolders});
  EXPECT_EQ(written(), "abscissa,value\n1,-1520.5\n2,0.1\n3,0.3333333333333333\n");
  Strings names;
  for (const auto& entry : fs::recursive_directory_iterator(folder_ / "csv"))
    names.push_back(fs::relative(entry.path(), folder_ / "csv").generic_string());
  EXPECT_EQ(names, (Strings{"ship", "ship/Fx_hull.csv"}));
  computation = computationWith({7});
  files.write({{&computation}});
  computation = computationWith({});
  computation.fresh = false;
  files.write({{&computation}});
  EXPECT_EQ(written(), "abscissa,value\n1,7\n");
  // A file where the folder should be, then a folder where the file should be.
  const std::string told = "monitor-watch: cannot write " + (folder / "Fx_hull.csv").string() +
                           "; the watch goes on without it\n";
  computation = computationWith({2});
  ConsoleCapture console;
  fs::remove_all(folder);
  write("csv/ship", "");
  files.write({{&computation}});
  files.write({{&computation}});
  EXPECT_EQ(console.text(), told);
  fs::remove(folder);
  files.write({{&computation}});
  EXPECT_EQ(written(), "abscissa,value\n1,2\n");
  fs::remove(folder / "Fx_hull.csv");
  fs::create_directories(folder / "Fx_hull.csv" / "in the way");
  files.write({{&computation}});
  EXPECT_EQ(console.text(), told + told);
  EXPECT_EQ(fs::directory_iterator(folder)->path().filename(), "Fx_hull.csv");
  watch::CsvFiles(folder_ / "two", {"a.res", "b.res"}).write({{&computation}});
  EXPECT_TRUE(fs::exists(folder_ / "two" / "a" / "Fx_hull.csv"));
}

using WatchCurves = ScratchFolder;

TEST_F(WatchCurves, NamesAbscissaeAndFormulaCurvesInBothRunModes) {
  ConsoleCapture console;
  const std::string path = solver_simulator::defaultCaseSetup(folder_).residualPath().string();
  // Loads at the time of their row when unsteady (5 iterations per step of 0.05 s); converged
  // values and motions at their step.
  const std::tuple<RunMode, const char*, const char*> cases[] = {
      {RunMode::unsteady, "ResU", "20: 1 2 3 4 5 6"},
      {RunMode::unsteady, "Fx_hull", "20: 0.05 0.05 0.05 0.05 0.05 0.1"},
      {RunMode::unsteady, "FxDyn_keel", "4: 0.05 0.1 0.15 0.2"},
      {RunMode::unsteady, "Z_hull", "4: 0.05 0.1 0.15 0.2"},
      {RunMode::unsteady, "Torque1", "4: 1 2 3 4"},
      {RunMode::unsteady, "Pitch moment", "4: 1 2 3 4"},
      {RunMode::unsteady, "mean", "20: 0.05 0.05 0.05 0.05 0.05 0.1"},
      {RunMode::steady, "Fx_hull", "10: 1 2 3 4 5 6"},
      {RunMode::steady, "Z_hull", "10: 1 2 3 4 5 6"},
  };
  const std::map<RunMode, std::string> absent = {
      {RunMode::unsteady, "ResE ResVt~ X_rudder Thrust3 Thrust Fx unknown"},
      {RunMode::steady, "FxDyn_hull FxDyn_keel X_rudder unknown"}};
  for (const RunMode mode : {RunMode::unsteady, RunMode::steady}) {
    const std::size_t rows = mode == RunMode::steady ? 10 : 20;
    solver_simulator::MarineCaseWriter writer(solver_simulator::defaultCaseSetup(folder_, mode));
    writer.writeHeaders();
    for (std::size_t i = 0; i < rows; ++i) writer.appendIteration();
    auto computation = watch::followComputation(
        path, watch::Mode::marine,
        {{"mean", "(Fx_hull+Fx_rudder)/2"}, {"unknown", "Fx_nothing"}, {"Fx_hull", "1"}});
    computation->refresh(), computation->refresh(), computation->curves();  // each told once
    EXPECT_EQ(computation->rows(), rows);
    EXPECT_EQ(computation->stamp(), "21/11/2026 14:05:09");
    std::map<std::string, CurveReport> curves;
    for (const watch::NamedCurve& curve : computation->curves())
      curves.emplace(curve.name, watch::judgeCurve(curve, true, {}));
    for (const auto& [caseMode, name, expected] : cases) {
      if (caseMode != mode) continue;
      std::ostringstream text;
      text << curves[name].points.size() << ":";
      for (std::size_t i = 0; i < 6 && i < curves[name].points.size(); ++i)
        text << " " << curves[name].points.x()[i];
      EXPECT_EQ(text.str(), expected) << name;
    }
    std::istringstream names(absent.at(mode));
    for (std::string name; names >> name;) EXPECT_FALSE(curves.contains(name)) << name;
    const auto& y = [&](const char* name) { return curves.at(name).points.y(); };
    EXPECT_DOUBLE_EQ(y("mean")[rows - 1], (y("Fx_hull")[rows - 1] + y("Fx_rudder")[rows - 1]) / 2);
    EXPECT_NE(y("Fx_hull")[0], 1.0);
  }
  std::string told;
  std::istringstream lines(console.text());
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with("monitor-watch: ")) told += line.substr(15) + "\n";
  const std::string unknown =
      ": formula unknown cannot be computed: Fx_nothing names what the "
      "computation does not have\n";
  const std::string shadowed =
      ": formula Fx_hull is named like a curve of the computation; the curve is shown\n";
  EXPECT_EQ(told, path + unknown + path + shadowed + path + unknown + path + shadowed);
}

// Value k of a record is `base` + k: each position reads back as what it is.
std::string record(int iteration, std::size_t values, double base = 0.0) {
  std::string text = std::to_string(iteration);
  for (std::size_t k = 0; k < values; ++k) text += " " + std::to_string(base + double(k));
  return text + "\n";
}

TEST_F(WatchCurves, EquationsTheHeaderDeclares) {
  const std::tuple<const char*, std::size_t, const char*> cases[] = {
      {"0 3.0 2 3D K-E\n2 sp1 sp2\n0\n1\nSTEADY TURBO\n", 45, "d wx wy wz E k eps sp1 sp2 "},
      {"0 2.0 1 TF K-O\n0\n0\nSTEADY TURBO\n", 25, "d wx wy wz E bladeForce k omega "},
      {"0 1.0 1 B2B SPL-ALM\n1 h1\nSTEADY TURBO\n", 23, "d wx wy wz E nu h1 "},
      {"0 3.0 1 3D NONE\n1 a\n1 b\n0\nSTEADY TURBO\n", 23, "d wx wy wz E a b "},
      {"1 3\n", 15, "d wx wy "},  // a short header gives only the counts
  };
  for (const auto& [header, values, expected] : cases) {
    write("stage.res", header + record(1, values));
    turbo::ResFile file(pathOf("stage.res"));
    ASSERT_EQ(file.read(), 1) << header;
    std::string names;
    for (const watch::TurboEquation& equation : watch::turboEquations(file))
      names += equation.name + " ";
    EXPECT_EQ(names, expected) << header;
  }
}

TEST_F(WatchCurves, EachCurveReadsItsPositionOfTheRecordAndStartsOverWithANewRun) {
  const std::string header = "0 2.0 2 3D K-O\n0\n0\nSTEADY TURBO\n";
  write("stage.res", header + record(1, 37));
  auto computation = watch::followComputation(pathOf("stage.res"), watch::Mode::turbomachinery, {});
  EXPECT_TRUE(computation->refresh().grew);
  std::map<std::string, double> values;
  for (const watch::NamedCurve& curve : computation->curves())
    values[curve.name] = watch::judgeCurve(curve, true, {}).last().value_or(-1.0);
  EXPECT_EQ(values.size(), 9u + 2 * 2 * 7);
  const std::map<std::string, double> expected = {
      {"WorkUnit", 0},      {"Axial thrust", 3},   {"Out", 8},           {"max_d_block1", 9},
      {"rms_d_block1", 10}, {"rms_E_block1", 18},  {"max_k_block1", 19}, {"rms_omega_block1", 22},
      {"max_d_block2", 23}, {"rms_wx_block2", 26}, {"max_k_block2", 33}, {"rms_omega_block2", 36},
  };
  for (const auto& [curve, position] : expected) EXPECT_EQ(values[curve], position) << curve;
  // Growth, half a record, and the history rewritten: grew, new run, rows afterwards.
  const std::tuple<std::string, std::string, std::string> steps[] = {
      {"nothing new", "", "0 0 1"},
      {"appended", record(2, 37), "1 0 2"},
      {"half a record", "3 1 2", "0 0 2"},
      {"rest of it", record(0, 35).substr(1), "1 0 3"},
      {"rewritten", header + record(1, 37, 5.0), "1 1 1"},
  };
  for (const auto& [what, text, outcome] : steps) {
    what == "rewritten" ? write("stage.res", text) : append("stage.res", text);
    const watch::RefreshOutcome got = computation->refresh();
    EXPECT_EQ(std::to_string(got.grew) + " " + std::to_string(got.newRun) + " " +
                  std::to_string(computation->rows()),
              outcome)
        << what;
  }
  EXPECT_FALSE(computation->stamp().has_value());
}

TEST_F(WatchCurves, TheFirstByteAfterBlanksTellsTheMode) {
  const std::pair<const char*, const char*> cases[] = {{" \r\n# stamp", "marine"},
                                                       {"\t12", "turbo"},
                                                       {"+1", "turbo"},
                                                       {"-1", "turbo"},
                                                       {"x1", "none"},
                                                       {":", "none"},
                                                       {"/", "none"},
                                                       {" \n", "none"}};
  for (const auto& [text, mode] : cases) {
    write("run.res", text);
    const std::optional<watch::Mode> found = watch::recogniseMode(pathOf("run.res"));
    EXPECT_EQ(found ? (*found == watch::Mode::marine ? "marine" : "turbo") : "none",
              std::string(mode))
        << text;
  }
}

TEST_F(WatchCurves, AWatchWithoutTimeoutEndsWhenTheRunStalls) {
  write("stage.res", "0 2.0 2 3D K-O\n0\n0\nSTEADY TURBO\n" + record(1, 37));
  const std::string path = pathOf("stage.res");
  const std::string_view words[] = {"--stall", "0.05", "--every", "0.01", "--json", path};
  const watch::ParsedArguments parsed = watch::parseWatchArguments(words);
  ASSERT_TRUE(parsed.options) << parsed.error;
  std::vector<std::unique_ptr<watch::FollowedComputation>> followed;
  followed.push_back(watch::followComputation(path, watch::Mode::turbomachinery, {}));
  std::ostringstream out;
  EXPECT_EQ(watch::WatchLoop(*parsed.options, std::move(followed), out, false).run(), 3);
}

}  // namespace
