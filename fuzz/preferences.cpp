// The preferences file, read whole and then asked for the monitor's setting.
#include "marine/preferences.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "preferences.dat";
  fuzzing::writeFile(path, fuzzing::asText(data, size));
  marine::Preferences preferences;
  preferences.read(path);
  fuzzing::use(static_cast<double>(preferences.getPreference("Monitor", "Refresh", "5").size()));
  return 0;
}
