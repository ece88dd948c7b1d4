// The command line of monitor-watch: what each option sets, the one line a bad
// command line gets, and a help text that documents every option.
#include "watch/watch_options.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "watch/help_text.h"

namespace {

using watch::ParsedArguments;
using watch::parseWatchArguments;
using Arguments = std::vector<std::string_view>;

// The words of a command line separated by spaces.
ParsedArguments parse(const std::string& line) {
  std::vector<std::string> words;
  for (std::size_t at = 0;; at = line.find(' ', at) + 1) {
    words.push_back(line.substr(at, line.find(' ', at) - at));
    if (line.find(' ', at) == std::string::npos) break;
  }
  return parseWatchArguments(Arguments(words.begin(), words.end()));
}

TEST(WatchOptions, BadCommandLinesGetOneLineThatSaysWhy) {
  const std::string seconds = " takes a number of seconds above 0, not ";
  const std::string names = " takes curve names separated by commas, not ";
  const std::string formula = "--formula takes NAME=EXPRESSION (a name without commas), not ";
  const struct {
    std::string line;
    std::string error;
  } cases[] = {
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
  for (const auto& c : cases) {
    testing::internal::CaptureStderr();
    const ParsedArguments parsed = parse(c.line);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << c.line;
    EXPECT_FALSE(parsed.options.has_value()) << c.line;
    EXPECT_EQ(parsed.error, c.error);
  }
}

TEST(WatchOptions, DefaultsAreThoseOfTheWindow) {
  const ParsedArguments parsed = parse("case/ship.res");
  ASSERT_TRUE(parsed.options.has_value()) << parsed.error;
  const watch::WatchOptions& options = *parsed.options;
  EXPECT_FALSE(options.mode.has_value());
  EXPECT_EQ(options.everySeconds, 5.0);
  EXPECT_FALSE(options.once || options.help || options.csvFolder || options.timeoutSeconds ||
               options.stallSeconds);
  EXPECT_EQ(options.format, watch::OutputFormat::table);
  EXPECT_EQ(options.criteria.confidence, 0.95);
  EXPECT_EQ(options.criteria.tolerance, 0.01);
}

TEST(WatchOptions, EveryOptionSetsWhatItSays) {
  const ParsedArguments parsed = parse(
      "--marine --every=0.25 --json --csv out --curves ResU,Fx_hull --curves=X_hull --formula "
      "mean=(Fx_hull+Fx_rudder)/2 --formula ratio=a=b --until-converged Fx_hull,mean --timeout "
      "3600 --stall 600 --confidence 0.99 --tolerance=0 a.res - -- --odd.res");
  ASSERT_TRUE(parsed.options.has_value()) << parsed.error;
  const watch::WatchOptions& options = *parsed.options;
  EXPECT_EQ(options.mode, watch::Mode::marine);
  EXPECT_EQ(options.everySeconds, 0.25);
  EXPECT_EQ(options.format, watch::OutputFormat::json);
  EXPECT_EQ(options.csvFolder, std::filesystem::path("out"));
  EXPECT_EQ(options.curves, (std::vector<std::string>{"ResU", "Fx_hull", "X_hull"}));
  ASSERT_EQ(options.formulas.size(), 2u);
  EXPECT_EQ(options.formulas[0].name + "|" + options.formulas[0].expression,
            "mean|(Fx_hull+Fx_rudder)/2");
  EXPECT_EQ(options.formulas[1].name + "|" + options.formulas[1].expression, "ratio|a=b");
  EXPECT_EQ(options.untilConverged, (std::vector<std::string>{"Fx_hull", "mean"}));
  EXPECT_EQ(options.timeoutSeconds, 3600.0);
  EXPECT_EQ(options.stallSeconds, 600.0);
  EXPECT_EQ(options.criteria.confidence, 0.99);
  EXPECT_EQ(options.criteria.tolerance, 0.0);
  EXPECT_EQ(options.residualPaths, (std::vector<std::string>{"a.res", "-", "--odd.res"}));
  EXPECT_EQ(parse("--turbo --once a").options->mode, watch::Mode::turbomachinery);
}

TEST(WatchOptions, HelpWinsOverEverythingElseButNotPastTheEndOfOptions) {
  for (const std::string line : {"--help", "--bogus -h", "--every 0 --help", "-- --help"}) {
    const ParsedArguments parsed = parse(line);
    ASSERT_TRUE(parsed.options.has_value()) << line;
    EXPECT_EQ(parsed.options->help, line != "-- --help") << line;
  }
}

TEST(WatchOptions, TheHelpDocumentsEveryOption) {
  const std::string_view help = watch::helpText();
  for (const std::string_view option : watch::optionNames()) {
    EXPECT_NE(help.find(option), std::string_view::npos) << option;
  }
}

}  // namespace
