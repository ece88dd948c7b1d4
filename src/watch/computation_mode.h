// The two kinds of computation the watch follows, and how a residual file
// tells which one it belongs to.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace watch {

enum class Mode { marine, turbomachinery };

// "marine" or "turbomachinery", as the JSON output names them.
std::string_view modeName(Mode mode);

// The mode of a residual file from its first character: a marine residual
// file opens with its '#' comment lines, a turbomachinery one with a number.
// Nothing when the file cannot be read, is empty so far or opens otherwise.
std::optional<Mode> recogniseMode(const std::string& residualPath);

}  // namespace watch
