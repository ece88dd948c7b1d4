// The console: standard output, flushed after every write so that the
// program's lines and the scripts' own output appear in the order written.
#pragma once

#include <ostream>
#include <string_view>

namespace platform {

// Writes the text as it stands, then flushes.
void consoleWrite(std::string_view text);

// Writes the text and a newline, then flushes.
void consoleLine(std::string_view text);

// Sends console output to another stream until the returned guard is
// destroyed; lets tests read exactly what a function prints.
class ConsoleRedirect {
 public:
  explicit ConsoleRedirect(std::ostream& target);
  ~ConsoleRedirect();
  ConsoleRedirect(const ConsoleRedirect&) = delete;
  ConsoleRedirect& operator=(const ConsoleRedirect&) = delete;

 private:
  std::ostream* previous_;
};

}  // namespace platform
