// Start-up as seen from outside: the banner, the mode, the refused batch
// option, the start-up failures and the exit status of each way to end.
#include <gtest/gtest.h>

#include <tuple>

#include "monitor_process.h"

namespace e2e {
namespace {

const std::string kMissingKey =
    "STARTUP_ERROR: Could not find TALVIK_DIR in registry:\n"
    "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71\ntype key end Enter to quit\n";

TEST(Startup, ScriptOutputFollowsTheBannerAndQuitEndsTheEventThatCalledIt) {
  Installation installation;
  // Called while the start-up script runs, quit is undone when the loop
  // starts. A failing script is reported as Tcl left errorInfo (the line added
  // afterwards is seen only by later readers), and the loop goes on.
  writeFile(installation.turboScript(),
            "itf_quit_command\n"
            "puts \"first line of the script\"\n"
            "after 100 {puts \"errorInfo later: $errorInfo\"; itf_quit_command; puts \"rest\"}\n"
            "after 1500 {puts \"a later event\"}\n"
            "puts -nonewline \"no line end yet, \"\n"
            "puts \"now one\"\n"
            "error boom\n");
  const std::string where = "    (file \"" + installation.turboScript().string() + "\" line 7)";
  const RunResult result = installation.run();
  EXPECT_EQ(result.output,
            bannerThen({"first line of the script", "no line end yet, now one", " TCL ERROR 7 boom",
                        "boom", "    while executing", "\"error boom\"", where,
                        "errorInfo later: boom", "    while executing", "\"error boom\"", where,
                        " {\"while\" body line 7}", "rest"}));
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(Startup, TheVersionTagChoosesTheModeAndItsScript) {
  const std::string kelp = ": itf_quit_command_KELP";
  const struct {
    const char *folder, *key;  // the installation's folder and registry key
    bool homeRegistry;         // ~/.talvik/registry instead of TALVIK_REGISTRY
    const char* version;       // given with -qvversion
    std::string said;
  } cases[] = {
      {"dune71", "dune71", false, nullptr, "turbomachinery 71: itf_quit_command"},
      // The folder name is lower-cased into the tag and the key.
      {"Dune_Marine71", "dune_marine71", true, nullptr, "marine _marine71" + kelp},
      {"dune71", "dunex_marine71", false, "x_marine71", "marine x_marine71" + kelp},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.said);
    Installation installation(c.folder);
    for (const auto& [script, mode, quit] :
         {std::tuple{installation.turboScript(), "turbomachinery", "itf_quit_command"},
          std::tuple{installation.marineScript(), "marine", "itf_quit_command_KELP"}}) {
      writeFile(script, "after 100 {" + std::string(quit) + "; puts quit}\nputs \"" + mode +
                            " $env(QV_VERSION): [info commands itf_quit*]\"\n"
                            "puts [info commands check_*]\n");
    }
    const std::string section = installation.registrySection(c.key);
    installation.writeRegistry(c.homeRegistry ? "" : section);
    writeFile(installation.home() / ".talvik" / "registry", c.homeRegistry ? section : "");
    RunOptions options;
    if (c.version) options.arguments = {"-qvversion", c.version};
    if (c.homeRegistry) options.environment["TALVIK_REGISTRY"] = std::nullopt;
    const RunResult result = installation.run(options);
    EXPECT_EQ(result.output, bannerThen({c.said, "check_current_directory", "quit"}));
    EXPECT_EQ(result.exitStatus, 1);
  }
}

TEST(Startup, EndingsBeforeTheLoopAndTheirStatus) {
  Installation installation;
  const std::string refusal = " -batch mode not supported \n";
  const std::optional<std::string> none;
  const struct {
    RunOptions options;
    std::string output;
  } cases[] = {
      // The program name is scanned too; nothing of the session is built.
      {{{"x", "-batch", "-BATCH", "--batch"}, "-batch", {{"DISPLAY", none}}},
       refusal + refusal + bannerThen({})},
      // The refusal comes before the installation is looked up.
      {{{"-batch"}, none, {{"TALVIK_REGISTRY", installation.base().string() + "/none"}}},
       refusal + kMissingKey},
      // Tk leaves errorInfo empty: the report's second line is empty.
      {{{}, none, {{"DISPLAY", none}}},
       bannerThen({" TK ERROR no display name and no $DISPLAY environment variable", ""})}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.output);
    const RunResult result = installation.run(c.options);
    EXPECT_EQ(result.output, c.output);
    EXPECT_EQ(result.exitStatus, 0);
  }
}

TEST(Startup, AMissingRegistryKeyWaitsForOneInputLine) {
  Installation installation;
  installation.writeRegistry(installation.registrySection("dune70"));
  const auto monitor = installation.start();
  EXPECT_FALSE(monitor->waitFor([](const std::string&) { return false; }, 500ms));
  EXPECT_TRUE(monitor->running());
  monitor->writeInput("\n");
  ASSERT_TRUE(monitor->finish(10s));
  EXPECT_EQ(monitor->exitStatus(), 0);
  EXPECT_EQ(monitor->output(), kMissingKey);
}

TEST(Startup, WithoutAnyWindowNoEventIsHandled) {
  Installation installation;
  writeFile(installation.turboScript(),
            "destroy .\nputs \"windows gone\"\nafter 100 {puts timer; itf_quit_command}\n");
  const auto monitor = installation.start();
  ASSERT_TRUE(
      monitor->waitFor([](const std::string& out) { return out.ends_with("gone\n"); }, 10s));
  EXPECT_FALSE(
      monitor->waitFor([](const std::string& out) { return out.ends_with("timer\n"); }, 700ms));
  EXPECT_TRUE(monitor->running());
}

}  // namespace
}  // namespace e2e
