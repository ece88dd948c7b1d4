// The formula scanner and parser: what a text is read as (printed tree),
// what fails, and what it prints; formulas built to hurt are rows too.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "formula/functions.h"
#include "formula/parser.h"
#include "formula/symbol_table.h"
#include "formula/tree_printer.h"

namespace formula {
namespace {

std::string repeated(std::string_view piece, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

// The tree, "error" for a syntax error, or what parsing raised; and what it
// printed. The symbols are the 15 functions, then t, a, b and c; in a closed
// set no other name is known.
struct Parsed {
  std::string result;
  std::string errors;
};

Parsed parse(std::string_view text, bool closed) {
  SymbolTable symbols = functionSymbols();
  for (const char* name : {"t", "a", "b", "c"}) symbols.insert(name);
  Parser parser(symbols, closed);
  testing::internal::CaptureStderr();
  std::string result;
  try {
    result = parser.parse(text) == ParseStatus::ok ? printTree(parser.root(), symbols) : "error";
  } catch (const FormulaError& error) {
    result = std::string("raised: ") + error.what();
  }
  return {result, testing::internal::GetCapturedStderr()};
}

TEST(FormulaParser, ReadsFormulasAsTrees) {
  const std::string eighty = repeated("v", 79) + "9";
  const std::string eightyOne = eighty + "X+1";
  const std::string cut = "Warning: Variable name truncated\n";
  const std::string tooDeep = "raised: Formula nested deeper than 256 levels";
  const std::string deepError = "Error: Formula nested too deeply\n";
  const std::string longCall = "sin" + repeated("e", 90) + "(1)";
  const std::string fits = repeated("(", 255) + "a" + repeated(")", 255);
  const std::string over = repeated("(", 256) + "a" + repeated(")", 256);
  const std::string sideBySide = "a" + repeated("+(((a)))", 100);
  const std::string longSum = "a" + repeated("-a", 1 << 19);
  const std::string longName = repeated("a", 1 << 20);
  const std::string manyParentheses = repeated("(", 1000000);
  const std::string manyMinus = repeated("-", 100000) + "a";
  const std::string strayBytes = "a" + repeated("+#", 1 << 19);
  const struct {
    std::string_view text;
    std::string result;
    std::string errors = {};
    bool closed = false;
  } rows[] = {
      // Names, numbers and blanks.
      {"zZ_aA09+b", "(+ zZ_aA09 b)"},
      {"_x/9.5e-1", "(* _x /0.95)"},
      {"a\t+\r\nb\v*\fc ", "(+ a (* b c))"},
      {".5*.", "(* 0.5 0)"},
      {". + 1", "0"},
      // Flat sums and products, nested only at parentheses; unary minus.
      {"a-b+c", "(+ a -b c)"},
      {"a/b*c", "(* a /b c)"},
      {"a+b*c-t/c", "(+ a (* b c) -(* t /c))"},
      {"a-(b-c)", "(+ a -(+ b -c))"},
      {"-a*--b", "(* (- a) (- (- b)))"},
      {"a--b", "(+ a -(- b))"},
      // Calls; a function name without parentheses is a variable.
      {"log10(log(t))", "(log10 (log t))"},
      {"sin (a+1)", "(sin (+ a 1))"},
      {"cotan(abs(-a))", "(cotan (abs (- a)))"},
      {"sin + log", "(+ sin log)"},
      // "=" and the number after it are one number, which no rule takes.
      {"a=3", "a"},
      {"=-2", "-2"},
      {"=", "0"},
      {"(a=3)", "error"},
      // What follows the expression is not read.
      {"2a", "2"},
      {"a+b)*c", "(+ a b)"},
      {"a\x01+b", "a"},
      {std::string_view("a+b\0+c", 6), "(+ a b)"},
      {std::string_view("a+bc", 3), "(+ a b)"},
      // Syntax errors print nothing.
      {"", "error"},
      {"2*(a+b", "error"},
      {"sin(a", "error"},
      {"a+", "error"},
      {"*a", "error"},
      {"\xc3\xa9", "error"},
      {std::string_view("a+b", 2), "error"},
      {std::string_view("\0a", 2), "error"},
      {std::string_view("(a\0)", 4), "error"},
      {strayBytes, "error"},
      // Known and unknown names.
      {"x + y*x", "(+ x (* y x))"},
      {"a + x", "error", "", true},
      {"log + t", "(+ log t)", "", true},
      {"sqr(a)", "raised: Unknown function \"sqr\"", "Error: Unknown function \"sqr\"\n"},
      {"t(2)", "raised: Unknown function \"t\"", "Error: Unknown function \"t\"\n", true},
      {"f(g(1))", "raised: Unknown function \"g\"", "Error: Unknown function \"g\"\n"},
      // Names are cut to 80 characters, and read whole.
      {eighty, eighty},
      {eightyOne, "(+ " + eighty + " 1)", cut},
      {longCall, "raised: Unknown function \"" + longCall.substr(0, 80) + "\"",
       cut + "Error: Unknown function \"" + longCall.substr(0, 80) + "\"\n"},
      {longName, repeated("a", 80), cut},
      {std::string_view(eightyOne).substr(0, 80), eighty},
      // Nesting: every parenthesis, minus and call is a level, and so is the
      // innermost operand.
      {fits, "a"},
      {over, tooDeep, deepError},
      {sideBySide, "(+ a" + repeated(" a", 100) + ")"},
      {manyParentheses, tooDeep, deepError},
      {manyMinus, tooDeep, deepError},
      {longSum, "(+ a" + repeated(" -a", 1 << 19) + ")"},
  };
  for (const auto& row : rows) {
    const Parsed parsed = parse(row.text, row.closed);
    const std::string name = testing::PrintToString(std::string(row.text.substr(0, 40)));
    EXPECT_EQ(parsed.result, row.result) << name;
    EXPECT_EQ(parsed.errors, row.errors) << name;
  }
}

TEST(FormulaSymbols, ANameHeldKeepsItsId) {
  SymbolTable symbols = functionSymbols();
  EXPECT_EQ(symbols.insert("log"), 0);
  EXPECT_EQ(symbols.insert("t"), 15);
  EXPECT_EQ(symbols.insert("t"), 15);
  EXPECT_EQ(symbols.size(), 16);
}

}  // namespace
}  // namespace formula
