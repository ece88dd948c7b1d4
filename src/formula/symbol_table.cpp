#include "formula/symbol_table.h"

namespace formula {

int SymbolTable::insert(std::string_view name) {
  const int held = find(name);
  if (held >= 0) return held;
  names_.emplace_back(name);
  const int id = static_cast<int>(names_.size()) - 1;
  ids_.emplace(names_.back(), id);
  return id;
}

int SymbolTable::find(std::string_view name) const {
  const auto found = ids_.find(std::string(name));
  return found == ids_.end() ? -1 : found->second;
}

}  // namespace formula
