// The argument stream: what each extraction takes or leaves, lists level by
// level. The result stream: separators, braces, numbers and completion codes.
#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"

namespace {

template <typename Target>
Target extracted(TclArgStream& in, Target target) {
  in >> target;
  return target;
}

template <typename Integers>
std::string joined(const Integers& values) {
  std::string text;
  for (const int n : values) text += std::to_string(n) + ',';
  return text;
}

// Traces each extraction that `steps` name over `items`, then the state: i int32,
// I int64, p plain integer, d double, f float, c char, t and 4 text of capacity
// 100 and 4, v and l integer lists, [ and ] a list level (with the count of the
// level then current), r rewind, ? the state. A target not set shows its old value.
std::string trace(std::vector<const char*> items, std::string_view steps) {
  TclArgStream in(static_cast<int>(items.size()), items.data());
  std::ostringstream out;
  const auto state = [&] { return std::string(in.eof() ? "E" : "") + (in.fail() ? "F" : ""); };
  for (const char step : steps) {
    std::int32_t i = 77;
    std::string text = "old";
    if (step == 'i') out << extracted(in, std::int32_t{77});
    if (step == 'I') out << extracted(in, std::int64_t{77});
    if (step == 'p') out << (in.extractPlainInteger(i), i);
    if (step == 'd') out << extracted(in, 9.0);
    if (step == 'f') out << extracted(in, 9.0f);
    if (step == 'c') out << extracted(in, '?');
    if (step == 't') out << (in.extractText(text, 100), text);
    if (step == '4') out << (in.extractText(text, 4), text);
    if (step == 'v') out << joined(extracted(in, std::vector<int>{0}));
    if (step == 'l') out << joined(extracted(in, std::list<int>{}));
    if (step == '[') out << '[' << (in.beginList(), in.count());
    if (step == ']') out << ']' << (in.endList(), in.count());
    if (step == 'r') out << (in.rewind(), 'r');
    if (step == '?') out << state();
    out << ' ';
  }
  return out.str() + "| " + state();
}

TEST(ArgStream, Extractions) {
  const std::tuple<const char*, std::vector<const char*>, const char*, const char*> cases[] = {
      {"nothing", {}, "?i", "E 77 | E"},
      {"typed", {"12", "-3000000000", "x"}, "iIc", "12 -3000000000 x | "},
      {"floating", {"2.5", "1e-3", "a b"}, "fdt", "2.5 0.001 a b | "},
      {"never fail", {"12abc", "abc", "3.5e2xyz", "-2.9"}, "iidp", "12 0 350 -2 | "},
      {"clamped", {"99999999999", "-99999999999"}, "ii", "2147483647 -2147483648 | "},
      {"missing integer", {"1"}, "ii", "1 77 | EF"},
      {"missing int64", {"1"}, "iI", "1 77 | EF"},
      {"missing float", {"1.5"}, "df", "1.5 9 | E"},
      {"after failure", {"ab", "5", "6"}, "ciIpr", "? 77 77 77 r | F"},
      {"rewind", {"3", "4"}, "iiri", "3 4 r 3 | "},
      {"text too long", {"abc", "abcd"}, "44", "abc old | F"},
      {"list", {"2", "{a b} c {d e f}", "9"}, "i[ttt?]i", "2 [3 a b c d e f  ]3 9 | "},
      {"short list", {"one", "7"}, "[tt?]i", "[1 one old E ]2 7 | "},
      {"empty list", {"", "5"}, "[?]i", "[0 E ]2 5 | "},
      {"integer lists", {"1 2x -3", "", "4 5", "6"}, "vvli", "0,1,2,-3, 0, 4,5, 6 | "},
      {"no list left", {}, "v[]]", "0, [0 ]0 ]0 | E"},
      {"failed before list", {"", "{a b}"}, "c[", "? [0 | E"},
      {"malformed list", {"{a", "1"}, "[?]i", "[0 E ]2 1 | "},
      {"unbalanced", {"x {y z}"}, "[t[", "[2 x [2 | "},
  };
  for (const auto& [name, items, steps, expected] : cases)
    EXPECT_EQ(trace(items, steps), expected) << name;
}

TEST(ResultStream, TextOfEachShapeOfAnswer) {
  const std::tuple<const char*, std::function<void(ResultStream&)>, const char*, int> cases[] = {
      {"first text", [](ResultStream& r) { r << "a b"; }, "a b", 0},
      {"scalars", [](ResultStream& r) { r << 3 << 'c' << -7LL; }, "3 c -7", 0},
      {"doubles", [](ResultStream& r) { r << 1.0 / 3.0 << 1e20 << 100.0; },
       "0.333333333333333 1e+20 100", 0},
      {"list at the start", [](ResultStream& r) { (r.beginList() << 1 << 2).endList(); }, "1 2", 0},
      {"list in a list at the start",
       [](ResultStream& r) { ((r.beginList() << "m").beginList() << 1).endList().endList(); },
       " {m}  { 1 } ", 0},
      {"text first in a list", [](ResultStream& r) { (r.beginList() << "only").endList(); },
       " {only} ", 0},
      {"raw text", [](ResultStream& r) { r.writeRaw("abc") << "d"; }, "abc {d} ", 0},
      {"error", [](ResultStream& r) { r.setStatus(16, "Error in some_command! Wrong index"); },
       "Error in some_command! Wrong index", 1},
      // The message is no item: the next scalar still gets its blank.
      {"message", [](ResultStream& r) { ((r << 4).setStatus(0, "done"), r << 5); }, "4done 5", 0},
      {"other code", [](ResultStream& r) { r.setStatus(3, ""); }, "", 3},
  };
  for (const auto& [name, write, expected, status] : cases) {
    std::string text;
    TclResultStream result(text);
    write(result);
    EXPECT_EQ(text, expected) << name;
    EXPECT_EQ(result.status(), status) << name;
  }
}

}  // namespace
