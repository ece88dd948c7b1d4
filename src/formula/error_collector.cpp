#include "formula/error_collector.h"

namespace formula {
namespace {

std::string& collector() {
  static std::string text;
  return text;
}

}  // namespace

void collectError(std::string_view message) {
  std::string& text = collector();
  if (text.find(message) == std::string::npos) text += message;
}

const std::string& collectedErrors() { return collector(); }

void clearCollectedErrors() { collector().clear(); }

}  // namespace formula
