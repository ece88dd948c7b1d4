#include "monitor_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace e2e {
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace {

fs::path makeBaseFolder() {
  std::string pattern = (fs::temp_directory_path() / "monitor-e2e-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "mkdtemp " + pattern);
  }
  return pattern;
}

// One end of a pipe, closed when it goes.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      close();
      fd_ = other.fd_;
      other.fd_ = -1;
    }
    return *this;
  }
  int get() const { return fd_; }
  bool open() const { return fd_ >= 0; }
  void close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_ = -1;
};

struct Pipe {
  Descriptor read;
  Descriptor write;
};

Pipe makePipe() {
  int fds[2];
  if (::pipe2(fds, O_CLOEXEC) != 0)
    throw std::system_error(errno, std::generic_category(), "pipe2");
  return {Descriptor(fds[0]), Descriptor(fds[1])};
}

std::vector<std::string> environmentFor(const Installation& installation,
                                        const RunOptions& options) {
  std::map<std::string, std::string> variables = {
      {"TALVIK_REGISTRY", installation.registryFile().string()},
      {"HOME", installation.home().string()},
      {"PATH", "/usr/bin:/bin"},
  };
  for (const char* name : {"DISPLAY", "XAUTHORITY"}) {
    if (const char* value = std::getenv(name)) variables[name] = value;
  }
  for (const auto& [name, value] : options.environment) variables[name] = value;
  for (const std::string& name : options.removedVariables) variables.erase(name);
  std::vector<std::string> entries;
  for (const auto& [name, value] : variables) entries.push_back(name + "=" + value);
  return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Reads what is there; false at the end of the stream.
bool drain(Descriptor& from, std::string& into) {
  char buffer[4096];
  const ssize_t count = ::read(from.get(), buffer, sizeof buffer);
  if (count > 0) {
    into.append(buffer, static_cast<std::size_t>(count));
    return true;
  }
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return true;
  from.close();
  return false;
}

void recordExit(int status, RunResult& result) {
  if (WIFEXITED(status)) {
    result.exited = true;
    result.exitStatus = WEXITSTATUS(status);
  }
}

}  // namespace

std::vector<std::string> RunResult::lines() const {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < output.size()) {
    const std::size_t end = output.find('\n', start);
    if (end == std::string::npos) {
      lines.push_back(output.substr(start));
      break;
    }
    lines.push_back(output.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

void writeFile(const fs::path& path, std::string_view text) {
  fs::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << text;
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

std::string bannerThen(const std::vector<std::string>& lines) {
  std::string text(kBanner);
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

Installation::Installation(std::string folder, std::string binFolder) : base_(makeBaseFolder()) {
  try {
    root_ = base_ / "apps" / folder;
    const fs::path programFolder = binFolder.empty() ? root_ : root_ / binFolder;
    fs::create_directories(programFolder);
    fs::create_directories(home());
    fs::create_directories(work());
    program_ = programFolder / "monitor";
    fs::copy_file(MONITOR_BINARY, program_);
    writeRegistry(registrySection(folder));
  } catch (...) {
    // The destructor does not run for an object that was never made.
    std::error_code ignored;
    fs::remove_all(base_, ignored);
    throw;
  }
}

Installation::~Installation() {
  std::error_code ignored;
  fs::remove_all(base_, ignored);
}

fs::path Installation::turboScript() const {
  return root_ / "_tcl" / "_monitorTurbo" / "itf_init.tcl";
}

fs::path Installation::marineScript() const {
  return root_ / "_tcl" / "_monitorTurbo" / "_monitorMarine" / "itf_init.tcl";
}

void Installation::writeTurboScript(std::string_view text) const { writeFile(turboScript(), text); }

void Installation::writeMarineScript(std::string_view text) const {
  writeFile(marineScript(), text);
}

void Installation::writeRegistry(std::string_view text) const { writeFile(registryFile(), text); }

std::string Installation::registrySection(std::string_view key) const {
  return "[Software\\TALVIK\\" + std::string(key) + "]\nTALVIK_DIR=" + root_.string() + "\n";
}

RunResult Installation::run(const RunOptions& options) const {
  // A program that ends before its input is written must not end the tests.
  ::signal(SIGPIPE, SIG_IGN);

  std::vector<std::string> arguments = {options.argv0.value_or(program_.string())};
  arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
  std::vector<std::string> environment = environmentFor(*this, options);
  std::vector<char*> argv = pointersTo(arguments);
  std::vector<char*> envp = pointersTo(environment);
  const std::string programPath = program_.string();
  const std::string workPath = work().string();

  Pipe input = makePipe();
  Pipe output = makePipe();
  Pipe errors = makePipe();
  const pid_t child = ::fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child == 0) {
    ::signal(SIGPIPE, SIG_DFL);
    if (::chdir(workPath.c_str()) != 0) ::_exit(126);
    ::dup2(input.read.get(), STDIN_FILENO);
    ::dup2(output.write.get(), STDOUT_FILENO);
    ::dup2(errors.write.get(), STDERR_FILENO);
    ::execve(programPath.c_str(), argv.data(), envp.data());
    ::_exit(127);
  }
  input.read.close();
  output.write.close();
  errors.write.close();

  RunResult result;
  const Clock::time_point started = Clock::now();
  const Clock::time_point inputTime = started + options.inputDelay;
  const Clock::time_point deadline = started + options.timeout;
  std::optional<Clock::time_point> stopTime;
  bool reaped = false;

  const auto reap = [&](int flags) {
    int status = 0;
    if (!reaped && ::waitpid(child, &status, flags) == child) {
      reaped = true;
      recordExit(status, result);
    }
  };
  const auto kill = [&] {
    ::kill(child, SIGKILL);
    reap(0);
  };

  while (output.read.open() || errors.read.open() || !reaped) {
    const Clock::time_point now = Clock::now();
    if (input.write.open() && now >= inputTime) {
      reap(WNOHANG);
      result.exitedBeforeInput = reaped && options.inputDelay > milliseconds(0);
      if (!options.input.empty()) {
        [[maybe_unused]] const ssize_t ignored =
            ::write(input.write.get(), options.input.data(), options.input.size());
      }
      input.write.close();
    }
    if (options.stop && !stopTime &&
        result.output.find(options.stop->outputHas) != std::string::npos) {
      stopTime = now + options.stop->grace;
    }
    if (stopTime && now >= *stopTime && !reaped) {
      result.stoppedByTest = true;
      kill();
    }
    if (now >= deadline && !reaped) {
      result.timedOut = true;
      kill();
      ADD_FAILURE() << "the monitor did not end within " << options.timeout.count()
                    << " ms; its output so far:\n"
                    << result.output;
    }
    // Something the program started may still hold the pipes: stop listening.
    if (reaped && now >= deadline + std::chrono::seconds(2)) break;
    if (!output.read.open() && !errors.read.open()) {
      reap(WNOHANG);
      if (!reaped) ::usleep(10000);
      continue;
    }

    struct Stream {
      Descriptor* from;
      std::string* into;
    } streams[] = {{&output.read, &result.output}, {&errors.read, &result.errors}};
    pollfd watched[2];
    Stream* watchedStreams[2];
    nfds_t count = 0;
    for (Stream& stream : streams) {
      if (!stream.from->open()) continue;
      watchedStreams[count] = &stream;
      watched[count++] = {stream.from->get(), POLLIN, 0};
    }
    if (::poll(watched, count, 10) <= 0) continue;
    for (nfds_t i = 0; i < count; ++i) {
      if (watched[i].revents != 0) drain(*watchedStreams[i]->from, *watchedStreams[i]->into);
    }
  }
  return result;
}

}  // namespace e2e
