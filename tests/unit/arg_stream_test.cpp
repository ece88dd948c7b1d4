// The argument stream: what each extraction takes, what a missing or wrong
// argument leaves, and lists read level by level.
#include <gtest/gtest.h>

#include <list>
#include <sstream>
#include <string>
#include <vector>

#include "script/tcl_arg_stream.h"

namespace {

template <typename Integers>
std::string joined(const Integers& values) {
  std::string text;
  for (const int n : values) text += std::to_string(n) + ',';
  return text;
}

// Runs the extractions that `steps` name over `items` and traces each result,
// then the stream's state: i int32, I int64, p plain integer, d double,
// f float, c char, t text (capacity 100), 4 text (capacity 4), v and l integer
// lists, [ and ] a list level (with the count of the level then current),
// r rewind, ? the state. A target that is not set shows its old value.
std::string trace(std::vector<const char*> items, std::string_view steps) {
  TclArgStream in(static_cast<int>(items.size()), items.data());
  std::ostringstream out;
  const auto state = [&] { return std::string(in.eof() ? "E" : "") + (in.fail() ? "F" : ""); };
  for (const char step : steps) {
    std::int32_t i = 77;
    std::int64_t big = 77;
    double d = 9;
    float f = 9;
    char c = '?';
    std::string text = "old";
    std::vector<int> v{0};
    std::list<int> l;
    if (step == 'i') out << (in >> i, i);
    if (step == 'I') out << (in >> big, big);
    if (step == 'p') out << (in.extractPlainInteger(i), i);
    if (step == 'd') out << (in >> d, d);
    if (step == 'f') out << (in >> f, f);
    if (step == 'c') out << (in >> c, c);
    if (step == 't') out << (in.extractText(text, 100), text);
    if (step == '4') out << (in.extractText(text, 4), text);
    if (step == 'v') out << joined((in >> v, v));
    if (step == 'l') out << joined((in >> l, l));
    if (step == '[') out << '[' << (in.beginList(), in.count());
    if (step == ']') out << ']' << (in.endList(), in.count());
    if (step == 'r') out << (in.rewind(), 'r');
    if (step == '?') out << state();
    out << ' ';
  }
  return out.str() + "| " + state();
}

TEST(ArgStream, Extractions) {
  const struct {
    const char* name;
    std::vector<const char*> items;
    const char* steps;
    const char* trace;
  } cases[] = {
      {"nothing", {}, "?i", "E 77 | E"},
      {"typed", {"12", "-3000000000", "x"}, "iIc", "12 -3000000000 x | "},
      {"floating", {"2.5", "1e-3", "a b"}, "fdt", "2.5 0.001 a b | "},
      {"never fail", {"12abc", "abc", " 7", "+5"}, "iiii", "12 0 7 5 | "},
      {"never fail either", {"3.5e2xyz", "inf", "-2.9"}, "ddp", "350 inf -2 | "},
      {"clamped", {"99999999999", "-99999999999"}, "ii", "2147483647 -2147483648 | "},
      {"missing integer", {"1"}, "ii", "1 77 | EF"},
      {"missing int64", {"1"}, "iI", "1 77 | EF"},
      {"missing float", {"1.5"}, "df", "1.5 9 | E"},
      {"after failure", {"ab", "5", "6"}, "ciIpr", "? 77 77 77 r | F"},
      {"rewind", {"3", "4"}, "iiri", "3 4 r 3 | "},
      {"one character", {"", "q"}, "c", "? | F"},
      {"text too long", {"abcd"}, "4", "old | F"},
      {"text fits", {"abc"}, "4", "abc | "},
      {"list", {"2", "{a b} c {d e f}", "9"}, "i[ttt?]i", "2 [3 a b c d e f  ]3 9 | "},
      {"short list", {"one", "7"}, "[tt?]i", "[1 one old E ]2 7 | "},
      {"empty list", {"", "5"}, "[?]i", "[0 E ]2 5 | "},
      {"integer lists", {"1 2x -3", "", "4 5", "6"}, "vvli", "0,1,2,-3, 0, 4,5, 6 | "},
      {"no list left", {}, "v[]]", "0, [0 ]0 ]0 | E"},
      {"failed before list", {"", "{a b}"}, "c[", "? [0 | E"},
      {"malformed list", {"{a", "1"}, "[?]i", "[0 E ]2 1 | "},
      {"unbalanced", {"x {y z}"}, "[t[", "[2 x [2 | "},
  };
  for (const auto& c : cases) EXPECT_EQ(trace(c.items, c.steps), c.trace) << c.name;
}

}  // namespace
