#include "marine/motion_history.h"

#include "fileformat/token_stream.h"
#include "platform/console.h"

namespace marine {

void MotionHistory::open(const std::string& path) {
  lines_ = fileformat::AppendedLines(path);
  columnsFound_ = false;
  columnNames_.clear();
  times_.clear();
  values_.clear();
  findColumns(true);
}

bool MotionHistory::findColumns(bool report) {
  const auto status = lines_.read([this](std::string_view line) {
    if (columnsFound_) return false;
    const std::size_t at = line.find("#COLUMNS");
    if (at == std::string_view::npos) return true;
    fileformat::TokenStream tokens(line.substr(at + 8));
    std::string_view token;
    while (tokens.next(token)) {
      if (token != "T" && token != "=") columnNames_.emplace_back(token);
    }
    values_.resize(columnNames_.size());
    columnsFound_ = true;
    return true;
  });
  if (!columnsFound_) {
    if (report) platform::consoleLine("#COLUMNS line is not found in " + lines_.path());
    // Look through the whole file again next time.
    lines_.restart();
    return false;
  }
  return status == fileformat::AppendedLines::Status::read;
}

bool MotionHistory::takeRow(std::string_view line) {
  fileformat::TokenStream tokens(line, fileformat::TokenStream::MissingReal::quiet);
  std::string_view token;
  if (line.starts_with("#") || !tokens.next(token)) return true;
  std::vector<double> row;
  row.reserve(columnNames_.size() + 1);
  row.push_back(fileformat::isNonFiniteToken(token) ? 1.0 : fileformat::tokenReal(token));
  while (row.size() <= columnNames_.size() && tokens.next(token)) {
    row.push_back(fileformat::isNonFiniteToken(token) ? 1.0 : fileformat::tokenReal(token));
  }
  if (row.size() <= columnNames_.size()) {
    platform::consoleLine("Bad File Format");
    return true;
  }
  times_.push_back(row[0]);
  for (std::size_t c = 0; c < columnNames_.size(); ++c) values_[c].push_back(row[c + 1]);
  return true;
}

bool MotionHistory::update() {
  if (!isOpen()) return false;
  if (!columnsFound_ && !findColumns(false)) return false;
  const auto status = lines_.read([this](std::string_view line) { return takeRow(line); });
  if (status != fileformat::AppendedLines::Status::read) return false;
  platform::consoleLine("File End is reached");
  return true;
}

}  // namespace marine
