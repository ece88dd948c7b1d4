// Numbers as the watch writes them, whatever the locale: '.' as the decimal
// point, no grouping.
#pragma once

#include <string>

namespace watch {

// The shortest text that reads back as the same double ("0.1", "1e+20",
// "-3.25"); for JSON and CSV. The value must be finite.
std::string exactNumber(double value);

// Six significant digits ("1.23457e-05"), for the table.
std::string shortNumber(double value);

}  // namespace watch
