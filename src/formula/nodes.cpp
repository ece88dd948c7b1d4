#include "formula/nodes.h"

#include <iostream>

#include "formula/error_collector.h"

namespace formula {

double VarNode::Calc(VariableStore& store) const {
  if (store.isSet(id_)) return store.value(id_);
  const std::string name =
      id_ >= 0 && id_ < store.symbols().size() ? store.symbols().name(id_) : std::string();
  std::cerr << "Error: Use of uninitialized variable " << name << '\n' << std::flush;
  throw FormulaError("Use of uninitialized variable " + name);
}

double AssignNode::Calc(VariableStore& store) const {
  const double value = right_->Calc(store);
  left_->Assign(store, value);
  return value;
}

double SumNode::Calc(VariableStore& store) const {
  double sum = 0.0;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    const double value = children_[i]->Calc(store);
    sum = flags_[i] != 0 ? sum + value : sum - value;
  }
  return sum;
}

double ProductNode::Calc(VariableStore& store) const {
  double product = 1.0;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    const double value = children_[i]->Calc(store);
    if (flags_[i] != 0) {
      product *= value;
    } else if (value == 0.0) {
      collectError(" division by zero.");
      return 0.0;
    } else {
      product /= value;
    }
  }
  return product;
}

}  // namespace formula
