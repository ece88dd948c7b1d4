// The text file that stands in for the Windows registry on POSIX systems.
//
//   ; comment            # comment
//   [Software\TALVIK\dune71]
//   TALVIK_DIR=/opt/talvik/dune71
//
// Section names are key paths below HKEY_LOCAL_MACHINE (a leading
// "HKEY_LOCAL_MACHINE\" is accepted); key paths and value names compare
// without regard to case. Lines that are neither comments, sections nor
// NAME=VALUE are ignored.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class RegistryFile {
 public:
  static RegistryFile parse(std::string_view text);

  bool hasKey(std::string_view keyPath) const;
  std::optional<std::string> value(std::string_view keyPath, std::string_view valueName) const;

 private:
  using Values = std::map<std::string, std::string>;  // lower-cased name -> value
  std::map<std::string, Values> keys_;                // lower-cased key path -> values
};

// The registry files in the order in which they are consulted: the file named
// by TALVIK_REGISTRY when that is set, otherwise ~/.talvik/registry and then
// /etc/talvik/registry.
class RegistryFiles {
 public:
  // Reads the files named by the process environment.
  static RegistryFiles fromEnvironment();

  void add(RegistryFile file) { files_.push_back(std::move(file)); }

  // The first file that holds the key answers both questions.
  bool hasKey(std::string_view keyPath) const;
  std::optional<std::string> value(std::string_view keyPath, std::string_view valueName) const;

 private:
  const RegistryFile* fileWithKey(std::string_view keyPath) const;
  std::vector<RegistryFile> files_;
};

}  // namespace platform
