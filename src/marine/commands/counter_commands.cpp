// Commands on iteration counts and on the positions the scripts keep per
// curve.
#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// Entries of a quantity's history: plain values per iteration, or converged
// values per time step for a "Dyn" quantity; none for a quantity outside the
// table.
int recordedIterations(const ComponentHistories& owner, Component component, int quantity) {
  const std::vector<double>* values = owner.history(component, quantity);
  return values == nullptr ? 0 : static_cast<int>(values->size());
}

void writeRecordedIterations(const char* command, Component component, ArgStream& arguments,
                             ResultStream& result) {
  const QuantityRequest request = readQuantityRequest(arguments);
  const ComponentHistories* owner = requestedOwner(command, request);
  result << (owner == nullptr ? 0 : recordedIterations(*owner, component, request.quantity));
}

void writeCurrentIteration(const char* command, Component component, ArgStream& arguments,
                           ResultStream& result) {
  const QuantityRequest request = readQuantityRequest(arguments);
  ComponentHistories* owner = requestedOwner(command, request);
  result << (owner == nullptr ? 0 : owner->currentIterations(component).get(request.quantity));
}

void storeCurrentIteration(const char* command, Component component, ArgStream& arguments) {
  const QuantityRequest request = readQuantityRequest(arguments);
  const std::int32_t position = integerArgument(arguments);
  ComponentHistories* owner = requestedOwner(command, request);
  if (owner != nullptr) owner->currentIterations(component).set(request.quantity, position);
}

// The entry `slot` of the project's table of current iterations; null for a
// slot outside the table.
int* currentIterationSlot(ProjectMonitorMarine& project, std::int32_t slot) {
  std::vector<int>& slots = project.currentIterations();
  return slot >= 0 && static_cast<std::size_t>(slot) < slots.size()
             ? &slots[static_cast<std::size_t>(slot)]
             : nullptr;
}

}  // namespace

void getNbIter(ArgStream& arguments, ResultStream& result) {
  const ProjectMonitorMarine* project = theMonitorMarine()->findProject(textArgument(arguments));
  if (project != nullptr) result << static_cast<int>(project->resFile().recordCount());
}

void getNbIterForce(ArgStream& arguments, ResultStream& result) {
  writeRecordedIterations("itf_get_nbIter_force_KELP", Component::force, arguments, result);
}

void getNbIterMoment(ArgStream& arguments, ResultStream& result) {
  writeRecordedIterations("itf_get_nbIter_moment_KELP", Component::moment, arguments, result);
}

void getNbIterMotion(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = requestedBody("itf_get_nbIter_motion_KELP", arguments);
  result << (body == nullptr ? 0 : static_cast<int>(body->motion().rowCount()));
}

void getCurrentNbIterForce(ArgStream& arguments, ResultStream& result) {
  writeCurrentIteration("itf_get_current_nbIter_force_KELP", Component::force, arguments, result);
}

void setCurrentNbIterForce(ArgStream& arguments, ResultStream&) {
  storeCurrentIteration("itf_set_current_nbIter_force_KELP", Component::force, arguments);
}

void getCurrentNbIterMoment(ArgStream& arguments, ResultStream& result) {
  writeCurrentIteration("itf_get_current_nbIter_moment_KELP", Component::moment, arguments, result);
}

void setCurrentNbIterMoment(ArgStream& arguments, ResultStream&) {
  storeCurrentIteration("itf_set_current_nbIter_moment_KELP", Component::moment, arguments);
}

void getCurrentNbIterMotion(ArgStream& arguments, ResultStream& result) {
  BodyObject* body = requestedBody("itf_get_current_nbIter_motion_KELP", arguments);
  const std::int32_t motion = integerArgument(arguments);
  const bool moving = body != nullptr && body->usesMotions();
  result << (moving ? body->currentMotionIterations().get(motion) : 0);
}

void setCurrentNbIterMotion(ArgStream& arguments, ResultStream&) {
  BodyObject* body = requestedBody("itf_set_current_nbIter_motion_KELP", arguments);
  const std::int32_t motion = integerArgument(arguments);
  const std::int32_t position = integerArgument(arguments);
  if (body != nullptr && body->usesMotions()) body->currentMotionIterations().set(motion, position);
}

void getCurrentNbIter(ArgStream& arguments, ResultStream& result) {
  const std::int32_t slot = integerArgument(arguments);
  ProjectMonitorMarine* project =
      findProject("itf_get_current_nbIter_KELP", textArgument(arguments));
  const int* entry = project == nullptr ? nullptr : currentIterationSlot(*project, slot);
  result << (entry == nullptr ? 0 : *entry);
}

void setCurrentNbIter(ArgStream& arguments, ResultStream&) {
  const std::int32_t slot = integerArgument(arguments);
  ProjectMonitorMarine* project =
      findProject("itf_get_current_nbIter_KELP", textArgument(arguments));
  const std::int32_t value = integerArgument(arguments);
  int* entry = project == nullptr ? nullptr : currentIterationSlot(*project, slot);
  if (entry != nullptr) *entry = value;
}

}  // namespace marine
