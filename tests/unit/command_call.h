// Calls a command of a command table the way the interpreter's adapter does,
// without an interpreter: the words go into an argument stream, the answer
// comes out of a result stream.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "script/command.h"
#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"

// The result text of the command registered as `name` in `table`, called
// with `arguments`; the command must complete normally.
inline std::string callCommand(std::span<const CommandRow> table, std::string_view name,
                               const std::vector<std::string>& arguments) {
  const auto row =
      std::find_if(table.begin(), table.end(), [&](const CommandRow& r) { return r.name == name; });
  if (row == table.end()) {
    ADD_FAILURE() << "no command " << name;
    return {};
  }
  std::vector<const char*> items;
  for (const std::string& argument : arguments) items.push_back(argument.c_str());
  TclArgStream in(static_cast<int>(items.size()), items.data());
  std::string text;
  TclResultStream out(text);
  row->handler(in, out);
  EXPECT_EQ(out.status(), 0) << name;
  return text;
}
