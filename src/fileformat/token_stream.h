// Whitespace-separated tokens read from text in memory, with the integer,
// real and word reads that every token-based file reader shares.
//
// The stream behaves like a formatted input stream: a token that runs to the
// end of the text sets the end state; looking for a token where only
// whitespace is left sets the end and failure states. Non-finite tokens
// ("+INF", "-INF", "nan", "Infinity", "NaN", "NAN", whole and case-sensitive)
// read as 5 for an integer and 1.0 for a real, never as an infinity or a NaN.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "fileformat/number_text.h"

namespace fileformat {

inline bool isNonFiniteToken(std::string_view token) {
  switch (token.size()) {
    case 3:
      return token == "nan" || token == "NaN" || token == "NAN";
    case 4:
      return token == "+INF" || token == "-INF";
    case 8:
      return token == "Infinity";
    default:
      return false;
  }
}

// The real value of a token that is not one of the non-finite words: its
// leading decimal number, as a double.
double tokenReal(std::string_view token);

class TokenStream {
 public:
  // Whether a real that finds no token left says so on the console. Readers
  // of growing files, for which the end of the text is the normal "not yet",
  // keep quiet.
  enum class MissingReal { report, quiet };

  explicit TokenStream(std::string_view text, MissingReal missingReal = MissingReal::report)
      : text_(text), missingReal_(missingReal) {}

  // Each read answers false, leaving the target untouched, when the stream is
  // already at its end or no token is left.
  bool readInteger(std::int32_t& value) {
    if (eof_) return false;
    const std::string_view token = nextToken();
    if (fail_) return false;
    value = isNonFiniteToken(token) ? 5
                                    : static_cast<std::int32_t>(leadingInteger(
                                          token, std::numeric_limits<std::int32_t>::min(),
                                          std::numeric_limits<std::int32_t>::max()));
    return true;
  }
  bool readReal(float& value) {
    if (eof_) return false;
    const std::string_view token = nextToken();
    if (token.empty()) {
      reportMissingReal();
      return false;
    }
    value = isNonFiniteToken(token) ? 1.0f : static_cast<float>(tokenReal(token));
    return true;
  }
  bool readWord(std::string& word);
  // The next token, without any message; false when none is left.
  bool next(std::string_view& token) {
    if (eof_) return false;
    token = nextToken();
    return !fail_;
  }

  bool eof() const { return eof_; }
  bool fail() const { return fail_; }
  // Offset of the next character to read.
  std::size_t position() const { return position_; }

 private:
  static bool isSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
  }
  // The next token; empty (with the end and failure states) when none is left.
  std::string_view nextToken() {
    const std::size_t size = text_.size();
    while (position_ < size && isSpace(text_[position_])) ++position_;
    if (position_ == size) {
      eof_ = true;
      fail_ = true;
      return {};
    }
    const std::size_t start = position_;
    while (position_ < size && !isSpace(text_[position_])) ++position_;
    if (position_ == size) eof_ = true;
    return text_.substr(start, position_ - start);
  }
  void reportMissingReal() const;

  std::string_view text_;
  std::size_t position_ = 0;
  bool eof_ = false;
  bool fail_ = false;
  MissingReal missingReal_;
};

}  // namespace fileformat
