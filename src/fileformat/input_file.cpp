#include "fileformat/input_file.h"

#include <filesystem>

namespace fileformat {

InputFile openInputFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return nullptr;
  return InputFile(std::fopen(path.c_str(), "rb"));
}

}  // namespace fileformat
