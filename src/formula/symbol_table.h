// Names with dense ids, given in order of insertion from 0.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace formula {

class SymbolTable {
 public:
  // The id of a name already held, or of the name newly added.
  int insert(std::string_view name);
  // -1 for a name not held.
  int find(std::string_view name) const;
  const std::string& name(int id) const { return names_[static_cast<std::size_t>(id)]; }
  int size() const { return static_cast<int>(names_.size()); }

 private:
  std::vector<std::string> names_;
  std::unordered_map<std::string, int> ids_;
};

}  // namespace formula
