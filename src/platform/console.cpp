#include "platform/console.h"

#include <iostream>

namespace platform {
namespace {

std::ostream* consoleTarget = &std::cout;

}  // namespace

void consoleWrite(std::string_view text) {
  *consoleTarget << text;
  consoleTarget->flush();
}

void consoleLine(std::string_view text) {
  *consoleTarget << text << '\n';
  consoleTarget->flush();
}

ConsoleRedirect::ConsoleRedirect(std::ostream& target) : previous_(consoleTarget) {
  consoleTarget = &target;
}

ConsoleRedirect::~ConsoleRedirect() { consoleTarget = previous_; }

}  // namespace platform
