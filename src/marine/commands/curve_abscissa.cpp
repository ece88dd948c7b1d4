#include "marine/commands/curve_abscissa.h"

#include "fileformat/work_unit.h"
#include "marine/commands/command_support.h"

namespace marine {
namespace {

template <typename Value>
const Value* elementAt(const std::vector<Value>& values, long long position) {
  return position >= 0 && static_cast<std::size_t>(position) < values.size()
             ? &values[static_cast<std::size_t>(position)]
             : nullptr;
}

}  // namespace

double bodyAbscissa(const ProjectMonitorMarine& project, const BodyObject& body,
                    const std::vector<double>& times, long long position) {
  if (project.unsteady()) {
    const double* time = elementAt(times, position);
    return sanitised(time == nullptr ? 0.0 : *time);
  }
  const std::int32_t* iteration = elementAt(body.iterations(), position);
  return iteration == nullptr ? 0 : *iteration;
}

double residualAbscissa(const ProjectMonitorMarine& project, long long position) {
  const ResFileMarine& file = project.resFile();
  if (fileformat::workUnit == 0) {
    return position >= 0 && static_cast<std::size_t>(position) < file.recordCount()
               ? file.record(static_cast<std::size_t>(position)).iterationNumber()
               : 0;
  }
  const std::vector<BodyObject>& bodies = project.bodies();
  const double* time = bodies.empty() ? nullptr : elementAt(bodies.front().times(), position);
  return sanitised(time == nullptr ? 0.0 : *time);
}

}  // namespace marine
