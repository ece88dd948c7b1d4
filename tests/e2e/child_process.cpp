#include "child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

extern char** environ;

namespace e2e {
namespace {

using Clock = std::chrono::steady_clock;

void makePipe(int ends[2]) {
  if (::pipe2(ends, O_CLOEXEC) != 0)
    throw std::system_error(errno, std::generic_category(), "pipe2");
}

// Reads what is there; closes the descriptor at the end of the stream.
void drain(int& descriptor, std::string& into) {
  char buffer[4096];
  const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
  if (count > 0) {
    into.append(buffer, static_cast<std::size_t>(count));
  } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
    ::close(descriptor);
    descriptor = -1;
  }
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const std::vector<std::string>& arguments) {
  int output[2];
  int errors[2];
  makePipe(output);
  makePipe(errors);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const int failed = ::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(output[1]);
  ::close(errors[1]);
  outputPipe_ = output[0];
  errorPipe_ = errors[0];
  if (failed != 0) {
    ::close(outputPipe_);
    ::close(errorPipe_);
    throw std::system_error(failed, std::generic_category(), "posix_spawn " + program);
  }
}

ChildProcess::~ChildProcess() {
  if (!reaped_) {
    ::kill(pid_, SIGKILL);
    reap(true);
  }
  if (outputPipe_ >= 0) ::close(outputPipe_);
  if (errorPipe_ >= 0) ::close(errorPipe_);
}

void ChildProcess::reap(bool block) {
  int status = 0;
  if (reaped_ || ::waitpid(pid_, &status, block ? 0 : WNOHANG) != pid_) return;
  reaped_ = true;
  exited_ = WIFEXITED(status);
  if (exited_) exitStatus_ = WEXITSTATUS(status);
}

void ChildProcess::collect(std::chrono::milliseconds wait) {
  pollfd watched[2];
  std::string* into[2];
  int* descriptors[2];
  nfds_t count = 0;
  for (auto [descriptor, text] :
       {std::pair{&outputPipe_, &output_}, std::pair{&errorPipe_, &errors_}}) {
    if (*descriptor < 0) continue;
    watched[count] = {*descriptor, POLLIN, 0};
    into[count] = text;
    descriptors[count++] = descriptor;
  }
  if (count == 0) {
    reap(false);
    if (!reaped_) ::usleep(static_cast<useconds_t>(std::min<long>(wait.count(), 10) * 1000));
    return;
  }
  if (::poll(watched, count, static_cast<int>(wait.count())) <= 0) return;
  for (nfds_t i = 0; i < count; ++i) {
    if (watched[i].revents != 0) drain(*descriptors[i], *into[i]);
  }
}

bool ChildProcess::waitForOutput(const std::function<bool(const std::string&)>& ready,
                                 std::chrono::milliseconds timeout) {
  const Clock::time_point deadline = Clock::now() + timeout;
  while (!ready(output_)) {
    if (Clock::now() >= deadline) return false;
    if (outputPipe_ < 0 && errorPipe_ < 0) {
      reap(false);
      if (reaped_) return false;
    }
    collect(std::chrono::milliseconds(10));
  }
  return true;
}

bool ChildProcess::waitForLines(std::size_t count, std::chrono::milliseconds timeout) {
  return waitForOutput(
      [count](const std::string& text) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) >= count;
      },
      timeout);
}

void ChildProcess::sendSignal(int number) {
  if (!reaped_) ::kill(pid_, number);
}

bool ChildProcess::finish(std::chrono::milliseconds timeout) {
  const Clock::time_point deadline = Clock::now() + timeout;
  while (outputPipe_ >= 0 || errorPipe_ >= 0 || !reaped_) {
    if (Clock::now() >= deadline) {
      ::kill(pid_, SIGKILL);
      reap(true);
      return false;
    }
    collect(std::chrono::milliseconds(10));
    if (outputPipe_ < 0 && errorPipe_ < 0) reap(false);
  }
  return true;
}

std::vector<std::string> ChildProcess::outputLines() const {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = output_.find('\n'); end != std::string::npos;
       end = output_.find('\n', start)) {
    lines.push_back(output_.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

}  // namespace e2e
