// The installation environment: which installed version this program is,
// where that installation lives, and every location derived from it. The
// values are kept for the program and exported to the process environment so
// that the scripts and child processes see them.
#pragma once

#include <string>
#include <vector>

#include "app/version_tag.h"

namespace platform {
class SystemServices;
}

namespace app {

class QVEnvironmentVariables {
 public:
  // Sets up the process-wide environment from the program's arguments. When
  // the installation's registry entry is missing it prints the start-up error,
  // waits for one line on standard input and ends the process with status 0.
  static void initWin32(int argc, char** argv);

  // The process-wide values; `defined()` is false until initWin32 has run.
  static const QVEnvironmentVariables& current();

  // The whole set-up against the given services. Prints the start-up error
  // lines and returns false when no registry key of the installation exists;
  // the values set so far stay.
  bool setUp(const std::vector<std::string>& arguments, platform::SystemServices& system,
             const ToolWords& tools);

  bool defined() const { return defined_; }

  std::string QV_VERSION;
  std::string TALVIK_DIR;
  std::string VORTAXE_DIR;
  std::string TCL_PATH;
  std::string TCL_LIBRARY;
  std::string TK_LIBRARY;
  std::string TIX_LIBRARY;
  std::string BLT_LIBRARY;
  std::string PYTHONPATH;
  std::string PLOTVU_PATH;
  std::string QV_VERSIONS_DIR;
  std::string GMX_EXE;
  std::string PLV_EXE;
  std::string VTX_EXE;
  std::string GRA_EXE;
  std::string ONLINEHELPDUNE_DIR;
  std::string ONLINEHELPGMX_DIR;
  std::string ONLINEHELPVEXO_DIR;
  std::string ONLINEHELPPLOTVU_DIR;
  std::string TMP_DIR;
  std::string TURNKEY_INP_PATH;  // nothing fills it; the scripts get it empty
  std::string DRIVER;

 private:
  bool defined_ = false;
};

}  // namespace app
