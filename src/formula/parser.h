// Turns a formula into an expression tree:
//
//   expression = term {("+" | "-") term}  |  term "=" expression
//   term       = factor {("*" | "/") factor}
//   factor     = "(" expression ")" | number | "-" factor
//              | identifier "(" expression ")" | identifier
//
// Sums and products are flat: a-b+c is one sum of three terms.
#pragma once

#include <string_view>

#include "formula/nodes.h"
#include "formula/scanner.h"
#include "formula/symbol_table.h"

namespace formula {

enum class ParseStatus { ok = 0, error = 2 };

// How deep parentheses, unary minus and calls may nest; deeper formulas fail
// instead of exhausting the stack.
inline constexpr int kMaxNesting = 256;

class Parser {
 public:
  // With `closedSymbols`, an unknown identifier is an error instead of a new
  // variable.
  Parser(SymbolTable& symbols, bool closedSymbols)
      : symbols_(symbols), closedSymbols_(closedSymbols) {}

  // Parses one expression from the start of the text; what follows it is
  // not looked at. Raises FormulaError for an unknown function (after a line
  // on standard error) or a formula nested too deeply.
  ParseStatus parse(std::string_view text);

  // The tree of the last parse. Evaluate it only after a parse that answered
  // ok: after an error it may lack nodes.
  const Node* root() const { return root_.get(); }
  NodePtr takeRoot() { return std::move(root_); }
  // The ids of the variables the formula names, each once, in order of first use.
  const std::vector<int>& referencedVariables() const { return referenced_; }

 private:
  NodePtr expression();
  NodePtr term();
  NodePtr factor();
  NodePtr call(const std::string& name);
  NodePtr variable(const std::string& name);
  void expectRightParenthesis();

  SymbolTable& symbols_;
  bool closedSymbols_;
  Scanner* scanner_ = nullptr;
  ParseStatus status_ = ParseStatus::ok;
  int depth_ = 0;
  NodePtr root_;
  std::vector<int> referenced_;
};

}  // namespace formula
