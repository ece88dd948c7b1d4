#include <gtest/gtest.h>

#include <cmath>
#include <list>
#include <vector>

#include "script/tcl_arg_stream.h"

namespace {

// Arguments as a command receives them after its command word.
struct Args {
  explicit Args(std::vector<const char*> items)
      : items_(std::move(items)), stream(static_cast<int>(items_.size()), items_.data()) {}
  std::vector<const char*> items_;
  TclArgStream stream;
};

TEST(ArgStream, NoArgumentsStartsAtTheEnd) {
  Args a({});
  EXPECT_EQ(a.stream.count(), 0);
  EXPECT_TRUE(a.stream.eof());
  EXPECT_FALSE(a.stream.good());
  int value = 42;
  a.stream >> value;
  EXPECT_EQ(value, 42);
}

TEST(ArgStream, TypedExtractionInOrder) {
  Args a({"12", "-3000000000", "2.5", "1e-3", "x", "path/to file"});
  int i = 0;
  std::int64_t big = 0;
  float f = 0;
  double d = 0;
  char c = 0;
  std::string text;
  a.stream >> i >> big >> f >> d >> c;
  a.stream.extractText(text, 100);
  EXPECT_TRUE(a.stream.good());
  EXPECT_EQ(i, 12);
  EXPECT_EQ(big, -3000000000LL);
  EXPECT_EQ(f, 2.5f);
  EXPECT_EQ(d, 1e-3);
  EXPECT_EQ(c, 'x');
  EXPECT_EQ(text, "path/to file");
  EXPECT_FALSE(a.stream.eof());
}

TEST(ArgStream, NumbersNeverFailToConvert) {
  Args a({"12abc", "abc", " 7", "+5", "3.5e2xyz", "inf", "-2.9"});
  int trailing = -1, word = -1, blank = -1, plus = -1, truncated = -1;
  double exponent = 0, infinite = 0;
  a.stream >> trailing >> word >> blank >> plus >> exponent >> infinite;
  a.stream.extractPlainInteger(truncated);
  EXPECT_TRUE(a.stream.good());
  EXPECT_EQ(trailing, 12);
  EXPECT_EQ(word, 0);
  EXPECT_EQ(blank, 7);
  EXPECT_EQ(plus, 5);
  EXPECT_EQ(exponent, 350.0);
  EXPECT_TRUE(std::isinf(infinite));
  EXPECT_EQ(truncated, -2);
}

TEST(ArgStream, ThirtyTwoBitIntegersAreClamped) {
  Args a({"99999999999", "-99999999999"});
  int high = 0, low = 0;
  a.stream >> high >> low;
  EXPECT_EQ(high, 2147483647);
  EXPECT_EQ(low, -2147483647 - 1);
}

TEST(ArgStream, MissingIntegerSetsEndAndFailureAndKeepsTarget) {
  Args a({"1"});
  int first = 0, second = 77;
  a.stream >> first >> second;
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 77);
  EXPECT_TRUE(a.stream.eof());
  EXPECT_TRUE(a.stream.fail());
  EXPECT_FALSE(a.stream);
}

TEST(ArgStream, MissingFloatOnlyReachesTheEnd) {
  Args one({"1.5"});
  double d = 9, e = 9;
  one.stream >> d >> e;
  EXPECT_EQ(d, 1.5);
  EXPECT_EQ(e, 9);
  EXPECT_TRUE(one.stream.eof());
  EXPECT_FALSE(one.stream.fail());
}

TEST(ArgStream, CheckedIntegersTakeNothingOnceNotGood) {
  // After a failed character the decimal integer form leaves the next
  // argument in place, while the other forms use it up.
  Args a({"ab", "5", "6"});
  char c = '?';
  int checked = 0, plain = 0;
  a.stream >> c >> checked;
  EXPECT_EQ(c, '?');
  EXPECT_EQ(checked, 0);
  a.stream.extractPlainInteger(plain);
  EXPECT_EQ(plain, 0);
  a.stream.rewind();
  EXPECT_TRUE(a.stream.fail());  // the state stays after a rewind
}

TEST(ArgStream, RewindReadsTheLevelAgain) {
  Args a({"3", "4"});
  int x = 0, y = 0, z = 0;
  a.stream >> x >> y;
  a.stream.rewind();
  a.stream >> z;
  EXPECT_EQ(z, 3);
  EXPECT_TRUE(a.stream.good());
}

TEST(ArgStream, CharacterMustBeExactlyOneLong) {
  Args a({"", "q"});
  char c = '-';
  a.stream >> c;
  EXPECT_EQ(c, '-');
  EXPECT_TRUE(a.stream.fail());
}

TEST(ArgStream, TextMustBeShorterThanTheCapacity) {
  Args a({"abcd", "abc"});
  std::string text = "old";
  a.stream.extractText(text, 4);
  EXPECT_EQ(text, "old");
  EXPECT_TRUE(a.stream.fail());

  Args b({"abc"});
  b.stream.extractText(text, 4);
  EXPECT_EQ(text, "abc");
  EXPECT_TRUE(b.stream.good());
}

TEST(ArgStream, ListsAreSplitWithTheListSyntax) {
  Args a({"2", "{a b} c {d e f}", "9"});
  int n = 0, after = 0;
  std::string first, second, third;
  a.stream >> n;
  a.stream.beginList();
  EXPECT_EQ(a.stream.count(), 3);
  a.stream.extractText(first, 100).extractText(second, 100).extractText(third, 100);
  a.stream.endList();
  a.stream >> after;
  EXPECT_EQ(first, "a b");
  EXPECT_EQ(second, "c");
  EXPECT_EQ(third, "d e f");
  EXPECT_EQ(after, 9);
  EXPECT_TRUE(a.stream.good());
}

TEST(ArgStream, MissingListElementsLeaveTheOuterLevelUsable) {
  Args a({"one", "7"});
  std::string first, missing = "kept";
  int after = 0;
  a.stream.beginList();
  a.stream.extractText(first, 100).extractText(missing, 100);
  EXPECT_TRUE(a.stream.eof());
  a.stream.endList();
  a.stream >> after;
  EXPECT_EQ(first, "one");
  EXPECT_EQ(missing, "kept");
  EXPECT_EQ(after, 7);
}

TEST(ArgStream, EmptyListHasItsEndAlreadyReached) {
  Args a({"", "5"});
  a.stream.beginList();
  EXPECT_EQ(a.stream.count(), 0);
  EXPECT_TRUE(a.stream.eof());
  a.stream.endList();
  int after = 0;
  a.stream >> after;
  EXPECT_EQ(after, 5);
}

TEST(ArgStream, IntegerListsAppendEveryElement) {
  Args a({"1 2x -3", "", "4 5", "6"});
  std::vector<int> array{0};
  std::list<int> linked;
  std::vector<int> none;
  a.stream >> array >> none >> linked;
  int after = 0;
  a.stream >> after;
  EXPECT_EQ(array, (std::vector<int>{0, 1, 2, -3}));
  EXPECT_TRUE(none.empty());
  EXPECT_EQ(linked, (std::list<int>{4, 5}));
  EXPECT_EQ(after, 6);
}

TEST(ArgStream, ListWhenNoArgumentIsLeft) {
  Args a({});
  std::vector<int> values;
  a.stream >> values;
  EXPECT_TRUE(values.empty());
  a.stream.beginList();
  EXPECT_EQ(a.stream.count(), 0);
  a.stream.endList();
  a.stream.endList();  // one too many: the outermost level stays
  EXPECT_EQ(a.stream.count(), 0);
}

TEST(ArgStream, UnbalancedListIsReleasedWithTheStream) {
  Args a({"x {y z}"});
  a.stream.beginList();
  std::string x;
  a.stream.extractText(x, 10);
  a.stream.beginList();
  EXPECT_EQ(a.stream.count(), 2);
  EXPECT_EQ(x, "x");
}

}  // namespace
