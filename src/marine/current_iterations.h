// The positions the scripts choose on a group of curves (one per force or
// moment quantity, or per motion) and read back later. A position never
// chosen is 0; any curve index may be given one.
#pragma once

#include <map>

namespace marine {

class CurrentIterations {
 public:
  int get(int curve) const {
    const auto found = positions_.find(curve);
    return found == positions_.end() ? 0 : found->second;
  }
  void set(int curve, int position) { positions_[curve] = position; }

 private:
  std::map<int, int> positions_;
};

}  // namespace marine
