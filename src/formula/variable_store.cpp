#include "formula/variable_store.h"

namespace formula {

void VariableStore::set(int id, double value) {
  const auto index = static_cast<std::size_t>(id);
  if (index >= values_.size()) {
    values_.resize(index + 1, 0.0);
    initialised_.resize(index + 1, 0);
  }
  values_[index] = value;
  initialised_[index] = 1;
}

}  // namespace formula
