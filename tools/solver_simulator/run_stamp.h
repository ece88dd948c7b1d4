// The moment a solver run started, as the first line of the residual file
// gives it: "#CREATED dd/mm/yyyy hh:mm:ss", in local time.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace solver_simulator {

struct RunStamp {
  int year = 2026;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;

  // The current local time.
  static RunStamp now();
  // A stamp written "dd/mm/yyyy hh:mm:ss"; nothing for any other text or an
  // impossible date or time.
  static std::optional<RunStamp> parse(std::string_view text);

  // "dd/mm/yyyy hh:mm:ss".
  std::string text() const;
  // The stamp `seconds` later, carried over minutes, days, months and years.
  RunStamp plusSeconds(long long seconds) const;

  auto operator<=>(const RunStamp&) const = default;
};

}  // namespace solver_simulator
