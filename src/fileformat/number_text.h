// Conversions between numbers and text that never depend on the user's
// locale: the decimal point is always '.', and the formats are those of the C
// library in its "C" locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fileformat {

// Reads an optionally signed decimal integer at the start of the text, after
// blanks, and ignores what follows ("12abc" gives 12, "abc" gives 0). Values
// beyond the bounds are clamped to them.
std::int64_t leadingInteger(std::string_view text, std::int64_t lowest, std::int64_t highest);

// Reads a floating-point number at the start of the text, after blanks, as the
// C library's atof does (decimal, hexadecimal, "inf", "nan"), and ignores what
// follows; 0 when the text does not start with a number.
double leadingDouble(std::string_view text);

// As leadingDouble, and answers how many characters the number took (0 when
// the text does not start with one, `value` then being 0).
std::size_t parseLeadingDouble(std::string_view text, double& value);

// printf's "%.<precision>g" (or "%.<precision>G" when `upperCase`).
std::string formatGeneral(double value, int precision, bool upperCase = false);

}  // namespace fileformat

namespace fileformat {

// "%.15G": 15 significant digits, upper-case exponent.
std::string doubleToString(double value);
// "%ld".
std::string longToString(long value);

}  // namespace fileformat
