// ResultStream that collects the text of a Tcl command's result.
#pragma once

#include <string>

#include "script/result_stream.h"

class TclResultStream final : public ResultStream {
 public:
  // Appends to `out`, which must outlive the stream.
  explicit TclResultStream(std::string& out) : out_(out) {}

  bool good() const override { return true; }
  int precision() const override { return kPrecision; }

  ResultStream& beginList() override;
  ResultStream& endList() override;

  ResultStream& operator<<(unsigned short value) override { return insertInteger(value); }
  ResultStream& operator<<(short value) override { return insertInteger(value); }
  ResultStream& operator<<(unsigned long value) override { return insertInteger(value); }
  ResultStream& operator<<(long value) override { return insertInteger(value); }
  ResultStream& operator<<(unsigned int value) override { return insertInteger(value); }
  ResultStream& operator<<(long long value) override { return insertInteger(value); }
  ResultStream& operator<<(int value) override { return insertInteger(value); }
  ResultStream& operator<<(float value) override;
  ResultStream& operator<<(double value) override;
  ResultStream& operator<<(char value) override;
  ResultStream& operator<<(std::string_view text) override;
  using ResultStream::operator<<;

  ResultStream& writeRaw(std::string_view text) override;
  void setStatus(int code, std::string_view message) override;
  std::string text() const override { return {}; }

  // The command's completion code: 0 (TCL_OK) unless a handler set another.
  int status() const { return status_; }

 private:
  static constexpr int kPrecision = 15;

  template <typename Integer>
  ResultStream& insertInteger(Integer value) {
    return insertScalar(std::to_string(value));
  }
  ResultStream& insertScalar(std::string_view text);

  std::string& out_;
  int status_ = 0;
  int items_ = 0;
  int depth_ = 0;
  int openBraces_ = 0;
};
