// A file that the solver appends to while the monitor reads it. Every reader
// of a growing file reads it through one of these.
//
// A read offers the reader the whole lines appended after the bytes it has
// taken, never a line whose line feed has not arrived (the writer may be in
// the middle of it). The reader takes what it can use; what it leaves is
// offered again, followed by what the file gains, at the next read.
//
// Each read first checks that the file still continues what was taken. A
// file found shorter than what was seen, or whose first bytes or last taken
// bytes read differently now, was rewritten: the solver started again. So is
// a file that comes back after it had disappeared. The read then answers
// `rewritten` and offers nothing; the reader forgets what it holds and reads
// again, from the top.
//
// Costs are bounded whatever the file holds. A read touches the bytes after
// those taken, and of an unfinished line only the bytes that arrived since
// the last read, until its line feed comes. A line may hold at most
// kMaxLineBytes: a longer one (a file of NUL bytes, or without any line feed)
// is dropped once, with one console line, and reading goes on after its line
// feed. Memory is the longest line offered plus one chunk, and is given back
// after each read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "fileformat/input_file.h"

namespace fileformat {

// What a read found.
enum class Update {
  unchanged,  // nothing new to take
  appended,   // new text was taken
  rewritten,  // the file no longer continues what was taken; nothing offered
  missing,    // the file cannot be opened; what was taken stays the reader's
};

// What a reader did with the text offered to it.
struct Taken {
  std::size_t bytes = 0;  // taken from the start of the text
  bool stop = false;      // offer nothing more in this read
};

class GrowingFile {
 public:
  // Far above any real record: a turbomachinery record of two million values
  // on one line takes about 28 MB.
  static constexpr std::size_t kMaxLineBytes = std::size_t{32} << 20;

  explicit GrowingFile(std::string path = {}) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }
  // Bytes taken (or dropped) from the top of the file.
  std::uint64_t offset() const { return offset_; }
  // The last read could open the file.
  bool present() const { return present_; }
  // The file was read before and cannot be opened now.
  bool lost() const { return lost_; }
  // The next read starts from the top, as for a file never seen.
  void restart();

  // Offers whole lines to `take(text)`: `text` ends with a line feed.
  using TextTaker = std::function<Taken(std::string_view text)>;
  Update read(const TextTaker& take);

  // Offers each whole line, without its line feed and carriage return, to
  // `takeLine(line)`, which answers false to leave that line and the rest for
  // a later read.
  template <typename TakeLine>
  Update readLines(TakeLine&& takeLine);

 private:
  Update noteMissing();
  // Forgets what was taken; answers `rewritten`.
  Update startingOver();
  // True when no new whole line can have come: an over-long line is still
  // being dropped, or only the unfinished line grew (dropped in its turn
  // once over the limit).
  bool nothingWholeYet(InputFile& file, std::uint64_t size);
  // Reads from the offset to `size`, offering each whole line once;
  // `tailBytes` before the offset are read first and checked.
  Update offerNewText(InputFile& file, std::uint64_t size, std::size_t tailBytes,
                      const TextTaker& take);
  // Whether the file still holds what was taken at its top and, with
  // `checkTail`, before the offset.
  bool continuesWhatWasTaken(InputFile& file, std::uint64_t size, bool checkTail);
  void rememberCheckBytes(InputFile& file);
  // Moves the offset past `taken`, the text just taken, keeping the bytes
  // that the next read checks.
  void noteTaken(std::string_view taken);
  // Drops the unfinished line that starts at offset_ and reaches `end`.
  void startDropping(std::uint64_t end);
  // Goes on dropping the long line from `from`; true once its line feed was
  // found before `size` (reading resumes after it).
  bool dropUpToLineFeed(InputFile& file, std::uint64_t from, std::uint64_t size);

  std::string path_;
  std::uint64_t offset_ = 0;      // bytes taken
  std::uint64_t seenTo_ = 0;      // bytes looked at; nothing before that waits to be offered
  std::uint64_t lineStart_ = 0;   // start of the unfinished line that ends at seenTo_
  bool dropping_ = false;         // a line over the limit is being skipped
  bool checkBytesStale_ = false;  // the offset moved past bytes not taken
  bool seen_ = false;             // the file could be opened since the last restart
  bool present_ = false;
  bool lost_ = false;
  std::string head_;  // the first bytes taken
  std::string tail_;  // the last bytes taken
};

template <typename TakeLine>
Update GrowingFile::readLines(TakeLine&& takeLine) {
  return read([&](std::string_view text) {
    Taken taken;
    while (taken.bytes < text.size()) {
      const std::size_t end = text.find('\n', taken.bytes);
      std::string_view line = text.substr(taken.bytes, end - taken.bytes);
      if (line.ends_with('\r')) line.remove_suffix(1);
      if (!takeLine(line)) {
        taken.stop = true;
        break;
      }
      taken.bytes = end + 1;
    }
    return taken;
  });
}

}  // namespace fileformat
