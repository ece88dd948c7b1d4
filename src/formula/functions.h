// The functions a formula may call, each from one double to one double. They
// hold the first symbol ids, 0 to 14, in this order.
#pragma once

#include <array>
#include <string_view>

#include "formula/symbol_table.h"

namespace formula {

using Function = double (*)(double);

struct FunctionEntry {
  std::string_view name;
  Function function;
};

// tan(x) inverted; where the tangent is exactly 0, the largest single-
// precision value, with a note in the error collector.
double cotan(double x);

extern const std::array<FunctionEntry, 15> kFunctions;

// A symbol table holding the 15 functions at ids 0 to 14.
SymbolTable functionSymbols();

}  // namespace formula
