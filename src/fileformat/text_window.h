// A window on a file that is being written: the text from a byte offset on,
// read a chunk at a time, holding only whole tokens and, at the file's end,
// only whole lines. Bytes after the last line feed are a line the writer has
// not finished: they are left for a later read.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace fileformat {

class TextWindow {
 public:
  // Reads from `offset` of the open `file`, `chunkSize` bytes at a time.
  TextWindow(std::FILE* file, std::uint64_t offset, std::size_t chunkSize = 8u << 20);

  // The text of the window, from its first byte.
  std::string_view text() const { return std::string_view(buffer_).substr(0, usable_); }
  // File offset of the window's first byte.
  std::uint64_t offset() const { return offset_; }
  // True when the window holds every complete line up to the file's end.
  bool atEnd() const { return atEnd_; }

  // Drops the first `consumed` bytes and reads more. Answers false when there
  // is nothing more to read (the window is then at the end).
  bool advance(std::size_t consumed);

 private:
  // Reads at least one more chunk and recomputes the usable part.
  void fill();

  std::FILE* file_;
  std::size_t chunkSize_;
  std::uint64_t unread_ = 0;  // bytes of the file not read yet
  std::string buffer_;
  std::size_t usable_ = 0;
  std::uint64_t offset_;
  bool atEnd_ = false;
  bool fileExhausted_ = false;
};

}  // namespace fileformat
