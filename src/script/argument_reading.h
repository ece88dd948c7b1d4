// How every command reads its text and integer arguments: a missing one
// reads as empty or as the value given for it, never as an error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "script/arg_stream.h"

// Paths, names and formulas are texts shorter than this.
inline constexpr std::size_t kTextCapacity = 4096;

// The next argument as a text; empty when it is missing or too long.
inline std::string textArgument(ArgStream& arguments) {
  std::string text;
  arguments.extractText(text, kTextCapacity);
  return text;
}

// The next argument as an integer; `unset` when it is missing.
inline std::int32_t integerArgument(ArgStream& arguments, std::int32_t unset = 0) {
  std::int32_t value = unset;
  arguments >> value;
  return value;
}
