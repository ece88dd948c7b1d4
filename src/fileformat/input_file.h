// Opening a data file for reading.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace fileformat {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using InputFile = std::unique_ptr<std::FILE, FileCloser>;

// Opens the file in binary mode; empty when it cannot be opened or is a
// folder (which some systems open without complaint but cannot read).
InputFile openInputFile(const std::string& path);

}  // namespace fileformat
