// Collects what the code under test prints on the console.
#pragma once

#include <sstream>
#include <string>

#include "platform/console.h"

class ConsoleCapture {
 public:
  ConsoleCapture() : redirect_(text_) {}
  std::string text() const { return text_.str(); }

 private:
  std::ostringstream text_;
  platform::ConsoleRedirect redirect_;
};
