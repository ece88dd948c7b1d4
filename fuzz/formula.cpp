// Formulas of custom plots, parsed against a closed set of names and, when
// they parse, evaluated once.
#include <cstddef>
#include <cstdint>

#include "formula/functions.h"
#include "formula/nodes.h"
#include "formula/parser.h"
#include "formula/symbol_table.h"
#include "formula/variable_store.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The 15 functions, then variables that cover every way evaluation goes:
  // ordinary values, a zero for the division and cotangent fallbacks, and
  // one variable that never receives a value.
  formula::SymbolTable symbols = formula::functionSymbols();
  formula::VariableStore store(symbols);
  store.set(symbols.insert("t"), 0.5);
  store.set(symbols.insert("a"), 2.0);
  store.set(symbols.insert("zero"), 0.0);
  symbols.insert("unset");

  formula::Parser parser(symbols, true);
  try {
    if (parser.parse(fuzzing::asText(data, size)) == formula::ParseStatus::ok &&
        parser.root() != nullptr) {
      fuzzing::use(parser.root()->Calc(store));
    }
  } catch (const formula::FormulaError&) {
    // Refused formulas are an expected answer, not a finding.
  }
  return 0;
}
