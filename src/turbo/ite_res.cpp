#include "turbo/ite_res.h"

#include "turbo/curve_names.h"

namespace turbo {

float IteRes::valueOf(std::string_view name, int turbulenceCount) const {
  return valueAt(indexOf(name, 0, nbVars_, turbulenceCount));
}

}  // namespace turbo
