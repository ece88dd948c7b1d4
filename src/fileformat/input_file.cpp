#include "fileformat/input_file.h"

#include <filesystem>

namespace fileformat {

InputFile InputFile::open(const std::string& path) {
  InputFile file;
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) file.file_.reset(std::fopen(path.c_str(), "rb"));
  return file;
}

bool InputFile::seek(std::uint64_t offset) {
#ifdef _WIN32
  return _fseeki64(file_.get(), static_cast<long long>(offset), SEEK_SET) == 0;
#else
  return fseeko(file_.get(), static_cast<off_t>(offset), SEEK_SET) == 0;
#endif
}

std::optional<std::uint64_t> InputFile::size() {
#ifdef _WIN32
  if (_fseeki64(file_.get(), 0, SEEK_END) != 0) return std::nullopt;
  const long long end = _ftelli64(file_.get());
#else
  if (fseeko(file_.get(), 0, SEEK_END) != 0) return std::nullopt;
  const off_t end = ftello(file_.get());
#endif
  if (end < 0) return std::nullopt;
  return static_cast<std::uint64_t>(end);
}

std::size_t InputFile::read(char* into, std::size_t count) {
  return count == 0 ? 0 : std::fread(into, 1, count, file_.get());
}

}  // namespace fileformat
