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
  // Reads up to `count` bytes from the current position; answers how many
  // arrived (fewer only at the file's end or on an error).
  std::size_t read(char* into, std::size_t count);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace fileformat
