// The lines of a keyword-block header, walked one at a time by the readers
// of the blocks they hold.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marine {

class HeaderLines {
 public:
  explicit HeaderLines(std::vector<std::string> lines) : lines_(std::move(lines)) {}

  // The lines of a keyword-block file. With `stopAtFirstRow`, only its
  // header: the lines up to (not including) the first that is neither empty,
  // nor a comment or keyword line starting with '#', nor inside a
  // "#QV_BEGIN" ... "#QV_END" block. Empty when the file cannot be read.
  static HeaderLines ofFile(const std::string& path, bool stopAtFirstRow);

  bool atEnd() const { return position_ >= lines_.size(); }
  // The current line, without surrounding blanks.
  std::string_view current() const;
  void advance() { ++position_; }
  // The current line's first word.
  std::string_view keyword() const;
  // The current line after its first word, without surrounding blanks.
  std::string_view rest() const;

 private:
  std::vector<std::string> lines_;
  std::size_t position_ = 0;
};

}  // namespace marine
