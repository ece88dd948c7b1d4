#include "solver_simulator/text_row.h"

namespace solver_simulator {

void TextRow::startField() {
  if (!text_.empty()) text_ += separator_;
}

TextRow& TextRow::word(std::string_view text) {
  startField();
  text_ += text;
  return *this;
}

TextRow& TextRow::integer(long long value) {
  startField();
  char digits[24];
  const auto result = std::to_chars(digits, digits + sizeof digits, value);
  text_.append(digits, result.ptr);
  return *this;
}

TextRow& TextRow::number(double value, std::chars_format format, int precision) {
  startField();
  if (value == 0.0) value = 0.0;  // no "-0"
  char digits[64];
  const auto result = std::to_chars(digits, digits + sizeof digits, value, format, precision);
  text_.append(digits, result.ptr);
  return *this;
}

TextRow& TextRow::fixed(double value, int decimals) {
  return number(value, std::chars_format::fixed, decimals);
}

TextRow& TextRow::scientific(double value, int decimals) {
  return number(value, std::chars_format::scientific, decimals);
}

TextRow& TextRow::general(double value, int significant) {
  return number(value, std::chars_format::general, significant);
}

}  // namespace solver_simulator
