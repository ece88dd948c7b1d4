// Commands on the actuator disks of a project.
#include <optional>

#include "marine/commands/command_support.h"
#include "marine/commands/marine_command_set.h"
#include "script/arg_stream.h"
#include "script/result_stream.h"

namespace marine {
namespace {

// The disks of the project loaded under `path`; null after "Error in
// <command>! No project <path> present.".
const ActuatorDiskTable* diskTable(const char* command, const std::string& path) {
  const ProjectMonitorMarine* project = theMonitorMarine()->findProject(path);
  if (project == nullptr) reportError(command, "No project " + path + " present.");
  return project == nullptr ? nullptr : &project->actuatorDisks();
}

// Disk `index` of the project; nothing after the line for a missing project
// or disk.
std::optional<ActuatorDisk> findDisk(const char* command, const std::string& path,
                                     std::int32_t index) {
  const ActuatorDiskTable* table = diskTable(command, path);
  if (table == nullptr) return std::nullopt;
  if (index >= 0 && index < table->diskCount()) return table->disk(index);
  reportError(command, "No actuator disk object with index " + std::to_string(index) + ".");
  return std::nullopt;
}

bool quantityInRange(const char* command, const ActuatorDisk& disk, std::int32_t index,
                     std::int32_t quantity) {
  if (quantity >= 0 && quantity < disk.quantityCount()) return true;
  reportError(command, "No quantity #" + std::to_string(quantity) + " for body #" +
                           std::to_string(index) + ".");
  return false;
}

bool stepInRange(const char* command, const ActuatorDisk& disk, std::int32_t index,
                 std::int32_t step) {
  if (step >= 0 && step < disk.stepCount()) return true;
  reportError(command, "Wrong step number " + std::to_string(step) + " for disk " +
                           std::to_string(index) + ".");
  return false;
}

}  // namespace

void getDiskCount(ArgStream& arguments, ResultStream& result) {
  const ActuatorDiskTable* table = diskTable("itf_get_disk_count", textArgument(arguments));
  result << (table == nullptr ? 0 : table->diskCount());
}

void getDiskQuantityCount(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::optional<ActuatorDisk> disk =
      findDisk("itf_get_disk_quantity_count", path, integerArgument(arguments));
  result << (disk ? disk->quantityCount() : 0);
}

void getDiskQuantityName(ArgStream& arguments, ResultStream& result) {
  constexpr const char* kCommand = "itf_get_disk_quantity_name";
  const std::string path = textArgument(arguments);
  const std::int32_t index = integerArgument(arguments);
  const std::int32_t quantity = integerArgument(arguments);
  const std::optional<ActuatorDisk> disk = findDisk(kCommand, path, index);
  const bool found = disk && quantityInRange(kCommand, *disk, index, quantity);
  result << (found ? disk->quantityName(quantity) : std::string());
}

void getDiskSteps(ArgStream& arguments, ResultStream& result) {
  const std::string path = textArgument(arguments);
  const std::optional<ActuatorDisk> disk =
      findDisk("itf_get_disk_steps", path, integerArgument(arguments));
  result << (disk ? disk->stepCount() : 0);
}

void getDiskQuantityValue(ArgStream& arguments, ResultStream& result) {
  constexpr const char* kCommand = "itf_get_disk_quantity_value";
  const std::string path = textArgument(arguments);
  const std::int32_t index = integerArgument(arguments);
  const std::int32_t quantity = integerArgument(arguments);
  const std::int32_t step = integerArgument(arguments);
  const std::optional<ActuatorDisk> disk = findDisk(kCommand, path, index);
  const bool found = disk && quantityInRange(kCommand, *disk, index, quantity) &&
                     stepInRange(kCommand, *disk, index, step);
  result << (found ? disk->value(quantity, step) : 0.0);
}

}  // namespace marine
