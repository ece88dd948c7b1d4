#include "fileformat/dat_table_reader.h"

#include <charconv>

#include "fileformat/line_helpers.h"
#include "platform/console.h"

namespace fileformat {
namespace {

// A value of a table row: the whole token must be a number.
bool parseWholeNumber(std::string_view token, double& value) {
  if (token.starts_with('+')) token.remove_prefix(1);
  if (token.empty()) return false;
  const char* end = token.data() + token.size();
  const auto [stop, error] = std::from_chars(token.data(), end, value);
  return stop == end && error == std::errc{};
}

}  // namespace

std::vector<std::string> parseVariablesHeader(std::string_view line) {
  constexpr std::string_view keyword = "VARIABLES";
  if (!line.starts_with(keyword)) {
    platform::consoleLine("Error! parseHeader: wrong .dat file header: '" + std::string(line) +
                          "'.");
    return {};
  }
  std::size_t i = keyword.size();
  while (i < line.size() && isWhitespace(line[i])) ++i;
  if (i == line.size() || line[i] != '=') {
    platform::consoleLine("Error! parseHeader: cannot find '=': '" + std::string(line) + "'.");
    return {};
  }
  ++i;
  while (i < line.size() && isWhitespace(line[i])) ++i;
  std::vector<std::string> names;
  while (i < line.size()) {
    if (line[i] == '"') ++i;
    const std::size_t start = i;
    while (i < line.size() && line[i] != '"' && line[i] != ',') ++i;
    names.emplace_back(line.substr(start, i - start));
    if (names.size() > kMaxColumns) break;
    if (i < line.size() && line[i] == '"') ++i;
    if (i < line.size() && line[i] == ',') ++i;
    while (i < line.size() && isWhitespace(line[i])) ++i;
  }
  return names;
}

void DatTableReader::reset(const std::string& path) {
  columnNames_.clear();
  columns_.clear();
  file_ = GrowingFile(path);
  state_ = State::header;
}

Update DatTableReader::update(std::vector<QuantityGroup>& groups) {
  const auto takeLine = [&](std::string_view line) {
    processLine(trim(line), groups);
    return true;
  };
  const Update status = file_.readLines(takeLine);
  if (status != Update::rewritten) return status;
  reset(file_.path());
  groups.clear();
  file_.readLines(takeLine);
  return status;
}

void DatTableReader::processLine(std::string_view line, std::vector<QuantityGroup>& groups) {
  if (isCommentLine(line)) return;
  switch (state_) {
    case State::header:
      if (line.starts_with("VARIABLES ")) readHeader(line, groups);
      break;
    case State::zone:
      if (line.starts_with("ZONE")) state_ = State::rows;
      break;
    case State::rows:
      // A zone line among the rows starts another zone of the same table.
      if (!line.starts_with("ZONE")) readRow(line, groups);
      break;
  }
}

void DatTableReader::readHeader(std::string_view line, std::vector<QuantityGroup>& groups) {
  columnNames_ = parseVariablesHeader(line);
  if (columnNames_.size() > kMaxColumns) {
    reportTooManyColumns(file_.path());
    columnNames_.resize(kMaxColumns);
  }
  columns_.assign(columnNames_.size(), Column{});
  for (std::size_t c = 0; c < columnNames_.size(); ++c) {
    const auto split = splitTrailingNumber(columnNames_[c]);
    if (!split) continue;
    const long number = split->second;
    const long held = static_cast<long>(groups.size());
    if (number >= 1 && number == held) {
      // Another quantity of the last group.
    } else if (number == held + 1) {
      groups.resize(static_cast<std::size_t>(number));
    } else {
      continue;
    }
    QuantityGroup& group = groups[static_cast<std::size_t>(number - 1)];
    columns_[c] = {true, static_cast<int>(number - 1), static_cast<int>(group.names.size())};
    group.names.push_back(split->first);
    group.values.emplace_back();
  }
  state_ = State::rows;
}

void DatTableReader::readRow(std::string_view line, std::vector<QuantityGroup>& groups) {
  std::vector<double> row;
  row.reserve(columns_.size());
  std::size_t i = 0;
  while (row.size() < columns_.size()) {
    while (i < line.size() && isWhitespace(line[i])) ++i;
    const std::size_t start = i;
    while (i < line.size() && !isWhitespace(line[i])) ++i;
    double value = 0.0;
    if (!parseWholeNumber(line.substr(start, i - start), value)) break;
    row.push_back(value);
  }
  if (row.size() < columns_.size() || columns_.empty()) {
    platform::consoleLine("wrong syntax");
    return;
  }
  for (std::size_t c = 0; c < columns_.size(); ++c) {
    const Column& column = columns_[c];
    if (!column.used) continue;
    groups[static_cast<std::size_t>(column.group)]
        .values[static_cast<std::size_t>(column.slot)]
        .push_back(row[c]);
  }
}

}  // namespace fileformat
