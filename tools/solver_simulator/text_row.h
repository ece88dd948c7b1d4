// One line of a solver output file, built field by field. Numbers are
// written with std::to_chars: a point as decimal separator and no digit
// grouping, whatever the user's locale.
#pragma once

#include <charconv>
#include <string>
#include <string_view>

namespace solver_simulator {

class TextRow {
 public:
  explicit TextRow(char separator = ' ') : separator_(separator) {}

  TextRow& word(std::string_view text);
  TextRow& integer(long long value);
  // `decimals` digits after the point.
  TextRow& fixed(double value, int decimals);
  // One digit, the point, `decimals` digits and the exponent: 1.2345e-03.
  TextRow& scientific(double value, int decimals);
  // At most `significant` digits, fixed or with an exponent, whichever is shorter.
  TextRow& general(double value, int significant);

  // The fields, separated, without a line feed.
  const std::string& text() const { return text_; }
  // The fields and the line feed.
  std::string line() const { return text_ + '\n'; }

 private:
  void startField();
  TextRow& number(double value, std::chars_format format, int precision);

  char separator_;
  std::string text_;
};

}  // namespace solver_simulator
