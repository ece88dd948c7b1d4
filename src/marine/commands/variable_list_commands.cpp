// Commands that list the curves the scripts can ask for: the force, moment,
// motion and residual names and whether a project writes them.
#include <span>

#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "marine/project_quantities.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// The flag written when no project answers for a name.
constexpr int kNoProject = -1;

// "flag name": without a path the flag is kNoProject and the name comes
// alone, so that the scripts can list names before loading anything; with
// one, the flag says whether the project writes the curve.
template <typename Present>
void writeNameEntry(const char* command, const std::string& path, std::string_view name,
                    ResultStream& result, Present present) {
  if (path.empty()) {
    result << kNoProject << name;
    return;
  }
  const ProjectMonitorMarine* project = findProject(command, path);
  if (project == nullptr) {
    result << kNoProject << "";
    return;
  }
  result << (present(*project) ? 1 : 0) << name;
}

// writeNameEntry for entry "path index" of the force or moment table.
void writeQuantityEntry(const char* command, const char* what, Component component,
                        ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::int32_t index = integerArgument(arguments);
  const std::span<const std::string_view> names =
      component == Component::force ? std::span<const std::string_view>(kForceNames) : kMomentNames;
  if (index < 0 || static_cast<std::size_t>(index) >= names.size()) {
    reportError(command, "Wrong " + std::string(what) + " index: " + std::to_string(index));
    result << kNoProject << "";
    return;
  }
  writeNameEntry(command, path, names[static_cast<std::size_t>(index)], result,
                 [&](const ProjectMonitorMarine& project) {
                   return quantityPresent(project, component, index);
                 });
}

bool hasForceHistory(const BodyObject& body) {
  for (int quantity = 0; quantity < kForceCount; quantity += 2) {
    const std::vector<double>* values = body.history(Component::force, quantity);
    if (values != nullptr && !values->empty()) return true;
  }
  return false;
}

}  // namespace

void getVarsForces(ArgStream& arguments, ResultStream& result) {
  writeQuantityEntry("itf_get_KELP_vars_forces", "force", Component::force, arguments, result);
}

void getVarsMoments(ArgStream& arguments, ResultStream& result) {
  writeQuantityEntry("itf_get_KELP_vars_moments", "moment", Component::moment, arguments, result);
}

void getVarsMotions(ArgStream& arguments, ResultStream& result) {
  constexpr const char* kCommand = "itf_get_KELP_vars_motions";
  const std::string path = textArgument(arguments);
  const std::int32_t index = integerArgument(arguments);
  const ProjectMonitorMarine* project = findProject(kCommand, path);
  const std::vector<std::string> names =
      project == nullptr ? std::vector<std::string>() : motionNames(*project);
  const bool known = index >= 0 && static_cast<std::size_t>(index) < names.size();
  if (project != nullptr && !known)
    reportError(kCommand, "Wrong force index: " + std::to_string(index));
  if (!known) {
    result << kNoProject << "";
    return;
  }
  // Every motion the project lists is in use.
  result << 1 << names[static_cast<std::size_t>(index)];
}

void getVarsResids(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::int32_t index = integerArgument(arguments);
  const bool known = index >= 0 && static_cast<std::size_t>(index) < kResidualNames.size();
  const std::string_view name =
      known ? kResidualNames[static_cast<std::size_t>(index)] : std::string_view();
  writeNameEntry(
      "itf_get_KELP_vars_resids", path, name, result, [&](const ProjectMonitorMarine& project) {
        return known && project.resFile().columnMap()[static_cast<std::size_t>(index)] >= 0;
      });
}

void getForcesNumber(ArgStream&, ResultStream& result) { result << kForceCount; }

void getMomentsNumber(ArgStream&, ResultStream& result) { result << kMomentCount; }

void getResidsNumber(ArgStream&, ResultStream& result) {
  result << static_cast<int>(kResidualNames.size());
}

void getMotionsNumber(ArgStream& arguments, ResultStream& result) {
  const ProjectMonitorMarine* project =
      findProject("itf_get_motions_number_KELP", textArgument(arguments));
  result << (project == nullptr ? 0 : static_cast<int>(motionNames(*project).size()));
}

void isMotionUsed(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = requestedBody("itf_is_motion_used", arguments);
  result << (body != nullptr && body->usesMotions() ? 1 : 0);
}

void hasForces(ArgStream& arguments, ResultStream& result) {
  const BodyObject* body = requestedBody("itf_has_forces", arguments);
  result << (body != nullptr && hasForceHistory(*body) ? 1 : 0);
}

}  // namespace marine
