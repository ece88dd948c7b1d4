// The locations the program derives from its installation and hands to the
// scripts, the per-user folders, and the registry file it reads them from.
#include <gtest/gtest.h>

#include "monitor_process.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;

// Prints "NAME=value" (or "NAME unset") for every name, in order.
std::string environmentScript(const std::vector<std::string>& names, const char* quit) {
  std::string script = "after 100 " + std::string(quit) + "\nforeach name {";
  for (const std::string& name : names) script += name + " ";
  return script + R"tcl(} {
    if {[info exists env($name)]} { puts "$name=$env($name)" } else { puts "$name unset" }
}
)tcl";
}

std::string turboEnvironmentScript(const std::vector<std::string>& names) {
  return environmentScript(names, "itf_quit_command");
}

TEST(InstallationEnvironment, LocationsGivenToTheScripts) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"QV_VERSION",
                                                        "TALVIK_DIR",
                                                        "DRIVER",
                                                        "GMX_REVERSEVIDEO",
                                                        "HOME",
                                                        "TMP_DIR",
                                                        "TCL_PATH",
                                                        "TCL_LIBRARY",
                                                        "TK_LIBRARY",
                                                        "TIX_LIBRARY",
                                                        "BLT_LIBRARY",
                                                        "PLOTVU_PATH",
                                                        "QV_VERSIONS_DIR",
                                                        "VORTAXE_DIR",
                                                        "GMX_EXE",
                                                        "GRA_EXE",
                                                        "VTX_EXE",
                                                        "PLV_EXE",
                                                        "TURNKEY_INP_PATH",
                                                        "PYTHONPATH",
                                                        "ONLINEHELPDUNE_DIR",
                                                        "ONLINEHELPGMX_DIR",
                                                        "ONLINEHELPVEXO_DIR",
                                                        "ONLINEHELPPLOTVU_DIR"}));
  const std::string root = installation.root().string();
  const std::string home = installation.home().string();
  const RunResult result = installation.run();
  EXPECT_EQ(result.output, bannerThen({
                               "QV_VERSION=71",
                               "TALVIK_DIR=" + root,
                               "DRIVER=opengl",
                               "GMX_REVERSEVIDEO=on",
                               "HOME=" + home,
                               "TMP_DIR=" + home + "/.talvik/tmp/",
                               "TCL_PATH=" + root + "/_tcl",
                               "TCL_LIBRARY=" + root + "/_tcl/_system/tcl8.4",
                               "TK_LIBRARY=" + root + "/_tcl/_system/tk8.4",
                               "TIX_LIBRARY=" + root + "/_tcl/_system/tix8.4",
                               "BLT_LIBRARY=" + root + "/_tcl/_system/blt2.4",
                               "PLOTVU_PATH=" + root,
                               "QV_VERSIONS_DIR=" + installation.base().string() + "/apps",
                               "VORTAXE_DIR=" + root + "/bin",
                               "GMX_EXE=" + root + "/bin/gmx",
                               "GRA_EXE=" + root + "/bin/monitor",
                               "VTX_EXE=" + root + "/bin/vortaxe",
                               "PLV_EXE=" + root + "/bin/plotvu",
                               "TURNKEY_INP_PATH=",
                               "PYTHONPATH=" + root + "/python64",
                               "ONLINEHELPDUNE_DIR=" + root + "/html/online_help/dune/",
                               "ONLINEHELPGMX_DIR=" + root + "/html/online_help/gmx/",
                               "ONLINEHELPVEXO_DIR=" + root + "/html/online_help/vexo/",
                               "ONLINEHELPPLOTVU_DIR=" + root + "/html/online_help/plotvu/",
                           }));
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(InstallationEnvironment, LocationsAreExportedToChildProcesses) {
  Installation installation;
  installation.writeTurboScript(
      "after 100 itf_quit_command\n"
      "puts [exec /bin/sh -c {echo \"$QV_VERSION|$TALVIK_DIR|$TMP_DIR|$GRA_EXE|$DRIVER\"}]\n");
  const std::string root = installation.root().string();
  const RunResult result = installation.run();
  EXPECT_EQ(result.output, bannerThen({"71|" + root + "|" + installation.home().string() +
                                       "/.talvik/tmp/|" + root + "/bin/monitor|opengl"}));
}

TEST(InstallationEnvironment, PresetVariablesAreKeptOrCompleted) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"TMP_DIR", "GMX_REVERSEVIDEO"}));
  const std::string scratch = (installation.base() / "scratch").string();

  const RunResult withoutSlash = installation.run(
      RunOptions().withVariable("TMP_DIR", scratch).withVariable("GMX_REVERSEVIDEO", "off"));
  EXPECT_EQ(withoutSlash.output, bannerThen({"TMP_DIR=" + scratch + "/", "GMX_REVERSEVIDEO=off"}));
  // Given a scratch folder, the program makes none of its own.
  EXPECT_TRUE(fs::is_directory(installation.home() / ".talvik" / "pvm"));
  EXPECT_FALSE(fs::exists(installation.home() / ".talvik" / "tmp"));

  const RunResult withSlash = installation.run(
      RunOptions().withVariable("TMP_DIR", scratch + "/").withVariable("GMX_REVERSEVIDEO", ""));
  EXPECT_EQ(withSlash.output, bannerThen({"TMP_DIR=" + scratch + "/", "GMX_REVERSEVIDEO="}));
}

TEST(InstallationEnvironment, PerUserFoldersInHome) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"HOME", "TMP_DIR"}));
  const fs::path home = installation.home();
  const RunResult result = installation.run();
  EXPECT_EQ(result.output,
            bannerThen({"HOME=" + home.string(), "TMP_DIR=" + home.string() + "/.talvik/tmp/"}));
  EXPECT_TRUE(fs::is_directory(home / ".talvik"));
  EXPECT_TRUE(fs::is_directory(home / ".talvik" / "pvm"));
  EXPECT_TRUE(fs::is_directory(home / ".talvik" / "tmp"));

  // Folders that cannot be made do not stop the program.
  fs::remove_all(home / ".talvik");
  writeFile(home / ".talvik", "not a folder\n");
  const RunResult blocked = installation.run();
  EXPECT_EQ(blocked.output,
            bannerThen({"HOME=" + home.string(), "TMP_DIR=" + home.string() + "/.talvik/tmp/"}));
  EXPECT_EQ(blocked.exitStatus, 1);
}

TEST(InstallationEnvironment, HomeWithoutHomeVariable) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"HOME", "TMP_DIR"}));

  // HOMEDRIVE and HOMEPATH together make the home folder.
  const std::string drive = installation.base().string();
  fs::create_directories(installation.base() / "other home");
  const RunResult joined = installation.run(RunOptions()
                                                .withVariable("HOMEDRIVE", drive)
                                                .withVariable("HOMEPATH", "/other home")
                                                .withoutVariable("HOME"));
  EXPECT_EQ(joined.output, bannerThen({"HOME=" + drive + "/other home",
                                       "TMP_DIR=" + drive + "/other home/.talvik/tmp/"}));
  EXPECT_TRUE(fs::is_directory(installation.base() / "other home" / ".talvik" / "pvm"));

  // One of them alone is not enough: the home folder is "C:", here a folder
  // of that name in the working folder.
  fs::create_directories(installation.work() / "C:");
  const RunResult driveOnly =
      installation.run(RunOptions().withVariable("HOMEDRIVE", drive).withoutVariable("HOME"));
  EXPECT_EQ(driveOnly.output, bannerThen({"HOME=C:", "TMP_DIR=C:/.talvik/tmp/"}));
  EXPECT_TRUE(fs::is_directory(installation.work() / "C:" / ".talvik" / "tmp"));
}

TEST(RegistryFile, SectionsValuesCommentsAndJunk) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"TALVIK_DIR", "DRIVER"}));
  const std::string root = installation.root().string();
  installation.writeRegistry(
      "; comment\n"
      "# another comment\n"
      "TALVIK_DIR=/outside/any/section\n"
      "junk line without equals sign\n"
      "[Software\\TALVIK\\dune70]\n"
      "TALVIK_DIR=/another/version\n"
      "DRIVER=wrong\n"
      "\n"
      "  [HKEY_LOCAL_MACHINE\\SOFTWARE\\Talvik\\DUNE71]  \n"
      "   ; indented comment\n"
      "=a value without a name\n"
      "just junk\n"
      "  talvik_dir   =   " +
      root +
      "   \n"
      "Driver=mesa = software\n"
      "[Software\\TALVIK\\dune72]\n"
      "DRIVER=too late\n");
  const RunResult result = installation.run();
  EXPECT_EQ(result.output, bannerThen({"TALVIK_DIR=" + root, "DRIVER=mesa = software"}));
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(RegistryFile, WindowsLineEnds) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"TALVIK_DIR", "DRIVER"}));
  const std::string root = installation.root().string();
  installation.writeRegistry("; written on Windows\r\n[Software\\TALVIK\\dune71]\r\nTALVIK_DIR=" +
                             root + "\r\nDRIVER=gdi\r\n");
  const RunResult result = installation.run();
  EXPECT_EQ(result.output, bannerThen({"TALVIK_DIR=" + root, "DRIVER=gdi"}));
}

TEST(RegistryFile, CommentedSectionIsNotAKey) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"TALVIK_DIR"}));
  installation.writeRegistry(
      "; [Software\\TALVIK\\dune71]\n# [Software\\TALVIK\\dune71]\nTALVIK_DIR=" +
      installation.root().string() + "\n");
  const RunResult result = installation.run(RunOptions().withInput("\n"));
  EXPECT_EQ(result.lines(),
            (std::vector<std::string>{"STARTUP_ERROR: Could not find TALVIK_DIR in registry:",
                                      "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71",
                                      "type key end Enter to quit"}));
  EXPECT_EQ(result.exitStatus, 0);
}

TEST(RegistryFile, HomeRegistryWhenNoFileIsNamed) {
  Installation installation;
  installation.writeTurboScript(turboEnvironmentScript({"TALVIK_DIR"}));
  writeFile(installation.home() / ".talvik" / "registry", installation.registrySection("dune71"));
  installation.writeRegistry("");
  const RunResult result = installation.run(RunOptions().withoutVariable("TALVIK_REGISTRY"));
  EXPECT_EQ(result.output, bannerThen({"TALVIK_DIR=" + installation.root().string()}));
  EXPECT_EQ(result.exitStatus, 1);
}

TEST(RegistryFile, KeyWithoutInstallationFolder) {
  // An empty root: the scripts are looked for under "/_tcl", where there are none.
  Installation installation;
  installation.writeRegistry("[Software\\TALVIK\\dune71]\nDRIVER=opengl\n");
  const RunResult result = installation.run(
      RunOptions().stopOnceOutputHas("no such file or directory\n", std::chrono::milliseconds(0)));
  const std::vector<std::string> lines = result.lines();
  ASSERT_GE(lines.size(), 7u);
  EXPECT_TRUE(lines[6].ends_with(
      " couldn't read file \"/_tcl/_monitorTurbo/itf_init.tcl\": no such file or directory"))
      << lines[6];
}

}  // namespace
}  // namespace e2e
