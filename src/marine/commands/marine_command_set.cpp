#include "marine/commands/marine_command_set.h"

#include "script/tk_session.h"

namespace marine {

void registerMarineCommands() {
  for (const CommandRow& row : kMarineCommands) registerCommand(row.name, row.handler);
}

}  // namespace marine
