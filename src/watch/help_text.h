// What `monitor-watch --help` prints.
#pragma once

#include <string_view>

namespace watch {

std::string_view helpText();

}  // namespace watch
