// The programs under test, started as a user or a job script would: any
// program in the background with its output collected as it runs, and the
// monitor in a temporary installation of its own.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

extern char** environ;

namespace e2e {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

inline constexpr std::string_view kBanner = "\n\n\n      <***>   Monitor 7.1  -  Mar  7 2018\n\n\n";

// The banner followed by `lines`, each ended by a line end.
inline std::string bannerThen(const std::vector<std::string>& lines) {
  std::string text(kBanner);
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

inline void writeFile(const fs::path& path, std::string_view text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

struct Launch {
  std::vector<std::string> arguments;                     // after the program name
  std::optional<std::string> argv0{};                     // the program's path when unset
  std::optional<std::vector<std::string>> environment{};  // "NAME=value"; the test's own when unset
  std::string folder{};  // working folder; the test's own when empty
};

class ChildProcess {
 public:
  ChildProcess(const std::string& program, const Launch& launch) {
    ::signal(SIGPIPE, SIG_IGN);  // a child that ends before its input is written
    std::vector<std::string> arguments = {launch.argv0.value_or(program)};
    arguments.insert(arguments.end(), launch.arguments.begin(), launch.arguments.end());
    std::vector<std::string> environment = launch.environment.value_or(std::vector<std::string>{});
    std::vector<char*> argv = pointersTo(arguments), envp = pointersTo(environment);
    int pipes[3][2];
    for (auto& ends : pipes)
      if (::pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
    pid_ = ::fork();
    if (pid_ == 0) {
      ::signal(SIGPIPE, SIG_DFL);
      if (!launch.folder.empty() && ::chdir(launch.folder.c_str()) != 0) ::_exit(126);
      for (int stream : {0, 1, 2}) ::dup2(pipes[stream][stream == 0 ? 0 : 1], stream);
      ::execve(program.c_str(), argv.data(), launch.environment ? envp.data() : environ);
      ::_exit(127);
    }
    for (int* unused : {&pipes[0][0], &pipes[1][1], &pipes[2][1]}) closeDescriptor(*unused);
    if (pid_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
    input_ = pipes[0][1], outputPipe_ = pipes[1][0], errorPipe_ = pipes[2][0];
  }
  ~ChildProcess() {  // kills and reaps a child still running
    if (!reaped_) ::kill(pid_, SIGKILL), ::waitpid(pid_, nullptr, 0);
    for (int* descriptor : {&input_, &outputPipe_, &errorPipe_}) closeDescriptor(*descriptor);
  }

  // Collects output until `ready(standard output)`; false when it ended first or timed out.
  bool waitFor(const std::function<bool(const std::string&)>& ready,
               std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!ready(output_)) {
      if (std::chrono::steady_clock::now() >= deadline || reaped_) return false;
      collect();
    }
    return true;
  }
  void writeInput(std::string_view text) {  // empty: closes standard input
    if (text.empty()) return closeDescriptor(input_);
    [[maybe_unused]] const ssize_t ignored = ::write(input_, text.data(), text.size());
  }
  void sendSignal(int number) {
    if (!reaped_) ::kill(pid_, number);
  }
  // Collects output until the child ends; false, after killing it, on timeout.
  bool finish(std::chrono::milliseconds timeout) {
    waitFor([](const std::string&) { return false; }, timeout);
    if (!reaped_) ::kill(pid_, SIGKILL);  // the destructor reaps it
    return reaped_;
  }

  const std::string& output() const { return output_; }
  const std::string& errors() const { return errors_; }
  std::vector<std::string> outputLines() const {  // each ended by a line end
    std::vector<std::string> lines;
    for (std::size_t start = 0, end; (end = output_.find('\n', start)) != std::string::npos;
         start = end + 1)
      lines.push_back(output_.substr(start, end - start));
    return lines;
  }
  int exitStatus() const { return exitStatus_; }  // -1 unless it exited
  bool running() const { return !reaped_; }

 private:
  static void closeDescriptor(int& descriptor) {
    if (descriptor >= 0) ::close(descriptor);
    descriptor = -1;
  }
  static std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
  }
  // Reads what the child writes within 10 ms; reaps it once both streams end.
  void collect() {
    if (outputPipe_ < 0 && errorPipe_ < 0) {
      int status = 0;
      if (::waitpid(pid_, &status, WNOHANG) != pid_) return (void)::usleep(10000);
      reaped_ = true;
      if (WIFEXITED(status)) exitStatus_ = WEXITSTATUS(status);
      return;
    }
    pollfd watched[] = {{outputPipe_, POLLIN, 0}, {errorPipe_, POLLIN, 0}};  // -1 is not watched
    if (::poll(watched, 2, 10) <= 0) return;
    for (auto [descriptor, text] : {std::pair{&outputPipe_, &output_}, {&errorPipe_, &errors_}}) {
      if (watched[descriptor == &errorPipe_].revents == 0) continue;
      char buffer[4096];
      const ssize_t read = ::read(*descriptor, buffer, sizeof buffer);
      if (read > 0)
        text->append(buffer, static_cast<std::size_t>(read));
      else if (read == 0 || (errno != EINTR && errno != EAGAIN))
        closeDescriptor(*descriptor);
    }
  }

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
  explicit Installation(const std::string& folder = "dune71") : folder_(folder) {
    std::string pattern = (fs::temp_directory_path() / "monitor-e2e-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
      throw std::system_error(errno, std::generic_category());
    base_ = pattern;
    for (const fs::path& made : {root() / "bin", home(), work()}) fs::create_directories(made);
    fs::copy_file(MONITOR_BINARY, root() / "bin" / "monitor");
    writeRegistry(registrySection(folder));
  }
  ~Installation() {
    std::error_code ignored;
    fs::remove_all(base_, ignored);
  }

  const fs::path& base() const { return base_; }
  fs::path root() const { return base_ / "apps" / folder_; }
  fs::path home() const { return base_ / "home"; }
  fs::path work() const { return base_ / "work"; }
  fs::path turboScript() const { return root() / "_tcl/_monitorTurbo/itf_init.tcl"; }
  fs::path marineScript() const {
    return root() / "_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl";
  }
  void writeRegistry(std::string_view text) const { writeFile(base_ / "registry", text); }
  // "[Software\TALVIK\<key>]" and a TALVIK_DIR line naming this installation.
  std::string registrySection(std::string_view key) const {
    return "[Software\\TALVIK\\" + std::string(key) + "]\nTALVIK_DIR=" + root().string() + "\n";
  }

  std::unique_ptr<ChildProcess> start(const RunOptions& options = {}) const {
    std::map<std::string, std::optional<std::string>> variables = {
        {"TALVIK_REGISTRY", (base_ / "registry").string()},
        {"HOME", home().string()},
        {"PATH", "/usr/bin:/bin"}};
    for (const char* name : {"DISPLAY", "XAUTHORITY"})
      if (const char* value = std::getenv(name)) variables[name] = value;
    for (const auto& [name, value] : options.environment) variables[name] = value;
    std::vector<std::string> environment;
    for (const auto& [name, value] : variables)
      if (value) environment.push_back(name + "=" + *value);
    return std::make_unique<ChildProcess>(
        (root() / "bin" / "monitor").string(),
        Launch{options.arguments, options.argv0, environment, work().string()});
  }
  // Runs to the end with standard input closed; over 20 s fails the test.
  RunResult run(const RunOptions& options = {}) const {
    const std::unique_ptr<ChildProcess> monitor = start(options);
    monitor->writeInput("");
    if (!monitor->finish(20s)) ADD_FAILURE() << "the monitor ran over 20 s:\n" << monitor->output();
    return {monitor->output(), monitor->errors(), monitor->exitStatus()};
  }

 private:
  fs::path base_;
  std::string folder_;
};

}  // namespace e2e
