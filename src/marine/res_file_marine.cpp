#include "marine/res_file_marine.h"

#include <filesystem>
#include <fstream>

#include "fileformat/line_helpers.h"
#include "fileformat/token_stream.h"
#include "platform/console.h"

namespace marine {
namespace {

std::string_view firstWord(std::string_view line) {
  line = fileformat::trim(line);
  std::size_t end = 0;
  while (end < line.size() && !fileformat::isWhitespace(line[end])) ++end;
  return line.substr(0, end);
}

}  // namespace

double IteResMarine::valueAt(long long position) const {
  if (position < 0 || static_cast<std::size_t>(position) >= values_.size()) return 0.0;
  return values_[static_cast<std::size_t>(position)];
}

double IteResMarine::valueOf(std::string_view residual) const {
  const std::optional<int> name = indexIn(kResidualNames, residual);
  return valueAt(name ? map_[static_cast<std::size_t>(*name)] : 0);
}

ResFileMarine::ResFileMarine(std::string path) : QVfile(std::move(path)), file_(this->path()) {
  columnMap_.fill(-1);
}

void ResFileMarine::restart() {
  file_.restart();
  headerRead_ = false;
  insideBlock_ = false;
  columnsValid_ = true;
  modeText_.clear();
  runMode_ = RunMode::unknown;
  skipCount_ = 1;
  columnMap_.fill(-1);
  residualCount_ = 0;
  iterations_.clear();
  values_.clear();
}

bool ResFileMarine::takeHeaderLine(std::string_view line) {
  const std::string_view word = firstWord(line);
  if (word == "#QV_BEGIN") {
    insideBlock_ = true;
  } else if (word == "#QV_END") {
    insideBlock_ = false;
  } else if (word == "MODE" && insideBlock_) {
    modeText_ = fileformat::trim(fileformat::trim(line).substr(word.size()));
    if (modeText_ == "STEADY") {
      runMode_ = RunMode::steady;
      skipCount_ = 1;
    } else if (modeText_ == "UNSTEADY") {
      runMode_ = RunMode::unsteady;
      skipCount_ = 2;
    }
  } else if (word == "#COLUMNS") {
    fileformat::TokenStream tokens(line.substr(line.find("#COLUMNS") + 8));
    std::string column;
    residualCount_ = 0;
    columnMap_.fill(-1);
    while (!tokens.eof() && tokens.readWord(column)) {
      if (column == "t" || column == "cpums" || column == "itnl" || column == "=") continue;
      const std::optional<int> residual = indexIn(kResidualNames, column);
      if (!residual) {
        platform::consoleLine("*** Parameter : " + column + " in file: " + path() +
                              " is not found");
        columnsValid_ = false;
        break;
      }
      columnMap_[static_cast<std::size_t>(*residual)] = static_cast<int>(residualCount_++);
    }
  } else if (!insideBlock_ && !line.starts_with("#")) {
    return false;
  }
  return true;
}

bool ResFileMarine::readHeader() {
  if (headerRead_) return true;
  const auto status =
      file_.readLines([this](std::string_view line) { return takeHeaderLine(line); });
  if (status == fileformat::Update::missing) {
    platform::consoleLine("Residual file " + path() + " is not found");
    return false;
  }
  if (status == fileformat::Update::rewritten) {
    restart();
    return readHeader();
  }
  // A failed header keeps what was read of it: it is completed as the file
  // grows, and read again from the top only when the file is rewritten.
  if (runMode_ == RunMode::unknown) {
    platform::consoleLine("BAD FILE FORMAT .res");
    return false;
  }
  if (!columnsValid_) return false;
  headerRead_ = true;
  return true;
}

bool ResFileMarine::takeRow(std::string_view line) {
  // A columns line that arrives after the rest of the header still counts,
  // as long as no row was read under the old one.
  if (line.starts_with("#COLUMNS") && recordCount() == 0) return takeHeaderLine(line);
  if (line.starts_with("#") || fileformat::trim(line).empty()) return true;
  fileformat::TokenStream tokens(line, fileformat::TokenStream::MissingReal::quiet);
  std::int32_t iteration = 0;
  if (!tokens.readInteger(iteration)) return true;
  float skipped = 0.0f;
  for (int i = 0; i < skipCount_; ++i) {
    if (!tokens.readReal(skipped)) return true;  // a damaged row: not a record
  }
  if (iterations_.empty() && bytesAhead_ != 0) {
    const std::size_t rows =
        static_cast<std::size_t>(bytesAhead_ / (line.size() + 1)) * 21 / 20 + 16;
    iterations_.reserve(rows);
    values_.reserve(rows * residualCount_);
  }
  const std::size_t held = values_.size();
  values_.resize(held + residualCount_);
  for (std::size_t r = 0; r < residualCount_; ++r) {
    float value = 0.0f;
    if (!tokens.readReal(value)) {
      values_.resize(held);
      return true;
    }
    values_[held + r] = value;
  }
  iterations_.push_back(iteration);
  return true;
}

fileformat::Update ResFileMarine::update() {
  if (!headerRead_ && !readHeader()) {
    return file_.present() ? fileformat::Update::unchanged : fileformat::Update::missing;
  }
  const std::size_t before = recordCount();
  if (before == 0) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path(), error);
    bytesAhead_ = error || size < file_.offset() ? 0 : size - file_.offset();
  }
  const auto status = file_.readLines([this](std::string_view line) { return takeRow(line); });
  if (status == fileformat::Update::rewritten) {
    restart();
    return status;
  }
  if (status == fileformat::Update::missing) return status;
  return recordCount() > before ? fileformat::Update::appended : fileformat::Update::unchanged;
}

IteResMarine ResFileMarine::record(std::size_t index) const {
  return IteResMarine(
      iterations_[index],
      std::span<const double>(values_.data() + index * residualCount_, residualCount_), columnMap_);
}

std::int32_t ResFileMarine::previousIterationNumber() const {
  return iterations_.size() < 2 ? 0 : iterations_[iterations_.size() - 2];
}

void ResFileMarine::write() const {
  std::ofstream out(path());
  if (!out) {
    platform::consoleLine("*** ResFileMarine  :: write() Cannot open the file :");
    platform::consoleLine("\t\t\t      " + path());
    return;
  }
  out << static_cast<int>(runMode_) << ' ' << skipCount_ << '\n';
  for (const std::int32_t iteration : iterations_) out << iteration << '\n';
}

}  // namespace marine
