#include "fileformat/text_window.h"

#include "fileformat/line_helpers.h"

namespace fileformat {

TextWindow::TextWindow(std::FILE* file, std::uint64_t offset, std::size_t chunkSize)
    : file_(file), chunkSize_(chunkSize), offset_(offset) {
#ifdef _WIN32
  const bool positioned = _fseeki64(file_, static_cast<long long>(offset), SEEK_SET) == 0;
#else
  const bool positioned = fseeko(file_, static_cast<off_t>(offset), SEEK_SET) == 0;
#endif
  if (!positioned) {
    // Nothing can be read from a place the file does not reach.
    fileExhausted_ = true;
    atEnd_ = true;
    return;
  }
  fill();
}

void TextWindow::fill() {
  // Keep reading while the window holds no whole token (a token longer than a
  // chunk) and the file has more.
  do {
    const std::size_t held = buffer_.size();
    buffer_.resize(held + chunkSize_);
    const std::size_t count = std::fread(buffer_.data() + held, 1, chunkSize_, file_);
    buffer_.resize(held + count);
    if (count < chunkSize_) fileExhausted_ = true;

    // At the file's end everything up to the last line feed is whole; before
    // it, everything up to the last whitespace.
    const std::size_t cut = fileExhausted_ ? buffer_.rfind('\n')
                                           : buffer_.find_last_of(" \t\n\r\v\f");
    usable_ = cut == std::string::npos ? 0 : cut + 1;
  } while (usable_ == 0 && !fileExhausted_);
  atEnd_ = fileExhausted_;
}

bool TextWindow::advance(std::size_t consumed) {
  if (fileExhausted_) return false;
  buffer_.erase(0, consumed);
  offset_ += consumed;
  fill();
  return true;
}

}  // namespace fileformat
