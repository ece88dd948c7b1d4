#include "fileformat/qv_file.h"

#include <filesystem>
#include <system_error>

QVfile::QVfile(std::string path) : path_(std::move(path)) {
  std::size_t separator = path_.rfind('/');
  if (separator == std::string::npos) separator = path_.rfind('\\');
  if (separator != std::string::npos) {
    directory_ = path_.substr(0, separator + 1);
    bareName_ = path_.substr(separator + 1);
    return;
  }
  std::error_code error;
  directory_ = std::filesystem::current_path(error).string() + "/";
  bareName_ = path_;
}
