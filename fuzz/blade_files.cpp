// Diagram and profile files: the same input read as both, then every curve
// queried at each position it holds and just outside them.
#include "turbo/blade_files.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "fuzz_support.h"

namespace {

// A file may announce far more points than it holds: past this many
// positions a curve is queried only at its announced end.
constexpr long long kMostPositions = 1024;

template <typename File>
void readCurves(const std::string& path, std::initializer_list<std::string_view> curves) {
  File file(path);
  file.read();
  for (const std::string_view curve : curves) {
    const long long positions = 2LL * file.nbPts(curve);
    for (long long n = -1; n <= positions && n < kMostPositions; ++n)
      fuzzing::use(file.value(curve, n));
    fuzzing::use(file.value(curve, positions - 1));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzzing::scratchFolder() + "blade";
  fuzzing::writeFile(path, fuzzing::asText(data, size));
  readCurves<turbo::DiagFile>(path,
                              {"Extrado_1", "Extrado_2", "Intrado_1", "Intrado_2", "Extrado"});
  readCurves<turbo::ProfFile>(path, {"Extrado", "Intrado", "Intrado_1"});
  return 0;
}
