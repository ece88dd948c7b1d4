#include "watch/number_text.h"

#include <charconv>

#include "fileformat/number_text.h"

namespace watch {
namespace {

constexpr int kTableDigits = 6;

}  // namespace

std::string exactNumber(double value) {
  char text[32];
  const auto result = std::to_chars(text, text + sizeof text, value);
  return std::string(text, result.ptr);
}

std::string shortNumber(double value) { return fileformat::formatGeneral(value, kTableDigits); }

}  // namespace watch
