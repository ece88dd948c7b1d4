// What the fuzz harnesses share: a scratch folder for the files they write,
// the writes themselves, and the ways one fuzz input is cut into the several
// contents a reader meets while a solver writes its files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fuzzing {

// The input as text; it may hold any byte, NUL included.
inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// A folder of this process's own, made on first use under $TMPDIR (or /tmp)
// and removed at exit; its path ends with '/'. The harnesses write files of
// fixed names in it, so it never grows from one input to the next.
const std::string& scratchFolder();

// Replaces the file's content, adds to its end, or removes the file. A write
// that fails aborts: the run would no longer test what it claims to.
void writeFile(const std::string& path, std::string_view text);
void appendFile(const std::string& path, std::string_view text);
void removeFile(const std::string& path);

// Keeps a value the harness read from the model, so that the compiler cannot
// drop the reads and the sanitizers check each of them.
void use(double value);

// The input without its first byte, cut in two where that byte says: 0 puts
// everything in the tail, 255 nearly everything in the head.
struct Cut {
  std::string_view head;
  std::string_view tail;
};
Cut cutAtFirstByte(std::string_view input);

// Plays a solver's file to a reader, calling `readAgain` after each step:
// the head of the input is written, the tail appended to it, the file cut
// back to half its head (a new run that has written less so far), and
// finally rewritten whole.
template <typename ReadAgain>
void growFile(const std::string& path, std::string_view input, ReadAgain&& readAgain) {
  const Cut cut = cutAtFirstByte(input);
  writeFile(path, cut.head);
  readAgain();
  appendFile(path, cut.tail);
  readAgain();
  writeFile(path, cut.head.substr(0, cut.head.size() / 2));
  readAgain();
  writeFile(path, input.empty() ? input : input.substr(1));
  readAgain();
}

// Separates the contents of several files in one input.
inline constexpr std::string_view kPartSeparator = "%%\n";

// The parts of the input between separators, at most `mostParts` (the last
// part keeps the rest of the input, separators and all).
std::vector<std::string_view> splitParts(std::string_view input, std::size_t mostParts);

}  // namespace fuzzing
