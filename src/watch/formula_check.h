// Whether a formula of --formula can be read at all, before any computation
// is loaded: its names are not known yet, so only its shape is checked.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace watch {

// Why the formula cannot be read (bad syntax, an unknown function, nesting
// too deep); nothing when it can. Prints nothing.
std::optional<std::string> formulaFault(std::string_view expression);

}  // namespace watch
