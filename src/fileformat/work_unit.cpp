#include "fileformat/work_unit.h"

namespace fileformat {

int workUnit = 0;

}  // namespace fileformat
