// How every command reads its text and integer arguments: a missing one
// reads as empty or as the value given for it, never as an error.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

// A count and then a list of that many texts, as the removal commands take
// their paths; the count is bounded so that a wild one reserves nothing.
inline std::vector<std::string> textListArgument(ArgStream& arguments) {
  constexpr std::int32_t kMostTexts = 100000;
  const std::int32_t count = std::min(integerArgument(arguments), kMostTexts);
  std::vector<std::string> texts;
  arguments.beginList();
  for (std::int32_t i = 0; i < count; ++i) texts.push_back(textArgument(arguments));
  arguments.endList();
  return texts;
}
