// A data file opened for reading, measured and positioned with 64-bit
// offsets on every system: the one place where the program seeks in a file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace fileformat {

class InputFile {
 public:
  // Opens the file in binary mode; the result is empty (false) when the file
  // cannot be opened or is a folder, which some systems open without
  // complaint but cannot read.
  static InputFile open(const std::string& path);

  explicit operator bool() const { return file_ != nullptr; }

  // The file's size now; nothing when it cannot be measured.
  std::optional<std::uint64_t> size();
  // Positions the next read at `offset`; false when the system refuses.
  bool seek(std::uint64_t offset);
  // The first offset at or after `from` where the file may hold data: the
  // holes of a sparse file hold nothing but NUL bytes and need not be read.
  // `from` itself where the system cannot tell; `size` past the last data.
  std::uint64_t dataFrom(std::uint64_t from, std::uint64_t size);
  // Reads up to `count` bytes from the current position; answers how many
  // arrived (fewer only at the file's end or on an error).
  std::size_t read(char* into, std::size_t count);
  // Reads up to `count` bytes from `offset`, wherever the current position is.
  std::size_t readAt(std::uint64_t offset, char* into, std::size_t count);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace fileformat
