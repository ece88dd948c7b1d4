// Splits a formula into tokens.
#pragma once

#include <string>
#include <string_view>

namespace formula {

// The scanner's token codes.
enum class Token {
  end = 0,
  error = 1,
  number = 2,
  plus = 3,
  times = 4,
  minus = 5,
  divide = 6,
  leftParenthesis = 7,
  rightParenthesis = 8,
  assign = 9,  // never delivered: see next()
  identifier = 10,
};

// Identifiers longer than this are cut to it (with a warning).
inline constexpr std::size_t kMaxIdentifierLength = 80;

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  // Reads the next token. "=" is taken together with the number that follows
  // it: "=3" is the number 3, and a lone "=" the number 0, so the
  // assignment token never comes out.
  Token next();

  Token current() const { return current_; }
  double number() const { return number_; }
  // The identifier just read, cut to its first 80 characters.
  std::string identifier() const;

 private:
  Token scanNumber();

  std::string_view text_;
  std::size_t position_ = 0;
  Token current_ = Token::end;
  double number_ = 0.0;
  std::size_t identifierStart_ = 0;
  std::size_t identifierLength_ = 0;
};

}  // namespace formula
