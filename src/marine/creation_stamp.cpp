#include "marine/creation_stamp.h"

#include <array>
#include <limits>

#include "fileformat/input_file.h"
#include "fileformat/line_helpers.h"
#include "fileformat/number_text.h"
#include "platform/console.h"

namespace marine {
namespace {

constexpr std::string_view kStampKeyword = "#CREATED ";
// The stamp stands in the first comment lines, well within this.
constexpr std::size_t kStampPrefixBytes = 64 * 1024;
constexpr std::size_t kStampBlockBytes = 4096;

// Up to three numbers of `text` separated by any of `separators`, each read
// as its leading digits.
std::array<int, 3> threeNumbers(std::string_view text, std::string_view separators) {
  std::array<int, 3> numbers{};
  for (int& number : numbers) {
    const std::size_t start = text.find_first_not_of(separators);
    if (start == std::string_view::npos) break;
    text.remove_prefix(start);
    number = static_cast<int>(fileformat::leadingInteger(text, std::numeric_limits<int>::min(),
                                                         std::numeric_limits<int>::max()));
    const std::size_t end = text.find_first_of(separators);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end);
  }
  return numbers;
}

bool isLeapYear(long year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

}  // namespace

std::optional<std::string> creationStampOf(const std::string& residualPath) {
  // Only the leading comment lines are read, a block at a time up to a
  // limit: the check runs at every refresh and must cost the same whatever
  // the file holds below them.
  fileformat::InputFile file = fileformat::InputFile::open(residualPath);
  if (!file) return std::nullopt;
  std::string text;
  std::size_t lineStart = 0;
  while (text.size() < kStampPrefixBytes) {
    const std::size_t held = text.size();
    text.resize(held + kStampBlockBytes);
    text.resize(held + file.readAt(held, text.data() + held, kStampBlockBytes));
    // A line without its line feed is still being written.
    for (std::size_t end = text.find('\n', lineStart); end != std::string::npos;
         end = text.find('\n', lineStart)) {
      const std::string_view line = fileformat::withoutCarriageReturn(
          std::string_view(text).substr(lineStart, end - lineStart));
      if (!line.starts_with('#')) return std::string();
      if (line.starts_with(kStampKeyword)) return std::string(line.substr(kStampKeyword.size()));
      lineStart = end + 1;
    }
    if (text.size() < held + kStampBlockBytes) break;  // the end of the file
  }
  return std::string();
}

std::string readResCreationDate(const std::string& residualPath) {
  std::optional<std::string> stamp = creationStampOf(residualPath);
  if (!stamp)
    platform::consoleLine("Error in readResCreationDate! Could not read '" + residualPath + "'.");
  return stamp.value_or(std::string());
}

std::optional<long> julianDay(int day, int month, int year) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12 || day < 1) return std::nullopt;
  const int length =
      kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && isLeapYear(year) ? 1 : 0);
  if (day > length) return std::nullopt;
  const long a = (14 - month) / 12;
  const long y = static_cast<long>(year) + 4800 - a;
  const long m = month + 12 * a - 3;
  return day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045;
}

std::optional<std::time_t> stampTime(std::string_view stamp) {
  const std::size_t blank = stamp.rfind(' ');
  if (stamp.empty() || stamp == "not_found" || blank == std::string_view::npos) return std::nullopt;
  const auto [day, month, rawYear] = threeNumbers(stamp.substr(0, blank), "/ ");
  const auto [hours, minutes, seconds] = threeNumbers(stamp.substr(blank + 1), ": ");
  const int year = rawYear <= 99 ? rawYear + 1900 : rawYear;
  const std::optional<long> dayNumber = julianDay(day, month, year);
  if (!dayNumber) return std::nullopt;
  // The day number, back to a calendar date for the local time zone.
  constexpr long kUnixEpochDay = 2440588;
  std::tm local{};
  local.tm_year = 70;
  local.tm_mday = 1 + static_cast<int>(*dayNumber - kUnixEpochDay);
  local.tm_hour = hours;
  local.tm_min = minutes;
  local.tm_sec = seconds;
  local.tm_isdst = -1;
  const std::time_t time = std::mktime(&local);
  if (time == static_cast<std::time_t>(-1)) return std::nullopt;
  return time;
}

std::string formatStampTime(std::optional<std::time_t> time) {
  if (!time) return "unknown";
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &*time);
#else
  localtime_r(&*time, &local);
#endif
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  return text;
}

}  // namespace marine
