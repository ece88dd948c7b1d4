// The command line of monitor-watch: what each option sets, the one line
// that a bad command line gets, and a help text that documents every option.
#include "watch/watch_options.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "watch/help_text.h"

namespace {

using watch::Mode;
using watch::OutputFormat;
using watch::ParsedArguments;
using watch::parseWatchArguments;

ParsedArguments parse(const std::vector<std::string_view>& arguments) {
  return parseWatchArguments(arguments);
}

TEST(WatchOptions, BadCommandLinesGetOneLineThatSaysWhy) {
  const struct {
    std::vector<std::string_view> arguments;
    std::string_view error;
  } cases[] = {
      {{}, "no residual file given (see --help)"},
      {{"--json"}, "no residual file given (see --help)"},
      {{"--bogus", "a.res"}, "unknown option --bogus (see --help)"},
      {{"--once=1", "a.res"}, "unknown option --once=1 (see --help)"},
      {{"a.res", "--every"}, "--every needs a value"},
      {{"--every", "0", "a.res"}, "--every takes a number of seconds above 0, not \"0\""},
      {{"--every", "-2", "a.res"}, "--every takes a number of seconds above 0, not \"-2\""},
      {{"--every", "5s", "a.res"}, "--every takes a number of seconds above 0, not \"5s\""},
      {{"--every", "2,5", "a.res"}, "--every takes a number of seconds above 0, not \"2,5\""},
      {{"--every", "inf", "a.res"}, "--every takes a number of seconds above 0, not \"inf\""},
      {{"--every=", "a.res"}, "--every takes a number of seconds above 0, not \"\""},
      {{"--stall", "nan", "a.res"}, "--stall takes a number of seconds above 0, not \"nan\""},
      {{"--confidence", "1", "a.res"}, "--confidence takes a level between 0 and 1, not \"1\""},
      {{"--confidence", "0", "a.res"}, "--confidence takes a level between 0 and 1, not \"0\""},
      {{"--tolerance", "-0.1", "a.res"},
       "--tolerance takes a fraction of the mean, 0 or more, not \"-0.1\""},
      {{"--curves", "ResU,,Fx_hull", "a.res"},
       "--curves takes curve names separated by commas, not \"ResU,,Fx_hull\""},
      {{"--until-converged", "ResU,", "a.res"},
       "--until-converged takes curve names separated by commas, not \"ResU,\""},
      {{"--formula", "Fx_hull", "a.res"},
       "--formula takes NAME=EXPRESSION (a name without commas), not \"Fx_hull\""},
      {{"--formula", "=Fx_hull", "a.res"},
       "--formula takes NAME=EXPRESSION (a name without commas), not \"=Fx_hull\""},
      {{"--formula", "a,b=1", "a.res"},
       "--formula takes NAME=EXPRESSION (a name without commas), not \"a,b=1\""},
      {{"--formula", "drag=", "a.res"},
       "--formula takes NAME=EXPRESSION (a name without commas), not \"drag=\""},
      {{"--formula", "drag=(Fx_hull", "a.res"},
       "--formula drag: the formula does not parse: (Fx_hull"},
      {{"--formula", "drag=Fx_hull *", "a.res"},
       "--formula drag: the formula does not parse: Fx_hull *"},
      {{"--formula", "drag=sqr(Fx_hull)", "a.res"}, "--formula drag: Unknown function \"sqr\""},
      {{"--csv", "", "a.res"}, "--csv takes a folder"},
      {{"--marine", "--turbo", "a.res"}, "--marine and --turbo exclude each other"},
      {{"--timeout", "60", "a.res"}, "--timeout needs --until-converged: the curves it waits for"},
      {{"--once", "--stall", "5", "a.res"},
       "--once reads the files once: --timeout and --stall need a watch that goes on"},
  };
  for (const auto& c : cases) {
    const ParsedArguments parsed = parse(c.arguments);
    EXPECT_FALSE(parsed.options.has_value()) << c.error;
    EXPECT_EQ(parsed.error, c.error);
  }
}

TEST(WatchOptions, AFormulaNestedTooDeeplyIsRefusedWithoutPrinting) {
  const std::string formula = "deep=" + std::string(300, '(') + "1" + std::string(300, ')');
  testing::internal::CaptureStderr();
  const ParsedArguments parsed = parse({"--formula", formula, "a.res"});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_FALSE(parsed.options.has_value());
  EXPECT_EQ(parsed.error, "--formula deep: Formula nested deeper than 256 levels");
}

TEST(WatchOptions, DefaultsAreThoseOfTheWindow) {
  const ParsedArguments parsed = parse({"case/ship.res"});
  ASSERT_TRUE(parsed.options.has_value()) << parsed.error;
  const watch::WatchOptions& options = *parsed.options;
  EXPECT_EQ(options.residualPaths, std::vector<std::string>{"case/ship.res"});
  EXPECT_FALSE(options.mode.has_value());
  EXPECT_EQ(options.everySeconds, 5.0);
  EXPECT_FALSE(options.once);
  EXPECT_EQ(options.format, OutputFormat::table);
  EXPECT_FALSE(options.csvFolder.has_value());
  EXPECT_FALSE(options.timeoutSeconds.has_value());
  EXPECT_FALSE(options.stallSeconds.has_value());
  EXPECT_EQ(options.criteria.confidence, 0.95);
  EXPECT_EQ(options.criteria.tolerance, 0.01);
}

TEST(WatchOptions, EveryOptionSetsWhatItSays) {
  const ParsedArguments parsed = parse({"--marine",
                                        "--every=0.25",
                                        "--json",
                                        "--csv",
                                        "out",
                                        "--curves",
                                        "ResU,Fx_hull",
                                        "--curves=X_hull",
                                        "--formula",
                                        "mean=(Fx_hull+Fx_rudder)/2",
                                        "--formula",
                                        "ratio=a=b",
                                        "--until-converged",
                                        "Fx_hull,mean",
                                        "--timeout",
                                        "3600",
                                        "--stall",
                                        "600",
                                        "--confidence",
                                        "0.99",
                                        "--tolerance=0.005",
                                        "a.res",
                                        "--",
                                        "--odd.res"});
  ASSERT_TRUE(parsed.options.has_value()) << parsed.error;
  const watch::WatchOptions& options = *parsed.options;
  EXPECT_EQ(options.mode, Mode::marine);
  EXPECT_EQ(options.everySeconds, 0.25);
  EXPECT_EQ(options.format, OutputFormat::json);
  EXPECT_EQ(options.csvFolder, std::filesystem::path("out"));
  EXPECT_EQ(options.curves, (std::vector<std::string>{"ResU", "Fx_hull", "X_hull"}));
  ASSERT_EQ(options.formulas.size(), 2u);
  EXPECT_EQ(options.formulas[0].name, "mean");
  EXPECT_EQ(options.formulas[0].expression, "(Fx_hull+Fx_rudder)/2");
  // The name ends at the first '='; the formula keeps the rest.
  EXPECT_EQ(options.formulas[1].name, "ratio");
  EXPECT_EQ(options.formulas[1].expression, "a=b");
  EXPECT_EQ(options.untilConverged, (std::vector<std::string>{"Fx_hull", "mean"}));
  EXPECT_EQ(options.timeoutSeconds, 3600.0);
  EXPECT_EQ(options.stallSeconds, 600.0);
  EXPECT_EQ(options.criteria.confidence, 0.99);
  EXPECT_EQ(options.criteria.tolerance, 0.005);
  EXPECT_EQ(options.residualPaths, (std::vector<std::string>{"a.res", "--odd.res"}));
}

TEST(WatchOptions, HelpWinsOverEverythingElse) {
  for (const std::vector<std::string_view>& arguments :
       {std::vector<std::string_view>{"--help"}, {"--bogus", "-h"}, {"--every", "0", "--help"}}) {
    const ParsedArguments parsed = parse(arguments);
    ASSERT_TRUE(parsed.options.has_value());
    EXPECT_TRUE(parsed.options->help);
  }
  // Past "--" it is a file name.
  const ParsedArguments parsed = parse({"--", "--help"});
  ASSERT_TRUE(parsed.options.has_value());
  EXPECT_FALSE(parsed.options->help);
}

TEST(WatchOptions, TheHelpDocumentsEveryOption) {
  const std::string_view help = watch::helpText();
  for (const std::string_view option : watch::optionNames()) {
    EXPECT_NE(help.find(option), std::string_view::npos) << option;
  }
  for (const std::string_view status : {"status 0", "status 1", "status 2", "status 3"}) {
    EXPECT_NE(help.find(status), std::string_view::npos) << status;
  }
}

}  // namespace
