#include "marine/header_lines.h"

#include "fileformat/growing_file.h"
#include "fileformat/line_helpers.h"

namespace marine {
namespace {

// Far more than any body description holds; a file past it is no header.
constexpr std::size_t kMaxHeaderBytes = std::size_t{4} << 20;

std::string_view firstWordOf(std::string_view line) {
  std::size_t end = 0;
  while (end < line.size() && !fileformat::isWhitespace(line[end])) ++end;
  return line.substr(0, end);
}

}  // namespace

HeaderLines HeaderLines::ofFile(const std::string& path, bool stopAtFirstRow) {
  std::vector<std::string> lines;
  int depth = 0;
  fileformat::GrowingFile file(path);
  std::size_t held = 0;
  file.readLines([&](std::string_view raw) {
    const std::string_view line = fileformat::trim(raw);
    const std::string_view word = firstWordOf(line);
    if (word == "#QV_BEGIN") ++depth;
    if (stopAtFirstRow && depth == 0 && !line.empty() && !line.starts_with("#")) return false;
    if (word == "#QV_END" && depth > 0) --depth;
    held += line.size();
    if (held > kMaxHeaderBytes) return false;
    lines.emplace_back(line);
    return true;
  });
  return HeaderLines(std::move(lines));
}

std::string_view HeaderLines::current() const {
  return atEnd() ? std::string_view{} : std::string_view(lines_[position_]);
}

std::string_view HeaderLines::keyword() const { return firstWordOf(current()); }

std::string_view HeaderLines::rest() const {
  return fileformat::trim(current().substr(keyword().size()));
}

}  // namespace marine
