// Which value of a residual record each curve of the residual history plots,
// and where it stands: shared by the commands that read one point and the
// bulk route, so that both give the same points.
#pragma once

#include <cstdint>
#include <string>

#include "turbo/res_file.h"

namespace turbo {

// The global curve ("Lift", "Torque", ...) of a code of itf_get_curve_value;
// null outside them.
const char* globalCurveName(std::int32_t code);

// The block residual of a code of itf_get_curve_block_value: codes 6 to 39
// name the residuals of the equations, higher codes the rms of a harmonic.
std::string blockResidualName(std::int32_t code);

// The residual of a harmonic (`prefix` "rms" or "max") that a code of
// itf_get_harmonic_curve_block_value names.
std::string harmonicResidualName(std::int32_t code, const std::string& prefix);

// The abscissa of record `record`: its iteration number, or its "WorkUnit"
// value when the scripts plot against work units; 0 outside the history.
double recordAbscissa(const ResFile& file, long long record);

// The value at `position` of record `record`; 0 outside the history.
float recordValue(const ResFile& file, long long record, std::int64_t position);

// A block residual is plotted as its change since the first record, so that
// every curve starts at 0 and goes negative as it falls; 0 outside the
// history.
float residualChange(const ResFile& file, long long record, std::int64_t position);

}  // namespace turbo
