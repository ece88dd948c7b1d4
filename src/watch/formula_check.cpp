#include "watch/formula_check.h"

#include <iostream>
#include <sstream>

#include "formula/functions.h"
#include "formula/nodes.h"
#include "formula/parser.h"

namespace watch {
namespace {

// The formula library tells standard error about some faults as it meets
// them; the watch says it in its own line instead.
class StandardErrorHeld {
 public:
  StandardErrorHeld() : previous_(std::cerr.rdbuf(held_.rdbuf())) {}
  ~StandardErrorHeld() { std::cerr.rdbuf(previous_); }
  StandardErrorHeld(const StandardErrorHeld&) = delete;
  StandardErrorHeld& operator=(const StandardErrorHeld&) = delete;

 private:
  std::ostringstream held_;
  std::streambuf* previous_;
};

}  // namespace

std::optional<std::string> formulaFault(std::string_view expression) {
  // Open symbols: every name that is not a function is taken as a variable.
  formula::SymbolTable symbols = formula::functionSymbols();
  formula::Parser parser(symbols, false);
  const StandardErrorHeld quiet;
  try {
    if (parser.parse(expression) != formula::ParseStatus::ok || parser.root() == nullptr) {
      return "the formula does not parse: " + std::string(expression);
    }
  } catch (const formula::FormulaError& fault) {
    return std::string(fault.what());
  }
  return std::nullopt;
}

}  // namespace watch
