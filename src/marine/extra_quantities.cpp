#include "marine/extra_quantities.h"

#include <charconv>

#include "fileformat/line_helpers.h"
#include "platform/console.h"

namespace marine {
namespace {

std::string trimBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

}  // namespace

std::pair<std::string, std::string> splitTitle(std::string_view title) {
  const std::size_t open = title.find('[');
  const std::size_t close = title.rfind(']');
  if (open == std::string_view::npos || close == std::string_view::npos || open == 0 ||
      close == 0 || open > close) {
    return {trimBlanks(title), std::string()};
  }
  return {trimBlanks(title.substr(0, open - 1)),
          trimBlanks(title.substr(open + 1, close - open - 1))};
}

std::vector<double> readDataLine(std::string_view line, std::size_t count) {
  // Numbers are taken one after the other as a stream reads them: each
  // starts where the previous one stopped ("1-2" is 1 and -2), and the first
  // text that is not a number ends the line.
  std::vector<double> values;
  std::size_t i = 0;
  while (values.size() < count) {
    while (i < line.size() && fileformat::isWhitespace(line[i])) ++i;
    const std::size_t start = i;
    if (i < line.size() && (line[i] == '+' || line[i] == '-')) ++i;
    double value = 0.0;
    const char* end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data() + i, end, value);
    if (stop == line.data() + i || error != std::errc{}) break;
    values.push_back(start < line.size() && line[start] == '-' ? -value : value);
    i = static_cast<std::size_t>(stop - line.data());
  }
  if (values.size() < count) {
    platform::consoleLine("Warning! Unfinished line '" + std::string(line) + ". Expected " +
                          std::to_string(count) + " values in the line.");
    values.resize(count, 0.0);
  }
  return values;
}

void ExtraQuantities::reset(const std::string& folder) {
  file_ = fileformat::GrowingFile(folder + "user_data.csv");
  headerRead_ = false;
  quantities_.clear();
}

bool ExtraQuantities::take(std::string_view line) {
  if (!headerRead_) {
    std::size_t start = 0;
    for (;;) {
      if (quantities_.size() == fileformat::kMaxColumns) {
        fileformat::reportTooManyColumns(file_.path());
        break;
      }
      const std::size_t tab = line.find('\t', start);
      auto [name, unit] =
          splitTitle(line.substr(start, tab == std::string_view::npos ? tab : tab - start));
      quantities_.push_back({std::move(name), std::move(unit), 0, {}});
      if (tab == std::string_view::npos) break;
      start = tab + 1;
    }
    headerRead_ = true;
    return true;
  }
  const std::vector<double> values = readDataLine(line, quantities_.size());
  for (std::size_t q = 0; q < quantities_.size(); ++q) quantities_[q].values.push_back(values[q]);
  return true;
}

fileformat::Update ExtraQuantities::update() {
  const auto status = file_.readLines([this](std::string_view line) { return take(line); });
  if (status != fileformat::Update::rewritten) return status;
  std::vector<int> positions;
  for (const ExtraQuantity& quantity : quantities_) positions.push_back(quantity.currentIteration);
  headerRead_ = false;
  quantities_.clear();
  file_.readLines([this](std::string_view line) { return take(line); });
  for (std::size_t q = 0; q < quantities_.size() && q < positions.size(); ++q) {
    quantities_[q].currentIteration = positions[q];
  }
  return status;
}

}  // namespace marine
