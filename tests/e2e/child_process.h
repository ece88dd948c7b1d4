// A program started in the background, its standard output and error
// collected as it runs: for programs the tests must talk to while they run
// (send a signal once they have written something, start another program
// beside them), without the temporary installation the monitor needs.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace e2e {

class ChildProcess {
 public:
  // Starts `program` with `arguments` (without the program name) in the
  // test's own environment and working folder.
  ChildProcess(const std::string& program, const std::vector<std::string>& arguments);
  // A child still running is killed (SIGKILL) and reaped.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Collects output until `ready(standard output)` holds; false when the
  // child ended first or `timeout` passed.
  bool waitForOutput(const std::function<bool(const std::string&)>& ready,
                     std::chrono::milliseconds timeout);
  // Collects output until the child has written `count` lines.
  bool waitForLines(std::size_t count, std::chrono::milliseconds timeout);
  void sendSignal(int number);
  // Collects output until the child ends; false (after killing it) when it
  // does not end within `timeout`.
  bool finish(std::chrono::milliseconds timeout);

  const std::string& output() const { return output_; }
  const std::string& errors() const { return errors_; }
  // Standard output cut at its line ends (text after the last one is left out).
  std::vector<std::string> outputLines() const;
  bool exited() const { return exited_; }
  int exitStatus() const { return exitStatus_; }
  bool running() const { return !reaped_; }

 private:
  // Reads what the child wrote within `wait`; reaps it once both streams end.
  void collect(std::chrono::milliseconds wait);
  void reap(bool block);

  pid_t pid_ = -1;
  int outputPipe_ = -1;
  int errorPipe_ = -1;
  std::string output_;
  std::string errors_;
  bool reaped_ = false;
  bool exited_ = false;
  int exitStatus_ = -1;
};

}  // namespace e2e
