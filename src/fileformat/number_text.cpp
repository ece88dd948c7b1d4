#include "fileformat/number_text.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
#ifndef _WIN32
#include <locale.h>
#endif

namespace fileformat {
namespace {

bool isCBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

std::string_view skipBlanks(std::string_view text) {
  while (!text.empty() && isCBlank(text.front())) text.remove_prefix(1);
  return text;
}

// The value the C library gives for a number too large or too small for a
// double; the rare case is left to strtod in the "C" locale.
double outOfRangeValue(std::string_view number) {
  const std::string copy(number);
#ifdef _WIN32
  static const _locale_t cLocale = _create_locale(LC_NUMERIC, "C");
  return _strtod_l(copy.c_str(), nullptr, cLocale);
#else
  static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr));
  return strtod_l(copy.c_str(), nullptr, cLocale);
#endif
}

}  // namespace

std::int64_t leadingInteger(std::string_view text, std::int64_t lowest, std::int64_t highest) {
  text = skipBlanks(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  // Accumulate towards the sign's bound so that the lowest value itself fits.
  std::int64_t value = 0;
  for (char c : text) {
    if (!isDigit(c)) break;
    const int digit = c - '0';
    if (negative) {
      if (value < (lowest + digit) / 10) return lowest;
      value = value * 10 - digit;
    } else {
      if (value > (highest - digit) / 10) return highest;
      value = value * 10 + digit;
    }
  }
  return value;
}

std::size_t parseLeadingDouble(std::string_view text, double& value) {
  const std::size_t size = text.size();
  text = skipBlanks(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const bool hexadecimal =
      text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
      (isHexDigit(text[2]) || (text[2] == '.' && text.size() > 3 && isHexDigit(text[3])));
  double read = 0.0;
  const char* end = text.data();
  if (hexadecimal) {
    end = std::from_chars(text.data() + 2, text.data() + text.size(), read, std::chars_format::hex)
              .ptr;
  } else if (!text.empty() && text.front() != '-' && text.front() != '+') {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
    end = result.ptr;
    // Beyond the range of doubles: infinity or zero as the C library gives.
    if (result.ec == std::errc::result_out_of_range) {
      read = outOfRangeValue(text.substr(0, static_cast<std::size_t>(end - text.data())));
    }
  }
  if (end == text.data()) {
    value = 0.0;
    return 0;
  }
  value = negative ? -read : read;
  return size - text.size() + static_cast<std::size_t>(end - text.data());
}

double leadingDouble(std::string_view text) {
  double value = 0.0;
  parseLeadingDouble(text, value);
  return value;
}

std::string formatGeneral(double value, int precision, bool upperCase) {
  char buffer[64];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision);
  std::string text(buffer, result.ptr);
  if (upperCase) {
    for (char& c : text) {
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
  }
  return text;
}

}  // namespace fileformat

namespace fileformat {

std::string doubleToString(double value) { return formatGeneral(value, 15, true); }

std::string longToString(long value) { return std::to_string(value); }

}  // namespace fileformat
