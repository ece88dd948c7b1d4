// Commands on the converged values that an unsteady run writes once per
// physical time step (the "Dyn" quantities).
#include <algorithm>

#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

using Counter = int (ComponentHistories::*)(Component component, int quantity) const;

void writeCount(const char* command, Counter counter, Component component, ArgStream& arguments,
                ResultStream& result) {
  const QuantityRequest request = readQuantityRequest(arguments);
  const ComponentHistories* owner = requestedOwner(command, request);
  result << (owner == nullptr ? 0 : (owner->*counter)(component, request.quantity));
}

// The converged value of arguments "quantity path body sub step", the
// quantity checked against `quantities`; 0 after the command's line.
double convergedValue(const char* command, Component component, int quantities,
                      ArgStream& arguments) {
  const std::int32_t quantity = integerArgument(arguments);
  const std::string path = textArgument(arguments);
  const std::int32_t body = integerArgument(arguments, kNoIndex);
  const std::int32_t sub = integerArgument(arguments, kNoIndex);
  const std::int32_t step = integerArgument(arguments);
  ProjectMonitorMarine* project = findProject(command, path);
  if (project == nullptr ||
      !indexInRange(command, "force", quantity, static_cast<std::size_t>(quantities))) {
    return 0.0;
  }
  const ComponentHistories* owner = selectOwner(command, *project, body, sub);
  if (owner == nullptr) return 0.0;
  const int length = owner->convergedLength(component, quantity);
  if (!indexInRange(command, "iteration", step, static_cast<std::size_t>(length))) return 0.0;
  return owner->converged(component, quantity, step);
}

}  // namespace

void getForceConvLength(ArgStream& arguments, ResultStream& result) {
  writeCount("itf_get_force_conv_length", &ComponentHistories::convergedLength, Component::force,
             arguments, result);
}

void getMomentConvLength(ArgStream& arguments, ResultStream& result) {
  writeCount("itf_get_moment_conv_length", &ComponentHistories::convergedLength, Component::moment,
             arguments, result);
}

void getCurrentForceConvIter(ArgStream& arguments, ResultStream& result) {
  writeCount("itf_get_current_force_conv_iter", &ComponentHistories::convergedIterations,
             Component::force, arguments, result);
}

void getCurrentMomentConvIter(ArgStream& arguments, ResultStream& result) {
  writeCount("itf_get_current_moment_conv_iter", &ComponentHistories::convergedIterations,
             Component::moment, arguments, result);
}

void getForceConvValue(ArgStream& arguments, ResultStream& result) {
  result << sanitised(
      convergedValue("itf_get_force_conv_value", Component::force, kForceCount, arguments));
}

void getMomentConvValue(ArgStream& arguments, ResultStream& result) {
  result << sanitised(
      convergedValue("itf_get_moment_conv_value", Component::moment, kMomentCount, arguments));
}

void isUnsteadyConvAvailable(ArgStream& arguments, ResultStream& result) {
  const ProjectMonitorMarine* project =
      findProject("is_unsteady_conv_available", textArgument(arguments));
  const bool available =
      project != nullptr &&
      std::any_of(project->bodies().begin(), project->bodies().end(), [](const BodyObject& body) {
        return body.convergedSeriesCount(Component::force) > 0;
      });
  result << (available ? 1 : 0);
}

}  // namespace marine
