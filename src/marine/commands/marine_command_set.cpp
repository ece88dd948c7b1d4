#include "marine/commands/marine_command_set.h"

#include "script/monitor_session.h"

namespace marine {

void quitCommand(ArgStream&, ResultStream&) { theMonitorSession()->running = 0; }

void registerMarineCommands() {
  for (const CommandRow& row : kMarineCommands) registerCommand(row.name, row.handler);
}

}  // namespace marine
