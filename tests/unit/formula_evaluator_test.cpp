// Evaluating formulas: every operation and function, the fallbacks of a
// division by zero and of an undefined cotangent (each message collected
// once), and a variable without a value ending the evaluation.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "formula/error_collector.h"
#include "formula/functions.h"
#include "formula/nodes.h"
#include "formula/parser.h"
#include "formula/symbol_table.h"
#include "formula/variable_store.h"

namespace formula {
namespace {

constexpr double kLargestFloat = 3.4028234663852886e+38;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const std::pair<const char*, double> kVariables[] = {
    {"a", 2.0}, {"b", 3.0}, {"c", 5.0}, {"t", 0.5}};

std::string repeated(const std::string& piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

TEST(FormulaEvaluator, ComputesValuesAndCollectsEachMessageOnce) {
  const std::string zero = " division by zero.";
  const std::string cotan = "cotan of 0 undefined.";
  const struct {
    std::string text;
    double value;
    std::string collected = {};
    std::string raised = {};  // the variable without value that ends it
  } rows[] = {
      {"a-b+c", 4.0},
      {"c/a/a", 1.25},
      {"a/b*c", 2.0 / 3.0 * 5.0},
      {"a--b", 5.0},
      {"c/(a-1)", 5.0},
      {"1.5e3/t", 3000.0},
      {"log(c) + 2*log10(c) + 3*exp(t) + 4*sqrt(c)",
       std::log(5.0) + 2 * std::log10(5.0) + 3 * std::exp(0.5) + 4 * std::sqrt(5.0)},
      {"sin(t) + 2*cos(t) + 3*tan(t) + 4*cotan(t) + 5*asin(t) + 6*acos(t) + 7*atan(t)",
       std::sin(0.5) + 2 * std::cos(0.5) + 3 * std::tan(0.5) + 4 / std::tan(0.5) +
           5 * std::asin(0.5) + 6 * std::acos(0.5) + 7 * std::atan(0.5)},
      {"sinh(t) + 2*cosh(t) + 3*tanh(t) + 4*abs(a-c)",
       std::sinh(0.5) + 2 * std::cosh(0.5) + 3 * std::tanh(0.5) + 4 * 3.0},
      {"a/sqrt(-1)", kNaN},
      // A zero divisor makes its product 0 and leaves the rest unread.
      {"a/0*b", 0.0, zero},
      {"a/-0", 0.0, zero},
      {"a/(b-b) + c", 5.0, zero},
      {"a/0*cotan(0)*nowhere", 0.0, zero},
      {"cotan(a-a)", kLargestFloat, cotan},
      {"-cotan(0)", -kLargestFloat, cotan},
      {"cotan(0) + a/(b-b) + cotan(0)", 2 * kLargestFloat, cotan + zero},
      {"a + nowhere", 0.0, "", "nowhere"},
      {"nowhere + cotan(0)", 0.0, "", "nowhere"},
      {"log + 1", 0.0, "", "log"},
      {"sin(a) * 2 / sin", 0.0, "", "sin"},
      {"a" + repeated("+a-b+c", 200000), 2.0 + 200000 * 4.0},
      {"1" + repeated("*c/c", 250000), 1.0},
  };
  for (const auto& row : rows) {
    SymbolTable symbols = functionSymbols();
    VariableStore store(symbols);
    for (const auto& [name, value] : kVariables) store.set(symbols.insert(name), value);
    Parser parser(symbols, false);
    ASSERT_EQ(parser.parse(row.text), ParseStatus::ok) << row.text;
    clearCollectedErrors();
    // Twice, as a plot evaluates at every point.
    for (int point = 0; point < 2; ++point) {
      testing::internal::CaptureStderr();
      std::string raised;
      double value = 0.0;
      try {
        value = parser.root()->Calc(store);
      } catch (const FormulaError& error) {
        raised = error.what();
      }
      const std::string errors = testing::internal::GetCapturedStderr();
      EXPECT_TRUE(value == row.value || (std::isnan(value) && std::isnan(row.value)))
          << row.text.substr(0, 40) << ": " << value;
      const std::string message = "Use of uninitialized variable " + row.raised;
      EXPECT_EQ(raised + "|" + errors,
                row.raised.empty() ? "|" : message + "|Error: " + message + "\n")
          << row.text.substr(0, 40);
    }
    EXPECT_EQ(collectedErrors(), row.collected) << row.text.substr(0, 40);
  }
  clearCollectedErrors();
}

TEST(FormulaEvaluator, AnIdBeyondTheSymbolsIsNamedEmptyInTheMessage) {
  SymbolTable symbols;
  symbols.insert("x");
  VariableStore store(symbols);
  testing::internal::CaptureStderr();
  EXPECT_THROW(VarNode(1).Calc(store), FormulaError);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: Use of uninitialized variable \n");
}

}  // namespace
}  // namespace formula
