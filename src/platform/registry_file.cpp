#include "platform/registry_file.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace platform {
namespace {

constexpr std::string_view kMachineRoot = "hkey_local_machine\\";

std::string lowerAscii(std::string_view text) {
  std::string lowered(text);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lowered;
}

std::string_view trim(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Key paths compare without case and without the optional root prefix.
std::string normalizedKey(std::string_view keyPath) {
  std::string key = lowerAscii(trim(keyPath));
  if (key.starts_with(kMachineRoot)) key.erase(0, kMachineRoot.size());
  return key;
}

std::optional<RegistryFile> readRegistryFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream text;
  text << in.rdbuf();
  return RegistryFile::parse(text.str());
}

}  // namespace

RegistryFile RegistryFile::parse(std::string_view text) {
  RegistryFile file;
  Values* section = nullptr;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = trim(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);

    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[') {
      const std::size_t close = line.find(']');
      section = close == std::string_view::npos
                    ? nullptr
                    : &file.keys_[normalizedKey(line.substr(1, close - 1))];
      continue;
    }
    const std::size_t equals = line.find('=');
    if (section == nullptr || equals == std::string_view::npos) continue;
    const std::string name = lowerAscii(trim(line.substr(0, equals)));
    if (name.empty()) continue;
    (*section)[name] = std::string(trim(line.substr(equals + 1)));
  }
  return file;
}

bool RegistryFile::hasKey(std::string_view keyPath) const {
  return keys_.contains(normalizedKey(keyPath));
}

std::optional<std::string> RegistryFile::value(std::string_view keyPath,
                                               std::string_view valueName) const {
  const auto key = keys_.find(normalizedKey(keyPath));
  if (key == keys_.end()) return std::nullopt;
  const auto found = key->second.find(lowerAscii(trim(valueName)));
  if (found == key->second.end()) return std::nullopt;
  return found->second;
}

RegistryFiles RegistryFiles::fromEnvironment() {
  std::vector<std::string> paths;
  if (const char* named = std::getenv("TALVIK_REGISTRY"); named != nullptr && *named != '\0') {
    paths.emplace_back(named);
  } else {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
      paths.push_back(std::string(home) + "/.talvik/registry");
    }
    paths.emplace_back("/etc/talvik/registry");
  }
  RegistryFiles files;
  for (const std::string& path : paths) {
    if (auto file = readRegistryFile(path)) files.add(std::move(*file));
  }
  return files;
}

const RegistryFile* RegistryFiles::fileWithKey(std::string_view keyPath) const {
  for (const RegistryFile& file : files_) {
    if (file.hasKey(keyPath)) return &file;
  }
  return nullptr;
}

bool RegistryFiles::hasKey(std::string_view keyPath) const {
  return fileWithKey(keyPath) != nullptr;
}

std::optional<std::string> RegistryFiles::value(std::string_view keyPath,
                                                std::string_view valueName) const {
  const RegistryFile* file = fileWithKey(keyPath);
  if (file == nullptr) return std::nullopt;
  return file->value(keyPath, valueName);
}

}  // namespace platform
