// The script commands of marine mode.
#pragma once

#include <array>

#include "script/command.h"

class ArgStream;
class ResultStream;

namespace marine {

// itf_quit_command_KELP: ends the main loop after the current event.
void quitCommand(ArgStream& arguments, ResultStream& result);

inline constexpr std::array<CommandRow, 1> kMarineCommands{{
    {"itf_quit_command_KELP", quitCommand},
}};

void registerMarineCommands();

}  // namespace marine
