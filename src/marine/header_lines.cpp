#include "marine/header_lines.h"

#include "fileformat/appended_lines.h"
#include "fileformat/line_helpers.h"

namespace marine {
namespace {

std::string_view firstWordOf(std::string_view line) {
  std::size_t end = 0;
  while (end < line.size() && !fileformat::isWhitespace(line[end])) ++end;
  return line.substr(0, end);
}

}  // namespace

HeaderLines HeaderLines::ofFile(const std::string& path, bool stopAtFirstRow, bool& opened) {
  std::vector<std::string> lines;
  int depth = 0;
  fileformat::AppendedLines file(path);
  const auto status = file.read([&](std::string_view raw) {
    const std::string_view line = fileformat::trim(raw);
    const std::string_view word = firstWordOf(line);
    if (word == "#QV_BEGIN") ++depth;
    if (stopAtFirstRow && depth == 0 && !line.empty() && !line.starts_with("#")) return false;
    if (word == "#QV_END" && depth > 0) --depth;
    lines.emplace_back(line);
    return true;
  });
  opened = status != fileformat::AppendedLines::Status::missing;
  return HeaderLines(std::move(lines));
}

std::string_view HeaderLines::current() const {
  return atEnd() ? std::string_view{} : std::string_view(lines_[position_]);
}

std::string_view HeaderLines::keyword() const { return firstWordOf(current()); }

std::string_view HeaderLines::rest() const { return fileformat::trim(current().substr(keyword().size())); }

}  // namespace marine
