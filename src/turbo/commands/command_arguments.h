// Argument reading shared by the turbomachinery commands.
#pragma once

#include <cstdint>
#include <string>

#include "script/arg_stream.h"

namespace turbo {

// Paths and names are texts shorter than this.
inline constexpr std::size_t kTextCapacity = 4096;

// The next argument as a text; empty when it is missing or too long.
inline std::string textArgument(ArgStream& arguments) {
  std::string text;
  arguments.extractText(text, kTextCapacity);
  return text;
}

// The next argument as an integer; 0 when it is missing.
inline std::int32_t integerArgument(ArgStream& arguments) {
  std::int32_t value = 0;
  arguments >> value;
  return value;
}

}  // namespace turbo
