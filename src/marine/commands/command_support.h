// What the marine commands share: finding the project a path names, checking
// indexes with the words the scripts know, and the float that stands for a
// missing point. Their arguments they read as every command does
// (script/argument_reading.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "marine/monitor_marine.h"
#include "script/argument_reading.h"

class ArgStream;

namespace marine {

// A body or sub-body index that the script did not give.
inline constexpr std::int32_t kNoIndex = -1;
// The float written in place of NaN and of infinite values; the scripts use
// it to spot missing points.
inline constexpr float kMissingPoint = 3.4028235e38f;

// The value as a float, kMissingPoint when it is NaN or beyond the floats.
float sanitised(double value);

// Prints "Error in <command>! <what>".
void reportError(std::string_view command, std::string_view what);

// The project loaded under `path`; null after "Error in <command>! Cannot
// find project '<path>'!" when there is none.
ProjectMonitorMarine* findProject(std::string_view command, const std::string& path);

// Whether `index` lies in 0..count-1; otherwise prints "Error in <command>!
// Wrong <what> index <index> (0..<count>)".
bool indexInRange(std::string_view command, std::string_view what, long long index,
                  std::size_t count);

// The body `body` of the project; null after the wrong-index line.
BodyObject* selectBody(std::string_view command, ProjectMonitorMarine& project, std::int32_t body);

// The body of arguments "path body"; null after the command's line for a
// missing project or a wrong index.
BodyObject* requestedBody(std::string_view command, ArgStream& arguments);

// The body `body`, or its sub-body `sub` (-1 names the body itself); null
// after the wrong-index line.
ComponentHistories* selectOwner(std::string_view command, ProjectMonitorMarine& project,
                                std::int32_t body, std::int32_t sub);

// The arguments "path body sub quantity" of the commands on one force or
// moment quantity of a body or sub-body.
struct QuantityRequest {
  std::string path;
  std::int32_t body = kNoIndex;
  std::int32_t sub = kNoIndex;
  std::int32_t quantity = 0;
};
QuantityRequest readQuantityRequest(ArgStream& arguments);

// The body or sub-body of the request; null after the command's line for a
// missing project or a wrong index.
ComponentHistories* requestedOwner(std::string_view command, const QuantityRequest& request);

}  // namespace marine
