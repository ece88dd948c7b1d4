// ArgStream over the argument strings of a Tcl command. List arguments are
// split with the Tcl list syntax; no interpreter is needed for that, so the
// stream works in tests as it does under a script.
#pragma once

#include <cstdint>
#include <vector>

#include "script/arg_stream.h"

class TclArgStream final : public ArgStream {
 public:
  // Reads the `count` strings at `items`, which must outlive the stream.
  TclArgStream(int count, const char* const* items);
  ~TclArgStream() override;
  TclArgStream(const TclArgStream&) = delete;
  TclArgStream& operator=(const TclArgStream&) = delete;

  ArgStream& beginList() override;
  ArgStream& endList() override;
  int count() const override { return current().count; }
  bool good() const override { return current().state == 0; }

  ArgStream& operator>>(std::list<int>& values) override;
  ArgStream& operator>>(std::vector<int>& values) override;
  ArgStream& operator>>(std::int64_t& value) override;
  ArgStream& operator>>(std::int32_t& value) override;
  ArgStream& extractPlainInteger(std::int32_t& value) override;
  ArgStream& operator>>(float& value) override;
  ArgStream& operator>>(double& value) override;
  ArgStream& operator>>(char& value) override;
  ArgStream& extractText(std::string& text, std::size_t capacity) override;

  bool fail() const override { return (current().state & (kFailed | kBad)) != 0; }
  bool eof() const override { return (current().state & kEnd) != 0; }
  void rewind() override { current().position = 0; }

 private:
  static constexpr std::uint32_t kEnd = 1;
  static constexpr std::uint32_t kFailed = 2;
  static constexpr std::uint32_t kBad = 4;

  // One list depth: the command's arguments, or the elements of a list
  // argument being read.
  struct Level {
    int count = 0;
    const char* const* items = nullptr;
    int position = 0;
    std::uint32_t state = 0;
    const char** splitElements = nullptr;  // owned when the level was split from a list
  };

  Level& current() { return levels_.back(); }
  const Level& current() const { return levels_.back(); }
  void pushLevel(int count, const char* const* items, const char** owned);
  // The next item, or nullptr (and the end state) when none is left.
  const char* next();
  void markMissing() { current().state |= kFailed | kBad; }
  template <typename Container>
  ArgStream& extractIntegerList(Container& values);

  std::vector<Level> levels_;
};
