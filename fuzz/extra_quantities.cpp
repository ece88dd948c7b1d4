// The user table user_data.csv as a running solver leaves it, read through
// every step of growFile; the quantities are walked after each.
#include "marine/extra_quantities.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string& folder = fuzzing::scratchFolder();
  marine::ExtraQuantities table;
  table.reset(folder);
  fuzzing::growFile(folder + "user_data.csv", fuzzing::asText(data, size), [&] {
    table.update();
    for (const marine::ExtraQuantity& quantity : table.quantities()) {
      fuzzing::use(static_cast<double>(quantity.name.size() + quantity.unit.size()));
      for (const double value : quantity.values) fuzzing::use(value);
    }
  });
  return 0;
}
