#include "script/tcl_result_stream.h"

#include "fileformat/number_text.h"

namespace {

// The code with which handlers report an error; the script sees TCL_ERROR.
constexpr int kErrorStatus = 16;
constexpr int kTclError = 1;

}  // namespace

ResultStream& TclResultStream::insertScalar(std::string_view text) {
  if (items_ > 0) out_ += ' ';
  out_ += text;
  ++items_;
  return *this;
}

ResultStream& TclResultStream::operator<<(float value) {
  return insertScalar(fileformat::formatGeneral(value, kPrecision));
}

ResultStream& TclResultStream::operator<<(double value) {
  return insertScalar(fileformat::formatGeneral(value, kPrecision));
}

ResultStream& TclResultStream::operator<<(char value) {
  return insertScalar(std::string_view(&value, 1));
}

ResultStream& TclResultStream::operator<<(std::string_view text) {
  // A first item at the top level is the whole answer and needs no braces.
  if (depth_ < 1 && items_ < 1) {
    out_ += text;
  } else {
    out_ += " {";
    out_ += text;
    out_ += "} ";
  }
  ++items_;
  return *this;
}

ResultStream& TclResultStream::beginList() {
  // A list begun at the very start is the result itself.
  if (items_ < 1 && depth_ < 1) {
    ++depth_;
    return *this;
  }
  out_ += " {";
  ++openBraces_;
  ++depth_;
  return *this;
}

ResultStream& TclResultStream::endList() {
  if (openBraces_ > 0) {
    out_ += " } ";
    --openBraces_;
  }
  --depth_;
  return *this;
}

ResultStream& TclResultStream::writeRaw(std::string_view text) {
  out_ += text;
  ++items_;
  return *this;
}

void TclResultStream::setStatus(int code, std::string_view message) {
  status_ = code == kErrorStatus ? kTclError : code;
  out_ += message;
}
