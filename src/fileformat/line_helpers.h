// Small text helpers shared by the line-based file readers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace fileformat {

// The most columns a header line may name: thousands of times what a
// computation writes, and a bound on what a damaged header costs.
inline constexpr std::size_t kMaxColumns = 65536;

// Prints "More than 65536 columns in <path>; the columns after them are not
// read".
void reportTooManyColumns(const std::string& path);

// Blank, tab, line feed, carriage return, vertical tab and form feed.
bool isWhitespace(char c);

// The text without leading and trailing whitespace.
std::string_view trim(std::string_view text);

// Splits the decimal digits at the end of a column name: "Load12" gives
// ("Load", 12); a name that is all digits or has none gives nothing.
std::optional<std::pair<std::string, long>> splitTrailingNumber(std::string_view name);

// An empty line or one whose first character is '#'.
bool isCommentLine(std::string_view line);

// The line without its trailing carriage return, so CR LF files read like LF files.
std::string_view withoutCarriageReturn(std::string_view line);

}  // namespace fileformat
