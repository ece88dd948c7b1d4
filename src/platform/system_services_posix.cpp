// POSIX implementation: the program's path from /proc/self/exe, the registry
// from the registry text files, the environment through setenv.
#ifndef _WIN32

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "platform/registry_file.h"
#include "platform/system_services.h"

namespace platform {
namespace {

class PosixServices final : public SystemServices {
 public:
  ExecutablePath executablePath() override {
    char buffer[kExecutablePathCapacity];
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer);
    ExecutablePath result;
    if (length <= 0) {
      result.status = ExecutablePath::Status::failed;
      result.lastError = errno;
    } else if (static_cast<std::size_t>(length) >= sizeof buffer) {
      // Like a full Windows buffer: the path is cut to capacity - 1 characters.
      result.path.assign(buffer, sizeof buffer - 1);
      result.status = ExecutablePath::Status::truncated;
      result.lastError = ENAMETOOLONG;
    } else {
      result.path.assign(buffer, static_cast<std::size_t>(length));
    }
    return result;
  }

  bool registryKeyExists(const std::string& keyPath) override { return registry().hasKey(keyPath); }

  std::optional<std::string> registryValue(const std::string& keyPath,
                                           const std::string& valueName) override {
    return registry().value(keyPath, valueName);
  }

  std::optional<std::string> environmentVariable(const std::string& name) override {
    const char* value = std::getenv(name.c_str());
    if (value == nullptr) return std::nullopt;
    return std::string(value);
  }

  void exportVariable(const std::string& name, const std::string& value) override {
    ::setenv(name.c_str(), value.c_str(), 1);
  }

  void createFolder(const std::string& path) override {
    std::error_code ignored;
    std::filesystem::create_directory(path, ignored);
  }

  void waitForInputLine() override {
    std::string line;
    std::getline(std::cin, line);
  }

 private:
  // Read once, when the first key is asked for: the files describe the
  // installation as it was when the program started.
  const RegistryFiles& registry() {
    if (!registry_) registry_ = RegistryFiles::fromEnvironment();
    return *registry_;
  }

  std::optional<RegistryFiles> registry_;
};

}  // namespace

SystemServices& systemServices() {
  static PosixServices services;
  return services;
}

bool changeDirectory(const std::string& path) { return ::chdir(path.c_str()) == 0; }

}  // namespace platform

#endif  // _WIN32
