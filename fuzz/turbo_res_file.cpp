// The turbomachinery residual history as a running solver leaves it: written,
// grown, cut back and rewritten, read after each step and then walked record
// by record.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"
#include "turbo/res_file.h"

namespace {

void walkRecords(const turbo::ResFile& file) {
  for (std::size_t r = 0; r < file.recordCount(); ++r) {
    const turbo::IteRes record = file.record(r);
    fuzzing::use(record.iterationNumber());
    fuzzing::use(record.timeStep());
    fuzzing::use(record.physicalTime());
    for (const float value : record.values()) fuzzing::use(value);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "stage.res";
  turbo::ResFile file(path);
  fuzzing::growFile(path, fuzzing::asText(data, size), [&] {
    file.read();
    walkRecords(file);
  });
  return 0;
}
