// The abscissa the scripts chose for the curves of both modes: the iteration
// number (0), or the "WorkUnit" value of a turbomachinery record and the
// physical time of a marine row (1). One choice for the whole program.
#pragma once

namespace fileformat {

extern int workUnit;

}  // namespace fileformat
