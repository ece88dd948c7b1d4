// The values of a formula's variables, by symbol id, each marked once set.
#pragma once

#include <cstdint>
#include <vector>

#include "formula/symbol_table.h"

namespace formula {

class VariableStore {
 public:
  explicit VariableStore(const SymbolTable& symbols) : symbols_(symbols) {}

  void set(int id, double value);
  bool isSet(int id) const {
    return id >= 0 && static_cast<std::size_t>(id) < initialised_.size() &&
           initialised_[static_cast<std::size_t>(id)] != 0;
  }
  double value(int id) const { return values_[static_cast<std::size_t>(id)]; }
  const SymbolTable& symbols() const { return symbols_; }

 private:
  std::vector<double> values_;
  std::vector<std::uint8_t> initialised_;
  const SymbolTable& symbols_;
};

}  // namespace formula
