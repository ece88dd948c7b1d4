// Writes an expression tree as one line of prefix text, for tests and for
// looking at what a formula was read as:
//   number        1500
//   variable      its name
//   unary minus   (- a)
//   call          (sin a)
//   sum           (+ a -b c)    a term that is subtracted carries a "-"
//   product       (* a /b c)    a factor that divides carries a "/"
//   assignment    (= a 3)
//   missing node  ?             (left by a syntax error)
#pragma once

#include <string>

#include "fileformat/number_text.h"
#include "formula/functions.h"
#include "formula/nodes.h"
#include "formula/symbol_table.h"

namespace formula {

class TreePrinter {
 public:
  static std::string print(const Node* node, const SymbolTable& symbols) {
    if (node == nullptr) return "?";
    if (const auto* number = dynamic_cast<const NumNode*>(node))
      return fileformat::formatGeneral(number->value_, 15);
    if (const auto* variable = dynamic_cast<const VarNode*>(node))
      return variable->id() >= 0 && variable->id() < symbols.size()
                 ? symbols.name(variable->id())
                 : "#" + std::to_string(variable->id());
    if (const auto* minus = dynamic_cast<const UMinusNode*>(node))
      return "(- " + print(minus->child_.get(), symbols) + ")";
    if (const auto* call = dynamic_cast<const FunNode*>(node)) {
      std::string name = "<function>";
      for (const FunctionEntry& entry : kFunctions) {
        if (entry.function == call->function_) name = entry.name;
      }
      return "(" + name + " " + print(call->argument_.get(), symbols) + ")";
    }
    if (const auto* assignment = dynamic_cast<const BinNode*>(node)) {
      return "(= " + print(assignment->left_.get(), symbols) + " " +
             print(assignment->right_.get(), symbols) + ")";
    }
    if (const auto* multi = dynamic_cast<const MultiNode*>(node)) {
      const bool sum = dynamic_cast<const SumNode*>(node) != nullptr;
      std::string text = sum ? "(+" : "(*";
      for (std::size_t i = 0; i < multi->children_.size(); ++i) {
        text += ' ';
        if (multi->flags_[i] == 0) text += sum ? '-' : '/';
        text += print(multi->children_[i].get(), symbols);
      }
      return text + ")";
    }
    return "<node>";
  }
};

inline std::string printTree(const Node* node, const SymbolTable& symbols) {
  return TreePrinter::print(node, symbols);
}

}  // namespace formula
