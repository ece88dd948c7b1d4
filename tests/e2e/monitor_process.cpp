#include "monitor_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

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
  std::vector<char*> argv = pointersTo(arguments), envp = pointersTo(environment);
  int pipes[3][2];
  for (auto& ends : pipes) {
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
  }
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
  waitFor([](const std::string&) { return false; }, timeout);
  if (!reaped_) ::kill(pid_, SIGKILL);  // the destructor reaps it
  return reaped_;
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
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
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
      {"PATH", "/usr/bin:/bin"}};
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
