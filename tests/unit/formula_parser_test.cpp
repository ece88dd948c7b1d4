// The formula scanner and parser: token codes, the "=" rule, dense symbol
// ids, the shape of the trees (printed and compared), unknown names, long
// names, and formulas built to hurt (deep nesting, megabytes, stray bytes).
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "fileformat/number_text.h"
#include "formula/functions.h"
#include "formula/nodes.h"
#include "formula/parser.h"
#include "formula/scanner.h"
#include "formula/symbol_table.h"
#include "formula/variable_store.h"

namespace formula {
namespace {

// The nodes keep their parts to themselves. The printer reads them through
// pointers to members taken in explicit instantiations, where access rules
// do not apply.
template <typename Tag, typename Tag::Type Member>
struct MemberAccess {
  friend typename Tag::Type memberOf(Tag) { return Member; }
};

struct NumValue {
  using Type = double NumNode::*;
  friend Type memberOf(NumValue);
};
struct UMinusChild {
  using Type = NodePtr UMinusNode::*;
  friend Type memberOf(UMinusChild);
};
struct FunFunction {
  using Type = Function FunNode::*;
  friend Type memberOf(FunFunction);
};
struct FunArgument {
  using Type = NodePtr FunNode::*;
  friend Type memberOf(FunArgument);
};
struct MultiChildren {
  using Type = std::vector<NodePtr> MultiNode::*;
  friend Type memberOf(MultiChildren);
};
struct MultiFlags {
  using Type = std::vector<std::uint32_t> MultiNode::*;
  friend Type memberOf(MultiFlags);
};

template struct MemberAccess<NumValue, &NumNode::value_>;
template struct MemberAccess<UMinusChild, &UMinusNode::child_>;
template struct MemberAccess<FunFunction, &FunNode::function_>;
template struct MemberAccess<FunArgument, &FunNode::argument_>;
template struct MemberAccess<MultiChildren, &MultiNode::children_>;
template struct MemberAccess<MultiFlags, &MultiNode::flags_>;

// One line per tree:
//   number        1500
//   variable      its name
//   unary minus   neg(a)
//   call          sin(a)
//   sum           (+a -b +c)     each term with its sign
//   product       (*a /b *c)     each factor with its operation
//   missing node  ?              (left by a syntax error)
std::string print(const Node* node, const SymbolTable& symbols) {
  if (node == nullptr) return "?";
  if (const auto* number = dynamic_cast<const NumNode*>(node)) {
    return fileformat::formatGeneral(number->*memberOf(NumValue{}), 15);
  }
  if (const auto* variable = dynamic_cast<const VarNode*>(node))
    return symbols.name(variable->id());
  if (const auto* minus = dynamic_cast<const UMinusNode*>(node)) {
    return "neg(" + print((minus->*memberOf(UMinusChild{})).get(), symbols) + ")";
  }
  if (const auto* call = dynamic_cast<const FunNode*>(node)) {
    std::string name = "<unknown function>";
    for (const FunctionEntry& entry : kFunctions) {
      if (entry.function == call->*memberOf(FunFunction{})) name = entry.name;
    }
    return name + "(" + print((call->*memberOf(FunArgument{})).get(), symbols) + ")";
  }
  if (const auto* multi = dynamic_cast<const MultiNode*>(node)) {
    const bool sum = dynamic_cast<const SumNode*>(node) != nullptr;
    const auto& children = multi->*memberOf(MultiChildren{});
    const auto& flags = multi->*memberOf(MultiFlags{});
    std::string text = "(";
    for (std::size_t i = 0; i < children.size(); ++i) {
      if (i > 0) text += ' ';
      text += sum ? (flags[i] != 0 ? '+' : '-') : (flags[i] != 0 ? '*' : '/');
      text += print(children[i].get(), symbols);
    }
    return text + ")";
  }
  return "<unknown node>";
}

struct Parsed {
  ParseStatus status;
  std::string tree;
  std::string errors;  // standard error while parsing
};

// Parses with the functions and, when `variables` is given, a closed set of
// those variables; otherwise every unknown name becomes a variable.
Parsed parse(std::string_view text, const std::vector<std::string>* variables = nullptr) {
  SymbolTable symbols = functionSymbols();
  if (variables != nullptr) {
    for (const std::string& name : *variables) symbols.insert(name);
  }
  Parser parser(symbols, variables != nullptr);
  testing::internal::CaptureStderr();
  const ParseStatus status = parser.parse(text);
  const std::string errors = testing::internal::GetCapturedStderr();
  return {status, status == ParseStatus::ok ? print(parser.root(), symbols) : std::string(),
          errors};
}

// What parsing raises (after its line on standard error); empty when it
// raises nothing.
struct Raised {
  std::string what;
  std::string errors;
};

Raised parseRaising(std::string_view text, const std::vector<std::string>* variables = nullptr) {
  SymbolTable symbols = functionSymbols();
  if (variables != nullptr) {
    for (const std::string& name : *variables) symbols.insert(name);
  }
  Parser parser(symbols, variables != nullptr);
  testing::internal::CaptureStderr();
  std::string what;
  try {
    parser.parse(text);
  } catch (const FormulaError& error) {
    what = error.what();
  }
  return {what, testing::internal::GetCapturedStderr()};
}

std::vector<int> tokenCodes(std::string_view text) {
  Scanner scanner(text);
  std::vector<int> codes;
  do {
    codes.push_back(static_cast<int>(scanner.next()));
  } while (scanner.current() != Token::end && codes.size() < 100);
  return codes;
}

std::string repeated(std::string_view piece, std::size_t times) {
  std::string text;
  text.reserve(piece.size() * times);
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

// ---------------------------------------------------------------------------
// Scanner

TEST(FormulaScanner, TokenCodesAreTheScannersOwn) {
  EXPECT_EQ(static_cast<int>(Token::end), 0);
  EXPECT_EQ(static_cast<int>(Token::error), 1);
  EXPECT_EQ(static_cast<int>(Token::number), 2);
  EXPECT_EQ(static_cast<int>(Token::plus), 3);
  EXPECT_EQ(static_cast<int>(Token::times), 4);
  EXPECT_EQ(static_cast<int>(Token::minus), 5);
  EXPECT_EQ(static_cast<int>(Token::divide), 6);
  EXPECT_EQ(static_cast<int>(Token::leftParenthesis), 7);
  EXPECT_EQ(static_cast<int>(Token::rightParenthesis), 8);
  EXPECT_EQ(static_cast<int>(Token::assign), 9);
  EXPECT_EQ(static_cast<int>(Token::identifier), 10);
}

TEST(FormulaScanner, SplitsTextIntoTokenCodes) {
  const struct {
    std::string_view text;
    std::vector<int> codes;
  } rows[] = {
      {"", {0}},
      {"   \t\r\n", {0}},
      {"+*-/()", {3, 4, 5, 6, 7, 8, 0}},
      {"a1_b", {10, 0}},
      {"_x", {10, 0}},
      {"2a", {2, 10, 0}},
      {"1.5e-3", {2, 0}},
      {"1e", {2, 10, 0}},
      // A "." that starts no number reads as 0 and is read again each time.
      {".", {2, 2, 2, 2, 2}},
      {"a=3", {10, 2, 0}},
      {"a = b", {10, 2, 10, 0}},
      {"=", {2, 0}},
      {"==", {2, 2, 0}},
      {"#", {1, 0}},
      {"a$b", {10, 1, 10, 0}},
      {std::string_view("\x01", 1), {1, 0}},
      {std::string_view("\x7f", 1), {1, 0}},
      {"\xc3\xa9", {1, 1, 0}},
      {std::string_view("a\0+b", 4), {10, 0}},
      {std::string_view("\0", 1), {0}},
  };
  for (const auto& row : rows) {
    std::vector<int> codes = tokenCodes(row.text);
    if (codes.size() > row.codes.size()) codes.resize(row.codes.size());
    EXPECT_EQ(codes, row.codes) << "text: " << row.text;
  }
}

TEST(FormulaScanner, ReadsTheLongestDecimalNumber) {
  const struct {
    std::string_view text;
    double number;
    Token after;
  } rows[] = {
      {"12", 12.0, Token::end},
      {"1.5e3", 1500.0, Token::end},
      {"1.5E+3/t", 1500.0, Token::divide},
      {"2.5e-1)", 0.25, Token::rightParenthesis},
      {".5", 0.5, Token::end},
      {"7.", 7.0, Token::end},
      {"3e", 3.0, Token::identifier},
      {"1.2.3", 1.2, Token::number},
  };
  for (const auto& row : rows) {
    Scanner scanner(row.text);
    ASSERT_EQ(scanner.next(), Token::number) << row.text;
    EXPECT_EQ(scanner.number(), row.number) << row.text;
    EXPECT_EQ(scanner.next(), row.after) << row.text;
  }
}

TEST(FormulaScanner, TakesTheNumberAfterAnEqualsSignAsItsOwn) {
  const struct {
    std::string_view text;
    double number;
    Token after;
  } rows[] = {
      {"=3", 3.0, Token::end}, {"= 4.5*a", 4.5, Token::times}, {"=-2", -2.0, Token::end},
      {"=", 0.0, Token::end},  {"=b", 0.0, Token::identifier}, {"=(", 0.0, Token::leftParenthesis},
  };
  for (const auto& row : rows) {
    Scanner scanner(row.text);
    ASSERT_EQ(scanner.next(), Token::number) << row.text;
    EXPECT_EQ(scanner.number(), row.number) << row.text;
    EXPECT_EQ(scanner.next(), row.after) << row.text;
  }
}

TEST(FormulaScanner, CutsAnIdentifierLongerThan80CharactersWithAWarning) {
  const std::string eighty = repeated("v", 79) + "9";
  ASSERT_EQ(eighty.size(), kMaxIdentifierLength);
  const struct {
    std::string text;
    std::string identifier;
    std::string errors;
  } rows[] = {
      {eighty, eighty, ""},
      {eighty + "X", eighty, "Warning: Variable name truncated\n"},
      {eighty + repeated("Y", 1000000), eighty, "Warning: Variable name truncated\n"},
  };
  for (const auto& row : rows) {
    Scanner scanner(row.text);
    testing::internal::CaptureStderr();
    EXPECT_EQ(scanner.next(), Token::identifier);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.errors);
    EXPECT_EQ(scanner.identifier(), row.identifier);
    // The whole identifier is consumed, not only its first 80 characters.
    EXPECT_EQ(scanner.next(), Token::end);
  }
}

// ---------------------------------------------------------------------------
// Symbols

TEST(FormulaSymbols, TheFifteenFunctionsHoldIds0To14InTheirOrder) {
  const SymbolTable symbols = functionSymbols();
  const std::vector<std::string_view> names = {"log",  "log10", "exp",   "sqrt", "sin",
                                               "cos",  "tan",   "cotan", "sinh", "cosh",
                                               "tanh", "asin",  "acos",  "atan", "abs"};
  ASSERT_EQ(symbols.size(), 15);
  for (std::size_t id = 0; id < names.size(); ++id) {
    EXPECT_EQ(symbols.find(names[id]), static_cast<int>(id)) << names[id];
    EXPECT_EQ(symbols.name(static_cast<int>(id)), names[id]);
    EXPECT_EQ(kFunctions[id].name, names[id]);
  }
}

TEST(FormulaSymbols, IdsAreDenseInOrderOfInsertionAndNamesMatchWhole) {
  SymbolTable symbols = functionSymbols();
  EXPECT_EQ(symbols.insert("t"), 15);
  EXPECT_EQ(symbols.insert("Fx_hull"), 16);
  EXPECT_EQ(symbols.insert("Fx_hul"), 17);
  EXPECT_EQ(symbols.insert("Fx_hull"), 16);
  EXPECT_EQ(symbols.size(), 18);
  EXPECT_EQ(symbols.find("Fx_hull"), 16);
  EXPECT_EQ(symbols.find("Fx_hullx"), -1);
  EXPECT_EQ(symbols.find("fx_hull"), -1);
  EXPECT_EQ(symbols.find("lo"), -1);
  EXPECT_EQ(symbols.find(""), -1);
}

// ---------------------------------------------------------------------------
// Shapes

TEST(FormulaParser, BuildsFlatSumsAndProductsAndNestsOnlyAtParentheses) {
  const struct {
    std::string_view text;
    std::string tree;
  } rows[] = {
      {"a", "a"},
      {"a-b+c", "(+a -b +c)"},
      {"a-b-c", "(+a -b -c)"},
      {"a/b*c", "(*a /b *c)"},
      {"a+b*c-d/e", "(+a +(*b *c) -(*d /e))"},
      {"a-(b-c)", "(+a -(+b -c))"},
      {"(a+b)*c", "(*(+a +b) *c)"},
      {"2*(a+b)", "(*2 *(+a +b))"},
      {"((a))", "a"},
      {"1.5e3/t", "(*1500 /t)"},
      {" a \t*\n b ", "(*a *b)"},
      {"(Fx_Hull+Fx_Rudder)/2 - 0.5*sin(t)", "(+(*(+Fx_Hull +Fx_Rudder) /2) -(*0.5 *sin(t)))"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, ParseStatus::ok) << row.text;
    EXPECT_EQ(parsed.tree, row.tree) << row.text;
    EXPECT_EQ(parsed.errors, "") << row.text;
  }
}

TEST(FormulaParser, UnaryMinusTakesOneFactor) {
  const struct {
    std::string_view text;
    std::string tree;
  } rows[] = {
      {"-Fx_Body", "neg(Fx_Body)"},
      {"--a", "neg(neg(a))"},
      {"-a*b", "(*neg(a) *b)"},
      {"a*-b", "(*a *neg(b))"},
      {"a--b", "(+a -neg(b))"},
      {"-(a+b)", "neg((+a +b))"},
      {"-2", "neg(2)"},
      {"-sin(a)", "neg(sin(a))"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, ParseStatus::ok) << row.text;
    EXPECT_EQ(parsed.tree, row.tree) << row.text;
  }
}

TEST(FormulaParser, CallsTheFunctionNamedByTheWholeIdentifier) {
  const struct {
    std::string_view text;
    std::string tree;
  } rows[] = {
      {"log10(x)", "log10(x)"},
      {"log(x)", "log(x)"},
      {"log10(log(x))", "log10(log(x))"},
      {"cotan(a)/tanh(b)", "(*cotan(a) /tanh(b))"},
      {"exp(sqrt(cos(acos(asin(atan(cosh(sinh(tan(abs(x))))))))))",
       "exp(sqrt(cos(acos(asin(atan(cosh(sinh(tan(abs(x))))))))))"},
      {"sin (a+1)", "sin((+a +1))"},
      {"abs(-a)", "abs(neg(a))"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, ParseStatus::ok) << row.text;
    EXPECT_EQ(parsed.tree, row.tree) << row.text;
  }
}

TEST(FormulaParser, AFunctionNameWithoutParenthesesIsAVariableOverTheFunctionsId) {
  SymbolTable symbols = functionSymbols();
  Parser parser(symbols, true);
  ASSERT_EQ(parser.parse("sin + 1"), ParseStatus::ok);
  EXPECT_EQ(print(parser.root(), symbols), "(+sin +1)");
  EXPECT_EQ(parser.referencedVariables(), std::vector<int>{4});

  ASSERT_EQ(parser.parse("log10"), ParseStatus::ok);
  const auto* variable = dynamic_cast<const VarNode*>(parser.root());
  ASSERT_NE(variable, nullptr);
  EXPECT_EQ(variable->id(), 1);
}

TEST(FormulaParser, AnEqualsSignAndTheNumberAfterItAreLeftUnread) {
  // "=3" scans as one number token, which no rule takes after a variable:
  // the formula is the variable alone.
  const struct {
    std::string_view text;
    std::string tree;
  } rows[] = {
      {"a=3", "a"}, {"a = 3 + b", "a"}, {"a=b", "a"}, {"2*a=3", "(*2 *a)"},
      {"3=a", "3"}, {"=5", "5"},        {"=", "0"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, ParseStatus::ok) << row.text;
    EXPECT_EQ(parsed.tree, row.tree) << row.text;
  }
  // Inside parentheses the number stands where ")" should.
  EXPECT_EQ(parse("(a=3)").status, ParseStatus::error);
}

TEST(FormulaParser, IgnoresWhatFollowsTheExpression) {
  const struct {
    std::string_view text;
    std::string tree;
  } rows[] = {
      {"a+b)", "(+a +b)"},
      {"a b", "a"},
      {"2 3", "2"},
      {"a+b)*c", "(+a +b)"},
      {"a#b", "a"},
      {".", "0"},
      {". + 1", "0"},
      {"1 + .", "(+1 +0)"},
      {std::string_view("a\x01+b", 4), "a"},
      {std::string_view("a+b\0+c", 6), "(+a +b)"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, ParseStatus::ok) << row.text;
    EXPECT_EQ(parsed.tree, row.tree) << row.text;
  }
}

TEST(FormulaParser, SyntaxErrorsSetTheStatusAndPrintNothing) {
  const std::string_view rows[] = {
      "",
      "   ",
      "2*(a+b",
      "(a+b",
      "sin(a",
      "a+",
      "a*",
      "*a",
      "/a",
      "+a",
      ")",
      "()",
      "a+()",
      "sin()",
      "a*#",
      "-",
      "a+-",
      std::string_view("\0", 1),
      std::string_view("a+\x01", 3),
      std::string_view("(a\0)", 4),
  };
  for (const std::string_view text : rows) {
    const Parsed parsed = parse(text);
    EXPECT_EQ(parsed.status, ParseStatus::error) << text;
    EXPECT_EQ(parsed.errors, "") << text;
  }
}

TEST(FormulaParser, AParseStartsAfresh) {
  SymbolTable symbols = functionSymbols();
  Parser parser(symbols, false);
  EXPECT_EQ(parser.parse("2*(a+b"), ParseStatus::error);
  ASSERT_EQ(parser.parse("b*c"), ParseStatus::ok);
  EXPECT_EQ(print(parser.root(), symbols), "(*b *c)");
  EXPECT_EQ(parser.referencedVariables(), (std::vector<int>{symbols.find("b"), symbols.find("c")}));
}

TEST(FormulaParser, ListsEachVariableOnceInOrderOfFirstUse) {
  SymbolTable symbols = functionSymbols();
  const int t = symbols.insert("t");
  const int a = symbols.insert("a");
  const int b = symbols.insert("b");
  Parser parser(symbols, true);
  ASSERT_EQ(parser.parse("b*a + sin(t)/b - a + 2"), ParseStatus::ok);
  EXPECT_EQ(parser.referencedVariables(), (std::vector<int>{b, a, t}));
  ASSERT_EQ(parser.parse("3*cos(1)"), ParseStatus::ok);
  EXPECT_TRUE(parser.referencedVariables().empty());
}

// ---------------------------------------------------------------------------
// Unknown names

TEST(FormulaParser, AnUnknownFunctionEndsParsingWithItsName) {
  const std::vector<std::string> variables = {"t", "Fx_hull"};
  const struct {
    std::string_view text;
    std::string what;
    std::string errors;
  } rows[] = {
      {"sqr(a)", "Unknown function \"sqr\"", "Error: Unknown function \"sqr\"\n"},
      {"1 + 2*Sin(t)", "Unknown function \"Sin\"", "Error: Unknown function \"Sin\"\n"},
      {"t(2)", "Unknown function \"t\"", "Error: Unknown function \"t\"\n"},
      {"Fx_hull(t)", "Unknown function \"Fx_hull\"", "Error: Unknown function \"Fx_hull\"\n"},
      // The argument is read before the name is checked.
      {"f(g(1))", "Unknown function \"g\"", "Error: Unknown function \"g\"\n"},
      {"f(1", "Unknown function \"f\"", "Error: Unknown function \"f\"\n"},
  };
  for (const auto& row : rows) {
    const Raised raised = parseRaising(row.text, &variables);
    EXPECT_EQ(raised.what, row.what) << row.text;
    EXPECT_EQ(raised.errors, row.errors) << row.text;
  }
}

TEST(FormulaParser, AnUnknownVariableOfAClosedSetIsAnErrorWithoutMessage) {
  const std::vector<std::string> variables = {"t", "Fx_hull", "Fx_rudder"};
  const struct {
    std::string_view text;
    ParseStatus status;
  } rows[] = {
      {"Fx_hull + Fx_rudder", ParseStatus::ok},
      {"t", ParseStatus::ok},
      {"Fx_Hull", ParseStatus::error},
      {"Fx_hull + Fy_hull", ParseStatus::error},
      {"2*x", ParseStatus::error},
      {"sin(T)", ParseStatus::error},
      {"sin", ParseStatus::ok},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text, &variables);
    EXPECT_EQ(parsed.status, row.status) << row.text;
    EXPECT_EQ(parsed.errors, "") << row.text;
  }
}

TEST(FormulaParser, AnOpenSetTakesEveryNewNameAsAVariable) {
  SymbolTable symbols = functionSymbols();
  Parser parser(symbols, false);
  ASSERT_EQ(parser.parse("x + y*x"), ParseStatus::ok);
  EXPECT_EQ(symbols.find("x"), 15);
  EXPECT_EQ(symbols.find("y"), 16);
  EXPECT_EQ(symbols.size(), 17);
}

TEST(FormulaParser, ALongNameIsLookedUpByItsFirst80Characters) {
  const std::string eighty = "Fx_" + repeated("h", 77);
  const std::vector<std::string> variables = {eighty};

  Parsed parsed = parse(eighty + "ull + 1", &variables);
  EXPECT_EQ(parsed.status, ParseStatus::ok);
  EXPECT_EQ(parsed.tree, "(+" + eighty + " +1)");
  EXPECT_EQ(parsed.errors, "Warning: Variable name truncated\n");

  // Two long names: one warning each.
  parsed = parse(eighty + "a*" + eighty + "b", &variables);
  EXPECT_EQ(parsed.status, ParseStatus::ok);
  EXPECT_EQ(parsed.errors, "Warning: Variable name truncated\nWarning: Variable name truncated\n");

  // A name that differs only after its 80th character is the same name.
  const std::vector<std::string> other = {eighty.substr(0, 79) + "x"};
  parsed = parse(eighty + "ull", &other);
  EXPECT_EQ(parsed.status, ParseStatus::error);
  EXPECT_EQ(parsed.errors, "Warning: Variable name truncated\n");
}

TEST(FormulaParser, ALongFunctionNameIsCutBeforeItIsLookedUp) {
  const std::string name = "sin" + repeated("e", 90);
  const Raised raised = parseRaising(name + "(1)");
  EXPECT_EQ(raised.what, "Unknown function \"" + name.substr(0, 80) + "\"");
  EXPECT_EQ(raised.errors, "Warning: Variable name truncated\nError: Unknown function \"" +
                               name.substr(0, 80) + "\"\n");
}

// ---------------------------------------------------------------------------
// Nesting

TEST(FormulaParser, NestsUpToTheLimitAndNoDeeper) {
  // Every parenthesis, unary minus and call is one level, and so is the
  // innermost operand.
  const std::size_t levels = static_cast<std::size_t>(kMaxNesting) - 1;
  const std::string limit = "Formula nested deeper than " + std::to_string(kMaxNesting) + " levels";
  const struct {
    std::string text;
    bool fits;
  } rows[] = {
      {repeated("(", levels) + "a" + repeated(")", levels), true},
      {repeated("(", levels + 1) + "a" + repeated(")", levels + 1), false},
      {repeated("-", levels) + "a", true},
      {repeated("-", levels + 1) + "a", false},
      {repeated("sin(", levels) + "a" + repeated(")", levels), true},
      {repeated("sin(", levels + 1) + "a" + repeated(")", levels + 1), false},
      {repeated("-(", levels / 2) + "a" + repeated(")", levels / 2), true},
      {repeated("-(", levels / 2 + 1) + "a" + repeated(")", levels / 2 + 1), false},
  };
  for (const auto& row : rows) {
    const Raised raised = parseRaising(row.text);
    if (row.fits) {
      EXPECT_EQ(raised.what, "") << row.text.size();
      EXPECT_EQ(raised.errors, "") << row.text.size();
    } else {
      EXPECT_EQ(raised.what, limit) << row.text.size();
      EXPECT_EQ(raised.errors, "Error: Formula nested too deeply\n") << row.text.size();
    }
  }
}

TEST(FormulaParser, SideBySideParenthesesDoNotAddUp) {
  std::string text = "a";
  for (int i = 0; i < 10000; ++i) text += "+(((a)))";
  const Parsed parsed = parse(text);
  EXPECT_EQ(parsed.status, ParseStatus::ok);
  EXPECT_EQ(parsed.errors, "");
}

// ---------------------------------------------------------------------------
// Hostile formulas: each ends quickly, with an error or a tree.

TEST(FormulaParser, ThousandsOfLevelsOfNestingFailWithoutExhaustingTheStack) {
  const std::string limit = "Formula nested deeper than " + std::to_string(kMaxNesting) + " levels";
  const std::string rows[] = {
      repeated("(", 100000) + "a" + repeated(")", 100000),
      repeated("(", 1000000),
      repeated("-", 100000) + "a",
      repeated("-", 1000000),
      repeated("sin(", 50000) + "a" + repeated(")", 50000),
      repeated("a*(", 50000) + "a" + repeated(")", 50000),
      repeated("a+(b-(", 50000),
  };
  for (const std::string& text : rows) {
    const Raised raised = parseRaising(text);
    EXPECT_EQ(raised.what, limit) << text.substr(0, 20);
    EXPECT_EQ(raised.errors, "Error: Formula nested too deeply\n") << text.substr(0, 20);
  }
}

TEST(FormulaParser, AMegabyteLongFormulaParsesOrFailsAsAShortOneWould) {
  const std::size_t megabyte = 1 << 20;
  const struct {
    std::string text;
    ParseStatus status;
    std::string errors;
  } rows[] = {
      {"a" + repeated("+a", megabyte / 2), ParseStatus::ok, ""},
      {"a" + repeated("*a", megabyte / 2), ParseStatus::ok, ""},
      {"1" + repeated("-1.5e3", megabyte / 6), ParseStatus::ok, ""},
      {repeated("(a)+", megabyte / 4) + "a", ParseStatus::ok, ""},
      {repeated(" ", megabyte) + "a", ParseStatus::ok, ""},
      {"a" + repeated(" ", megabyte), ParseStatus::ok, ""},
      {repeated("9", megabyte), ParseStatus::ok, ""},
      {repeated("a", megabyte), ParseStatus::ok, "Warning: Variable name truncated\n"},
      {repeated(")", megabyte), ParseStatus::error, ""},
      {repeated("+", megabyte), ParseStatus::error, ""},
      {"a" + repeated("+a", megabyte / 2) + "+", ParseStatus::error, ""},
      {repeated("a+", megabyte / 2) + "(", ParseStatus::error, ""},
      {"a" + repeated("+#", megabyte / 2), ParseStatus::error, ""},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, row.status) << row.text.substr(0, 20);
    EXPECT_EQ(parsed.errors, row.errors) << row.text.substr(0, 20);
  }
}

TEST(FormulaParser, AMegabyteLongFlatSumIsOneNode) {
  SymbolTable symbols = functionSymbols();
  Parser parser(symbols, false);
  ASSERT_EQ(parser.parse("a" + repeated("-a", 500000)), ParseStatus::ok);
  const auto* sum = dynamic_cast<const SumNode*>(parser.root());
  ASSERT_NE(sum, nullptr);
  EXPECT_EQ(sum->size(), 500001u);
}

TEST(FormulaParser, ControlAndNulBytesEndOrSpoilAFormulaButNeverCrashIt) {
  const struct {
    std::string_view text;
    ParseStatus status;
    std::string tree;
  } rows[] = {
      // A NUL byte ends the formula, as the end of the text does.
      {std::string_view("a\0b", 3), ParseStatus::ok, "a"},
      {std::string_view("sin(a)\0\0\0", 9), ParseStatus::ok, "sin(a)"},
      {std::string_view("\0a+b", 4), ParseStatus::error, ""},
      {std::string_view("2*(a\0+b)", 8), ParseStatus::error, ""},
      // Any other control byte is a token of its own that no rule takes.
      {"\x01", ParseStatus::error, ""},
      {"a*\x1b[31m", ParseStatus::error, ""},
      {"(a\x7f)", ParseStatus::error, ""},
      {"\x01"
       "a",
       ParseStatus::error, ""},
      {"a\x02", ParseStatus::ok, "a"},
      // Tabs, line feeds, carriage returns, vertical tabs and form feeds are blanks.
      {"a\t+\r\nb\v*\fc", ParseStatus::ok, "(+a +(*b *c))"},
      // Bytes beyond ASCII are not letters.
      {"\xff", ParseStatus::error, ""},
      {"a\xc3\xa9", ParseStatus::ok, "a"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text);
    EXPECT_EQ(parsed.status, row.status) << testing::PrintToString(std::string(row.text));
    EXPECT_EQ(parsed.tree, row.tree) << testing::PrintToString(std::string(row.text));
    EXPECT_EQ(parsed.errors, "") << testing::PrintToString(std::string(row.text));
  }
}

TEST(FormulaParser, RandomBytesNeverCrashTheParserOrAnEvaluation) {
  // Formulas drawn from the language's own characters, a few stray bytes
  // and every byte value; whatever parses is evaluated too.
  const std::string alphabet = std::string("ab()+-*/=.0123456789e sin(cotan(log10( ") +
                               std::string("\0\x01\t\n\x7f\xff#", 7);
  std::mt19937 random(20261121);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    const std::size_t length = random() % 120;
    for (std::size_t i = 0; i < length; ++i) {
      text +=
          round % 4 == 3 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
    }
    SymbolTable symbols = functionSymbols();
    Parser parser(symbols, false);
    testing::internal::CaptureStderr();
    try {
      if (parser.parse(text) == ParseStatus::ok) {
        ASSERT_NE(parser.root(), nullptr) << testing::PrintToString(text);
        VariableStore store(symbols);
        for (int id = 15; id < symbols.size(); ++id) store.set(id, 0.5 * id);
        parser.root()->Calc(store);
      }
    } catch (const FormulaError&) {
    }
    testing::internal::GetCapturedStderr();
  }
}

}  // namespace
}  // namespace formula
