// The result stream: how items, texts and lists are separated and braced,
// numbers written, and the completion code set.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "script/tcl_result_stream.h"

namespace {

TEST(ResultStream, TextOfEachShapeOfAnswer) {
  const struct {
    const char* name;
    std::function<void(ResultStream&)> write;
    const char* text;
    int status;
  } cases[] = {
      {"first text alone", [](ResultStream& r) { r << "a path with blanks"; }, "a path with blanks",
       0},
      {"later texts",
       [](ResultStream& r) { r << "x" << std::string("y") << std::string_view("z"); },
       "x {y}  {z} ", 0},
      {"scalars",
       [](ResultStream& r) {
         r << 3 << 4L << 'c' << -7LL << static_cast<unsigned short>(65535)
           << static_cast<short>(-2);
       },
       "3 4 c -7 65535 -2", 0},
      {"scalar, text, scalar", [](ResultStream& r) { r << 2 << "name" << 5; }, "2 {name}  5", 0},
      {"doubles", [](ResultStream& r) { r << 1.0 / 3.0 << 1e20 << 100.0; },
       "0.333333333333333 1e+20 100", 0},
      {"list at the start", [](ResultStream& r) { (r.beginList() << 1 << 2).endList(); }, "1 2", 0},
      {"list after an item",
       [](ResultStream& r) { ((r << 2).beginList() << 1.5 << "a").endList() << 7; },
       "2 { 1.5 {a}  }  7", 0},
      {"lists in a list at the start",
       [](ResultStream& r) {
         ((r.beginList() << "mode").beginList() << 1 << 2)
             .endList()
             .beginList()
             .endList()
             .endList();
       },
       " {mode}  { 1 2 }  { } ", 0},
      {"text first in a list", [](ResultStream& r) { (r.beginList() << "only").endList(); },
       " {only} ", 0},
      {"raw text", [](ResultStream& r) { r.writeRaw("abc") << "d"; }, "abc {d} ", 0},
      {"error", [](ResultStream& r) { r.setStatus(16, "Error in some_command! Wrong index"); },
       "Error in some_command! Wrong index", 1},
      // The message is no item: the next scalar still gets its blank.
      {"message",
       [](ResultStream& r) {
         r << 4;
         r.setStatus(0, "done");
         r << 5;
       },
       "4done 5", 0},
      {"other code", [](ResultStream& r) { r.setStatus(3, ""); }, "", 3},
  };
  for (const auto& c : cases) {
    std::string text;
    TclResultStream result(text);
    c.write(result);
    EXPECT_EQ(text, c.text) << c.name;
    EXPECT_EQ(result.status(), c.status) << c.name;
  }
}

}  // namespace
