// A script command as the program writes it: a plain function that reads its
// arguments from an ArgStream and writes its answer to a ResultStream, with no
// interpreter call of its own.
#pragma once

#include <string_view>

class ArgStream;
class ResultStream;

using CommandHandler = void (*)(ArgStream& arguments, ResultStream& result);

// One row of a command table; tables list their commands in registration order.
struct CommandRow {
  std::string_view name;
  CommandHandler handler;
};
