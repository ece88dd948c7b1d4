// The operating-system calls that the installation environment and the
// commands need, behind one interface so that the start-up logic runs the same
// on every system and can be driven by a fake in tests.
#pragma once

#include <optional>
#include <string>

namespace platform {

// The separator with which the program joins installation locations.
#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

// The running program's own file name as the system reports it.
struct ExecutablePath {
  enum class Status { ok, failed, truncated };
  std::string path;  // what was read; empty when the call failed
  Status status = Status::ok;
  long lastError = 0;  // the system's error number when status is not ok
};

// The size of the buffer into which the program's path is read; a path that
// fills it is reported as truncated.
inline constexpr std::size_t kExecutablePathCapacity = 1024;

class SystemServices {
 public:
  virtual ~SystemServices() = default;

  virtual ExecutablePath executablePath() = 0;

  // Whether the installation key (a path below HKEY_LOCAL_MACHINE, written
  // with backslashes) exists, and the named value inside it.
  virtual bool registryKeyExists(const std::string& keyPath) = 0;
  virtual std::optional<std::string> registryValue(const std::string& keyPath,
                                                   const std::string& valueName) = 0;

  virtual std::optional<std::string> environmentVariable(const std::string& name) = 0;
  // Sets a process environment variable; child processes and the scripts see it.
  virtual void exportVariable(const std::string& name, const std::string& value) = 0;

  // Creates one folder; failures (including an existing folder) are ignored.
  virtual void createFolder(const std::string& path) = 0;

  // Reads one line typed on standard input (used to hold a start-up error on
  // screen until the user has seen it).
  virtual void waitForInputLine() = 0;
};

// The services of the system the program runs on.
SystemServices& systemServices();

// Makes `path` the process's working folder; false when the system refuses.
bool changeDirectory(const std::string& path);

}  // namespace platform
