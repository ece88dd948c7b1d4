#include "monitor_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>

extern char** environ;

namespace e2e {
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

void closeDescriptor(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const Launch& launch) {
  // A child that ends before its input is written must not end the tests.
  ::signal(SIGPIPE, SIG_IGN);
  std::vector<std::string> arguments = {launch.argv0.value_or(program)};
  arguments.insert(arguments.end(), launch.arguments.begin(), launch.arguments.end());
  std::vector<std::string> environment = launch.environment.value_or(std::vector<std::string>{});
  std::vector<char*> argv = pointersTo(arguments);
  std::vector<char*> envp = pointersTo(environment);
  int pipes[3][2];
  for (auto& ends : pipes) {
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  }
  pid_ = ::fork();
  if (pid_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (pid_ == 0) {
    ::signal(SIGPIPE, SIG_DFL);
    if (!launch.folder.empty() && ::chdir(launch.folder.c_str()) != 0) ::_exit(126);
    ::dup2(pipes[0][0], STDIN_FILENO);
    ::dup2(pipes[1][1], STDOUT_FILENO);
    ::dup2(pipes[2][1], STDERR_FILENO);
    ::execve(program.c_str(), argv.data(), launch.environment ? envp.data() : environ);
    ::_exit(127);
  }
  for (int* unused : {&pipes[0][0], &pipes[1][1], &pipes[2][1]}) closeDescriptor(*unused);
  input_ = pipes[0][1];
  outputPipe_ = pipes[1][0];
  errorPipe_ = pipes[2][0];
}

ChildProcess::~ChildProcess() {
  if (!reaped_) {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
  }
  for (int* descriptor : {&input_, &outputPipe_, &errorPipe_}) closeDescriptor(*descriptor);
}

// Reads what the child writes within 10 ms; reaps it once both streams end.
void ChildProcess::collect() {
  pollfd watched[2];
  std::pair<int*, std::string*> streams[2];
  nfds_t count = 0;
  for (auto stream : {std::pair{&outputPipe_, &output_}, std::pair{&errorPipe_, &errors_}}) {
    if (*stream.first < 0) continue;
    watched[count] = {*stream.first, POLLIN, 0};
    streams[count++] = stream;
  }
  if (count == 0) {
    int status = 0;
    if (!reaped_ && ::waitpid(pid_, &status, WNOHANG) == pid_) {
      reaped_ = true;
      if (WIFEXITED(status)) exitStatus_ = WEXITSTATUS(status);
    }
    if (!reaped_) ::usleep(10000);
    return;
  }
  if (::poll(watched, count, 10) <= 0) return;
  for (nfds_t i = 0; i < count; ++i) {
    if (watched[i].revents == 0) continue;
    char buffer[4096];
    const ssize_t read = ::read(*streams[i].first, buffer, sizeof buffer);
    if (read > 0)
      streams[i].second->append(buffer, static_cast<std::size_t>(read));
    else if (read == 0 || (errno != EINTR && errno != EAGAIN))
      closeDescriptor(*streams[i].first);
  }
}

bool ChildProcess::waitFor(const std::function<bool(const std::string&)>& ready,
                           std::chrono::milliseconds timeout) {
  const Clock::time_point deadline = Clock::now() + timeout;
  while (!ready(output_)) {
    if (Clock::now() >= deadline || reaped_) return false;
    collect();
  }
  return true;
}

void ChildProcess::writeInput(std::string_view text) {
  if (text.empty()) return closeDescriptor(input_);
  [[maybe_unused]] const ssize_t ignored = ::write(input_, text.data(), text.size());
}

void ChildProcess::sendSignal(int number) {
  if (!reaped_) ::kill(pid_, number);
}

bool ChildProcess::finish(std::chrono::milliseconds timeout) {
  const Clock::time_point deadline = Clock::now() + timeout;
  while (!reaped_) {
    if (Clock::now() >= deadline) {
      ::kill(pid_, SIGKILL);
      return false;  // the destructor reaps it
    }
    collect();
  }
  return true;
}

std::vector<std::string> ChildProcess::outputLines() const {
  std::vector<std::string> lines;
  for (std::size_t start = 0, end; (end = output_.find('\n', start)) != std::string::npos;
       start = end + 1)
    lines.push_back(output_.substr(start, end - start));
  return lines;
}

void writeFile(const fs::path& path, std::string_view text) {
  fs::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << text;
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

Installation::Installation(const std::string& folder) : folder_(folder) {
  std::string pattern = (fs::temp_directory_path() / "monitor-e2e-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::system_error(errno, std::generic_category());
  base_ = pattern;
  fs::create_directories(root() / "bin");
  fs::create_directories(home());
  fs::create_directories(work());
  fs::copy_file(MONITOR_BINARY, root() / "bin" / "monitor");
  writeRegistry(registrySection(folder));
}

Installation::~Installation() {
  std::error_code ignored;
  fs::remove_all(base_, ignored);
}

void Installation::writeRegistry(std::string_view text) const {
  writeFile(base_ / "registry", text);
}

std::string Installation::registrySection(std::string_view key) const {
  return "[Software\\TALVIK\\" + std::string(key) + "]\nTALVIK_DIR=" + root().string() + "\n";
}

std::unique_ptr<ChildProcess> Installation::start(const RunOptions& options) const {
  std::map<std::string, std::optional<std::string>> variables = {
      {"TALVIK_REGISTRY", (base_ / "registry").string()},
      {"HOME", home().string()},
      {"PATH", "/usr/bin:/bin"},
  };
  for (const char* name : {"DISPLAY", "XAUTHORITY"}) {
    if (const char* value = std::getenv(name)) variables[name] = value;
  }
  for (const auto& [name, value] : options.environment) variables[name] = value;
  std::vector<std::string> environment;
  for (const auto& [name, value] : variables) {
    if (value) environment.push_back(name + "=" + *value);
  }
  return std::make_unique<ChildProcess>(
      (root() / "bin" / "monitor").string(),
      Launch{options.arguments, options.argv0, environment, work().string()});
}

RunResult Installation::run(const RunOptions& options) const {
  const std::unique_ptr<ChildProcess> monitor = start(options);
  monitor->writeInput("");
  if (!monitor->finish(20s)) ADD_FAILURE() << "the monitor ran over 20 s:\n" << monitor->output();
  return {monitor->output(), monitor->errors(), monitor->exitStatus()};
}

}  // namespace e2e
