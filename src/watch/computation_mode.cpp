#include "watch/computation_mode.h"

#include "fileformat/input_file.h"

namespace watch {
namespace {

// Enough to pass the blank lines and spaces a file may open with.
constexpr std::size_t kBytesLookedAt = 4096;

}  // namespace

std::string_view modeName(Mode mode) { return mode == Mode::marine ? "marine" : "turbomachinery"; }

std::optional<Mode> recogniseMode(const std::string& residualPath) {
  fileformat::InputFile file = fileformat::InputFile::open(residualPath);
  if (!file) return std::nullopt;
  char bytes[kBytesLookedAt];
  const std::size_t count = file.read(bytes, sizeof bytes);
  for (std::size_t i = 0; i < count; ++i) {
    const char byte = bytes[i];
    if (byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n') continue;
    if (byte == '#') return Mode::marine;
    if ((byte >= '0' && byte <= '9') || byte == '+' || byte == '-') return Mode::turbomachinery;
    return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace watch
