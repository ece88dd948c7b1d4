// The result stream: how items, texts and lists are separated and braced,
// numbers written, and the completion code set. (Texts after items, and a
// list after items, are pinned by the mode descriptions of the turbomachinery
// commands.)
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
  for (const auto& c : cases) {
    std::string text;
    TclResultStream result(text);
    c.write(result);
    EXPECT_EQ(text, c.text) << c.name;
    EXPECT_EQ(result.status(), c.status) << c.name;
  }
}

}  // namespace
