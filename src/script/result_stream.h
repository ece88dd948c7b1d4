// The answer of a script command, inserted item by item.
//
// Items are separated by blanks; texts and nested lists are braced where the
// list syntax needs it, so that the script reads back the same items. A
// handler reports an error with setStatus.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class ResultStream {
 public:
  virtual ~ResultStream() = default;

  virtual bool good() const = 0;
  // Significant digits of floating-point items.
  virtual int precision() const = 0;

  virtual ResultStream& beginList() = 0;
  virtual ResultStream& endList() = 0;

  virtual ResultStream& operator<<(unsigned short value) = 0;
  virtual ResultStream& operator<<(short value) = 0;
  virtual ResultStream& operator<<(unsigned long value) = 0;
  virtual ResultStream& operator<<(long value) = 0;
  virtual ResultStream& operator<<(unsigned int value) = 0;
  virtual ResultStream& operator<<(long long value) = 0;
  virtual ResultStream& operator<<(int value) = 0;
  virtual ResultStream& operator<<(float value) = 0;
  virtual ResultStream& operator<<(double value) = 0;
  virtual ResultStream& operator<<(char value) = 0;
  // A text as one list element.
  virtual ResultStream& operator<<(std::string_view text) = 0;
  ResultStream& operator<<(const char* text) { return *this << std::string_view(text); }
  ResultStream& operator<<(const std::string& text) { return *this << std::string_view(text); }
  // Types that the result does not carry: inserting them cannot compile.
  ResultStream& operator<<(bool) = delete;
  ResultStream& operator<<(long double) = delete;

  // Text written as it stands, with no separator and no braces; counts as an item.
  virtual ResultStream& writeRaw(std::string_view text) = 0;

  // Sets the command's completion code (16 stands for an error) and, when
  // `message` is not empty, writes it raw after what was inserted.
  virtual void setStatus(int code, std::string_view message) = 0;

  // The text collected so far is not readable through the stream.
  virtual std::string text() const = 0;
};
