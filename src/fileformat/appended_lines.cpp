#include "fileformat/appended_lines.h"

namespace fileformat {
namespace {

bool seek(std::FILE* file, std::uint64_t offset, int origin) {
#ifdef _WIN32
  return _fseeki64(file, static_cast<long long>(offset), origin) == 0;
#else
  return fseeko(file, static_cast<off_t>(offset), origin) == 0;
#endif
}

std::uint64_t tell(std::FILE* file) {
#ifdef _WIN32
  return static_cast<std::uint64_t>(_ftelli64(file));
#else
  return static_cast<std::uint64_t>(ftello(file));
#endif
}

}  // namespace

void AppendedLines::restart() {
  offset_ = 0;
  hasLastLine_ = false;
  lastLineStart_ = 0;
  lastLine_.clear();
}

AppendedLines::Status AppendedLines::load() {
  buffer_.clear();
  const InputFile file = openInputFile(path_);
  if (!file || !seek(file.get(), 0, SEEK_END)) return Status::missing;
  const std::uint64_t size = tell(file.get());
  if (size < offset_) return Status::rewritten;
  bufferStart_ = hasLastLine_ ? lastLineStart_ : offset_;
  buffer_.resize(static_cast<std::size_t>(size - bufferStart_));
  if (!buffer_.empty() && seek(file.get(), bufferStart_, SEEK_SET)) {
    buffer_.resize(std::fread(buffer_.data(), 1, buffer_.size(), file.get()));
  }
  if (hasLastLine_ && (buffer_.size() <= lastLine_.size() || buffer_.compare(0, lastLine_.size(), lastLine_) != 0 ||
                       buffer_[lastLine_.size()] != '\n')) {
    buffer_.clear();
    return Status::rewritten;
  }
  return Status::read;
}

}  // namespace fileformat
