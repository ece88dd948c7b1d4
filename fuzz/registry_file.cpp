// The installation registry file, parsed from memory and then asked for an
// installation folder, under both spellings of its key path.
#include "platform/registry_file.h"

#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const platform::RegistryFile registry =
      platform::RegistryFile::parse(fuzzing::asText(data, size));
  for (const char* key :
       {"Software\\TALVIK\\dune71", "HKEY_LOCAL_MACHINE\\Software\\TALVIK\\dune71"}) {
    fuzzing::use(registry.hasKey(key));
    fuzzing::use(static_cast<double>(registry.value(key, "TALVIK_DIR").value_or("").size()));
  }
  return 0;
}
