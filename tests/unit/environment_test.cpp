// Start-up: the registry files, the version tag read from the program's path,
// the locations the environment gets, the -batch refusal, the mode and the
// banner.
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

const app::ToolWords kTools{"alphatool", "betatool", "gammatool", "deltatool", "epsilontool"};

// A system whose program path, registry and environment are set by the test,
// and which records what the code under test exports and creates.
class FakeSystem final : public platform::SystemServices {
 public:
  ExecutablePath programPath{"/opt/talvik/dune71/bin/monitor"};
  platform::RegistryFiles registry;
  std::map<std::string, std::string> environment{{"HOME", "/home/eng"}};
  Strings exports, createdFolders;

  ExecutablePath executablePath() override { return programPath; }
  bool registryKeyExists(const std::string& key) override { return registry.hasKey(key); }
  std::optional<std::string> registryValue(const std::string& key,
                                           const std::string& name) override {
    return registry.value(key, name);
  }
  std::optional<std::string> environmentVariable(const std::string& name) override {
    const auto found = environment.find(name);
    return found == environment.end() ? std::nullopt : std::optional(found->second);
  }
  void exportVariable(const std::string& name, const std::string& value) override {
    exports.push_back(name);
    environment[name] = value;
  }
  void createFolder(const std::string& path) override { createdFolders.push_back(path); }
  void waitForInputLine() override {}
};

std::vector<std::string> split(const char* text) {  // at ';'
  std::vector<std::string> parts;
  for (std::string_view rest = text ? text : ""; !rest.empty();) {
    parts.emplace_back(rest.substr(0, rest.find(';')));
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
  const struct {
    const char* key;
    const char* name;
    std::optional<std::string> value;
  } cases[] = {
      {"dune71", "TALVIK_DIR", "/opt/x=y"},
      {"HKEY_LOCAL_MACHINE\\DUNE71", " talvik_dir", "/opt/x=y"},
      {"dune71", "driverz", "x11 ; kept"},
      {"dune71", "EMPTY", ""},
      {"dune71", "VALUE", std::nullopt},
      {"Software\\TALVIK\\dune_marine71", "TALVIK_DIR", "/m"},
      {"Software\\TALVIK\\dune_marine71", "DRIVER", std::nullopt},
      {"dune72", "TALVIK_DIR", std::nullopt},
  };
  for (const auto& c : cases) EXPECT_EQ(file.value(c.key, c.name), c.value) << c.key << c.name;
  EXPECT_TRUE(file.hasKey(" empty "));
  EXPECT_FALSE(file.hasKey("unclosed section"));
  EXPECT_FALSE(file.hasKey("dune72"));

  // The first file holding the key answers, even without the value.
  platform::RegistryFiles files;
  files.add(RegistryFile::parse("[dune71]\n"));
  files.add(RegistryFile::parse("[dune71]\nTALVIK_DIR=/second\n[eighty]\nA=8"));
  EXPECT_FALSE(files.value("dune71", "TALVIK_DIR"));
  EXPECT_EQ(files.value("eighty", "A"), "8");
  EXPECT_TRUE(files.hasKey("dune71"));
  EXPECT_FALSE(files.hasKey("ninety") || files.value("ninety", "A"));
}

class RegistryFilesFromEnvironment : public ScratchFolder {
 protected:
  ~RegistryFilesFromEnvironment() override {
    for (const auto& [name, value] : saved_) {
      value ? setenv(name, value->c_str(), 1) : unsetenv(name);
    }
  }
  static std::optional<std::string> now(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
  }
  const std::pair<const char*, std::optional<std::string>> saved_[2] = {
      {"HOME", now("HOME")}, {"TALVIK_REGISTRY", now("TALVIK_REGISTRY")}};
};

TEST_F(RegistryFilesFromEnvironment, NamedFileOrTheOneInHome) {
  std::filesystem::create_directories(folder_ / ".talvik");
  write("named", "[named]\n");
  write(".talvik/registry", "[home]\n");
  const struct {
    std::string named, home, key;
    bool found;
  } cases[] = {
      {pathOf("named"), folder_.string(), "named", true},
      {pathOf("named"), folder_.string(), "home", false},
      {"", folder_.string(), "home", true},
      {"", pathOf("nowhere"), "home", false},
      {pathOf("nowhere"), folder_.string(), "home", false},
  };
  for (const auto& c : cases) {
    setenv("TALVIK_REGISTRY", c.named.c_str(), 1);
    setenv("HOME", c.home.c_str(), 1);
    EXPECT_EQ(platform::RegistryFiles::fromEnvironment().hasKey(c.key), c.found)
        << c.named << c.key;
  }
}

TEST(VersionTag, FromProgramPathsAndTheRegistryKeysItGives) {
  const struct {
    const char* path;
    const char* tag;
    int tool;
    Strings keys;  // under Software\TALVIK
  } cases[] = {
      {"/opt/talvik/dune71/bin/monitor", "71", 0, {"dune71"}},
      {"/opt/Talvik/Dune_Marine71/bin/monitor", "_marine71", 0, {"dune_marine71"}},
      {"/opt/dune7AZ/bin64/monitor", "7az", 0, {"dune7az"}},
      {"/home/u/dune/dune80/bin/x/monitor", "80", 0, {"dune80"}},
      {"/opt/dune71/binaries/monitor", "71/binaries/monitor", 0, {"dune71/binaries/monitor"}},
      {"/opt/talvik/dune71/bin/", "71", 0, {"dune71"}},
      {"/opt/alphatool1/dune2/bin/m", "2", 0, {"dune2"}},
      {"/opt/dune7 1{x}$[y]/bin/monitor", "7 1{x}$[y]", 0, {"dune7 1{x}$[y]"}},
      {"/opt/talvik/alphatool12/bin/monitor", "12", 1, {"alphatool12", "dune12"}},
      {"/opt/betatool9/bin/monitor", "9", 2, {"betatool9"}},
      {"/opt/deltatool3/bin/monitor", "3", 4, {"deltatool3"}},
      {"/opt/epsilontool_x/bin/monitor", "_x", 5, {"epsilontool_x"}},
      {"/usr/local/monitor", "/usr/local/monitor", 0, {"dune/usr/local/monitor"}},
      {"/opt/x/bin/dune71/bin/monitor", "/opt/x", 0, {"dune/opt/x"}},
      {"", "", 0, {"dune"}},
  };
  for (const auto& c : cases) {
    const app::VersionTag version = app::versionTagFromProgramPath(c.path, kTools);
    EXPECT_EQ(version.tag, c.tag) << c.path;
    EXPECT_EQ(version.tool, c.tool) << c.path;
    Strings keys;
    for (const std::string& key : c.keys) keys.push_back("Software\\TALVIK\\" + key);
    EXPECT_EQ(app::registryKeysFor(version, kTools), keys) << c.path;
  }
  for (const std::string& word : app::configuredToolWords()) {
    EXPECT_FALSE(word.empty() || word.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ;") != word.npos);
  }
}

TEST(VersionTag, QvversionArgument) {
  const std::pair<const char*, const char*> cases[] = {
      {"monitor;-qvversion;71_Marine;a.res", "71_Marine"},
      {"monitor;-qvversion;a;-qvversion;b", "a"},
      {"monitor;x.res;-qvversion", ""},
      {"-qvversion;notme", ""},
      {"monitor;-QVVERSION;71", ""}};
  for (const auto& [line, tag] : cases) EXPECT_EQ(app::qvversionArgument(split(line)), tag) << line;
}

// The values separated by spaces, with @ for the installation's folder.
template <typename... Text>
std::string joined(const Text&... values) {
  std::string text = ((values + " ") + ...);
  for (std::size_t at; (at = text.find("/opt/talvik/dune71")) != std::string::npos;) {
    text.replace(at, 18, "@");
  }
  return text;
}

TEST(Environment, InstalledProgramGetsEveryLocationAndExportsThemInTheirOrder) {
  FakeSystem system;
  system.registry.add(
      RegistryFile::parse("[Software\\TALVIK\\dune71]\nTALVIK_DIR=/opt/talvik/dune71"));
  app::QVEnvironmentVariables values;
  ConsoleCapture console;
  ASSERT_TRUE(values.setUp({"monitor"}, system, kTools));
  EXPECT_TRUE(values.defined());
  EXPECT_EQ(console.text(), "");
  const std::string got =
      joined(values.QV_VERSION, values.TALVIK_DIR, values.VORTAXE_DIR, values.TCL_PATH,
             values.TCL_LIBRARY, values.TK_LIBRARY, values.TIX_LIBRARY, values.BLT_LIBRARY,
             values.PYTHONPATH, values.PLOTVU_PATH, values.QV_VERSIONS_DIR, values.GMX_EXE,
             values.PLV_EXE, values.VTX_EXE, values.GRA_EXE, values.ONLINEHELPDUNE_DIR,
             values.ONLINEHELPGMX_DIR, values.ONLINEHELPVEXO_DIR, values.ONLINEHELPPLOTVU_DIR,
             values.TMP_DIR, values.DRIVER, values.TURNKEY_INP_PATH);
  EXPECT_EQ(got,
            "71 @ @/bin @/_tcl @/_tcl/_system/tcl8.4 @/_tcl/_system/tk8.4 @/_tcl/_system/tix8.4 "
            "@/_tcl/_system/blt2.4 @/python64 @ /opt/talvik @/bin/gmx @/bin/plotvu @/bin/vortaxe "
            "@/bin/monitor @/html/online_help/dune/ @/html/online_help/gmx/ "
            "@/html/online_help/vexo/ @/html/online_help/plotvu/ /home/eng/.talvik/tmp/ opengl  ");
  EXPECT_EQ(system.exports,
            (Strings{"QV_VERSION",  "TALVIK_DIR",  "DRIVER",      "GMX_REVERSEVIDEO",
                     "PYTHONPATH",  "HOME",        "TMP_DIR",     "TALVIK_DIR",
                     "VORTAXE_DIR", "TCL_PATH",    "TCL_LIBRARY", "TK_LIBRARY",
                     "TIX_LIBRARY", "BLT_LIBRARY", "PLOTVU_PATH", "QV_VERSIONS_DIR",
                     "GMX_EXE",     "VTX_EXE",     "GRA_EXE",     "PLV_EXE"}));
  EXPECT_EQ(system.environment["GMX_REVERSEVIDEO"], "on");
  EXPECT_EQ(system.createdFolders,
            (Strings{"/home/eng/.talvik", "/home/eng/.talvik/pvm", "/home/eng/.talvik/tmp"}));
}

TEST(Environment, VariantsOfTheInstallation) {
  using enum ExecutablePath::Status;
  const struct {
    const char* name;
    const char* expected;     // NAME=VALUE;... afterwards, or NAME alone when not set
    const char* environment;  // NAME=VALUE;... before, or NAME alone to remove it
    const char* registry;     // under Software\TALVIK; nullptr: the key of version 71
    const char* path;         // nullptr: an installed program of version 71
    const char* console;      // a failure when it tells of a STARTUP_ERROR
    const char* arguments = "monitor";
    ExecutablePath::Status status = ok;
    long error = 0;
  } cases[] = {
      {"reverse video kept", "GMX_REVERSEVIDEO=off", "GMX_REVERSEVIDEO=off"},
      {"driver", "DRIVER=mesa;QV_VERSIONS_DIR=;TALVIK_DIR=/r", "",
       "[dune71]\nTALVIK_DIR=/r\nDRIVER=mesa\n"},
      {"no root value", "TALVIK_DIR=;TCL_PATH=/_tcl;DRIVER=opengl", "", "[dune71]\n"},
      {"trailing separators", "QV_VERSIONS_DIR=/opt/talvik", "",
       "[dune71]\nTALVIK_DIR=/opt/talvik/d71//\n"},
      {"-qvversion", "QV_VERSION=71_Marine;TALVIK_DIR=/m", "", "[dune71_Marine]\nTALVIK_DIR=/m\n",
       "", "", "monitor;-qvversion;71_Marine", failed, 2},
      {"-qvversion last", "QV_VERSION=71", "", nullptr, nullptr, "", "monitor;-qvversion"},
      {"missing key", "QV_VERSION=71;TALVIK_DIR", "", "[dune70]\nTALVIK_DIR=/x\n", nullptr,
       "STARTUP_ERROR: Could not find TALVIK_DIR in registry:\n"
       "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71\ntype key end Enter to quit\n"},
      {"outside an installation", "", "", nullptr, "/usr/local/Monitor",
       "STARTUP_ERROR: Could not find TALVIK_DIR in registry:\n"
       "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune/usr/local/monitor\ntype key end Enter to "
       "quit\n"},
      {"first tool, family key", "TALVIK_DIR=/family", "", "[dune12]\nTALVIK_DIR=/family\n",
       "/opt/alphatool12/bin/monitor"},
      {"first tool, own key", "TALVIK_DIR=/own", "",
       "[alphatool12]\nTALVIK_DIR=/own\n[dune12]\nTALVIK_DIR=/"
       "f",
       "/opt/alphatool12/bin/monitor"},
      {"first tool, no key", "", "", "", "/opt/alphatool12/bin/monitor",
       "STARTUP_ERROR: Could not find TALVIK_DIR in registries:\n"
       "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\alphatool12\n"
       "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune12\ntype key end Enter to quit\n"},
      {"second tool", "QV_VERSION=9;TALVIK_DIR=/opt/BetaTool9;DRIVER", "",
       "[betatool9]\nTALVIK_DIR=/elsewhere\nDRIVER=x\n", "/opt/BetaTool9/bin/monitor"},
      {"other tool", "", "", "[dune5]\nTALVIK_DIR=/family\n", "/opt/gammatool5/bin/monitor",
       "STARTUP_ERROR: Could not find TALVIK_DIR in registry:\n"
       "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\gammatool5\ntype key end Enter to quit\n"},
      {"unreadable path", "QV_VERSION=;TALVIK_DIR=/r", "", "[dune]\nTALVIK_DIR=/r", "",
       "QVEnvironmentVariables::initWin32 - error\n  Failed to retrieve executable path name!\n"
       "  Last error = 2\n",
       "monitor", failed, 2},
      {"truncated path", "QV_VERSION=71", "", nullptr, "/opt/talvik/dune71/bin/monit",
       "QVEnvironmentVariables::initWin32 - error\n  Insufficient buffer size!\n"
       "  Last error = 36\n",
       "monitor", truncated, 36},
      {"scratch folder", "TMP_DIR=/scratch/;folders=/home/eng/.talvik /home/eng/.talvik/pvm ",
       "TMP_DIR=/scratch"},
      {"scratch folder with /", "TMP_DIR=/s/", "TMP_DIR=/s/"},
      {"empty scratch folder", "TMP_DIR=/", "TMP_DIR="},
      {"home from its parts", "HOME=D:\\U;TMP_DIR=D:\\U/.talvik/tmp/",
       "HOME;HOMEDRIVE=D:;HOMEPATH=\\U"},
      {"no home", "HOME=C:;folders=C:/.talvik C:/.talvik/pvm C:/.talvik/tmp ", "HOME;HOMEDRIVE=D:"},
      {"empty home", "TMP_DIR=/.talvik/tmp/", "HOME="},
  };
  for (const auto& c : cases) {
    FakeSystem system;
    if (c.path) system.programPath = {c.path, c.status, c.error};
    std::string registry = c.registry ? c.registry : "[dune71]\nTALVIK_DIR=/t";
    for (std::size_t at = 0; (at = registry.find('[', at)) != std::string::npos; ++at) {
      registry.insert(at + 1, "Software\\TALVIK\\");
    }
    system.registry.add(RegistryFile::parse(registry));
    for (const std::string& setting : split(c.environment)) {
      const std::size_t equals = setting.find('=');
      if (equals == std::string::npos)
        system.environment.erase(setting);
      else
        system.environment[setting.substr(0, equals)] = setting.substr(equals + 1);
    }
    ConsoleCapture console;
    app::QVEnvironmentVariables values;
    const bool ok = !std::string_view(c.console ? c.console : "").starts_with("STARTUP_ERROR");
    EXPECT_EQ(values.setUp(split(c.arguments), system, kTools), ok) << c.name;
    EXPECT_EQ(values.defined(), ok) << c.name;
    EXPECT_EQ(console.text(), c.console ? c.console : "") << c.name;
    for (const std::string& folder : system.createdFolders)
      system.environment["folders"] += folder + " ";
    for (const std::string& expected : split(c.expected)) {
      const std::size_t equals = expected.find('=');
      EXPECT_EQ(
          system.environmentVariable(expected.substr(0, equals)),
          equals == std::string::npos ? std::nullopt : std::optional(expected.substr(equals + 1)))
          << c.name << ": " << expected;
    }
  }
}

TEST(Startup, BatchRefusalModeAndBanner) {
  ConsoleCapture console;
  EXPECT_TRUE(app::refuseBatchArguments({"monitor", "-batch", "a.res", "-batch"}));
  EXPECT_FALSE(app::refuseBatchArguments({"monitor", "-BATCH", "-batchx", " -batch", "batch"}));
  EXPECT_TRUE(app::refuseBatchArguments({"-batch"}));
  const std::string refused = " -batch mode not supported \n";
  EXPECT_EQ(console.text(), refused + refused + refused);
  const std::pair<const char*, app::MonitorMode> modes[] = {
      {"71", app::MonitorMode::turbo},           {"_marine71", app::MonitorMode::marine},
      {"71_Marine", app::MonitorMode::turbo},    {"_open71", app::MonitorMode::open},
      {"open_marine", app::MonitorMode::marine}, {"OPEN", app::MonitorMode::turbo}};
  for (const auto& [tag, mode] : modes) EXPECT_EQ(app::chooseMode(tag), mode) << tag;
  for (const auto mode :
       {app::MonitorMode::turbo, app::MonitorMode::open, app::MonitorMode::marine})
    EXPECT_EQ(app::banner(mode), "\n\n\n      <***>   Monitor 7.1  -  Mar  7 2018\n\n");
}

}  // namespace
