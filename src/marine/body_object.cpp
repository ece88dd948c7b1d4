#include "marine/body_object.h"

#include <charconv>

#include "fileformat/line_helpers.h"
#include "platform/console.h"

namespace marine {
namespace {

// Three blank-separated numbers, each written whole.
bool readThreeNumbers(std::string_view text, std::array<double, 3>& values) {
  std::array<double, 3> read{};
  std::size_t i = 0;
  for (double& value : read) {
    while (i < text.size() && fileformat::isWhitespace(text[i])) ++i;
    const std::size_t start = i;
    while (i < text.size() && !fileformat::isWhitespace(text[i])) ++i;
    std::string_view token = text.substr(start, i - start);
    if (token.starts_with('+')) token.remove_prefix(1);
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
    if (token.empty() || error != std::errc{} || end != token.data() + token.size()) return false;
  }
  values = read;
  return true;
}

}  // namespace

bool SubBodyObject::readBlock(HeaderLines& lines) {
  for (; !lines.atEnd(); lines.advance()) {
    const std::string_view keyword = lines.keyword();
    if (keyword == "NAME") {
      name_ = lines.rest();
    } else if (keyword == "#QV_END") {
      lines.advance();
      return true;
    }
  }
  return false;
}

bool BodyObject::readBlock(HeaderLines& lines) {
  while (!lines.atEnd()) {
    const std::string_view keyword = lines.keyword();
    if (keyword == "NAME") {
      name_ = lines.rest();
    } else if (keyword == "GRAVITY_CENTER") {
      if (readThreeNumbers(lines.rest(), gravityCentre_)) hasGravityCentre_ = true;
    } else if (keyword == "#QV_END") {
      lines.advance();
      return true;
    } else if (keyword == "#QV_BEGIN") {
      lines.advance();
      if (lines.keyword() == "SUBBODY") {
        lines.advance();
        SubBodyObject subBody;
        if (!subBody.readBlock(lines)) return false;
        subBodies_.push_back(std::move(subBody));
        continue;
      }
      continue;
    }
    lines.advance();
  }
  return false;
}

void BodyObject::setRunMode(bool unsteady) {
  setConvergedSeries(unsteady);
  for (SubBodyObject& subBody : subBodies_) subBody.setConvergedSeries(unsteady);
}

bool BodyObject::addRowKey(std::string_view name, double value) {
  if (name == "T") {
    times_.push_back(value);
  } else if (name == "itnl") {
    iterations_.push_back(static_cast<std::int32_t>(value));
  } else {
    platform::consoleLine("Problem in iteration. Parametre unknown: " + std::string(name));
    return false;
  }
  return true;
}

}  // namespace marine
