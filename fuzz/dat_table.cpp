// A VARIABLES / ZONE column table as a running solver leaves it, read into
// quantity groups through every step of growFile; the groups are walked
// after each.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fileformat/dat_table_reader.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "eff_AD.dat";
  fileformat::DatTableReader reader;
  std::vector<fileformat::QuantityGroup> groups;
  reader.reset(path);
  fuzzing::growFile(path, fuzzing::asText(data, size), [&] {
    reader.update(groups);
    fuzzing::use(static_cast<double>(reader.columnNames().size()));
    for (const fileformat::QuantityGroup& group : groups) {
      fuzzing::use(static_cast<double>(group.names.size()));
      for (const std::vector<double>& values : group.values) {
        for (const double value : values) fuzzing::use(value);
      }
    }
  });
  return 0;
}
