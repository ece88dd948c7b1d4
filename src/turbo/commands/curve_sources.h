// The curves that turbomachinery mode serves to the window in bulk, by kind:
//
//   global path code                    a global quantity of the residual
//                                       history (code as itf_get_curve_value)
//   block path code block               a residual of a block (code as
//                                       itf_get_curve_block_value)
//   harmonic path code prefix block     a residual of a harmonic (as
//                                       itf_get_harmonic_curve_block_value)
//   diagram path side                   a side (Extrado_1, Extrado_2,
//                                       Intrado_1, Intrado_2) of a diagram
//   profile path side                   a side (Extrado, Intrado) of a
//                                       profile
//
// Each puts its points where the commands that read one point put them, with
// the same values.
#pragma once

#include <span>

#include "script/curve_source_row.h"

namespace turbo {

std::span<const CurveSourceRow> curveSources();

}  // namespace turbo
