// What the watch says about its own work goes to the console, with the
// model's messages: standard error, never into the table or the JSON.
#pragma once

#include <string_view>

namespace watch {

// One line "monitor-watch: <text>".
void tell(std::string_view text);

}  // namespace watch
