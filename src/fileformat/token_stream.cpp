#include "fileformat/token_stream.h"

#include <charconv>

#include "fileformat/line_helpers.h"
#include "fileformat/number_text.h"
#include "platform/console.h"

namespace fileformat {

double tokenReal(std::string_view token) {
  // The common case, a plain decimal number that fills the token, takes the
  // fast conversion; anything else goes through the complete one.
  double value = 0.0;
  const char* end = token.data() + token.size();
  const auto [stop, error] = std::from_chars(token.data(), end, value);
  if (stop == end && error == std::errc{}) return value;
  return leadingDouble(token);
}

void TokenStream::reportMissingReal() const {
  if (missingReal_ == MissingReal::report)
    platform::consoleLine("read:: float number not read !!!");
}

bool TokenStream::readWord(std::string& word) {
  if (eof_) return false;
  const std::string_view token = nextToken();
  if (fail_) {
    platform::consoleLine("read:: string value not read !!!");
    return false;
  }
  word = token;
  return true;
}

}  // namespace fileformat
