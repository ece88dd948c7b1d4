#include "watch/messages.h"

#include <string>

#include "platform/console.h"

namespace watch {

void tell(std::string_view text) { platform::consoleLine("monitor-watch: " + std::string(text)); }

}  // namespace watch
