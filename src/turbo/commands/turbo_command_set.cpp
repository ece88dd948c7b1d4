#include "turbo/commands/turbo_command_set.h"

#include "script/monitor_session.h"

namespace turbo {

void quitCommand(ArgStream&, ResultStream&) { theMonitorSession()->running = 0; }

void registerTurboCommands() {
  for (const CommandRow& row : kTurboCommands) registerCommand(row.name, row.handler);
}

}  // namespace turbo
