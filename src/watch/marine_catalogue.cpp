#include "watch/marine_catalogue.h"

#include "marine/marine_names.h"
#include "marine/marine_vars_provider.h"
#include "marine/project_quantities.h"

namespace watch {
namespace {

using marine::BodyObject;
using marine::Component;
using marine::ComponentHistories;
using marine::ProjectMonitorMarine;
using plot::Point;

void addResiduals(const ProjectMonitorMarine& project, std::vector<NamedCurve>& curves) {
  const marine::ResFileMarine& file = project.resFile();
  for (std::size_t r = 0; r < marine::kResidualNames.size(); ++r) {
    const int column = file.columnMap()[r];
    if (column < 0) continue;
    curves.push_back(
        {std::string(marine::kResidualNames[r]), true,
         plot::pointsByPosition(file.recordCount(), [&file, column](std::size_t i) {
           const marine::IteResMarine record = file.record(i);
           return Point{static_cast<double>(record.iterationNumber()), record.valueAt(column)};
         })});
  }
}

// Where row `i` of a body's histories stands: its iteration in a steady run,
// its physical time (from `times`) in an unsteady one.
double rowAbscissa(const ProjectMonitorMarine& project, const BodyObject& body,
                   const std::vector<double>& times, std::size_t i) {
  return project.unsteady() ? elementOr(times, i) : elementOr(body.iterations(), i);
}

void addMotions(const ProjectMonitorMarine& project, std::vector<NamedCurve>& curves) {
  for (const BodyObject* body : project.motionBodies()) {
    const marine::MotionHistory& motion = body->motion();
    for (std::size_t c = 0; c < motion.columnNames().size(); ++c) {
      const std::vector<double>& values = motion.values(c);
      curves.push_back(
          {formula::MarineVarsProvider::variableName(motion.columnNames()[c], body->name()), false,
           plot::pointsByPosition(
               motion.rowCount(), [&project, body, &motion, &values](std::size_t i) {
                 return Point{rowAbscissa(project, *body, motion.times(), i), elementOr(values, i)};
               })});
    }
  }
}

// The force or moment quantities of one body or sub-body (`owner`) of `body`.
void addLoads(const ProjectMonitorMarine& project, Component component, const BodyObject& body,
              const ComponentHistories& owner, const std::string& ownerName,
              std::vector<NamedCurve>& curves) {
  const bool force = component == Component::force;
  for (int q = 0; q < marine::kForceCount; ++q) {
    const std::vector<double>* values = owner.history(component, q);
    if (values == nullptr || !marine::quantityPresent(project, component, q)) continue;
    const auto quantity = static_cast<std::size_t>(q);
    const std::string_view quantityName =
        force ? marine::kForceNames[quantity] : marine::kMomentNames[quantity];
    // Odd quantities are the converged values of the time steps ("FxDyn").
    const bool perTimeStep = q % 2 == 1;
    curves.push_back({formula::MarineVarsProvider::variableName(quantityName, ownerName), false,
                      plot::pointsByPosition(values->size(), [&project, &body, values,
                                                              perTimeStep](std::size_t i) {
                        const double x = perTimeStep ? elementOr(body.convergedTimes(), i)
                                                     : rowAbscissa(project, body, body.times(), i);
                        return Point{x, (*values)[i]};
                      })});
  }
}

void addForcesAndMoments(const ProjectMonitorMarine& project, std::vector<NamedCurve>& curves) {
  for (const Component component : {Component::force, Component::moment}) {
    for (const BodyObject& body : project.bodies()) {
      addLoads(project, component, body, body, body.name(), curves);
      for (std::size_t s = 0; s < body.subBodyCount(); ++s) {
        addLoads(project, component, body, body.subBody(s), body.subBody(s).name(), curves);
      }
    }
  }
}

void addDisks(const ProjectMonitorMarine& project, std::vector<NamedCurve>& curves) {
  const marine::ActuatorDiskTable& table = project.actuatorDisks();
  for (int d = 0; d < table.diskCount(); ++d) {
    const marine::ActuatorDisk disk = table.disk(d);
    for (int q = 0; q < disk.quantityCount(); ++q) {
      // Named as the file's column usually is: the quantity, then the disk.
      curves.push_back({disk.quantityName(q) + std::to_string(d + 1), false,
                        plot::pointsByPosition(
                            static_cast<std::size_t>(disk.stepCount()), [disk, q](std::size_t i) {
                              const int step = static_cast<int>(i);
                              return Point{static_cast<double>(step + 1), disk.value(q, step)};
                            })});
    }
  }
}

void addUserQuantities(ProjectMonitorMarine& project, std::vector<NamedCurve>& curves) {
  for (const marine::ExtraQuantity& quantity : project.extraQuantities().quantities()) {
    const std::vector<double>& values = quantity.values;
    curves.push_back(
        {quantity.name, false, plot::pointsByPosition(values.size(), [&values](std::size_t i) {
           return Point{static_cast<double>(i + 1), values[i]};
         })});
  }
}

}  // namespace

std::vector<NamedCurve> marineCurves(ProjectMonitorMarine& project) {
  std::vector<NamedCurve> curves;
  if (!project.loaded()) return curves;
  addResiduals(project, curves);
  addMotions(project, curves);
  addForcesAndMoments(project, curves);
  addDisks(project, curves);
  addUserQuantities(project, curves);
  return curves;
}

std::vector<NamedCurve> formulaCurves(ProjectMonitorMarine& project,
                                      const std::vector<FormulaCurve>& formulas) {
  std::vector<NamedCurve> curves;
  const marine::CustomPlots& plots = project.customPlots();
  for (const FormulaCurve& formula : formulas) {
    if (formula.plot >= plots.size()) continue;
    const marine::PlotPoints& points = plots.plot(formula.plot).points();
    curves.push_back(
        {formula.name, false, plot::pointsByPosition(points.size(), [&points](std::size_t i) {
           return Point{points[i].first, points[i].second};
         })});
  }
  return curves;
}

}  // namespace watch
