// Commands on the user quantities that a run writes to user_data.csv.
#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "platform/console.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// How a command words a quantity number outside the project's quantities.
enum class Wording {
  projectFirst,  // "... number q in project 'p'. n quantities available."
  countFirst,    // "... number q. n quantities available in the project 'p'."
};

struct QuantityLookup {
  const ProjectMonitorMarine* project = nullptr;
  ExtraQuantity* quantity = nullptr;
};

void reportLine(const char* command, const std::string& text) {
  platform::consoleLine("Error in " + std::string(command) + ": " + text);
}

// The project of `path`; null after "Error in <command>: wrong project path
// '<path>'.".
ProjectMonitorMarine* extraProject(const char* command, const std::string& path) {
  ProjectMonitorMarine* project = theMonitorMarine()->findProject(path);
  if (project == nullptr) reportLine(command, "wrong project path '" + path + "'.");
  return project;
}

// Quantity q of arguments "path q"; no quantity after the command's line.
QuantityLookup requestedQuantity(const char* command, ArgStream& arguments,
                                 Wording wording = Wording::countFirst) {
  const std::string path = textArgument(arguments);
  const std::int32_t number = integerArgument(arguments);
  ProjectMonitorMarine* project = extraProject(command, path);
  if (project == nullptr) return {};
  std::vector<ExtraQuantity>& quantities = project->extraQuantities().quantities();
  if (number >= 0 && static_cast<std::size_t>(number) < quantities.size()) {
    return {project, &quantities[static_cast<std::size_t>(number)]};
  }
  const std::string count = std::to_string(quantities.size());
  const std::string where = "project '" + project->path() + "'";
  reportLine(command, "wrong quantity number " + std::to_string(number) +
                          (wording == Wording::projectFirst
                               ? " in " + where + ". " + count + " quantities available."
                               : ". " + count + " quantities available in the " + where + "."));
  return {project, nullptr};
}

}  // namespace

void getNumberOfExtraQuantities(ArgStream& arguments, ResultStream& result) {
  ProjectMonitorMarine* project =
      extraProject("itm_get_number_of_extra_quantities", textArgument(arguments));
  result << (project == nullptr ? 0
                                : static_cast<int>(project->extraQuantities().quantities().size()));
}

void getExtraQuantityIter(ArgStream& arguments, ResultStream& result) {
  const QuantityLookup found =
      requestedQuantity("itm_get_extra_quantity_iter", arguments, Wording::projectFirst);
  result << (found.quantity == nullptr ? 0 : found.quantity->currentIteration);
}

void setExtraQuantityIter(ArgStream& arguments, ResultStream&) {
  constexpr const char* kCommand = "itm_set_extra_quantity_iter";
  const QuantityLookup found = requestedQuantity(kCommand, arguments);
  const std::int32_t iteration = integerArgument(arguments);
  if (found.quantity == nullptr) return;
  const std::size_t capacity = found.quantity->values.size();
  if (iteration >= 0 && static_cast<std::size_t>(iteration) <= capacity) {
    found.quantity->currentIteration = iteration;
    return;
  }
  reportLine(kCommand, "cannot set current iteration number for quantity '" + found.quantity->name +
                           "' in project '" + found.project->path() + "', maximum " +
                           std::to_string(capacity));
}

void getExtraQuantityCapacity(ArgStream& arguments, ResultStream& result) {
  const QuantityLookup found = requestedQuantity("itm_get_extra_quantity_capacity", arguments);
  result << (found.quantity == nullptr ? 0 : static_cast<int>(found.quantity->values.size()));
}

void getExtraQuantityValue(ArgStream& arguments, ResultStream& result) {
  constexpr const char* kCommand = "itm_get_extra_quantity_value";
  const QuantityLookup found = requestedQuantity(kCommand, arguments);
  const std::int32_t iteration = integerArgument(arguments);
  if (found.quantity == nullptr) {
    result << 0.0;
    return;
  }
  const std::vector<double>& values = found.quantity->values;
  if (iteration >= 0 && static_cast<std::size_t>(iteration) < values.size()) {
    result << values[static_cast<std::size_t>(iteration)];
    return;
  }
  reportLine(kCommand, "wrong iteration number " + std::to_string(iteration) +
                           ". The plot for quantity '" + found.quantity->name + "' in project '" +
                           found.project->path() + "' has " + std::to_string(values.size()) +
                           " points overall.");
  result << 0.0;
}

void getExtraQuantityName(ArgStream& arguments, ResultStream& result) {
  const QuantityLookup found = requestedQuantity("itm_get_extra_quantity_name", arguments);
  result << (found.quantity == nullptr ? std::string() : found.quantity->name);
}

void getExtraQuantityUnit(ArgStream& arguments, ResultStream& result) {
  const QuantityLookup found = requestedQuantity("itm_get_extra_quantity_unit", arguments);
  result << (found.quantity == nullptr ? std::string() : found.quantity->unit);
}

}  // namespace marine
