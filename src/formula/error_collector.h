// The messages that evaluating formulas leaves behind (division by zero, an
// undefined cotangent): one process-wide text holding each distinct message
// once, however many points raise it.
#pragma once

#include <string>
#include <string_view>

namespace formula {

void collectError(std::string_view message);
const std::string& collectedErrors();
void clearCollectedErrors();

}  // namespace formula
