#include "marine/actuator_disks.h"

namespace marine {

void ActuatorDiskTable::reset(const std::string& folder) {
  disks_.clear();
  reader_.reset(folder + "eff_AD.dat");
}

}  // namespace marine
