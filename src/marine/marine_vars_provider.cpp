#include "marine/marine_vars_provider.h"

#include <limits>

#include "marine/project_monitor_marine.h"
#include "marine/project_quantities.h"

namespace formula {
namespace {

using marine::BodyObject;
using marine::Component;
using marine::ComponentHistories;
using marine::ProjectMonitorMarine;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

// The object a variable names: the first body of that name, else the last
// sub-body of that name among all bodies.
const ComponentHistories* objectNamed(const ProjectMonitorMarine& project,
                                      const std::string& name) {
  for (const BodyObject& body : project.bodies()) {
    if (body.name() == name) return &body;
  }
  const ComponentHistories* found = nullptr;
  for (const BodyObject& body : project.bodies()) {
    for (std::size_t s = 0; s < body.subBodyCount(); ++s) {
      if (body.subBody(s).name() == name) found = &body.subBody(s);
    }
  }
  return found;
}

}  // namespace

std::string MarineVarsProvider::variableName(std::string_view quantity, std::string_view object) {
  return std::string(quantity) + "_" + std::string(object);
}

void MarineVarsProvider::rebuild() {
  entries_.clear();
  byName_.clear();
  const auto add = [this](std::string name, const std::vector<double>* series) {
    byName_.emplace(name, entries_.size());
    entries_.push_back({std::move(name), series});
  };
  for (const BodyObject* body : project_.motionBodies()) {
    const auto& columns = body->motion().columnNames();
    for (std::size_t c = 0; c < columns.size(); ++c)
      add(variableName(columns[c], body->name()), &body->motion().values(c));
  }
  for (const Component component : {Component::force, Component::moment}) {
    const auto& names =
        component == Component::force
            ? std::vector<std::string_view>(marine::kForceNames.begin(), marine::kForceNames.end())
            : std::vector<std::string_view>(marine::kMomentNames.begin(),
                                            marine::kMomentNames.end());
    const auto addObject = [&](const std::string& objectName) {
      const ComponentHistories* object = objectNamed(project_, objectName);
      for (std::size_t q = 0; q < names.size(); ++q) {
        if (!marine::quantityPresent(project_, component, static_cast<int>(q))) continue;
        add(variableName(names[q], objectName),
            object == nullptr ? nullptr : object->history(component, static_cast<int>(q)));
      }
    };
    for (const BodyObject& body : project_.bodies()) {
      addObject(body.name());
      for (std::size_t s = 0; s < body.subBodyCount(); ++s) addObject(body.subBody(s).name());
    }
  }
}

void MarineVarsProvider::GetVariableNames(std::vector<std::string>& names) const {
  for (const Entry& entry : entries_) names.push_back(entry.name);
}

int MarineVarsProvider::GetPointsCount() const {
  if (project_.bodies().empty()) return 0;
  const std::vector<double>* fx = project_.bodies().front().history(Component::force, 0);
  return fx == nullptr ? 0 : static_cast<int>(fx->size());
}

double MarineVarsProvider::GetAbscissa(int point) const {
  const BodyObject& first = project_.bodies().front();
  const auto index = static_cast<std::size_t>(point);
  if (project_.unsteady()) return index < first.times().size() ? first.times()[index] : kMissing;
  return index < first.iterations().size() ? static_cast<double>(first.iterations()[index])
                                           : kMissing;
}

double MarineVarsProvider::GetValue(int point, const std::string& name) const {
  const std::vector<double>* series = GetSeries(name);
  const auto index = static_cast<std::size_t>(point);
  return series != nullptr && point >= 0 && index < series->size() ? (*series)[index] : kMissing;
}

const std::vector<double>* MarineVarsProvider::GetSeries(const std::string& name) const {
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : entries_[found->second].series;
}

}  // namespace formula
