#include "marine/run_comparison.h"

#include "marine/project_monitor_marine.h"

namespace marine {
namespace {

bool sameResiduals(const ResFileMarine& first, const ResFileMarine& second) {
  for (std::size_t r = 0; r < kResidualNames.size(); ++r) {
    if ((first.columnMap()[r] >= 0) != (second.columnMap()[r] >= 0)) return false;
  }
  return true;
}

bool sameMotions(const std::vector<const BodyObject*>& first,
                 const std::vector<const BodyObject*>& second) {
  if (first.size() != second.size()) return false;
  for (std::size_t b = 0; b < first.size(); ++b) {
    if (first[b]->name() != second[b]->name() ||
        first[b]->motion().columnNames() != second[b]->motion().columnNames()) {
      return false;
    }
  }
  return true;
}

bool sameComponents(const std::vector<ComponentFile>& first,
                    const std::vector<ComponentFile>& second) {
  if (first.size() != second.size()) return false;
  for (std::size_t f = 0; f < first.size(); ++f) {
    if (first[f].present() != second[f].present()) return false;
  }
  return true;
}

bool sameBody(const BodyObject& first, const BodyObject& second) {
  if (first.name() != second.name() || first.subBodyCount() != second.subBodyCount()) return false;
  for (std::size_t s = 0; s < first.subBodyCount(); ++s) {
    if (first.subBody(s).name() != second.subBody(s).name()) return false;
  }
  return true;
}

}  // namespace

bool runsConsistent(const ProjectMonitorMarine& first, const ProjectMonitorMarine& second) {
  if (!sameResiduals(first.resFile(), second.resFile())) return false;
  if (!sameMotions(first.motionBodies(), second.motionBodies())) return false;
  if (!sameComponents(first.componentFiles(), second.componentFiles())) return false;
  const std::vector<BodyObject>& bodies = first.bodies();
  const std::vector<BodyObject>& others = second.bodies();
  if (bodies.size() != others.size()) return false;
  for (std::size_t b = 0; b < bodies.size(); ++b) {
    if (!sameBody(bodies[b], others[b])) return false;
  }
  return true;
}

}  // namespace marine
