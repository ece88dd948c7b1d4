// The programs under test, started as a user or a job script would: any
// program in the background with its output collected as it runs, and the
// monitor in a temporary installation of its own.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace e2e {

using namespace std::chrono_literals;

// What the monitor prints first in every mode.
inline constexpr std::string_view kBanner = "\n\n\n      <***>   Monitor 7.1  -  Mar  7 2018\n\n\n";

struct Launch {
  std::vector<std::string> arguments;                     // after the program name
  std::optional<std::string> argv0{};                     // the program's path when unset
  std::optional<std::vector<std::string>> environment{};  // "NAME=value"; the test's own when unset
  std::string folder{};  // working folder; the test's own when empty
};

class ChildProcess {
 public:
  ChildProcess(const std::string& program, const Launch& launch);
  ~ChildProcess();  // kills and reaps a child still running
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Collects output until `ready(standard output)`; false when it ended first or timed out.
  bool waitFor(const std::function<bool(const std::string&)>& ready,
               std::chrono::milliseconds timeout);
  void writeInput(std::string_view text);  // empty: closes standard input
  void sendSignal(int number);
  // Collects output until the child ends; false, after killing it, on timeout.
  bool finish(std::chrono::milliseconds timeout);

  const std::string& output() const { return output_; }
  const std::string& errors() const { return errors_; }
  std::vector<std::string> outputLines() const;   // each ended by a line end
  int exitStatus() const { return exitStatus_; }  // -1 unless it exited
  bool running() const { return !reaped_; }

 private:
  void collect();
  pid_t pid_ = -1;
  int input_ = -1, outputPipe_ = -1, errorPipe_ = -1;
  std::string output_, errors_;
  bool reaped_ = false;
  int exitStatus_ = -1;
};

struct RunOptions {
  std::vector<std::string> arguments;
  std::optional<std::string> argv0{};
  // Set, or taken away when nullopt, over TALVIK_REGISTRY, HOME, PATH, DISPLAY, XAUTHORITY.
  std::map<std::string, std::optional<std::string>> environment{};
};

struct RunResult {
  std::string output, errors;
  int exitStatus = -1;
};

// <base>/apps/<folder>/bin/monitor (a copy: the version tag comes from its real
// path) with its scripts under <root>/_tcl/_monitorTurbo, <base>/registry
// holding its key, <base>/home as HOME and <base>/work as working folder.
class Installation {
 public:
  explicit Installation(const std::string& folder = "dune71");
  ~Installation();  // removes <base>
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  const std::filesystem::path& base() const { return base_; }
  std::filesystem::path root() const { return base_ / "apps" / folder_; }
  std::filesystem::path home() const { return base_ / "home"; }
  std::filesystem::path work() const { return base_ / "work"; }
  std::filesystem::path turboScript() const { return root() / "_tcl/_monitorTurbo/itf_init.tcl"; }
  std::filesystem::path marineScript() const {
    return root() / "_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl";
  }
  void writeRegistry(std::string_view text) const;
  // "[Software\TALVIK\<key>]" and a TALVIK_DIR line naming this installation.
  std::string registrySection(std::string_view key) const;

  std::unique_ptr<ChildProcess> start(const RunOptions& options = {}) const;
  // Runs to the end with standard input closed; over 20 s fails the test.
  RunResult run(const RunOptions& options = {}) const;

 private:
  std::filesystem::path base_;
  std::string folder_;
};

// Writes `text` to `path`, creating the folders on the way.
void writeFile(const std::filesystem::path& path, std::string_view text);

// The banner followed by `lines`, each ended by a line end.
inline std::string bannerThen(const std::vector<std::string>& lines) {
  std::string text(kBanner);
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace e2e
