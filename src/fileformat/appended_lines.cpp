#include "fileformat/appended_lines.h"

#include <algorithm>
#include <cstring>

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

AppendedLines::Status AppendedLines::begin() {
  held_ = 0;
  InputFile file = openInputFile(path_);
  if (!file || !seek(file.get(), 0, SEEK_END)) return Status::missing;
  const std::uint64_t size = tell(file.get());
  if (size < offset_) return Status::rewritten;
  if (hasLastLine_) {
    const std::size_t length = lastLine_.size() + 1;
    std::string check(length, '\0');
    if (size < lastLineStart_ + length || !seek(file.get(), lastLineStart_, SEEK_SET) ||
        std::fread(check.data(), 1, length, file.get()) != length ||
        check.compare(0, lastLine_.size(), lastLine_) != 0 || check.back() != '\n') {
      return Status::rewritten;
    }
  }
  if (!seek(file.get(), offset_, SEEK_SET)) return Status::missing;
  file_ = std::move(file);
  left_ = size - offset_;
  bufferStart_ = offset_;
  return Status::read;
}

bool AppendedLines::fill(std::size_t keep) {
  if (left_ == 0) return false;
  const std::size_t kept = held_ - keep;
  const std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(left_, kChunk));
  if (kept + want > capacity_) {
    const std::size_t capacity = std::max(kept + want, std::min<std::size_t>(2 * capacity_, kChunk + kept));
    std::unique_ptr<char[]> grown(new char[capacity]);
    if (kept != 0) std::memcpy(grown.get(), data_.get() + keep, kept);
    data_ = std::move(grown);
    capacity_ = capacity;
  } else if (kept != 0 && keep != 0) {
    std::memmove(data_.get(), data_.get() + keep, kept);
  }
  bufferStart_ += keep;
  const std::size_t got = std::fread(data_.get() + kept, 1, want, file_.get());
  held_ = kept + got;
  left_ = got < want ? 0 : left_ - got;
  return got != 0;
}

void AppendedLines::end() {
  file_.reset();
  data_.reset();
  capacity_ = 0;
  held_ = 0;
  left_ = 0;
}

}  // namespace fileformat
