// Start-up as seen from outside: banner, the refused batch option, the choice
// of mode, the start-up failures and how the process ends.
#include <gtest/gtest.h>

#include "monitor_process.h"

namespace e2e {
namespace {

using std::chrono::milliseconds;

// A start-up script that tells which script ran, with which version tag and
// commands, and quits with its mode's command.
std::string announcingScript(const std::string& name, const std::string& quit) {
  return "after 100 " + quit + "\nputs \"" + name + R"tcl( script, QV_VERSION=$env(QV_VERSION)"
set commands [concat [lsort [info commands itf_quit*]] [info commands check_*]]
puts "commands: $commands"
)tcl";
}

void writeAnnouncingScripts(const Installation& installation) {
  installation.writeTurboScript(announcingScript("turbomachinery", "itf_quit_command"));
  installation.writeMarineScript(announcingScript("marine", "itf_quit_command_KELP"));
}

const std::string kTurboCommands = "commands: itf_quit_command check_current_directory";
const std::string kMarineCommands = "commands: itf_quit_command_KELP check_current_directory";

std::vector<std::string> missingKeyLines(const std::string& key) {
  return {"STARTUP_ERROR: Could not find TALVIK_DIR in registry:", "HKEY_LOCAL_MACHINE\\" + key,
          "type key end Enter to quit"};
}

TEST(Startup, BannerThenScriptOutputAndExitStatusOneAfterQuit) {
  Installation installation;
  installation.writeTurboScript("after 100 itf_quit_command\n");
  const RunResult quiet = installation.run();
  EXPECT_EQ(quiet.output, kBanner);
  EXPECT_EQ(quiet.errors, "");
  EXPECT_TRUE(quiet.exited);
  EXPECT_EQ(quiet.exitStatus, 1);

  // The program's lines and the script's share the console in writing order.
  installation.writeTurboScript(
      "puts \"first line of the script\"\n"
      "after 100 {puts \"from the event loop\"; itf_quit_command}\n"
      "puts -nonewline \"no line end yet, \"\n"
      "puts \"now one\"\n");
  const RunResult talking = installation.run();
  EXPECT_EQ(talking.output, bannerThen({"first line of the script", "no line end yet, now one",
                                        "from the event loop"}));
  EXPECT_EQ(talking.exitStatus, 1);
}

TEST(Startup, BatchOptionIsRefusedOncePerOccurrenceAndEndsAfterTheBanner) {
  Installation installation;
  installation.writeTurboScript("puts \"script ran\"\nafter 100 itf_quit_command\n");

  // Nothing of the session is built: no display is needed.
  const RunResult twice = installation.run(
      RunOptions().withArguments({"-batch", "x", "-batch"}).withoutVariable("DISPLAY"));
  EXPECT_EQ(twice.output,
            " -batch mode not supported \n -batch mode not supported \n" + std::string(kBanner));
  EXPECT_TRUE(twice.exited);
  EXPECT_EQ(twice.exitStatus, 0);

  // The program name is scanned as well.
  const RunResult asName = installation.run(RunOptions().withProgramName("-batch"));
  EXPECT_EQ(asName.output, " -batch mode not supported \n" + std::string(kBanner));
  EXPECT_EQ(asName.exitStatus, 0);

  // The refusal comes before the installation is looked up.
  installation.writeRegistry("");
  const RunResult unregistered =
      installation.run(RunOptions().withArguments({"-batch"}).withInput("\n"));
  EXPECT_EQ(
      unregistered.lines(),
      (std::vector<std::string>{
          " -batch mode not supported ", "STARTUP_ERROR: Could not find TALVIK_DIR in registry:",
          "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71", "type key end Enter to quit"}));
  EXPECT_EQ(unregistered.exitStatus, 0);
}

TEST(Startup, OnlyTheExactBatchWordIsTheOption) {
  Installation installation;
  installation.writeTurboScript("after 100 itf_quit_command\nputs \"argv: $argv\"\n");
  const RunResult result =
      installation.run(RunOptions().withArguments({"-BATCH", "-batchx", "--batch"}));
  EXPECT_EQ(result.output, bannerThen({"argv: -BATCH -batchx --batch"}));
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(Startup, MissingRegistryKeyIsReportedAndWaitsForOneInputLine) {
  Installation installation;
  installation.writeTurboScript("puts \"script ran\"\nafter 100 itf_quit_command\n");
  installation.writeRegistry(
      "[Software\\TALVIK\\dune70]\nTALVIK_DIR=" + installation.root().string() + "\n");
  const RunResult waited = installation.run(RunOptions().withInput("\n", milliseconds(500)));
  EXPECT_FALSE(waited.exitedBeforeInput);
  EXPECT_EQ(waited.lines(), missingKeyLines("Software\\TALVIK\\dune71"));
  EXPECT_TRUE(waited.exited);
  EXPECT_EQ(waited.exitStatus, 0);

  // A closed input ends the wait as well; a registry file that does not
  // exist holds no key.
  const RunResult noFile = installation.run(RunOptions().withVariable(
      "TALVIK_REGISTRY", (installation.base() / "no-such-registry").string()));
  EXPECT_EQ(noFile.lines(), missingKeyLines("Software\\TALVIK\\dune71"));
  EXPECT_EQ(noFile.exitStatus, 0);
}

TEST(Startup, InstallationFolderNameChoosesTheMode) {
  Installation turbo("dune71");
  writeAnnouncingScripts(turbo);
  const RunResult turboRun = turbo.run();
  EXPECT_EQ(turboRun.output, bannerThen({"turbomachinery script, QV_VERSION=71", kTurboCommands}));
  EXPECT_EQ(turboRun.exitStatus, 1);

  Installation marine("dune_marine71");
  writeAnnouncingScripts(marine);
  const RunResult marineRun = marine.run();
  EXPECT_EQ(marineRun.output, bannerThen({"marine script, QV_VERSION=_marine71", kMarineCommands}));
  EXPECT_EQ(marineRun.exitStatus, 1);

  // The folder name is lower-cased before it becomes the tag and the key.
  Installation upperCase("Dune_Marine71");
  writeAnnouncingScripts(upperCase);
  upperCase.writeRegistry(upperCase.registrySection("dune_marine71"));
  const RunResult upperCaseRun = upperCase.run();
  EXPECT_EQ(upperCaseRun.output,
            bannerThen({"marine script, QV_VERSION=_marine71", kMarineCommands}));
  EXPECT_EQ(upperCaseRun.exitStatus, 1);
}

TEST(Startup, VersionTagArgumentChoosesTheModeAndTheRegistryKey) {
  Installation installation("dune71");
  writeAnnouncingScripts(installation);
  installation.writeRegistry(installation.registrySection("dune71_Marine") +
                             installation.registrySection("dunex_open71") +
                             installation.registrySection("duneopen_marine71"));

  // The tag is taken verbatim: "Marine" is not "marine".
  const RunResult capital =
      installation.run(RunOptions().withArguments({"-qvversion", "71_Marine"}));
  EXPECT_EQ(capital.output,
            bannerThen({"turbomachinery script, QV_VERSION=71_Marine", kTurboCommands}));
  EXPECT_EQ(capital.exitStatus, 1);

  const RunResult open = installation.run(RunOptions().withArguments({"-qvversion", "x_open71"}));
  EXPECT_EQ(open.output,
            bannerThen({"turbomachinery script, QV_VERSION=x_open71", kTurboCommands}));
  EXPECT_EQ(open.exitStatus, 1);

  const RunResult both =
      installation.run(RunOptions().withArguments({"-qvversion", "open_marine71"}));
  EXPECT_EQ(both.output, bannerThen({"marine script, QV_VERSION=open_marine71", kMarineCommands}));
  EXPECT_EQ(both.exitStatus, 1);

  // Only the first occurrence counts.
  const RunResult first = installation.run(
      RunOptions().withArguments({"-qvversion", "x_open71", "-qvversion", "open_marine71"}));
  EXPECT_EQ(first.output,
            bannerThen({"turbomachinery script, QV_VERSION=x_open71", kTurboCommands}));

  // Without a value the option is ignored and the tag comes from the folder.
  installation.writeRegistry(installation.registrySection("dune71"));
  const RunResult dangling = installation.run(RunOptions().withArguments({"-qvversion"}));
  EXPECT_EQ(dangling.output, bannerThen({"turbomachinery script, QV_VERSION=71", kTurboCommands}));
  EXPECT_EQ(dangling.exitStatus, 1);

  // The given tag names the registry key, not the folder's tag.
  const RunResult unregistered =
      installation.run(RunOptions().withArguments({"-qvversion", "71_Marine"}).withInput("\n"));
  EXPECT_EQ(unregistered.lines(), missingKeyLines("Software\\TALVIK\\dune71_Marine"));
  EXPECT_EQ(unregistered.exitStatus, 0);
}

TEST(Startup, VersionTagFromTheProgramFolder) {
  Installation bin64("dune71", "bin64");
  writeAnnouncingScripts(bin64);
  const RunResult bin64Run = bin64.run();
  EXPECT_EQ(bin64Run.output, bannerThen({"turbomachinery script, QV_VERSION=71", kTurboCommands}));

  // Outside a bin folder the rest of the path stays in the tag, and no
  // installation is registered under such a key.
  Installation noBin("dune71", "");
  writeAnnouncingScripts(noBin);
  const RunResult noBinRun = noBin.run(RunOptions().withInput("\n"));
  EXPECT_EQ(noBinRun.lines(), missingKeyLines("Software\\TALVIK\\dune71/monitor"));
  EXPECT_EQ(noBinRun.exitStatus, 0);
}

// The folder words of the sibling tools are the build's default configuration
// (gmx first, plotvu second).
TEST(Startup, SiblingToolFolders) {
  // The first tool's key is tried, then the family's.
  Installation gmx("gmx71");
  writeAnnouncingScripts(gmx);
  gmx.writeRegistry("");
  const RunResult neither = gmx.run(RunOptions().withInput("\n"));
  EXPECT_EQ(neither.lines(),
            (std::vector<std::string>{"STARTUP_ERROR: Could not find TALVIK_DIR in registries:",
                                      "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\gmx71",
                                      "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71",
                                      "type key end Enter to quit"}));
  EXPECT_EQ(neither.exitStatus, 0);

  gmx.writeRegistry(gmx.registrySection("dune71"));
  const RunResult family = gmx.run();
  EXPECT_EQ(family.output, bannerThen({"turbomachinery script, QV_VERSION=71", kTurboCommands}));
  EXPECT_EQ(family.exitStatus, 1);

  // The second tool needs no registry: its root is the program's folder less
  // "bin", and no driver is set.
  Installation plotvu("plotvu71");
  plotvu.writeRegistry("");
  plotvu.writeTurboScript(
      "after 100 itf_quit_command\n"
      "puts \"TALVIK_DIR=$env(TALVIK_DIR)\"\n"
      "puts \"DRIVER set: [info exists env(DRIVER)]\"\n");
  const RunResult plotvuRun = plotvu.run();
  EXPECT_EQ(plotvuRun.output,
            bannerThen({"TALVIK_DIR=" + plotvu.root().string(), "DRIVER set: 0"}));
  EXPECT_EQ(plotvuRun.exitStatus, 1);
}

TEST(MainLoop, QuitTakesEffectAfterTheEventThatCalledIt) {
  Installation installation;
  // Called while the start-up script runs, quit is undone when the loop starts.
  installation.writeTurboScript(
      "itf_quit_command\n"
      "puts \"still starting\"\n"
      "after 100 {itf_quit_command; puts \"rest of the quitting event\"}\n"
      "after 1500 {puts \"a later event\"}\n");
  const RunResult result = installation.run();
  EXPECT_EQ(result.output, bannerThen({"still starting", "rest of the quitting event"}));
  EXPECT_EQ(result.exitStatus, 1);

  Installation marine("dune_marine71");
  marine.writeMarineScript(
      "after 100 {itf_quit_command_KELP; puts \"rest of the quitting event\"}\n"
      "after 1500 {puts \"a later event\"}\n");
  const RunResult marineResult = marine.run();
  EXPECT_EQ(marineResult.output, bannerThen({"rest of the quitting event"}));
  EXPECT_EQ(marineResult.exitStatus, 1);
}

TEST(MainLoop, WithoutAnyWindowTheLoopNeverEnds) {
  // With the main window gone no event is handled any more, so the timer that
  // would quit never fires: the test has to end the program.
  Installation installation;
  installation.writeTurboScript(
      "destroy .\n"
      "puts \"windows gone\"\n"
      "after 100 {puts \"timer\"; itf_quit_command}\n");
  const RunResult result =
      installation.run(RunOptions().stopOnceOutputHas("windows gone\n", milliseconds(700)));
  EXPECT_TRUE(result.stoppedByTest);
  EXPECT_FALSE(result.exited);
  EXPECT_EQ(result.output, bannerThen({"windows gone"}));
}

}  // namespace
}  // namespace e2e
