// Commands on diagram and profile files.
#include "script/argument_reading.h"
#include "script/result_stream.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/monitor.h"

namespace turbo {
namespace {

// x and y of point `point` of the curve.
template <typename File>
void writePoint(ResultStream& result, File& file, std::string_view curve, std::int32_t point) {
  const long long x = 2LL * point;
  result << file.value(curve, x) << file.value(curve, x + 1);
}

std::string_view sideCurve(std::int32_t side, std::string_view first, std::string_view second) {
  if (side == 0) return first;
  if (side == 1) return second;
  return {};
}

template <typename FileMonitor>
void writeCount(ArgStream& arguments, ResultStream& result,
                BladeFileRegistry<FileMonitor>& registry) {
  FileMonitor* monitor = registry.find(textArgument(arguments));
  const std::string curve = textArgument(arguments);
  if (monitor != nullptr) result << monitor->file().nbPts(curve);
}

}  // namespace

void updateDiagFile(ArgStream&, ResultStream&) { theMonitor()->diagrams().updateAll(); }

void addDiagFile(ArgStream& arguments, ResultStream&) {
  Monitor& monitor = *theMonitor();
  monitor.diagrams().add(textArgument(arguments), monitor.registryBusy);
}

void getNbPts(ArgStream& arguments, ResultStream& result) {
  writeCount(arguments, result, theMonitor()->diagrams());
}

void getExtradoValue(ArgStream& arguments, ResultStream& result) {
  DiagramMonitor* diagram = theMonitor()->diagrams().find(textArgument(arguments));
  const std::int32_t side = integerArgument(arguments);
  const std::int32_t point = integerArgument(arguments);
  if (diagram != nullptr)
    writePoint(result, diagram->file(), sideCurve(side, "Extrado_1", "Extrado_2"), point);
}

void getIntradoValue(ArgStream& arguments, ResultStream& result) {
  DiagramMonitor* diagram = theMonitor()->diagrams().find(textArgument(arguments));
  const std::int32_t side = integerArgument(arguments);
  const std::int32_t point = integerArgument(arguments);
  if (diagram != nullptr)
    writePoint(result, diagram->file(), sideCurve(side, "Intrado_1", "Intrado_2"), point);
}

void updateProfFile(ArgStream&, ResultStream&) { theMonitor()->profiles().updateAll(); }

void addProfFile(ArgStream& arguments, ResultStream&) {
  Monitor& monitor = *theMonitor();
  monitor.profiles().add(textArgument(arguments), monitor.registryBusy);
}

void getProfNbPts(ArgStream& arguments, ResultStream& result) {
  writeCount(arguments, result, theMonitor()->profiles());
}

void getProfExtradoValue(ArgStream& arguments, ResultStream& result) {
  ProfileMonitor* profile = theMonitor()->profiles().find(textArgument(arguments));
  const std::int32_t point = integerArgument(arguments);
  if (profile != nullptr) writePoint(result, profile->file(), "Extrado", point);
}

void getProfIntradoValue(ArgStream& arguments, ResultStream& result) {
  ProfileMonitor* profile = theMonitor()->profiles().find(textArgument(arguments));
  const std::int32_t point = integerArgument(arguments);
  if (profile != nullptr) writePoint(result, profile->file(), "Intrado", point);
}

}  // namespace turbo
