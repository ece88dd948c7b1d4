// The lines that a writer has appended to a file since the last look.
//
// Each read opens the file, checks that the last line taken still reads the
// same, and hands over every complete line after it (without its line feed
// and carriage return), a window of at most a mebibyte at a time. A line
// without its line feed yet is left for a later read.
//
// A file found shorter than what was taken, or whose last line taken reads
// differently now, has been rewritten: the writer started again.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fileformat/input_file.h"

namespace fileformat {

class AppendedLines {
 public:
  enum class Status { missing, read, rewritten };

  explicit AppendedLines(std::string path = {}) : path_(std::move(path)) {}
  AppendedLines(AppendedLines&&) = default;
  AppendedLines& operator=(AppendedLines&&) = default;

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
  static constexpr std::size_t kChunk = 1u << 20;

  // Opens the file, checks the last line taken, and positions at offset_.
  Status begin();
  // Keeps the bytes from `keep` on, appends up to a chunk from the file; false
  // when nothing more could be read.
  bool fill(std::size_t keep);
  void end();

  std::string path_;
  std::uint64_t offset_ = 0;
  bool hasLastLine_ = false;
  std::uint64_t lastLineStart_ = 0;
  std::string lastLine_;
  // While reading.
  InputFile file_;
  std::uint64_t left_ = 0;         // bytes of the file not yet in the buffer
  std::uint64_t bufferStart_ = 0;  // file offset of data_[0]
  std::unique_ptr<char[]> data_;
  std::size_t capacity_ = 0;
  std::size_t held_ = 0;
};

template <typename Take>
AppendedLines::Status AppendedLines::read(Take&& take) {
  const Status status = begin();
  if (status != Status::read) return status;
  std::size_t start = 0;
  bool stopped = false;
  const char* lastTaken = nullptr;
  std::size_t lastTakenSize = 0;
  const auto keepLastTaken = [&] {
    if (lastTaken != nullptr) lastLine_.assign(lastTaken, lastTakenSize);
    lastTaken = nullptr;
  };
  while (!stopped && fill(start)) {
    start = 0;
    const std::string_view text(data_.get(), held_);
    for (;;) {
      const std::size_t end = text.find('\n', start);
      if (end == std::string_view::npos) break;
      const std::string_view line = text.substr(start, end - start);
      if (!take(line.ends_with('\r') ? line.substr(0, line.size() - 1) : line)) {
        stopped = true;
        break;
      }
      hasLastLine_ = true;
      lastLineStart_ = bufferStart_ + start;
      lastTaken = line.data();
      lastTakenSize = line.size();
      start = end + 1;
      offset_ = bufferStart_ + start;
    }
    keepLastTaken();
  }
  end();
  return Status::read;
}

}  // namespace fileformat
