// A text file known by its path, split into its folder and its bare name.
#pragma once

#include <string>

#include "fileformat/class_ids.h"

class QVfile {
 public:
  static constexpr std::uint16_t kClassId = classid::kQVfile;

  // Splits at the last '/' or, failing that, the last '\\'. A path without a
  // separator lies in the current working folder.
  explicit QVfile(std::string path);

  // The path as it was given.
  const std::string& path() const { return path_; }
  // The folder, ending with its separator.
  const std::string& directory() const { return directory_; }
  const std::string& bareName() const { return bareName_; }

 private:
  std::string path_;
  std::string directory_;
  std::string bareName_;
};
