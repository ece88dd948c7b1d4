// The lines that a writer has appended to a file since the last look.
//
// Each read opens the file, goes back to the last line taken, and hands over
// every complete line after it (without its line feed and carriage return). A
// line without its line feed yet is left for a later read.
//
// A file found shorter than what was taken, or whose last line taken reads
// differently now, has been rewritten: the writer started again.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fileformat/input_file.h"

namespace fileformat {

class AppendedLines {
 public:
  enum class Status { missing, read, rewritten };

  explicit AppendedLines(std::string path = {}) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }
  // Offset just after the last line taken.
  std::uint64_t offset() const { return offset_; }
  // Makes the next read start again from the first line.
  void restart();

  // Hands each new complete line to `take`, which answers true when it took
  // the line and false to leave it (and every line after it) for a later
  // read. Answers `missing` when the file cannot be opened and `rewritten`
  // (taking nothing) when the file no longer continues what was taken.
  template <typename Take>
  Status read(Take&& take);

 private:
  // Reads the bytes from the last line taken to the end of the file into
  // `buffer_`, and checks that line.
  Status load();

  std::string path_;
  std::uint64_t offset_ = 0;
  bool hasLastLine_ = false;
  std::uint64_t lastLineStart_ = 0;
  std::string lastLine_;  // as written, carriage return included
  std::uint64_t bufferStart_ = 0;
  std::string buffer_;
};

template <typename Take>
AppendedLines::Status AppendedLines::read(Take&& take) {
  const Status status = load();
  if (status != Status::read) return status;
  const std::string_view text(buffer_);
  std::size_t start = static_cast<std::size_t>(offset_ - bufferStart_);
  for (;;) {
    const std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) break;
    const std::string_view line = text.substr(start, end - start);
    if (!take(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line)) break;
    hasLastLine_ = true;
    lastLineStart_ = bufferStart_ + start;
    lastLine_.assign(line);
    start = end + 1;
    offset_ = bufferStart_ + start;
  }
  buffer_.clear();
  return Status::read;
}

}  // namespace fileformat
