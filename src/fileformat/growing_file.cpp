#include "fileformat/growing_file.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "platform/console.h"

namespace fileformat {
namespace {

// Bytes read from the file at a time.
constexpr std::size_t kChunk = std::size_t{1} << 20;
// Bytes compared at the top of the file and before the offset taken: enough
// for a few rows, so that a rewritten file is told from a grown one.
constexpr std::size_t kCheckBytes = 1024;

// The bytes of [from, from + count), or nothing when they cannot be read.
std::optional<std::string> bytesAt(InputFile& file, std::uint64_t from, std::size_t count) {
  std::string bytes(count, '\0');
  if (file.readAt(from, bytes.data(), count) != count) return std::nullopt;
  return bytes;
}

// Where the first line feed of [from, to) stands, read a chunk at a time
// without keeping the bytes.
std::optional<std::uint64_t> findLineFeed(InputFile& file, std::uint64_t from, std::uint64_t to) {
  if (from >= to) return std::nullopt;
  std::vector<char> chunk(static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, to - from)));
  while (from < to) {
    from = std::min(file.dataFrom(from, to), to);
    if (from == to || !file.seek(from)) break;
    const std::size_t want =
        static_cast<std::size_t>(std::min<std::uint64_t>(chunk.size(), to - from));
    const std::size_t got = file.read(chunk.data(), want);
    const std::string_view bytes(chunk.data(), got);
    const std::size_t feed = bytes.find('\n');
    if (feed != std::string_view::npos) return from + feed;
    if (got < want) break;
    from += got;
  }
  return std::nullopt;
}

}  // namespace

void GrowingFile::restart() {
  offset_ = 0;
  seenTo_ = 0;
  lineStart_ = 0;
  dropping_ = false;
  seen_ = false;
  present_ = false;
  lost_ = false;
  head_.clear();
  tail_.clear();
  checkBytesStale_ = false;
}

Update GrowingFile::noteMissing() {
  present_ = false;
  if (seen_ && !lost_) {
    platform::consoleLine("File " + path_ + " has disappeared; what was read from it stays shown");
    lost_ = true;
  }
  return Update::missing;
}

bool GrowingFile::continuesWhatWasTaken(InputFile& file, std::uint64_t size, bool checkTail) {
  if (size < seenTo_) return false;
  if (offset_ == 0) return true;
  return bytesAt(file, 0, head_.size()) == head_ &&
         (!checkTail || bytesAt(file, offset_ - tail_.size(), tail_.size()) == tail_);
}

void GrowingFile::rememberCheckBytes(InputFile& file) {
  const std::size_t count = static_cast<std::size_t>(std::min<std::uint64_t>(offset_, kCheckBytes));
  head_ = bytesAt(file, 0, count).value_or(std::string());
  tail_ = bytesAt(file, offset_ - count, count).value_or(std::string());
  checkBytesStale_ = false;
}

void GrowingFile::noteTaken(std::string_view taken) {
  // The head holds the first bytes of the file while the offset is below
  // its length; the tail the last bytes before the offset.
  if (head_.size() < kCheckBytes && head_.size() == offset_) {
    head_.append(taken.substr(0, kCheckBytes - head_.size()));
  }
  if (taken.size() >= kCheckBytes) {
    tail_.assign(taken.substr(taken.size() - kCheckBytes));
  } else {
    tail_.append(taken);
    if (tail_.size() > kCheckBytes) tail_.erase(0, tail_.size() - kCheckBytes);
  }
  offset_ += taken.size();
}

void GrowingFile::startDropping(std::uint64_t end) {
  platform::consoleLine("Line of more than " + std::to_string(kMaxLineBytes) + " bytes at byte " +
                        std::to_string(offset_) + " of " + path_ +
                        " dropped; reading goes on after its end");
  dropping_ = true;
  offset_ = end;
  checkBytesStale_ = true;
}

bool GrowingFile::dropUpToLineFeed(InputFile& file, std::uint64_t from, std::uint64_t size) {
  const std::optional<std::uint64_t> feed = findLineFeed(file, from, size);
  offset_ = feed ? *feed + 1 : size;
  dropping_ = !feed;
  checkBytesStale_ = true;
  return feed.has_value();
}

Update GrowingFile::read(const TextTaker& take) {
  InputFile file = InputFile::open(path_);
  const std::optional<std::uint64_t> size = file ? file.size() : std::nullopt;
  if (!size) return noteMissing();
  present_ = true;
  // Where the read goes on right after the bytes taken, the last of them are
  // read again with the new ones and checked there: one read less.
  const bool tailReadWithNewText = !dropping_ && seenTo_ == offset_ && *size > offset_;
  if (lost_ || !continuesWhatWasTaken(file, *size, !tailReadWithNewText)) return startingOver();
  seen_ = true;
  if (*size == seenTo_) return Update::unchanged;
  const Update result =
      nothingWholeYet(file, *size)
          ? Update::unchanged
          : offerNewText(file, *size, tailReadWithNewText ? tail_.size() : 0, take);
  if (checkBytesStale_) rememberCheckBytes(file);
  return result;
}

Update GrowingFile::startingOver() {
  restart();
  seen_ = true;
  return Update::rewritten;
}

bool GrowingFile::nothingWholeYet(InputFile& file, std::uint64_t size) {
  if (dropping_) {
    if (dropUpToLineFeed(file, seenTo_, size)) return false;
    seenTo_ = lineStart_ = size;
    return true;
  }
  if (seenTo_ == offset_ || findLineFeed(file, seenTo_, size)) return false;
  // Only the unfinished line grew: it is read again once its line feed comes.
  if (size - lineStart_ > kMaxLineBytes) startDropping(size);
  seenTo_ = size;
  if (dropping_) lineStart_ = size;
  return true;
}

Update GrowingFile::offerNewText(InputFile& file, std::uint64_t size, std::size_t tailBytes,
                                 const TextTaker& take) {
  if (!file.seek(offset_ - tailBytes)) {
    platform::consoleLine("couldn't seek to the position " + std::to_string(offset_));
    return Update::unchanged;
  }
  std::uint64_t left = size - offset_;
  // Room for the longest line and one chunk: the text never needs more. The
  // bytes are not cleared before the file's bytes are read into them, and
  // pages never written are not taken from the system.
  const std::size_t room =
      static_cast<std::size_t>(std::min<std::uint64_t>(left, kMaxLineBytes + kChunk)) + tailBytes;
  const std::unique_ptr<char[]> buffer(new char[room]);
  if (tailBytes != 0 && (file.read(buffer.get(), tailBytes) != tailBytes ||
                         std::string_view(buffer.get(), tailBytes) != tail_)) {
    return startingOver();
  }
  // The text from offset_ on, not taken yet, is [start, end) of the buffer;
  // `complete` bytes of it are whole lines and `offered` were offered.
  std::size_t start = 0;
  std::size_t end = 0;
  std::size_t complete = 0;
  std::size_t offered = 0;
  Update result = Update::unchanged;
  bool stopped = false;
  while (left > 0 && !stopped) {
    const std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, left));
    if (start != 0) {
      // What was taken goes; the rest, an unfinished line as a rule, moves to
      // the front, so that the same few pages serve the whole read.
      std::memmove(buffer.get(), buffer.get() + start, end - start);
      end -= start;
      start = 0;
    }
    const std::size_t got = file.read(buffer.get() + end, want);
    const std::string_view arrived(buffer.get() + end, got);
    end += got;
    left = got < want ? 0 : left - got;
    const std::size_t feed = arrived.rfind('\n');
    if (feed != std::string_view::npos) complete = end - got + feed + 1 - start;

    if (complete > offered) {
      const std::string_view text(buffer.get() + start, complete);
      const Taken taken = take(text);
      const std::size_t bytes = std::min(taken.bytes, complete);
      if (bytes > 0) {
        result = Update::appended;
        noteTaken(text.substr(0, bytes));
        start += bytes;
        complete -= bytes;
      }
      offered = complete;
      stopped = taken.stop;
    }
    if (!stopped && end - start > kMaxLineBytes) {
      startDropping(offset_ + (end - start));
      start = end = complete = offered = 0;
      if (!dropUpToLineFeed(file, offset_, size) || !file.seek(offset_)) break;
      left = size - offset_;
    }
  }
  if (stopped) {
    seenTo_ = lineStart_ = offset_;
  } else {
    seenTo_ = dropping_ ? offset_ : offset_ + (end - start);
    lineStart_ = dropping_ ? offset_ : offset_ + complete;
  }
  return result;
}

}  // namespace fileformat
