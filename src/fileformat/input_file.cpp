#include "fileformat/input_file.h"

#include <filesystem>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace fileformat {

InputFile InputFile::open(const std::string& path) {
  InputFile file;
#ifdef _WIN32
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) file.file_.reset(std::fopen(path.c_str(), "rb"));
#else
  file.file_.reset(std::fopen(path.c_str(), "rb"));
  struct stat status {};
  if (file && (fstat(fileno(file.file_.get()), &status) != 0 || S_ISDIR(status.st_mode)))
    file.file_.reset();
#endif
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
  if (end < 0) return std::nullopt;
  return static_cast<std::uint64_t>(end);
#else
  struct stat status {};
  if (fstat(fileno(file_.get()), &status) != 0 || status.st_size < 0) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
#endif
}

std::uint64_t InputFile::dataFrom(std::uint64_t from, std::uint64_t size) {
#if defined(SEEK_DATA) && !defined(_WIN32)
  const off_t data = lseek(fileno(file_.get()), static_cast<off_t>(from), SEEK_DATA);
  if (data >= 0) return static_cast<std::uint64_t>(data);
  if (errno == ENXIO) return size;
#else
  (void)size;
#endif
  return from;
}

std::size_t InputFile::read(char* into, std::size_t count) {
  return count == 0 ? 0 : std::fread(into, 1, count, file_.get());
}

std::size_t InputFile::readAt(std::uint64_t offset, char* into, std::size_t count) {
#ifdef _WIN32
  return seek(offset) ? read(into, count) : 0;
#else
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got =
        pread(fileno(file_.get()), into + done, count - done, static_cast<off_t>(offset + done));
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
#endif
}

}  // namespace fileformat
