#include "marine/commands/command_support.h"

#include <cmath>
#include <limits>

#include "platform/console.h"
#include "script/arg_stream.h"

namespace marine {

float sanitised(double value) {
  if (std::isnan(value) || std::fabs(value) > std::numeric_limits<float>::max())
    return kMissingPoint;
  return static_cast<float>(value);
}

void reportError(std::string_view command, std::string_view what) {
  platform::consoleLine("Error in " + std::string(command) + "! " + std::string(what));
}

ProjectMonitorMarine* findProject(std::string_view command, const std::string& path) {
  ProjectMonitorMarine* project = theMonitorMarine()->findProject(path);
  if (project == nullptr) reportError(command, "Cannot find project '" + path + "'!");
  return project;
}

bool indexInRange(std::string_view command, std::string_view what, long long index,
                  std::size_t count) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return true;
  reportError(command, "Wrong " + std::string(what) + " index " + std::to_string(index) + " (0.." +
                           std::to_string(count) + ")");
  return false;
}

BodyObject* selectBody(std::string_view command, ProjectMonitorMarine& project, std::int32_t body) {
  std::vector<BodyObject>& bodies = project.bodies();
  if (!indexInRange(command, "body", body, bodies.size())) return nullptr;
  return &bodies[static_cast<std::size_t>(body)];
}

BodyObject* requestedBody(std::string_view command, ArgStream& arguments) {
  const std::string path = textArgument(arguments);
  const std::int32_t body = integerArgument(arguments, kNoIndex);
  ProjectMonitorMarine* project = findProject(command, path);
  return project == nullptr ? nullptr : selectBody(command, *project, body);
}

ComponentHistories* selectOwner(std::string_view command, ProjectMonitorMarine& project,
                                std::int32_t body, std::int32_t sub) {
  BodyObject* selected = selectBody(command, project, body);
  if (selected == nullptr || sub == kNoIndex) return selected;
  if (!indexInRange(command, "sub-body", sub, selected->subBodyCount())) return nullptr;
  return &selected->subBody(static_cast<std::size_t>(sub));
}

QuantityRequest readQuantityRequest(ArgStream& arguments) {
  QuantityRequest request;
  request.path = textArgument(arguments);
  request.body = integerArgument(arguments, kNoIndex);
  request.sub = integerArgument(arguments, kNoIndex);
  request.quantity = integerArgument(arguments);
  return request;
}

ComponentHistories* requestedOwner(std::string_view command, const QuantityRequest& request) {
  ProjectMonitorMarine* project = findProject(command, request.path);
  return project == nullptr ? nullptr : selectOwner(command, *project, request.body, request.sub);
}

}  // namespace marine
