// Calls a turbomachinery command the way the interpreter would, without one.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"
#include "turbo/commands/turbo_command_set.h"

// The answer of the command registered as `name`, called with `arguments`;
// the command must complete normally.
inline std::string call(std::string_view name, const std::vector<std::string>& arguments = {}) {
  const auto row = std::find_if(turbo::kTurboCommands.begin(), turbo::kTurboCommands.end(),
                                [&](const CommandRow& r) { return r.name == name; });
  if (row == turbo::kTurboCommands.end()) {
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
