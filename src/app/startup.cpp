#include "app/startup.h"

#include "platform/console.h"

namespace app {

bool refuseBatchArguments(const std::vector<std::string>& arguments) {
  bool batchAsked = false;
  for (const std::string& argument : arguments) {
    if (argument == "-batch") {
      platform::consoleLine(" -batch mode not supported ");
      batchAsked = true;
    }
  }
  return batchAsked;
}

MonitorMode chooseMode(std::string_view versionTag) {
  if (versionTag.find("marine") != std::string_view::npos) return MonitorMode::marine;
  if (versionTag.find("open") != std::string_view::npos) return MonitorMode::open;
  return MonitorMode::turbo;
}

std::string banner(MonitorMode mode) {
  const std::string_view version = mode == MonitorMode::marine ? marineVersion
                                   : mode == MonitorMode::open ? openVersion
                                                               : turboVersion;
  return "\n\n\n      <***>   Monitor " + std::string(version) + "  -  " + std::string(kBuildDate) +
         "\n\n";
}

}  // namespace app
