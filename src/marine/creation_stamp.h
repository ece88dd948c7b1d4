// The creation stamp of a solver run: the text after "#CREATED " on one of
// the leading comment lines of the residual file,
//   #CREATED 07/03/2018 13:34:44
// A new stamp on disk means that the solver was started again on the case.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace marine {

// The stamp of the residual file; empty without one. Prints "Error in
// readResCreationDate! Could not read '<path>'." when the file cannot be read.
std::string readResCreationDate(const std::string& residualPath);

// The same, quietly: nothing when the file cannot be read.
std::optional<std::string> creationStampOf(const std::string& residualPath);

// The moment a stamp "day/month/year hours:minutes:seconds" names, in the
// local time zone (years of 99 or less are in the 1900s); nothing for
// "not_found", an empty text, a text without a blank or an impossible date.
std::optional<std::time_t> stampTime(std::string_view stamp);

// Day number of a date of the proleptic Gregorian calendar (Julian day);
// nothing for an impossible date.
std::optional<long> julianDay(int day, int month, int year);

// The time as "YYYY-MM-DD hh:mm:ss", local time; "unknown" for none.
std::string formatStampTime(std::optional<std::time_t> time);

}  // namespace marine
