// Start-up: the registry files, the version tag, the environment, -batch, the mode and banner.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "app/qv_environment_variables.h"
#include "app/startup.h"
#include "app/version_tag.h"
#include "console_capture.h"
#include "platform/registry_file.h"
#include "platform/system_services.h"
#include "scratch_folder.h"

namespace {

using platform::ExecutablePath;
using platform::RegistryFile;
using Strings = std::vector<std::string>;
using Text = std::optional<std::string>;

const app::ToolWords kTools{"alphatool", "betatool", "gammatool", "deltatool", "epsilontool"};

class FakeSystem final : public platform::SystemServices {
  using S = const std::string&;

 public:
  ExecutablePath programPath{"/opt/talvik/dune71/bin/monitor"};
  platform::RegistryFiles registry;
  std::map<std::string, std::string> environment{{"HOME", "/home/eng"}};
  Strings exports, createdFolders;

  ExecutablePath executablePath() override { return programPath; }
  bool registryKeyExists(S key) override { return registry.hasKey(key); }
  Text registryValue(S key, S name) override { return registry.value(key, name); }
  Text environmentVariable(S name) override {
    return environment.contains(name) ? Text(environment[name]) : std::nullopt;
  }
  void exportVariable(S n, S value) override { exports.push_back(n), environment[n] = value; }
  void createFolder(S path) override { createdFolders.push_back(path); }
  void waitForInputLine() override {}
};

Strings split(const char* text, char at = ';') {
  Strings parts;
  for (std::string_view rest = text ? text : ""; !rest.empty();) {
    parts.emplace_back(rest.substr(0, rest.find(at)));
    rest.remove_prefix(std::min(rest.size(), parts.back().size() + 1));
  }
  return parts;
}

TEST(RegistryFile, SectionsValuesCommentsCaseAndJunk) {
  const RegistryFile file = RegistryFile::parse(
      "VALUE=before any section\n; comment\n# comment\n[unclosed section\n"
      "[dune71]\r\n  TALVIK_DIR =  /opt/x=y  \r\nDriverZ=x11 ; kept\n"
      "no equals sign\n=no name\ngarbage \x01\x02\nEMPTY=\n\n"
      "[HKEY_LOCAL_MACHINE\\Software\\Talvik\\DUNE_MARINE71]\ntalvik_dir=/m\n[empty]");
  std::string got;  // each key/value's value, or - when there is none
  for (const std::string& query :
       split("dune71/TALVIK_DIR;HKEY_LOCAL_MACHINE\\DUNE71/ talvik_dir;dune71/driverz;dune71/EMPTY;"
             "dune71/VALUE;Software\\TALVIK\\dune_marine71/TALVIK_DIR;"
             "Software\\TALVIK\\dune_marine71/DRIVER;dune72/TALVIK_DIR"))
    got += file.value(query.substr(0, query.find('/')), query.substr(query.find('/') + 1))
               .value_or("-") +
           "|";
  EXPECT_EQ(got, "/opt/x=y|/opt/x=y|x11 ; kept||-|/m|-|-|");
  EXPECT_TRUE(file.hasKey(" empty ") && !file.hasKey("unclosed section") && !file.hasKey("dune72"));
}

using RegistryFromEnvironment = ScratchFolder;

TEST_F(RegistryFromEnvironment, TheFileNamedInTheEnvironmentOrTheOneInHome) {
  const auto now = [](const char* name) { return std::getenv(name) ? std::getenv(name) : "\x01"; };
  const std::pair<const char*, std::string> saved[] = {{"HOME", now("HOME")},
                                                       {"TALVIK_REGISTRY", now("TALVIK_REGISTRY")}};
  std::filesystem::create_directories(folder_ / ".talvik");
  write("named", "[named]\n");
  write(".talvik/registry", "[home]\n");
  const std::tuple<std::string, std::string, const char*, bool> cases[] = {
      {pathOf("named"), folder_.string(), "named", true},
      {"", folder_.string(), "home", true},
      {pathOf("nowhere"), folder_.string(), "home", false},
  };
  for (const auto& [named, home, key, found] : cases) {
    setenv("TALVIK_REGISTRY", named.c_str(), 1);
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(platform::RegistryFiles::fromEnvironment().hasKey(key), found) << named << key;
  }
  for (const auto& [name, value] : saved)
    value == "\x01" ? unsetenv(name) : setenv(name, value.c_str(), 1);
}

TEST(VersionTag, TagToolAndRegistryKeysFromProgramPathsAndArguments) {
  const std::pair<const char*, const char*> cases[] = {
      {"/opt/talvik/dune71/bin/monitor", "71|0|dune71"},
      {"/opt/dune7AZ/bin64/monitor", "7az|0|dune7az"},
      {"/opt/talvik/alphatool12/bin/monitor", "12|1|alphatool12 dune12"},
      {"/opt/betatool9/bin/monitor", "9|2|betatool9"},
      {"/usr/local/monitor", "/usr/local/monitor|0|dune/usr/local/monitor"},
      {"/opt/x/bin/dune71/bin/monitor", "/opt/x|0|dune/opt/x"},
      {"", "|0|dune"},
  };
  for (const auto& [path, expected] : cases) {
    const app::VersionTag version = app::versionTagFromProgramPath(path, kTools);
    std::string got = version.tag + "|" + std::to_string(version.tool) + "|";
    for (const std::string& key : app::registryKeysFor(version, kTools))
      got += key.substr(0, 16) == "Software\\TALVIK\\" ? key.substr(16) + " " : "?";
    EXPECT_EQ(got, expected + std::string(" ")) << path;
  }
  EXPECT_EQ(app::qvversionArgument({"monitor", "-qvversion", "a", "-qvversion", "b"}) + "|" +
                app::qvversionArgument({"monitor", "x.res", "-qvversion"}) + "|" +
                app::qvversionArgument({"-qvversion", "notme"}),
            "a||");
}

TEST(Environment, InstalledProgramGetsEveryLocationAndExportsThemInTheirOrder) {
  FakeSystem system;
  system.registry.add(RegistryFile::parse("[Software\\TALVIK\\dune71]\nTALVIK_DIR=/t/r"));
  app::QVEnvironmentVariables v;
  ConsoleCapture console;
  ASSERT_TRUE(v.setUp({"monitor"}, system, kTools) && v.defined());
  std::string got = console.text();
  for (const std::string& name : system.exports) got += name + "=" + system.environment[name] + " ";
  const auto joined = [](const auto&... values) { return ((values + " ") + ...); };
  EXPECT_EQ(
      got + joined(v.ONLINEHELPDUNE_DIR, v.ONLINEHELPGMX_DIR, v.ONLINEHELPVEXO_DIR,
                   v.ONLINEHELPPLOTVU_DIR, v.TURNKEY_INP_PATH),
      "QV_VERSION=71 TALVIK_DIR=/t/r DRIVER=opengl GMX_REVERSEVIDEO=on PYTHONPATH=/t/r/python64 "
      "HOME=/home/eng TMP_DIR=/home/eng/.talvik/tmp/ TALVIK_DIR=/t/r VORTAXE_DIR=/t/r/bin "
      "TCL_PATH=/t/r/_tcl TCL_LIBRARY=/t/r/_tcl/_system/tcl8.4 TK_LIBRARY=/t/r/_tcl/_system/tk8.4 "
      "TIX_LIBRARY=/t/r/_tcl/_system/tix8.4 BLT_LIBRARY=/t/r/_tcl/_system/blt2.4 PLOTVU_PATH=/t/r "
      "QV_VERSIONS_DIR=/t GMX_EXE=/t/r/bin/gmx VTX_EXE=/t/r/bin/vortaxe GRA_EXE=/t/r/bin/monitor "
      "PLV_EXE=/t/r/bin/plotvu /t/r/html/online_help/dune/ /t/r/html/online_help/gmx/ "
      "/t/r/html/online_help/vexo/ /t/r/html/online_help/plotvu/  ");
}

TEST(Environment, VariantsOfTheInstallation) {
  using enum ExecutablePath::Status;
  const std::string notFound =
      "STARTUP_ERROR: Could not find TALVIK_DIR in "
      "registry:\nHKEY_LOCAL_MACHINE\\Software\\TALVIK\\";
  const std::string quit = "\ntype key end Enter to quit\n";
  // NAME=VALUE;... afterwards and before (NAME alone: not set); keys under Software\TALVIK;
  // nullptr: version 71's key and program; a STARTUP_ERROR on the console is a failure.
  const struct {
    const char *name, *expected, *environment, *registry, *path;
    std::string console;
    ExecutablePath::Status status = ok;
    long error = 0;
  } cases[] = {
      {"trailing separators", "QV_VERSIONS_DIR=/opt/talvik", "",
       "[dune71]\nTALVIK_DIR=/opt/talvik/d71//\n"},
      {"missing key", "QV_VERSION=71;TALVIK_DIR", "", "[dune70]\nTALVIK_DIR=/x\n", nullptr,
       notFound + "dune71" + quit},
      {"first tool, own key", "TALVIK_DIR=/own", "",
       "[alphatool12]\nTALVIK_DIR=/own\n[dune12]\nTALVIK_DIR=/f", "/opt/alphatool12/bin/monitor"},
      {"first tool, no key", "", "", "", "/opt/alphatool12/bin/monitor",
       "STARTUP_ERROR: Could not find TALVIK_DIR in registries:\nHKEY_LOCAL_MACHINE\\Software\\"
       "TALVIK\\alphatool12\nHKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune12" +
           quit},
      {"second tool", "QV_VERSION=9;TALVIK_DIR=/opt/BetaTool9;DRIVER", "",
       "[betatool9]\nTALVIK_DIR=/elsewhere\nDRIVER=x\n", "/opt/BetaTool9/bin/monitor"},
      {"other tool", "", "", "[dune5]\nTALVIK_DIR=/family\n", "/opt/gammatool5/bin/monitor",
       notFound + "gammatool5" + quit},
      {"unreadable path", "QV_VERSION=;TALVIK_DIR=/r", "", "[dune]\nTALVIK_DIR=/r", "",
       "QVEnvironmentVariables::initWin32 - error\n  Failed to retrieve executable path name!\n"
       "  Last error = 2\n",
       failed, 2},
      {"truncated path", "QV_VERSION=71", "", nullptr, "/opt/talvik/dune71/bin/monit",
       "QVEnvironmentVariables::initWin32 - error\n  Insufficient buffer size!\n"
       "  Last error = 36\n",
       truncated, 36},
      {"scratch folder", "TMP_DIR=/scratch/;folders=/home/eng/.talvik /home/eng/.talvik/pvm ",
       "TMP_DIR=/scratch"},
      {"empty scratch folder", "TMP_DIR=/", "TMP_DIR="},
      {"home from its parts", "HOME=D:\\U;TMP_DIR=D:\\U/.talvik/tmp/",
       "HOME;HOMEDRIVE=D:;HOMEPATH=\\U"},
      {"no home", "HOME=C:;folders=C:/.talvik C:/.talvik/pvm C:/.talvik/tmp ", "HOME;HOMEDRIVE=D:"},
  };
  for (const auto& c : cases) {
    FakeSystem system;
    if (c.path) system.programPath = {c.path, c.status, c.error};
    std::string registry = c.registry ? c.registry : "[dune71]\nTALVIK_DIR=/t";
    for (std::size_t at = 0; (at = registry.find('[', at)) != std::string::npos; ++at)
      registry.insert(at + 1, "Software\\TALVIK\\");
    system.registry.add(RegistryFile::parse(registry));
    for (const std::string& setting : split(c.environment)) {
      const std::size_t equals = setting.find('=');
      system.environment.erase(setting.substr(0, equals));
      if (equals != std::string::npos)
        system.environment[setting.substr(0, equals)] = setting.substr(equals + 1);
    }
    ConsoleCapture console;
    app::QVEnvironmentVariables values;
    const bool ok = !c.console.starts_with("STARTUP_ERROR");
    EXPECT_EQ(values.setUp({"monitor"}, system, kTools), ok) << c.name;
    EXPECT_EQ(values.defined(), ok) << c.name;
    for (const std::string& folder : system.createdFolders)
      system.environment["folders"] += folder + " ";
    std::string got;
    for (const std::string& expected : split(c.expected)) {
      const std::string name = expected.substr(0, expected.find('='));
      got += (got.empty() ? "" : ";") + name +
             (system.environment.contains(name) ? "=" + system.environment[name] : "");
    }
    EXPECT_EQ(console.text() + got, c.console + c.expected) << c.name;
  }
}

TEST(Startup, BatchRefusalModeAndBanner) {
  ConsoleCapture console;
  EXPECT_TRUE(app::refuseBatchArguments({"monitor", "-batch", "a.res", "-batch"}) &&
              !app::refuseBatchArguments({"monitor", "-BATCH", "-batchx", " -batch", "batch"}) &&
              app::refuseBatchArguments({"-batch"}));
  const std::string refused = " -batch mode not supported \n";
  EXPECT_EQ(console.text(), refused + refused + refused);
  using enum app::MonitorMode;
  const std::pair<const char*, app::MonitorMode> modes[] = {
      {"71", turbo},     {"_marine71", marine},   {"71_Marine", turbo},
      {"_open71", open}, {"open_marine", marine}, {"OPEN", turbo}};
  for (const auto& [tag, mode] : modes) EXPECT_EQ(app::chooseMode(tag), mode) << tag;
  EXPECT_EQ(app::banner(open), "\n\n\n      <***>   Monitor 7.1  -  Mar  7 2018\n\n");
}

}  // namespace
