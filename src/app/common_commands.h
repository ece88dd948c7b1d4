// The command that every mode offers, whatever its own command set.
#pragma once

#include <array>

#include "script/command.h"

class ArgStream;
class ResultStream;

// check_current_directory <folder>: answers the folder when the program can
// write a file in it, else the scratch folder TMP_DIR.
void checkCurrentDirectory(ArgStream& arguments, ResultStream& result);

inline constexpr std::array<CommandRow, 1> kCommonCommands{{
    {"check_current_directory", checkCurrentDirectory},
}};

// Registers the common commands with the session, after the mode's own set.
void registerCommonCommands();
