#include "solver_simulator/run_stamp.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace solver_simulator {
namespace {

using std::chrono::days;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

// Reads a number of exactly `width` digits followed by `separator` ('\0':
// the end of the text).
bool readField(std::string_view& text, std::size_t width, char separator, int& value) {
  const std::string_view digits = text.substr(0, width);
  if (digits.size() != width || digits.find_first_not_of("0123456789") != std::string_view::npos) {
    return false;
  }
  std::from_chars(digits.data(), digits.data() + width, value);
  text.remove_prefix(width);
  if (separator == '\0') return text.empty();
  if (text.empty() || text.front() != separator) return false;
  text.remove_prefix(1);
  return true;
}

std::chrono::year_month_day dateOf(const RunStamp& stamp) {
  return {std::chrono::year(stamp.year), std::chrono::month(static_cast<unsigned>(stamp.month)),
          std::chrono::day(static_cast<unsigned>(stamp.day))};
}

}  // namespace

RunStamp RunStamp::now() {
  const std::time_t moment = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &moment);
#else
  localtime_r(&moment, &local);
#endif
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

std::optional<RunStamp> RunStamp::parse(std::string_view text) {
  RunStamp stamp;
  if (!readField(text, 2, '/', stamp.day) || !readField(text, 2, '/', stamp.month) ||
      !readField(text, 4, ' ', stamp.year) || !readField(text, 2, ':', stamp.hour) ||
      !readField(text, 2, ':', stamp.minute) || !readField(text, 2, '\0', stamp.second)) {
    return std::nullopt;
  }
  if (!dateOf(stamp).ok() || stamp.hour > 23 || stamp.minute > 59 || stamp.second > 59) {
    return std::nullopt;
  }
  return stamp;
}

std::string RunStamp::text() const {
  char text[32];
  std::snprintf(text, sizeof text, "%02d/%02d/%04d %02d:%02d:%02d", day, month, year, hour, minute,
                second);
  return text;
}

RunStamp RunStamp::plusSeconds(long long count) const {
  const sys_seconds moment =
      sys_days(dateOf(*this)) + seconds(hour * 3600LL + minute * 60LL + second + count);
  const sys_days date = std::chrono::floor<days>(moment);
  const std::chrono::year_month_day calendar(date);
  const long long inDay = (moment - date).count();
  return {static_cast<int>(calendar.year()),
          static_cast<int>(static_cast<unsigned>(calendar.month())),
          static_cast<int>(static_cast<unsigned>(calendar.day())),
          static_cast<int>(inDay / 3600),
          static_cast<int>(inDay / 60 % 60),
          static_cast<int>(inDay % 60)};
}

}  // namespace solver_simulator
