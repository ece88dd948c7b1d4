#include "formula/scanner.h"

#include <iostream>

#include "fileformat/number_text.h"

namespace formula {
namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

}  // namespace

Token Scanner::scanNumber() {
  // The longest prefix that reads as a decimal number; nothing reads as 0
  // and leaves the position where it was.
  position_ += fileformat::parseLeadingDouble(text_.substr(position_), number_);
  current_ = Token::number;
  return current_;
}

Token Scanner::next() {
  while (position_ < text_.size() && isSpace(text_[position_])) ++position_;
  if (position_ >= text_.size() || text_[position_] == '\0') return current_ = Token::end;
  const char c = text_[position_];
  if (isDigit(c) || c == '.') return scanNumber();
  if (isLetter(c)) {
    identifierStart_ = position_;
    while (position_ < text_.size() && (isLetter(text_[position_]) || isDigit(text_[position_])))
      ++position_;
    identifierLength_ = position_ - identifierStart_;
    if (identifierLength_ > kMaxIdentifierLength) {
      std::cerr << "Warning: Variable name truncated\n" << std::flush;
      identifierLength_ = kMaxIdentifierLength;
    }
    return current_ = Token::identifier;
  }
  ++position_;
  switch (c) {
    case '+':
      return current_ = Token::plus;
    case '*':
      return current_ = Token::times;
    case '-':
      return current_ = Token::minus;
    case '/':
      return current_ = Token::divide;
    case '(':
      return current_ = Token::leftParenthesis;
    case ')':
      return current_ = Token::rightParenthesis;
    case '=':
      return scanNumber();
    default:
      return current_ = Token::error;
  }
}

std::string Scanner::identifier() const {
  return std::string(text_.substr(identifierStart_, identifierLength_));
}

}  // namespace formula
