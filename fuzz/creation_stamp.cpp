// The creation stamp of a marine run: found among the leading comment lines
// of a residual file, then turned into a moment and printed; the input is
// also taken as a stamp text directly.
#include "marine/creation_stamp.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_support.h"

namespace {

void readStamp(std::string_view stamp) {
  fuzzing::use(static_cast<double>(marine::formatStampTime(marine::stampTime(stamp)).size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "ship.res";
  const std::string_view input = fuzzing::asText(data, size);
  fuzzing::writeFile(path, input);
  readStamp(marine::readResCreationDate(path));
  readStamp(input);
  return 0;
}
