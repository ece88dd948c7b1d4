#include "turbo/commands/turbo_command_set.h"

#include "script/tk_session.h"

namespace turbo {

void registerTurboCommands() {
  for (const CommandRow& row : kTurboCommands) registerCommand(row.name, row.handler);
}

}  // namespace turbo
