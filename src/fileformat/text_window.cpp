#include "fileformat/text_window.h"

#include <algorithm>

#include "fileformat/line_helpers.h"

namespace fileformat {

TextWindow::TextWindow(std::FILE* file, std::uint64_t offset, std::size_t chunkSize)
    : file_(file), chunkSize_(chunkSize), offset_(offset) {
#ifdef _WIN32
  const bool measured = _fseeki64(file_, 0, SEEK_END) == 0;
  const auto size = static_cast<std::uint64_t>(_ftelli64(file_));
  const bool positioned = measured && _fseeki64(file_, static_cast<long long>(offset), SEEK_SET) == 0;
#else
  const bool measured = fseeko(file_, 0, SEEK_END) == 0;
  const auto size = static_cast<std::uint64_t>(ftello(file_));
  const bool positioned = measured && fseeko(file_, static_cast<off_t>(offset), SEEK_SET) == 0;
#endif
  unread_ = size > offset ? size - offset : 0;
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
    // Read no more than the file holds, so that a short refresh costs little.
    const std::size_t wanted = static_cast<std::size_t>(std::min<std::uint64_t>(chunkSize_, unread_));
    const std::size_t held = buffer_.size();
    buffer_.resize(held + wanted);
    const std::size_t count = wanted == 0 ? 0 : std::fread(buffer_.data() + held, 1, wanted, file_);
    buffer_.resize(held + count);
    unread_ -= count;
    if (count < wanted || unread_ == 0) fileExhausted_ = true;

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
