// The script commands of turbomachinery mode (and of its "open" variant).
#pragma once

#include <array>

#include "script/command.h"

class ArgStream;
class ResultStream;

namespace turbo {

// itf_quit_command: ends the main loop after the current event.
void quitCommand(ArgStream& arguments, ResultStream& result);

inline constexpr std::array<CommandRow, 1> kTurboCommands{{
    {"itf_quit_command", quitCommand},
}};

void registerTurboCommands();

}  // namespace turbo
