#include "turbo/project_monitor.h"

namespace turbo {

std::int32_t BookmarkGrid::get(std::int64_t i, std::int64_t j) const {
  const auto found = cells_.find(i * kColumns + j);
  return found == cells_.end() ? 0 : found->second;
}

void BookmarkGrid::set(std::int64_t i, std::int64_t j, std::int32_t value) {
  if (value == 0) {
    cells_.erase(i * kColumns + j);
  } else {
    cells_[i * kColumns + j] = value;
  }
}

int ProjectMonitor::update() {
  switch (resFile_.read()) {
    case 0:
      return 0;
    case 1:
      return 1;
    default:
      currentIter_.clear();
      resFile_.read();
      return 1;
  }
}

}  // namespace turbo
