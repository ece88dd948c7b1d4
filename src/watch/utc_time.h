// The time of a refresh as ISO 8601 in UTC, with milliseconds:
// "2026-11-21T14:05:09.250Z".
#pragma once

#include <chrono>
#include <string>

namespace watch {

std::string isoTime(std::chrono::system_clock::time_point time);

}  // namespace watch
