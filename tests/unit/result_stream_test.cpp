#include <gtest/gtest.h>

#include "script/tcl_result_stream.h"

namespace {

struct Result {
  std::string text;
  TclResultStream stream{text};
};

TEST(ResultStream, FirstTextAloneIsTheWholeAnswer) {
  Result r;
  r.stream << "word";
  EXPECT_EQ(r.text, "word");
  Result withBlank;
  withBlank.stream << "a path with blanks";
  EXPECT_EQ(withBlank.text, "a path with blanks");
}

TEST(ResultStream, LaterTextsAreBracedWithoutSeparator) {
  Result r;
  r.stream << "x" << std::string("y") << std::string_view("z");
  EXPECT_EQ(r.text, "x {y}  {z} ");
}

TEST(ResultStream, ScalarsAreSeparatedByOneBlank) {
  Result r;
  r.stream << 3 << 4L << 'c' << -7LL << static_cast<unsigned short>(65535)
           << static_cast<short>(-2);
  EXPECT_EQ(r.text, "3 4 c -7 65535 -2");
}

TEST(ResultStream, ScalarAfterTextAndTextAfterScalar) {
  Result r;
  r.stream << 2 << "name" << 5;
  EXPECT_EQ(r.text, "2 {name}  5");
}

TEST(ResultStream, DoublesHaveFifteenSignificantDigits) {
  const struct {
    double value;
    const char* text;
  } cases[] = {
      {0.1, "0.1"},
      {1.0 / 3.0, "0.333333333333333"},
      {100.0, "100"},
      {1e20, "1e+20"},
      {-2.5e-7, "-2.5e-07"},
      {123456789012345678.0, "1.23456789012346e+17"},
      {0.0, "0"},
      {1e15, "1e+15"},
      {123456789012345.0, "123456789012345"},
  };
  for (const auto& c : cases) {
    Result r;
    r.stream << c.value;
    EXPECT_EQ(r.text, c.text) << c.value;
  }
}

TEST(ResultStream, FloatsArePrintedThroughTheirDoubleValue) {
  Result r;
  r.stream << 0.1f << 3.4028235e38f;
  EXPECT_EQ(r.text, "0.100000001490116 3.40282346638529e+38");
}

TEST(ResultStream, ListAtTheStartHasNoBraces) {
  Result r;
  r.stream.beginList();
  r.stream << 1 << 2;
  r.stream.endList();
  EXPECT_EQ(r.text, "1 2");
}

TEST(ResultStream, ListAfterAnItemIsBraced) {
  Result r;
  r.stream << 2;
  r.stream.beginList();
  r.stream << 1.5 << "a";
  r.stream.endList();
  r.stream << 7;
  EXPECT_EQ(r.text, "2 { 1.5 {a}  }  7");
}

TEST(ResultStream, NestedListsInsideAListAtTheStart) {
  Result r;
  r.stream.beginList();
  r.stream << "mode";
  r.stream.beginList();
  r.stream << 1 << 2;
  r.stream.endList();
  r.stream.beginList();
  r.stream.endList();
  r.stream.endList();
  EXPECT_EQ(r.text, " {mode}  { 1 2 }  { } ");
}

TEST(ResultStream, FirstTextInsideAListIsBraced) {
  Result r;
  r.stream.beginList();
  r.stream << "only";
  r.stream.endList();
  EXPECT_EQ(r.text, " {only} ");
  Result nested;
  nested.stream << 1;
  nested.stream.beginList();
  nested.stream << "t";
  nested.stream.endList();
  EXPECT_EQ(nested.text, "1 { {t}  } ");
}

TEST(ResultStream, RawTextHasNoSeparatorButCountsAsItem) {
  Result r;
  r.stream.writeRaw("abc");
  r.stream << "d";
  EXPECT_EQ(r.text, "abc {d} ");
}

TEST(ResultStream, StatusSixteenIsAnErrorWithItsMessage) {
  Result r;
  r.stream.setStatus(16, "Error in some_command! Wrong index");
  EXPECT_EQ(r.stream.status(), 1);
  EXPECT_EQ(r.text, "Error in some_command! Wrong index");
}

TEST(ResultStream, StatusZeroWithMessageEndsTheNormalResult) {
  Result r;
  r.stream << 4;
  r.stream.setStatus(0, "done");
  r.stream << 5;
  EXPECT_EQ(r.stream.status(), 0);
  // The message does not count as an item, so the next scalar still gets its blank.
  EXPECT_EQ(r.text, "4done 5");
}

TEST(ResultStream, OtherCodesPassThrough) {
  Result r;
  r.stream.setStatus(3, "");
  EXPECT_EQ(r.stream.status(), 3);
  EXPECT_EQ(r.text, "");
}

TEST(ResultStream, ReadsBackNothingAndKeepsPrecision) {
  Result r;
  r.stream << 1;
  EXPECT_EQ(r.stream.text(), "");
  EXPECT_EQ(r.stream.precision(), 15);
  EXPECT_TRUE(r.stream.good());
}

}  // namespace
