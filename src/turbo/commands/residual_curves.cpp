#include "turbo/commands/residual_curves.h"

#include <iterator>

#include "fileformat/work_unit.h"
#include "turbo/monitor.h"

namespace turbo {
namespace {

constexpr const char* kGlobalCurveOfCode[] = {"Lift", "Axial thrust", "Qmax", "Tmax",
                                              "In",   "Torque",       "Out"};

constexpr const char* kResidualCurveOfCode[] = {
    "rms_d",   "max_d",   "rms_E",   "max_E",          "rms_wx",  "max_wx",         "rms_wy",
    "max_wy",  "rms_wz",  "max_wz",  "rms_bladeForce", "rms_k",   "max_bladeForce", "max_k",
    "rms_eps", "max_eps", "rms_sp1", "max_sp1",        "rms_sp2", "max_sp2",        "rms_sp3",
    "max_sp3", "rms_sp4", "max_sp4", "rms_sp5",        "max_sp5", "rms_sp6",        "max_sp6",
    "rms_sp7", "max_sp7", "rms_sp8", "max_sp8",        "rms_nu",  "max_nu",
};
constexpr int kFirstResidualCode = 6;
constexpr int kLastResidualCode = 39;

bool held(const ResFile& file, long long record) {
  return record >= 0 && static_cast<std::size_t>(record) < file.recordCount();
}

}  // namespace

const char* globalCurveName(std::int32_t code) {
  return code >= 0 && code < static_cast<std::int32_t>(std::size(kGlobalCurveOfCode))
             ? kGlobalCurveOfCode[code]
             : nullptr;
}

std::string blockResidualName(std::int32_t code) {
  return code >= kFirstResidualCode && code <= kLastResidualCode
             ? std::string(kResidualCurveOfCode[code - kFirstResidualCode])
             : "rms_harm" + std::to_string(static_cast<std::int64_t>(code) / 2 - 20);
}

std::string harmonicResidualName(std::int32_t code, const std::string& prefix) {
  return prefix + "_harm" + std::to_string((static_cast<std::int64_t>(code) - 39) / 2);
}

double recordAbscissa(const ResFile& file, long long record) {
  if (!held(file, record)) return 0.0;
  const IteRes values = file.record(static_cast<std::size_t>(record));
  return fileformat::workUnit == 1 ? static_cast<double>(values.valueAt(0))
                                   : static_cast<double>(values.iterationNumber());
}

float recordValue(const ResFile& file, long long record, std::int64_t position) {
  return held(file, record) ? file.record(static_cast<std::size_t>(record)).valueAt(position)
                            : 0.0f;
}

float residualChange(const ResFile& file, long long record, std::int64_t position) {
  return held(file, record) ? recordValue(file, record, position) - recordValue(file, 0, position)
                            : 0.0f;
}

}  // namespace turbo
