// The actuator disks of a computation, from "eff_AD.dat": a column table
// whose column names end in the disk number (the quantities of disk 1, then
// those of disk 2, ...). Columns without a disk number are not kept.
#pragma once

#include <string>
#include <vector>

#include "fileformat/dat_table_reader.h"

namespace marine {

// One disk: its quantities and, per quantity, one value per step.
class ActuatorDisk {
 public:
  explicit ActuatorDisk(const fileformat::QuantityGroup& group) : group_(group) {}

  int quantityCount() const { return static_cast<int>(group_.names.size()); }
  const std::string& quantityName(int quantity) const {
    return group_.names[static_cast<std::size_t>(quantity)];
  }
  // Complete rows stored.
  int stepCount() const {
    return group_.values.empty() ? 0 : static_cast<int>(group_.values.front().size());
  }
  double value(int quantity, int step) const {
    return group_.values[static_cast<std::size_t>(quantity)][static_cast<std::size_t>(step)];
  }

 private:
  const fileformat::QuantityGroup& group_;
};

class ActuatorDiskTable {
 public:
  // Starts again on the folder's "eff_AD.dat": no disk until it is read.
  void reset(const std::string& folder);
  // Reads the rows appended since the last update.
  fileformat::Update update() { return reader_.update(disks_); }
  const fileformat::GrowingFile& file() const { return reader_.file(); }

  int diskCount() const { return static_cast<int>(disks_.size()); }
  ActuatorDisk disk(int index) const {
    return ActuatorDisk(disks_[static_cast<std::size_t>(index)]);
  }

 private:
  fileformat::DatTableReader reader_;
  std::vector<fileformat::QuantityGroup> disks_;
};

}  // namespace marine
