// Commands on the bodies of a project and their sub-bodies.
#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// The body of arguments "path body", with the lines of `command` for a
// missing project and for a wrong index, whose range reads "[0..count)".
const BodyObject* bodyInRange(const char* command, ArgStream& arguments) {
  const std::string path = textArgument(arguments);
  const std::int32_t body = integerArgument(arguments, kNoIndex);
  const ProjectMonitorMarine* project = findProject(command, path);
  if (project == nullptr) return nullptr;
  const std::size_t count = project->bodies().size();
  if (body >= 0 && static_cast<std::size_t>(body) < count)
    return &project->bodies()[static_cast<std::size_t>(body)];
  reportError(command, "Wrong body index " + std::to_string(body) + ", the valid range is [0.." +
                           std::to_string(count) + ")");
  return nullptr;
}

}  // namespace

void getNumberOfBodies(ArgStream& arguments, ResultStream& result) {
  const ProjectMonitorMarine* project =
      findProject("is_unsteady_conv_available", textArgument(arguments));
  result << (project == nullptr ? 0 : static_cast<int>(project->bodies().size()));
}

void getBodyName(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = bodyInRange("get_body_name_KELP", arguments);
  result << (body == nullptr ? std::string() : body->name());
}

void getSubObjectNumber(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = requestedBody("get_sub_object_number_KELP", arguments);
  result << (body == nullptr ? 0 : static_cast<int>(body->subBodyCount()));
}

void getSubbodyName(ArgStream& arguments, ResultStream& result) {
  constexpr const char* kCommand = "get_subbody_name_KELP";
  const std::string path = textArgument(arguments);
  const std::int32_t index = integerArgument(arguments, kNoIndex);
  const std::int32_t sub = integerArgument(arguments, kNoIndex);
  ProjectMonitorMarine* project = findProject("get_body_name_KELP", path);
  const BodyObject* body = project == nullptr ? nullptr : selectBody(kCommand, *project, index);
  if (body == nullptr ||
      (sub != kNoIndex && !indexInRange(kCommand, "sub-body", sub, body->subBodyCount()))) {
    result << "";
    return;
  }
  result << (sub == kNoIndex ? body->name() : body->subBody(static_cast<std::size_t>(sub)).name());
}

void getBodyGravityCenter(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = bodyInRange("get_body_gravity_center", arguments);
  const std::array<double, 3> centre =
      body == nullptr ? std::array<double, 3>{} : body->gravityCentre();
  result << centre[0] << centre[1] << centre[2];
}

void isBodyGravityCenterAvailable(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = bodyInRange("is_body_gravity_center_available", arguments);
  result << (body != nullptr && body->hasGravityCentre() ? 1 : 0);
}

}  // namespace marine
