// Evaluating formula trees: the value of every operation and function, the
// fallbacks of division by zero and of an undefined cotangent (each message
// collected once), and a variable without a value ending the evaluation.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <string>
#include <string_view>
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

// The variables a, b and c hold 2, 3 and 5; t holds 0.5; every other name
// is a variable without a value.
class FormulaEvaluation : public testing::Test {
 protected:
  FormulaEvaluation() : symbols_(functionSymbols()), store_(symbols_) {
    store_.set(symbols_.insert("a"), 2.0);
    store_.set(symbols_.insert("b"), 3.0);
    store_.set(symbols_.insert("c"), 5.0);
    store_.set(symbols_.insert("t"), 0.5);
    clearCollectedErrors();
  }
  ~FormulaEvaluation() override { clearCollectedErrors(); }

  const Node& parsed(std::string_view text) {
    Parser parser(symbols_, false);
    EXPECT_EQ(parser.parse(text), ParseStatus::ok) << text;
    root_ = parser.takeRoot();
    return *root_;
  }

  double evaluate(std::string_view text) { return parsed(text).Calc(store_); }

  SymbolTable symbols_;
  VariableStore store_;
  NodePtr root_;
};

TEST_F(FormulaEvaluation, ComputesSumsProductsAndUnaryMinusInOrder) {
  const struct {
    std::string_view text;
    double value;
  } rows[] = {
      {"a", 2.0},      {"42", 42.0},       {"a-b-c", -6.0},
      {"a-b+c", 4.0},  {"a-(b-c)", 4.0},   {"a/b*c", 2.0 / 3.0 * 5.0},
      {"c/a/a", 1.25}, {"a+b*c", 17.0},    {"2*(a+b)", 10.0},
      {"-a*b", -6.0},  {"a*-b", -6.0},     {"--a", 2.0},
      {"a--b", 5.0},   {"1.5e3/a", 750.0}, {"1.5e3/t", 3000.0},
      {".5*c", 2.5},   {"a=3", 2.0},       {"a = b + 100", 2.0},
  };
  for (const auto& row : rows) EXPECT_EQ(evaluate(row.text), row.value) << row.text;
}

TEST_F(FormulaEvaluation, CallsEachOfTheFifteenFunctions) {
  const struct {
    std::string_view text;
    double value;
  } rows[] = {
      {"log(c)", std::log(5.0)},   {"log10(1000)", 3.0},        {"log10(c)", std::log10(5.0)},
      {"exp(t)", std::exp(0.5)},   {"sqrt(a*8)", 4.0},          {"sin(t)", std::sin(0.5)},
      {"cos(t)", std::cos(0.5)},   {"tan(t)", std::tan(0.5)},   {"cotan(t)", 1.0 / std::tan(0.5)},
      {"sinh(t)", std::sinh(0.5)}, {"cosh(t)", std::cosh(0.5)}, {"tanh(t)", std::tanh(0.5)},
      {"asin(t)", std::asin(0.5)}, {"acos(t)", std::acos(0.5)}, {"atan(1)", std::numbers::pi / 4},
      {"abs(a-c)", 3.0},           {"abs(-0.25)", 0.25},
  };
  for (const auto& row : rows) EXPECT_EQ(evaluate(row.text), row.value) << row.text;
  EXPECT_EQ(collectedErrors(), "");
}

TEST_F(FormulaEvaluation, FunctionsOutsideTheirDomainGiveTheLibrarysResult) {
  EXPECT_TRUE(std::isnan(evaluate("sqrt(-1)")));
  EXPECT_TRUE(std::isnan(evaluate("asin(a)")));
  EXPECT_EQ(evaluate("log(0)"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(evaluate("exp(1000)"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(collectedErrors(), "");
}

TEST_F(FormulaEvaluation, ADivisorOfZeroMakesTheWholeProductZeroAndIsNotedOnce) {
  const Node& formula = parsed("1/(a-a)");
  for (int point = 0; point < 1000; ++point) EXPECT_EQ(formula.Calc(store_), 0.0);
  EXPECT_EQ(collectedErrors(), " division by zero.");

  const struct {
    std::string_view text;
    double value;
  } rows[] = {
      {"a/0*b", 0.0},     {"b*c/0", 0.0}, {"a/(b-b) + c", 5.0},  // only the product falls to 0
      {"a/-0", 0.0},                                             // -0 is zero too
      {"a/0*(1/0)", 0.0}, {"a*0", 0.0},                          // a factor of zero is no division
  };
  for (const auto& row : rows) EXPECT_EQ(evaluate(row.text), row.value) << row.text;
  EXPECT_EQ(collectedErrors(), " division by zero.");
}

TEST_F(FormulaEvaluation, AProductStopsAtItsZeroDivisor) {
  // The factors after the zero divisor are never evaluated: neither the
  // undefined cotangent nor the variable without a value is reached.
  EXPECT_EQ(evaluate("a/0*cotan(0)*nowhere"), 0.0);
  EXPECT_EQ(collectedErrors(), " division by zero.");
}

TEST_F(FormulaEvaluation, ANotANumberDivisorIsNoZero) {
  EXPECT_TRUE(std::isnan(evaluate("a/sqrt(-1)")));
  EXPECT_EQ(collectedErrors(), "");
}

TEST_F(FormulaEvaluation, TheCotangentWhereTheTangentIsZeroIsTheLargestFloatWithAMessage) {
  const Node& formula = parsed("cotan(a-a)");
  for (int point = 0; point < 100; ++point) EXPECT_EQ(formula.Calc(store_), kLargestFloat);
  EXPECT_EQ(collectedErrors(), "cotan of 0 undefined.");

  EXPECT_EQ(evaluate("cotan(0)*2"), 2 * kLargestFloat);
  EXPECT_EQ(evaluate("-cotan(0)"), -kLargestFloat);
  EXPECT_EQ(collectedErrors(), "cotan of 0 undefined.");
  EXPECT_EQ(cotan(0.0), kLargestFloat);
}

TEST_F(FormulaEvaluation, DistinctMessagesAreCollectedOnceEachInOrder) {
  const Node& formula = parsed("cotan(0) + a/(b-b) + cotan(0)");
  for (int point = 0; point < 10; ++point) EXPECT_EQ(formula.Calc(store_), 2 * kLargestFloat);
  EXPECT_EQ(collectedErrors(), "cotan of 0 undefined. division by zero.");
}

TEST(FormulaErrorCollector, AppendsOnlyWhatItDoesNotHoldAlready) {
  clearCollectedErrors();
  const struct {
    std::string_view message;
    std::string collected;
  } rows[] = {
      {" division by zero.", " division by zero."},
      {" division by zero.", " division by zero."},
      {"cotan of 0 undefined.", " division by zero.cotan of 0 undefined."},
      // A message held inside the text is held already.
      {"zero.", " division by zero.cotan of 0 undefined."},
      {"0 undefined.", " division by zero.cotan of 0 undefined."},
      {"cotan of 1e-300 undefined.",
       " division by zero.cotan of 0 undefined.cotan of 1e-300 undefined."},
  };
  for (const auto& row : rows) {
    collectError(row.message);
    EXPECT_EQ(collectedErrors(), row.collected) << row.message;
  }
  clearCollectedErrors();
  EXPECT_EQ(collectedErrors(), "");
}

TEST_F(FormulaEvaluation, AVariableWithoutValueAbandonsTheWholeFormula) {
  const struct {
    std::string_view text;
    std::string name;
  } rows[] = {
      {"a + nowhere", "nowhere"}, {"nowhere + cotan(0)", "nowhere"},
      {"sin(a) * 2 / x", "x"},    {"sin + 1", "sin"},
      {"-(log10)", "log10"},
  };
  for (const auto& row : rows) {
    const Node& formula = parsed(row.text);
    testing::internal::CaptureStderr();
    std::string what;
    try {
      formula.Calc(store_);
    } catch (const FormulaError& error) {
      what = error.what();
    }
    EXPECT_EQ(what, "Use of uninitialized variable " + row.name) << row.text;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Error: Use of uninitialized variable " + row.name + "\n")
        << row.text;
  }
  // The cotangent after the missing variable was never reached.
  EXPECT_EQ(collectedErrors(), "");
}

TEST_F(FormulaEvaluation, AMegabyteLongFlatSumEvaluates) {
  std::string text = "a";
  while (text.size() < (1u << 20)) text += "+a-b+c";
  const std::size_t terms = (text.size() - 1) / 6;
  EXPECT_EQ(evaluate(text), 2.0 + static_cast<double>(terms) * (2.0 - 3.0 + 5.0));
}

TEST_F(FormulaEvaluation, AMegabyteLongFlatProductEvaluates) {
  std::string text = "1";
  while (text.size() < (1u << 20)) text += "*c/c";
  EXPECT_EQ(evaluate(text), 1.0);
}

TEST(FormulaNodes, EmptySumsAndProductsAreTheirNeutralValues) {
  const SymbolTable symbols;
  VariableStore store(symbols);
  EXPECT_EQ(SumNode().Calc(store), 0.0);
  EXPECT_EQ(ProductNode().Calc(store), 1.0);
}

TEST(FormulaNodes, AnAssignmentStoresItsValueAndAnswersIt) {
  // The scanner never delivers "=", so only a tree built by hand assigns.
  SymbolTable symbols;
  const int x = symbols.insert("x");
  VariableStore store(symbols);
  const AssignNode assignment(std::make_unique<VarNode>(x), std::make_unique<NumNode>(7.5));
  EXPECT_FALSE(store.isSet(x));
  EXPECT_EQ(assignment.Calc(store), 7.5);
  EXPECT_TRUE(store.isSet(x));
  EXPECT_EQ(store.value(x), 7.5);
  EXPECT_TRUE(VarNode(x).IsLvalue());
  EXPECT_FALSE(NumNode(1.0).IsLvalue());
}

TEST(FormulaVariableStore, GrowsOnDemandAndMarksWhatWasSet) {
  SymbolTable symbols;
  VariableStore store(symbols);
  EXPECT_FALSE(store.isSet(0));
  EXPECT_FALSE(store.isSet(-1));
  store.set(40, 1.25);
  EXPECT_TRUE(store.isSet(40));
  EXPECT_EQ(store.value(40), 1.25);
  EXPECT_FALSE(store.isSet(39));
  EXPECT_FALSE(store.isSet(41));
  store.set(3, -2.0);
  EXPECT_TRUE(store.isSet(3));
  EXPECT_EQ(store.value(3), -2.0);
  EXPECT_EQ(store.value(40), 1.25);
}

TEST(FormulaVariableStore, AnIdBeyondTheSymbolsIsNamedEmptyInTheMessage) {
  SymbolTable symbols;
  VariableStore store(symbols);
  testing::internal::CaptureStderr();
  EXPECT_THROW(VarNode(7).Calc(store), FormulaError);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: Use of uninitialized variable \n");
}

}  // namespace
}  // namespace formula
