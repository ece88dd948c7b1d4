#include "marine/motion_history.h"

#include "fileformat/line_helpers.h"
#include "fileformat/token_stream.h"
#include "platform/console.h"

namespace marine {

void MotionHistory::open(const std::string& path) {
  file_ = fileformat::GrowingFile(path);
  forget();
  findColumns(true);
}

void MotionHistory::forget() {
  columnsFound_ = false;
  columnNames_.clear();
  times_.clear();
  values_.clear();
}

bool MotionHistory::findColumns(bool report) {
  const auto status = file_.readLines([this](std::string_view line) {
    if (columnsFound_) return false;
    const std::size_t at = line.find("#COLUMNS");
    if (at == std::string_view::npos) return true;
    fileformat::TokenStream tokens(line.substr(at + 8));
    std::string_view token;
    while (tokens.next(token)) {
      if (token == "T" || token == "=") continue;
      if (columnNames_.size() == fileformat::kMaxColumns) {
        fileformat::reportTooManyColumns(file_.path());
        break;
      }
      columnNames_.emplace_back(token);
    }
    values_.resize(columnNames_.size());
    columnsFound_ = true;
    return true;
  });
  if (status == fileformat::Update::rewritten) {
    forget();
    return findColumns(report);
  }
  if (!columnsFound_ && report)
    platform::consoleLine("#COLUMNS line is not found in " + file_.path());
  return columnsFound_;
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

fileformat::Update MotionHistory::update() {
  if (!isOpen()) return fileformat::Update::missing;
  if (!columnsFound_ && !findColumns(false)) {
    return file_.present() ? fileformat::Update::unchanged : fileformat::Update::missing;
  }
  auto status = file_.readLines([this](std::string_view line) { return takeRow(line); });
  if (status == fileformat::Update::rewritten) {
    forget();
    findColumns(true);
    file_.readLines([this](std::string_view line) { return takeRow(line); });
  }
  if (status == fileformat::Update::missing) return status;
  platform::consoleLine("File End is reached");
  return status;
}

}  // namespace marine
