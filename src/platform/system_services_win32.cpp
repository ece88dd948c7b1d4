// Windows implementation: the program's path, the registry under
// HKEY_LOCAL_MACHINE and the C runtime's environment.
#ifdef _WIN32

#include <direct.h>
#include <windows.h>

#include <cstdlib>
#include <deque>
#include <iostream>

#include "platform/system_services.h"

namespace platform {
namespace {

class Win32Services final : public SystemServices {
 public:
  ExecutablePath executablePath() override {
    char buffer[kExecutablePathCapacity];
    const DWORD length = ::GetModuleFileNameA(nullptr, buffer, sizeof buffer);
    ExecutablePath result;
    if (length == 0) {
      result.status = ExecutablePath::Status::failed;
      result.lastError = static_cast<long>(::GetLastError());
    } else if (length >= sizeof buffer) {
      result.path.assign(buffer, sizeof buffer - 1);
      result.status = ExecutablePath::Status::truncated;
      result.lastError = static_cast<long>(::GetLastError());
    } else {
      result.path.assign(buffer, length);
    }
    return result;
  }

  bool registryKeyExists(const std::string& keyPath) override {
    HKEY key = nullptr;
    if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyPath.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
      return false;
    }
    ::RegCloseKey(key);
    return true;
  }

  std::optional<std::string> registryValue(const std::string& keyPath,
                                           const std::string& valueName) override {
    HKEY key = nullptr;
    if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyPath.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    DWORD size = 0;
    std::optional<std::string> value;
    if (::RegQueryValueExA(key, valueName.c_str(), nullptr, nullptr, nullptr, &size) ==
        ERROR_SUCCESS) {
      std::string data(size, '\0');
      if (::RegQueryValueExA(key, valueName.c_str(), nullptr, nullptr,
                             reinterpret_cast<BYTE*>(data.data()), &size) == ERROR_SUCCESS) {
        data.resize(data.find('\0') == std::string::npos ? size : data.find('\0'));
        value = data;
      }
    }
    ::RegCloseKey(key);
    return value;
  }

  std::optional<std::string> environmentVariable(const std::string& name) override {
    const char* value = std::getenv(name.c_str());
    if (value == nullptr) return std::nullopt;
    return std::string(value);
  }

  void exportVariable(const std::string& name, const std::string& value) override {
    // _putenv may keep the text it is given: each assignment lives until exit.
    assignments_.push_back(name + "=" + value);
    ::_putenv(assignments_.back().c_str());
  }

  void createFolder(const std::string& path) override { ::_mkdir(path.c_str()); }

  void waitForInputLine() override {
    std::string line;
    std::getline(std::cin, line);
  }

 private:
  std::deque<std::string> assignments_;
};

}  // namespace

SystemServices& systemServices() {
  static Win32Services services;
  return services;
}

bool changeDirectory(const std::string& path) { return ::SetCurrentDirectoryA(path.c_str()) != 0; }

}  // namespace platform

#endif  // _WIN32
