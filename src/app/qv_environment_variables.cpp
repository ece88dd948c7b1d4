#include "app/qv_environment_variables.h"

#include <cstdlib>

#include "platform/console.h"
#include "platform/system_services.h"

namespace app {
namespace {

constexpr char kSep = platform::kPathSeparator;

#ifdef _WIN32
constexpr const char* kExeSuffix = ".exe";
#else
constexpr const char* kExeSuffix = "";
#endif

QVEnvironmentVariables& processValues() {
  static QVEnvironmentVariables values;
  return values;
}

void reportExecutablePathError(const platform::ExecutablePath& path) {
  platform::consoleLine("QVEnvironmentVariables::initWin32 - error");
  platform::consoleLine(path.status == platform::ExecutablePath::Status::failed
                            ? "  Failed to retrieve executable path name!"
                            : "  Insufficient buffer size!");
  platform::consoleLine("  Last error = " + std::to_string(path.lastError));
}

void reportMissingKeys(const std::vector<std::string>& keys) {
  platform::consoleLine(keys.size() > 1 ? "STARTUP_ERROR: Could not find TALVIK_DIR in registries:"
                                        : "STARTUP_ERROR: Could not find TALVIK_DIR in registry:");
  for (const std::string& key : keys) platform::consoleLine("HKEY_LOCAL_MACHINE\\" + key);
  platform::consoleLine("type key end Enter to quit");
}

// The root without trailing separators and without its last component.
std::string parentFolder(std::string root) {
  while (!root.empty() && (root.back() == '/' || root.back() == '\\')) root.pop_back();
  const std::size_t last = root.find_last_of("/\\");
  return last == std::string::npos ? std::string{} : root.substr(0, last);
}

// The program's path without its file and its "bin" folder.
std::string rootFromProgramPath(std::string path) {
  for (int i = 0; i < 2; ++i) {
    const std::size_t last = path.find_last_of("/\\");
    path.erase(last == std::string::npos ? 0 : last);
  }
  return path;
}

std::string homeFolder(platform::SystemServices& system) {
  if (auto home = system.environmentVariable("HOME")) return *home;
  auto drive = system.environmentVariable("HOMEDRIVE");
  auto path = system.environmentVariable("HOMEPATH");
  if (drive && path) return *drive + *path;
  return "C:";
}

}  // namespace

const QVEnvironmentVariables& QVEnvironmentVariables::current() { return processValues(); }

void QVEnvironmentVariables::initWin32(int argc, char** argv) {
  platform::SystemServices& system = platform::systemServices();
  if (!processValues().setUp(std::vector<std::string>(argv, argv + argc), system,
                             configuredToolWords())) {
    system.waitForInputLine();
    std::exit(0);
  }
}

bool QVEnvironmentVariables::setUp(const std::vector<std::string>& arguments,
                                   platform::SystemServices& system, const ToolWords& tools) {
  VersionTag version{qvversionArgument(arguments), 0};
  std::string programPath;
  if (version.tag.empty()) {
    const platform::ExecutablePath path = system.executablePath();
    if (path.status != platform::ExecutablePath::Status::ok) reportExecutablePathError(path);
    programPath = path.path;
    version = versionTagFromProgramPath(programPath, tools);
  }
  QV_VERSION = version.tag;
  const std::vector<std::string> keys = registryKeysFor(version, tools);
  system.exportVariable("QV_VERSION", QV_VERSION);

  std::string root;
  std::string driver = "opengl";
  const bool rootFromPath = version.tool == 2;
  if (rootFromPath) {
    root = rootFromProgramPath(programPath);
  } else {
    std::string key;
    for (const std::string& candidate : keys) {
      if (system.registryKeyExists(candidate)) {
        key = candidate;
        break;
      }
    }
    if (key.empty()) {
      reportMissingKeys(keys);
      return false;
    }
    root = system.registryValue(key, "TALVIK_DIR").value_or("");
    driver = system.registryValue(key, "DRIVER").value_or("opengl");
  }

  TALVIK_DIR = root;
  system.exportVariable("TALVIK_DIR", root);
  if (!rootFromPath) {
    DRIVER = driver;
    system.exportVariable("DRIVER", driver);
  }
  if (!system.environmentVariable("GMX_REVERSEVIDEO"))
    system.exportVariable("GMX_REVERSEVIDEO", "on");

  const std::string helpRoot = root + kSep + "html" + kSep + "online_help" + kSep;
  VORTAXE_DIR = root + kSep + "bin";
  ONLINEHELPDUNE_DIR = helpRoot + "dune" + kSep;
  ONLINEHELPGMX_DIR = helpRoot + "gmx" + kSep;
  ONLINEHELPVEXO_DIR = helpRoot + "vexo" + kSep;
  ONLINEHELPPLOTVU_DIR = helpRoot + "plotvu" + kSep;
  TCL_PATH = root + kSep + "_tcl";
  PYTHONPATH = root + kSep + "python64";
  system.exportVariable("PYTHONPATH", PYTHONPATH);
  const std::string systemLibraries = TCL_PATH + kSep + "_system" + kSep;
  TCL_LIBRARY = systemLibraries + "tcl8.4";
  TK_LIBRARY = systemLibraries + "tk8.4";
  TIX_LIBRARY = systemLibraries + "tix8.4";
  BLT_LIBRARY = systemLibraries + "blt2.4";
  PLOTVU_PATH = root;
  QV_VERSIONS_DIR = parentFolder(root);

  const std::string home = homeFolder(system);
  system.exportVariable("HOME", home);
  const std::string userFolder = home + kSep + ".talvik";
  system.createFolder(userFolder);
  system.createFolder(userFolder + kSep + "pvm");

  if (auto scratch = system.environmentVariable("TMP_DIR")) {
    TMP_DIR = *scratch;
    if (TMP_DIR.empty() || TMP_DIR.back() != kSep) TMP_DIR += kSep;
  } else {
    const std::string scratchFolder = userFolder + kSep + "tmp";
    system.createFolder(scratchFolder);
    TMP_DIR = scratchFolder + kSep;
  }
  system.exportVariable("TMP_DIR", TMP_DIR);

  const std::string bin = root + kSep + "bin" + kSep;
  GMX_EXE = bin + "gmx" + kExeSuffix;
  PLV_EXE = bin + "plotvu" + kExeSuffix;
  VTX_EXE = bin + "vortaxe" + kExeSuffix;
  GRA_EXE = bin + "monitor" + kExeSuffix;

  const std::pair<const char*, const std::string*> finalExports[] = {
      {"TALVIK_DIR", &TALVIK_DIR},
      {"VORTAXE_DIR", &VORTAXE_DIR},
      {"TCL_PATH", &TCL_PATH},
      {"TCL_LIBRARY", &TCL_LIBRARY},
      {"TK_LIBRARY", &TK_LIBRARY},
      {"TIX_LIBRARY", &TIX_LIBRARY},
      {"BLT_LIBRARY", &BLT_LIBRARY},
      {"PLOTVU_PATH", &PLOTVU_PATH},
      {"QV_VERSIONS_DIR", &QV_VERSIONS_DIR},
      {"GMX_EXE", &GMX_EXE},
      {"VTX_EXE", &VTX_EXE},
      {"GRA_EXE", &GRA_EXE},
      {"PLV_EXE", &PLV_EXE},
  };
  for (const auto& [name, value] : finalExports) system.exportVariable(name, *value);
  defined_ = true;
  return true;
}

}  // namespace app
