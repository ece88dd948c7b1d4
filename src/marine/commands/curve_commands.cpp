// The command that reads one point of a curve: a force, moment or motion of
// a body, or a residual.
#include <array>

#include "marine/commands/command_support.h"
#include "marine/commands/curve_abscissa.h"
#include "marine/commands/marine_command_set.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

constexpr std::string_view kCommand = "itf_get_curve_value_KELP";

struct CurveRequest {
  ProjectMonitorMarine& project;
  std::string category;
  std::int32_t body;
  std::int32_t sub;
  std::int32_t variable;
  std::int32_t position;
};

// The name at `index` of a name table; empty outside it.
template <std::size_t N>
std::string_view nameAt(const std::array<std::string_view, N>& table, std::int32_t index) {
  return index >= 0 && static_cast<std::size_t>(index) < N ? table[static_cast<std::size_t>(index)]
                                                           : std::string_view();
}

// The element at `position`, or nothing past the end.
template <typename Value>
const Value* elementAt(const std::vector<Value>& values, std::int32_t position) {
  return position >= 0 && static_cast<std::size_t>(position) < values.size()
             ? &values[static_cast<std::size_t>(position)]
             : nullptr;
}

bool inRange(const CurveRequest& request, std::string_view what, std::int32_t index,
             std::size_t count) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return true;
  reportError(kCommand, "Wrong " + std::string(what) + " index " + std::to_string(index) + " (0.." +
                            std::to_string(count) + ") category " + request.category);
  return false;
}

const BodyObject* selectedBody(const CurveRequest& request) {
  const std::vector<BodyObject>& bodies = request.project.bodies();
  return inRange(request, "body", request.body, bodies.size())
             ? &bodies[static_cast<std::size_t>(request.body)]
             : nullptr;
}

const ComponentHistories* selectedOwner(const CurveRequest& request, const BodyObject* body) {
  if (body == nullptr || request.sub == kNoIndex) return body;
  return inRange(request, "sub-body", request.sub, body->subBodyCount())
             ? &body->subBody(static_cast<std::size_t>(request.sub))
             : nullptr;
}

void writeLoadPoint(const CurveRequest& request, Component component, ResultStream& result) {
  const BodyObject* body = selectedBody(request);
  const ComponentHistories* owner = selectedOwner(request, body);
  if (owner == nullptr) return;
  result << bodyAbscissa(request.project, *body, body->times(), request.position);
  const std::string_view name = component == Component::force
                                    ? nameAt(kForceNames, request.variable)
                                    : nameAt(kMomentNames, request.variable);
  const double value = owner->element(component, name, request.position);
  result << sanitised(value);
}

void writeForcePoint(const CurveRequest& request, ResultStream& result) {
  writeLoadPoint(request, Component::force, result);
}

void writeMomentPoint(const CurveRequest& request, ResultStream& result) {
  writeLoadPoint(request, Component::moment, result);
}

void writeMotionPoint(const CurveRequest& request, ResultStream& result) {
  const BodyObject* body = selectedBody(request);
  if (body == nullptr) return;
  const MotionHistory& motion = body->motion();
  result << bodyAbscissa(request.project, *body, motion.times(), request.position);
  const bool known = request.variable >= 0 &&
                     static_cast<std::size_t>(request.variable) < motion.columnNames().size();
  const double* value =
      known ? elementAt(motion.values(static_cast<std::size_t>(request.variable)), request.position)
            : nullptr;
  result << sanitised(value == nullptr ? 0.0 : *value);
}

void writeResidualPoint(const CurveRequest& request, ResultStream& result) {
  const ResFileMarine& file = request.project.resFile();
  const bool held =
      request.position >= 0 && static_cast<std::size_t>(request.position) < file.recordCount();
  const std::string_view name = nameAt(kResidualNames, request.variable);
  result << residualAbscissa(request.project, request.position)
         << sanitised(held ? file.record(static_cast<std::size_t>(request.position)).valueOf(name)
                           : 0.0);
}

using PointWriter = void (*)(const CurveRequest&, ResultStream&);

struct Category {
  std::string_view name;
  PointWriter write;
};

constexpr Category kCategories[] = {
    {"Forces", writeForcePoint},
    {"Moments", writeMomentPoint},
    {"Motions", writeMotionPoint},
    {"Resids", writeResidualPoint},
};

}  // namespace

void getCurveValue(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::string category = textArgument(arguments);
  const std::int32_t body = integerArgument(arguments, kNoIndex);
  const std::int32_t sub = integerArgument(arguments, kNoIndex);
  const std::int32_t variable = integerArgument(arguments);
  const std::int32_t position = integerArgument(arguments);
  ProjectMonitorMarine* project = theMonitorMarine()->findProject(path);
  if (project == nullptr) {
    reportError(kCommand, "Cannot find project '" + path + "'! category = " + category);
    return;
  }
  for (const Category& known : kCategories) {
    if (known.name != category) continue;
    known.write({*project, category, body, sub, variable, position}, result);
    return;
  }
  reportError(kCommand, "Unknown category name " + category);
}

}  // namespace marine
