#include <gtest/gtest.h>

#include "app/qv_environment_variables.h"
#include "console_capture.h"
#include "fake_system.h"

namespace {

using app::QVEnvironmentVariables;

const app::ToolWords kTools{"alphatool", "betatool", "gammatool", "deltatool", "epsilontool"};

class Environment : public testing::Test {
 protected:
  Environment() {
    system.programPath.path = "/opt/talvik/dune71/bin/monitor";
    system.environment["HOME"] = "/home/eng";
    system.setRegistry("[Software\\TALVIK\\dune71]\nTALVIK_DIR=/opt/talvik/dune71\n");
  }

  bool setUp(std::vector<std::string> arguments = {"monitor"}) {
    return values.setUp(arguments, system, kTools);
  }

  std::vector<std::string> exportedNames() const {
    std::vector<std::string> names;
    for (const auto& exported : system.exports) names.push_back(exported.first);
    return names;
  }

  FakeSystem system;
  QVEnvironmentVariables values;
  ConsoleCapture console;
};

TEST_F(Environment, InstalledProgramGetsEveryLocation) {
  ASSERT_TRUE(setUp());
  EXPECT_TRUE(values.defined());
  EXPECT_EQ(values.QV_VERSION, "71");
  EXPECT_EQ(values.TALVIK_DIR, "/opt/talvik/dune71");
  EXPECT_EQ(values.VORTAXE_DIR, "/opt/talvik/dune71/bin");
  EXPECT_EQ(values.TCL_PATH, "/opt/talvik/dune71/_tcl");
  EXPECT_EQ(values.TCL_LIBRARY, "/opt/talvik/dune71/_tcl/_system/tcl8.4");
  EXPECT_EQ(values.TK_LIBRARY, "/opt/talvik/dune71/_tcl/_system/tk8.4");
  EXPECT_EQ(values.TIX_LIBRARY, "/opt/talvik/dune71/_tcl/_system/tix8.4");
  EXPECT_EQ(values.BLT_LIBRARY, "/opt/talvik/dune71/_tcl/_system/blt2.4");
  EXPECT_EQ(values.PYTHONPATH, "/opt/talvik/dune71/python64");
  EXPECT_EQ(values.PLOTVU_PATH, "/opt/talvik/dune71");
  EXPECT_EQ(values.QV_VERSIONS_DIR, "/opt/talvik");
  EXPECT_EQ(values.GMX_EXE, "/opt/talvik/dune71/bin/gmx");
  EXPECT_EQ(values.PLV_EXE, "/opt/talvik/dune71/bin/plotvu");
  EXPECT_EQ(values.VTX_EXE, "/opt/talvik/dune71/bin/vortaxe");
  EXPECT_EQ(values.GRA_EXE, "/opt/talvik/dune71/bin/monitor");
  EXPECT_EQ(values.ONLINEHELPDUNE_DIR, "/opt/talvik/dune71/html/online_help/dune/");
  EXPECT_EQ(values.ONLINEHELPGMX_DIR, "/opt/talvik/dune71/html/online_help/gmx/");
  EXPECT_EQ(values.ONLINEHELPVEXO_DIR, "/opt/talvik/dune71/html/online_help/vexo/");
  EXPECT_EQ(values.ONLINEHELPPLOTVU_DIR, "/opt/talvik/dune71/html/online_help/plotvu/");
  EXPECT_EQ(values.TMP_DIR, "/home/eng/.talvik/tmp/");
  EXPECT_EQ(values.DRIVER, "opengl");
  EXPECT_EQ(values.TURNKEY_INP_PATH, "");
  EXPECT_EQ(console.text(), "");
}

TEST_F(Environment, ExportsInTheirOrder) {
  ASSERT_TRUE(setUp());
  EXPECT_EQ(exportedNames(), (std::vector<std::string>{
                                 "QV_VERSION",  "TALVIK_DIR",  "DRIVER",      "GMX_REVERSEVIDEO",
                                 "PYTHONPATH",  "HOME",        "TMP_DIR",     "TALVIK_DIR",
                                 "VORTAXE_DIR", "TCL_PATH",    "TCL_LIBRARY", "TK_LIBRARY",
                                 "TIX_LIBRARY", "BLT_LIBRARY", "PLOTVU_PATH", "QV_VERSIONS_DIR",
                                 "GMX_EXE",     "VTX_EXE",     "GRA_EXE",     "PLV_EXE"}));
  EXPECT_EQ(system.environment["GMX_REVERSEVIDEO"], "on");
  EXPECT_EQ(system.environment["HOME"], "/home/eng");
  EXPECT_EQ(system.createdFolders,
            (std::vector<std::string>{"/home/eng/.talvik", "/home/eng/.talvik/pvm",
                                      "/home/eng/.talvik/tmp"}));
}

TEST_F(Environment, ExistingReverseVideoIsKept) {
  system.environment["GMX_REVERSEVIDEO"] = "off";
  ASSERT_TRUE(setUp());
  EXPECT_EQ(system.environment["GMX_REVERSEVIDEO"], "off");
}

TEST_F(Environment, DriverComesFromTheRegistry) {
  system.setRegistry("[Software\\TALVIK\\dune71]\nTALVIK_DIR=/r\nDRIVER=mesa\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.DRIVER, "mesa");
  EXPECT_EQ(system.environment["DRIVER"], "mesa");
  EXPECT_EQ(values.QV_VERSIONS_DIR, "");
}

TEST_F(Environment, MissingRootValueLeavesTheRootEmpty) {
  system.setRegistry("[Software\\TALVIK\\dune71]\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.TALVIK_DIR, "");
  EXPECT_EQ(values.TCL_PATH, "/_tcl");
}

TEST_F(Environment, RootWithTrailingSeparatorsKeepsItsParent) {
  system.setRegistry("[Software\\TALVIK\\dune71]\nTALVIK_DIR=/opt/talvik/dune71//\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.QV_VERSIONS_DIR, "/opt/talvik");
}

TEST_F(Environment, QvversionIsTakenVerbatim) {
  system.setRegistry("[Software\\TALVIK\\dune71_Marine]\nTALVIK_DIR=/m\n");
  system.programPath.status = platform::ExecutablePath::Status::failed;
  ASSERT_TRUE(setUp({"monitor", "-qvversion", "71_Marine"}));
  EXPECT_EQ(values.QV_VERSION, "71_Marine");
  EXPECT_EQ(values.TALVIK_DIR, "/m");
  // The program's path was not asked for, so its failure is never reported.
  EXPECT_EQ(console.text(), "");
}

TEST_F(Environment, QvversionAsLastArgumentIsIgnored) {
  ASSERT_TRUE(setUp({"monitor", "-qvversion"}));
  EXPECT_EQ(values.QV_VERSION, "71");
}

TEST_F(Environment, MissingKeyIsReportedWithTheKey) {
  system.setRegistry("[Software\\TALVIK\\dune70]\nTALVIK_DIR=/x\n");
  EXPECT_FALSE(setUp());
  EXPECT_EQ(console.text(),
            "STARTUP_ERROR: Could not find TALVIK_DIR in registry:\n"
            "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71\n"
            "type key end Enter to quit\n");
  EXPECT_FALSE(values.defined());
  EXPECT_EQ(system.exports.front(), (std::pair<std::string, std::string>{"QV_VERSION", "71"}));
}

TEST_F(Environment, ProgramOutsideAnInstallationLooksUpItsWholePath) {
  system.programPath.path = "/usr/local/Monitor";
  EXPECT_FALSE(setUp());
  EXPECT_EQ(console.text(),
            "STARTUP_ERROR: Could not find TALVIK_DIR in registry:\n"
            "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune/usr/local/monitor\n"
            "type key end Enter to quit\n");
}

TEST_F(Environment, FirstToolFallsBackOnTheFamilyKey) {
  system.programPath.path = "/opt/alphatool12/bin/monitor";
  system.setRegistry("[Software\\TALVIK\\dune12]\nTALVIK_DIR=/family\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.TALVIK_DIR, "/family");
}

TEST_F(Environment, FirstToolPrefersItsOwnKey) {
  system.programPath.path = "/opt/alphatool12/bin/monitor";
  system.setRegistry(
      "[Software\\TALVIK\\alphatool12]\nTALVIK_DIR=/own\n[Software\\TALVIK\\dune12]\nTALVIK_DIR=/"
      "family\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.TALVIK_DIR, "/own");
}

TEST_F(Environment, FirstToolWithoutEitherKeyReportsBoth) {
  system.programPath.path = "/opt/alphatool12/bin/monitor";
  system.setRegistry("");
  EXPECT_FALSE(setUp());
  EXPECT_EQ(console.text(),
            "STARTUP_ERROR: Could not find TALVIK_DIR in registries:\n"
            "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\alphatool12\n"
            "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune12\n"
            "type key end Enter to quit\n");
}

TEST_F(Environment, SecondToolNeedsNoRegistry) {
  system.programPath.path = "/opt/BetaTool9/bin/monitor";
  system.setRegistry("");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.QV_VERSION, "9");
  EXPECT_EQ(values.TALVIK_DIR, "/opt/BetaTool9");
  EXPECT_EQ(values.DRIVER, "");
  for (const auto& exported : system.exports) EXPECT_NE(exported.first, "DRIVER");
}

TEST_F(Environment, SecondToolIgnoresItsKeyEvenWhenPresent) {
  system.programPath.path = "/opt/betatool9/bin/monitor";
  system.setRegistry("[Software\\TALVIK\\betatool9]\nTALVIK_DIR=/elsewhere\nDRIVER=x\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.TALVIK_DIR, "/opt/betatool9");
  EXPECT_EQ(values.DRIVER, "");
}

TEST_F(Environment, OtherToolsUseTheirOwnKeyOnly) {
  system.programPath.path = "/opt/gammatool5/bin/monitor";
  system.setRegistry("[Software\\TALVIK\\dune5]\nTALVIK_DIR=/family\n");
  EXPECT_FALSE(setUp());
  EXPECT_NE(console.text().find("HKEY_LOCAL_MACHINE\\Software\\TALVIK\\gammatool5\n"),
            std::string::npos);
}

TEST_F(Environment, UnreadableProgramPathIsReportedAndSetUpGoesOn) {
  system.programPath = {"", platform::ExecutablePath::Status::failed, 2};
  system.setRegistry("[Software\\TALVIK\\dune]\nTALVIK_DIR=/r\n");
  ASSERT_TRUE(setUp());
  EXPECT_EQ(console.text(),
            "QVEnvironmentVariables::initWin32 - error\n"
            "  Failed to retrieve executable path name!\n"
            "  Last error = 2\n");
  EXPECT_EQ(values.QV_VERSION, "");
}

TEST_F(Environment, TruncatedProgramPathIsReportedAndUsed) {
  system.programPath = {"/opt/talvik/dune71/bin/monit", platform::ExecutablePath::Status::truncated,
                        36};
  ASSERT_TRUE(setUp());
  EXPECT_EQ(console.text(),
            "QVEnvironmentVariables::initWin32 - error\n"
            "  Insufficient buffer size!\n"
            "  Last error = 36\n");
  EXPECT_EQ(values.QV_VERSION, "71");
}

TEST_F(Environment, ScratchFolderFromTheEnvironment) {
  system.environment["TMP_DIR"] = "/scratch";
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.TMP_DIR, "/scratch/");
  EXPECT_EQ(system.environment["TMP_DIR"], "/scratch/");
  EXPECT_EQ(system.createdFolders.size(), 2U);  // no ~/.talvik/tmp

  FakeSystem again = system;
  again.environment["TMP_DIR"] = "/scratch/";
  QVEnvironmentVariables second;
  ASSERT_TRUE(second.setUp({"monitor"}, again, kTools));
  EXPECT_EQ(second.TMP_DIR, "/scratch/");

  again.environment["TMP_DIR"] = "";
  ASSERT_TRUE(second.setUp({"monitor"}, again, kTools));
  EXPECT_EQ(second.TMP_DIR, "/");
}

TEST_F(Environment, HomeFallbacks) {
  system.environment.erase("HOME");
  system.environment["HOMEDRIVE"] = "D:";
  system.environment["HOMEPATH"] = "\\Users\\eng";
  ASSERT_TRUE(setUp());
  EXPECT_EQ(system.environment["HOME"], "D:\\Users\\eng");
  EXPECT_EQ(values.TMP_DIR, "D:\\Users\\eng/.talvik/tmp/");

  FakeSystem onlyDrive;
  onlyDrive.programPath.path = system.programPath.path;
  onlyDrive.registry = system.registry;
  onlyDrive.environment["HOMEDRIVE"] = "D:";
  QVEnvironmentVariables second;
  ASSERT_TRUE(second.setUp({"monitor"}, onlyDrive, kTools));
  EXPECT_EQ(onlyDrive.environment["HOME"], "C:");
  EXPECT_EQ(onlyDrive.createdFolders.front(), "C:/.talvik");
}

TEST_F(Environment, EmptyHomeIsStillAHome) {
  system.environment["HOME"] = "";
  ASSERT_TRUE(setUp());
  EXPECT_EQ(values.TMP_DIR, "/.talvik/tmp/");
}

}  // namespace
