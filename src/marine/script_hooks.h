// What the marine model asks of the scripts, without knowing how scripts run:
// the program installs an evaluator at start-up; without one, nothing is
// evaluated.
#pragma once

#include <string>

namespace marine {

class ScriptEvaluator {
 public:
  virtual ~ScriptEvaluator() = default;
  virtual void evaluate(const std::string& script) = 0;
};

void setScriptEvaluator(ScriptEvaluator* evaluator);

// Tells the scripts that a part of a computation could not be read:
// "catch { itm_error_badfile <what> }".
void reportBadFile(const std::string& what);

}  // namespace marine
