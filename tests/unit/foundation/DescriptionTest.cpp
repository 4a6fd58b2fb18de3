#include "platform/foundation/Description.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace chatsum {
namespace {

TEST(Description, OfPlainValuesIsWhatTheyAre) {
  EXPECT_EQ(Value().description(), "(null)");
  EXPECT_EQ(Value(true).description(), "1");
  EXPECT_EQ(Value(false).description(), "0");
  EXPECT_EQ(Value(-42).description(), "-42");
  EXPECT_EQ(Value("say \"hi\"\n").description(), "say \"hi\"\n");
  EXPECT_EQ(Value(Ref<Object>()).description(), "(null)");
}

TEST(Description, OfRealsReadsBackAndHasAnExponentOnlyFarFromOne) {
  EXPECT_EQ(Value(0.1).description(), "0.1");
  EXPECT_EQ(Value(100000.0).description(), "100000");
  EXPECT_EQ(Value(1578307200.25).description(), "1578307200.25");
  EXPECT_EQ(Value(1e15).description(), "1000000000000000");
  EXPECT_EQ(Value(1e16).description(), "1e+16");
  EXPECT_EQ(Value(-0.0001).description(), "-0.0001");
  EXPECT_EQ(Value(0.00001).description(), "1e-05");
  EXPECT_EQ(Value(0.0).description(), "0");
  for (const double number : {0.1, 1.0 / 3, 1e300, 5e-324, 123456789.123456789}) {
    EXPECT_EQ(std::strtod(Value(number).description().c_str(), nullptr), number) << number;
  }
}

TEST(Description, OfDatesIsInUtc) {
  EXPECT_EQ(Value(Date{1578307200}).description(), "2020-01-06 10:40:00 +0000");
  EXPECT_EQ(Value(Date{-0.5}).description(), "1969-12-31 23:59:59 +0000");
  EXPECT_EQ(Value(Date{951782399}).description(), "2000-02-28 23:59:59 +0000");
  EXPECT_EQ(Value(Date{951782400}).description(), "2000-02-29 00:00:00 +0000");
  EXPECT_EQ(Value(Date{-62135596800}).description(), "0001-01-01 00:00:00 +0000");
  EXPECT_FALSE(Value(Date{1e300}).description().empty());
  EXPECT_FALSE(Value(Date{std::nan("")}).description().empty());
}

TEST(Description, OfArraysAndRecordsIsAPropertyList) {
  EXPECT_EQ(Array{}.description(), "(\n)");
  EXPECT_EQ(Record{}.description(), "{\n}");
  EXPECT_EQ((Array{"a", 1, true}).description(), "(\n    a,\n    1,\n    1\n)");
  EXPECT_EQ((Record{{"b", 2}, {"a", 1}}).description(), "{\n    a = 1;\n    b = 2;\n}");
}

TEST(Description, QuotesWhatIsNotLettersAndDigitsOnly) {
  EXPECT_EQ((Record{{"%@: %@ (%@)", "Name,Text,Date"}}).description(),
            "{\n    \"%@: %@ (%@)\" = \"Name,Text,Date\";\n}");
  EXPECT_EQ((Array{"", "a b", -1, 1.5, "a_b", Value()}).description(),
            "(\n    \"\",\n    \"a b\",\n    \"-1\",\n    \"1.5\",\n    \"a_b\",\n    \"<null>\"\n)");
  EXPECT_EQ((Array{Date{0}}).description(), "(\n    \"1970-01-01 00:00:00 +0000\"\n)");
}

TEST(Description, EscapesInsideQuotes) {
  EXPECT_EQ((Array{"a\"b\\c\nd\te"}).description(), "(\n    \"a\\\"b\\\\c\\nd\\te\"\n)");
  EXPECT_EQ((Array{"é"}).description(), "(\n    \"\\U00e9\"\n)");
  EXPECT_EQ((Array{"😀"}).description(), "(\n    \"\\Ud83d\\Ude00\"\n)");
  EXPECT_EQ((Array{std::string(1, '\x01')}).description(), "(\n    \"\\U0001\"\n)");
  EXPECT_EQ((Array{std::string("\xFF")}).description(), "(\n    \"\\Ufffd\"\n)");
}

TEST(Description, IndentsInnerListsAsThePlatformDoes) {
  EXPECT_EQ((Array{Array{"a"}, Record{{"k", 1}}}).description(),
            "(\n        (\n        a\n    ),\n        {\n        k = 1;\n    }\n)");
  EXPECT_EQ((Record{{"a", Record{{"b", Array{1, 2}}}}}).description(),
            "{\n    a =     {\n        b =         (\n            1,\n            2\n        );\n    };\n}");
}

TEST(Description, OfBottomlessNestingEnds) {
  Value value(Array{});
  for (int i = 0; i < 1000; ++i) value = Value(Array{value});
  EXPECT_NE(value.description().find("..."), std::string::npos);
  EXPECT_LT(value.description().size(), 100000u);
}

TEST(PlainDecimal, HasNoExponentAndNoSeparators) {
  EXPECT_EQ(description::plainDecimal(1578307200), "1578307200");
  EXPECT_EQ(description::plainDecimal(1578307200.123456), "1578307200.123456");
  EXPECT_EQ(description::plainDecimal(1e21), "1000000000000000000000");
  EXPECT_EQ(description::plainDecimal(-0.00001), "-0.00001");
  EXPECT_GT(description::plainDecimal(std::numeric_limits<double>::max()).size(), 300u);
  EXPECT_GT(description::plainDecimal(std::numeric_limits<double>::denorm_min()).size(), 300u);
}

}  // namespace
}  // namespace chatsum
