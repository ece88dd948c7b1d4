// The decisions start-up takes before the Tcl session exists: the refused
// "-batch" option, the mode chosen from the version tag, and the banner.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace app {

enum class MonitorMode { turbo, open, marine };

// The version strings shown in the banner, one per mode, and the build date.
inline constexpr std::string_view turboVersion = "7.1";
inline constexpr std::string_view openVersion = "7.1";
inline constexpr std::string_view marineVersion = "7.1";
inline constexpr std::string_view kBuildDate = "Mar  7 2018";

// Prints " -batch mode not supported " once per argument (the program name
// included) that is exactly "-batch"; true when there was one.
bool refuseBatchArguments(const std::vector<std::string>& arguments);

// "marine" anywhere in the tag selects marine mode, else "open" the open
// variant, else turbomachinery mode. Case matters.
MonitorMode chooseMode(std::string_view versionTag);

// The start banner of the chosen mode, without the newline that follows it.
std::string banner(MonitorMode mode);

}  // namespace app
