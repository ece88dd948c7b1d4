// The arguments of a script command, extracted by type.
//
// A handler extracts its arguments in order and tests the stream afterwards:
// a missing argument sets the end state (and, for the checked integer forms,
// the failure state) and leaves the target as it was. Numbers never fail to
// convert: text that is not a number reads as 0 and trailing junk is ignored.
// List arguments are read by descending into them with beginList/endList.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <vector>

class ArgStream {
 public:
  virtual ~ArgStream() = default;

  // Takes the next argument as a list and reads its elements until endList.
  virtual ArgStream& beginList() = 0;
  virtual ArgStream& endList() = 0;
  // Number of items at the current level.
  virtual int count() const = 0;
  // True while no extraction has met the end or failed.
  virtual bool good() const = 0;
  explicit operator bool() const { return good(); }

  // Integer lists: the next argument's elements, appended in order.
  virtual ArgStream& operator>>(std::list<int>& values) = 0;
  virtual ArgStream& operator>>(std::vector<int>& values) = 0;

  // Checked decimal integers: nothing is taken once the stream is not good.
  virtual ArgStream& operator>>(std::int64_t& value) = 0;
  virtual ArgStream& operator>>(std::int32_t& value) = 0;
  // Leading-digits integer conversion; the argument is taken even when the
  // stream is no longer good, and then ignored.
  virtual ArgStream& extractPlainInteger(std::int32_t& value) = 0;
  virtual ArgStream& operator>>(float& value) = 0;
  virtual ArgStream& operator>>(double& value) = 0;
  // An argument of exactly one character.
  virtual ArgStream& operator>>(char& value) = 0;
  // A text shorter than `capacity` characters; a longer one fails and leaves
  // `text` untouched.
  virtual ArgStream& extractText(std::string& text, std::size_t capacity) = 0;

  // Types that no command takes: extracting them cannot compile, so no
  // argument is ever read into them by mistake.
  ArgStream& operator>>(std::uint64_t&) = delete;
  ArgStream& operator>>(std::uint32_t&) = delete;
  ArgStream& operator>>(std::int16_t&) = delete;
  ArgStream& operator>>(std::uint16_t&) = delete;

  virtual bool fail() const = 0;
  virtual bool eof() const = 0;
  // Reads the current level again from its first item; the state stays.
  virtual void rewind() = 0;
};
