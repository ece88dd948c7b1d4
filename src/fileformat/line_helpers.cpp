#include "fileformat/line_helpers.h"

#include <limits>

#include "fileformat/number_text.h"
#include "platform/console.h"

namespace fileformat {

void reportTooManyColumns(const std::string& path) {
  platform::consoleLine("More than " + std::to_string(kMaxColumns) + " columns in " + path +
                        "; the columns after them are not read");
}

bool isWhitespace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && isWhitespace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isWhitespace(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<std::pair<std::string, long>> splitTrailingNumber(std::string_view name) {
  std::size_t digits = 0;
  while (digits < name.size() && name[name.size() - 1 - digits] >= '0' &&
         name[name.size() - 1 - digits] <= '9') {
    ++digits;
  }
  if (digits == 0 || digits == name.size()) return std::nullopt;
  const std::string_view number = name.substr(name.size() - digits);
  return std::make_pair(
      std::string(name.substr(0, name.size() - digits)),
      static_cast<long>(leadingInteger(number, 0, std::numeric_limits<long>::max())));
}

bool isCommentLine(std::string_view line) { return line.empty() || line.front() == '#'; }

std::string_view withoutCarriageReturn(std::string_view line) {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace fileformat
