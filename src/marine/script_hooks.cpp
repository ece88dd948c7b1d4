#include "marine/script_hooks.h"

namespace marine {
namespace {

ScriptEvaluator* installedEvaluator = nullptr;

}  // namespace

void setScriptEvaluator(ScriptEvaluator* evaluator) { installedEvaluator = evaluator; }

void reportBadFile(const std::string& what) {
  if (installedEvaluator != nullptr)
    installedEvaluator->evaluate("catch { itm_error_badfile " + what + " }");
}

}  // namespace marine
