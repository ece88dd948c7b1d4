// The marine residual history as a running solver leaves it: its header and
// rows read after each step of growFile, every row then read back by
// position and by residual name.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_support.h"
#include "marine/marine_names.h"
#include "marine/res_file_marine.h"

namespace {

void walkRecords(const marine::ResFileMarine& file) {
  for (std::size_t r = 0; r < file.recordCount(); ++r) {
    const marine::IteResMarine record = file.record(r);
    fuzzing::use(record.iterationNumber());
    // One position past the row too: it answers 0.
    for (std::size_t v = 0; v <= record.valueCount(); ++v)
      fuzzing::use(record.valueAt(static_cast<long long>(v)));
    for (const std::string_view residual : marine::kResidualNames)
      fuzzing::use(record.valueOf(residual));
    // Not a residual: answers for the first residual column.
    fuzzing::use(record.valueOf("t"));
  }
  fuzzing::use(file.previousIterationNumber());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "ship.res";
  marine::ResFileMarine file(path);
  fuzzing::growFile(path, fuzzing::asText(data, size), [&] {
    if (file.readHeader()) file.update();
    walkRecords(file);
  });
  return 0;
}
