#include "marine/commands/curve_sources.h"

#include <array>
#include <string>

#include "marine/commands/command_support.h"
#include "marine/commands/curve_abscissa.h"
#include "script/arg_stream.h"

namespace marine {
namespace {

using plot::CurveSource;
using plot::Point;
using Source = std::unique_ptr<CurveSource>;

// The arguments of every kind start with the computation's path; the
// complaints name it as the scripts gave it.
struct Request {
  std::string path;
  ProjectMonitorMarine* project = nullptr;
};

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

bool openProject(ArgStream& arguments, Request& request, std::string& complaint) {
  request.path = textArgument(arguments);
  request.project = theMonitorMarine()->findProject(request.path);
  if (request.project == nullptr) complaint = "no computation " + quoted(request.path) + " is open";
  return request.project != nullptr;
}

bool inRange(long long index, std::size_t count, const std::string& what, std::string& complaint) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return true;
  complaint = "no " + what + " " + std::to_string(index) + " (there " +
              (count == 0 ? std::string("are none") : "are 0 to " + std::to_string(count - 1)) +
              ")";
  return false;
}

const BodyObject* bodyOf(const Request& request, std::int32_t body, std::string& complaint) {
  const std::vector<BodyObject>& bodies = request.project->bodies();
  if (!inRange(body, bodies.size(), "body in " + quoted(request.path), complaint)) return nullptr;
  return &bodies[static_cast<std::size_t>(body)];
}

const ComponentHistories* ownerOf(const Request& request, const BodyObject& body,
                                  std::int32_t bodyIndex, std::int32_t sub,
                                  std::string& complaint) {
  if (sub == kNoIndex) return &body;
  const std::string what =
      "sub-body of body " + std::to_string(bodyIndex) + " in " + quoted(request.path);
  if (!inRange(sub, body.subBodyCount(), what, complaint)) return nullptr;
  return &body.subBody(static_cast<std::size_t>(sub));
}

Source residual(ArgStream& arguments, std::string& complaint) {
  Request request;
  if (!openProject(arguments, request, complaint)) return nullptr;
  const std::int32_t residual = integerArgument(arguments);
  if (!inRange(residual, kResidualNames.size(), "residual", complaint)) return nullptr;
  const ProjectMonitorMarine& project = *request.project;
  const ResFileMarine& file = project.resFile();
  // A residual the file does not hold reads 0, as the record answers.
  const int column = file.columnMap()[static_cast<std::size_t>(residual)];
  return plot::pointsByPosition(file.recordCount(), [&project, &file, column](std::size_t i) {
    const auto position = static_cast<long long>(i);
    return Point{residualAbscissa(project, position), sanitised(file.record(i).valueAt(column))};
  });
}

// The arguments "path body sub quantity" of a force or moment quantity of a
// body or sub-body.
struct QuantityOfOwner {
  Request request;
  const BodyObject* body = nullptr;
  const ComponentHistories* owner = nullptr;
  std::int32_t quantity = 0;
};

bool readQuantityOfOwner(Component component, ArgStream& arguments, QuantityOfOwner& found,
                         std::string& complaint) {
  if (!openProject(arguments, found.request, complaint)) return false;
  const std::int32_t bodyIndex = integerArgument(arguments, kNoIndex);
  const std::int32_t sub = integerArgument(arguments, kNoIndex);
  found.quantity = integerArgument(arguments);
  found.body = bodyOf(found.request, bodyIndex, complaint);
  found.owner = found.body == nullptr
                    ? nullptr
                    : ownerOf(found.request, *found.body, bodyIndex, sub, complaint);
  const bool force = component == Component::force;
  return found.owner != nullptr &&
         inRange(found.quantity, static_cast<std::size_t>(force ? kForceCount : kMomentCount),
                 force ? "force" : "moment", complaint);
}

const std::vector<double>& valuesOrNone(const std::vector<double>* values) {
  static const std::vector<double> kNone;
  return values == nullptr ? kNone : *values;
}

Source load(Component component, ArgStream& arguments, std::string& complaint) {
  QuantityOfOwner found;
  if (!readQuantityOfOwner(component, arguments, found, complaint)) return nullptr;
  // A converged quantity of a steady run has no history: no points.
  const std::vector<double>& values = valuesOrNone(found.owner->history(component, found.quantity));
  const ProjectMonitorMarine& project = *found.request.project;
  const BodyObject* body = found.body;
  return plot::pointsByPosition(values.size(), [&project, body, &values](std::size_t i) {
    return Point{bodyAbscissa(project, *body, body->times(), static_cast<long long>(i)),
                 sanitised(values[i])};
  });
}

Source force(ArgStream& arguments, std::string& complaint) {
  return load(Component::force, arguments, complaint);
}

Source moment(ArgStream& arguments, std::string& complaint) {
  return load(Component::moment, arguments, complaint);
}

Source motion(ArgStream& arguments, std::string& complaint) {
  Request request;
  if (!openProject(arguments, request, complaint)) return nullptr;
  const std::int32_t bodyIndex = integerArgument(arguments, kNoIndex);
  const std::int32_t column = integerArgument(arguments);
  const BodyObject* body = bodyOf(request, bodyIndex, complaint);
  if (body == nullptr) return nullptr;
  const MotionHistory& motion = body->motion();
  const std::string what =
      "motion of body " + std::to_string(bodyIndex) + " in " + quoted(request.path);
  if (!inRange(column, motion.columnNames().size(), what, complaint)) return nullptr;
  const std::vector<double>& values = motion.values(static_cast<std::size_t>(column));
  const ProjectMonitorMarine& project = *request.project;
  return plot::pointsByPosition(
      motion.rowCount(), [&project, body, &motion, &values](std::size_t i) {
        return Point{bodyAbscissa(project, *body, motion.times(), static_cast<long long>(i)),
                     sanitised(i < values.size() ? values[i] : 0.0)};
      });
}

Source converged(Component component, ArgStream& arguments, std::string& complaint) {
  QuantityOfOwner found;
  if (!readQuantityOfOwner(component, arguments, found, complaint)) return nullptr;
  const std::vector<double>& values =
      valuesOrNone(found.owner->convergedSeries(component, found.quantity));
  return plot::pointsByPosition(values.size(), [&values](std::size_t i) {
    return Point{static_cast<double>(i + 1), sanitised(values[i])};
  });
}

Source convergedForce(ArgStream& arguments, std::string& complaint) {
  return converged(Component::force, arguments, complaint);
}

Source convergedMoment(ArgStream& arguments, std::string& complaint) {
  return converged(Component::moment, arguments, complaint);
}

// An abscissa argument: -1 for the step (or row) number from 1, else a
// quantity of the same table.
bool abscissaInRange(std::int32_t abscissa, std::size_t quantities, std::string& complaint) {
  return abscissa == -1 || inRange(abscissa, quantities, "abscissa quantity", complaint);
}

Source disk(ArgStream& arguments, std::string& complaint) {
  Request request;
  if (!openProject(arguments, request, complaint)) return nullptr;
  const std::int32_t index = integerArgument(arguments);
  const std::int32_t quantity = integerArgument(arguments);
  const std::int32_t abscissa = integerArgument(arguments);
  const ActuatorDiskTable& table = request.project->actuatorDisks();
  if (!inRange(index, static_cast<std::size_t>(table.diskCount()),
               "actuator disk in " + quoted(request.path), complaint))
    return nullptr;
  const ActuatorDisk found = table.disk(index);
  const auto quantities = static_cast<std::size_t>(found.quantityCount());
  if (!inRange(quantity, quantities, "quantity of actuator disk " + std::to_string(index),
               complaint) ||
      !abscissaInRange(abscissa, quantities, complaint))
    return nullptr;
  return plot::pointsByPosition(
      static_cast<std::size_t>(found.stepCount()), [found, quantity, abscissa](std::size_t i) {
        const int step = static_cast<int>(i);
        return Point{abscissa >= 0 ? found.value(abscissa, step) : static_cast<double>(step + 1),
                     found.value(quantity, step)};
      });
}

Source extra(ArgStream& arguments, std::string& complaint) {
  Request request;
  if (!openProject(arguments, request, complaint)) return nullptr;
  const std::int32_t quantity = integerArgument(arguments);
  const std::int32_t abscissa = integerArgument(arguments);
  const std::vector<ExtraQuantity>& quantities = request.project->extraQuantities().quantities();
  if (!inRange(quantity, quantities.size(), "user quantity in " + quoted(request.path),
               complaint) ||
      !abscissaInRange(abscissa, quantities.size(), complaint))
    return nullptr;
  const std::vector<double>& values = quantities[static_cast<std::size_t>(quantity)].values;
  const std::vector<double>& along = valuesOrNone(
      abscissa >= 0 ? &quantities[static_cast<std::size_t>(abscissa)].values : nullptr);
  return plot::pointsByPosition(values.size(), [&values, &along, abscissa](std::size_t i) {
    // A row that the abscissa's quantity lacks stands at 0.
    const double x = abscissa < 0 ? static_cast<double>(i + 1) : i < along.size() ? along[i] : 0.0;
    return Point{x, values[i]};
  });
}

Source custom(ArgStream& arguments, std::string& complaint) {
  Request request;
  if (!openProject(arguments, request, complaint)) return nullptr;
  const std::int32_t number = integerArgument(arguments);
  const CustomPlots& plots = request.project->customPlots();
  if (!inRange(number, plots.size(), "custom plot in " + quoted(request.path), complaint))
    return nullptr;
  const PlotPoints& points = plots.plot(static_cast<std::size_t>(number)).points();
  return plot::pointsByPosition(points.size(), [&points](std::size_t i) {
    return Point{points[i].first, points[i].second};
  });
}

constexpr std::array<CurveSourceRow, 9> kSources{{
    {"residual", "path residual", residual},
    {"force", "path body sub quantity", force},
    {"moment", "path body sub quantity", moment},
    {"motion", "path body motion", motion},
    {"convergedForce", "path body sub quantity", convergedForce},
    {"convergedMoment", "path body sub quantity", convergedMoment},
    {"disk", "path disk quantity abscissa", disk},
    {"extra", "path quantity abscissa", extra},
    {"custom", "path plot", custom},
}};

}  // namespace

std::span<const CurveSourceRow> curveSources() { return kSources; }

}  // namespace marine
