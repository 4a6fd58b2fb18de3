#include "platform/foundation/Value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace chatsum {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

/// An object that counts how many of its kind live.
class Counted final : public Object {
 public:
  explicit Counted(int& living) : living_(living) { ++living_; }
  ~Counted() override { --living_; }
  [[nodiscard]] std::string description() const override { return "<Counted: 1>"; }

 private:
  int& living_;
};

TEST(Value, TakesEveryKindFromTheTypeItIsMadeOf) {
  EXPECT_EQ(Value().kind(), Value::Kind::kNone);
  EXPECT_EQ(Value(true).kind(), Value::Kind::kBool);
  EXPECT_EQ(Value(1).kind(), Value::Kind::kInteger);
  EXPECT_EQ(Value(1u).kind(), Value::Kind::kInteger);
  EXPECT_EQ(Value(1.0).kind(), Value::Kind::kReal);
  EXPECT_EQ(Value(Date{1}).kind(), Value::Kind::kDate);
  EXPECT_EQ(Value(Array{1}).kind(), Value::Kind::kArray);
  EXPECT_EQ(Value(Record{{"a", 1}}).kind(), Value::Kind::kRecord);
}

TEST(Value, OfALiteralIsAStringNotABoolean) {
  EXPECT_EQ(Value("x").kind(), Value::Kind::kString);
  EXPECT_EQ(Value(std::string("x")).kind(), Value::Kind::kString);
  EXPECT_EQ(Value(std::string_view("x")).kind(), Value::Kind::kString);
  const Array array{"a", true, 2};
  EXPECT_EQ(array[0].kind(), Value::Kind::kString);
  EXPECT_EQ(array[1].kind(), Value::Kind::kBool);
}

TEST(Value, AnswersNullForKindsItIsNot) {
  const Value number(1);
  EXPECT_EQ(number.asDate(), nullptr);
  EXPECT_EQ(number.asString(), nullptr);
  EXPECT_EQ(number.asArray(), nullptr);
  EXPECT_EQ(number.asRecord(), nullptr);
  EXPECT_EQ(number.asObject(), nullptr);
  EXPECT_FALSE(number.isNone());
  EXPECT_TRUE(Value("").isString());
}

TEST(Value, ReadsIntegersFromStrings) {
  EXPECT_EQ(Value("12").integerValue(), 12);
  EXPECT_EQ(Value(" \t\n-12abc").integerValue(), -12);
  EXPECT_EQ(Value("+7").integerValue(), 7);
  EXPECT_EQ(Value("3.9").integerValue(), 3);
  EXPECT_EQ(Value("").integerValue(), 0);
  EXPECT_EQ(Value("abc").integerValue(), 0);
  EXPECT_EQ(Value("--1").integerValue(), 0);
  EXPECT_EQ(Value("-").integerValue(), 0);
  EXPECT_EQ(Value("0x10").integerValue(), 0);
}

TEST(Value, SaturatesIntegersOfStringsAtTheirEnds) {
  EXPECT_EQ(Value("9223372036854775807").integerValue(), kMost);
  EXPECT_EQ(Value("9223372036854775806").integerValue(), kMost - 1);
  EXPECT_EQ(Value("9223372036854775808").integerValue(), kMost);
  EXPECT_EQ(Value("99999999999999999999999").integerValue(), kMost);
  EXPECT_EQ(Value("-9223372036854775807").integerValue(), kLeast + 1);
  EXPECT_EQ(Value("-9223372036854775808").integerValue(), kLeast);
  EXPECT_EQ(Value("-99999999999999999999999").integerValue(), kLeast);
}

TEST(Value, CutsAndSaturatesReals) {
  EXPECT_EQ(Value(2.9).integerValue(), 2);
  EXPECT_EQ(Value(-2.9).integerValue(), -2);
  EXPECT_EQ(Value(1e300).integerValue(), kMost);
  EXPECT_EQ(Value(-kInfinity).integerValue(), kLeast);
  EXPECT_EQ(Value(kNotANumber).integerValue(), 0);
}

TEST(Value, OfOtherKindsCountsAsZero) {
  for (const Value& value : {Value(), Value(Date{5}), Value(Array{1}), Value(Record{{"a", 1}})}) {
    EXPECT_EQ(value.integerValue(), 0);
    EXPECT_EQ(value.doubleValue(), 0);
    EXPECT_FALSE(value.boolValue());
  }
  EXPECT_EQ(Value(true).integerValue(), 1);
  EXPECT_EQ(Value(true).doubleValue(), 1);
}

TEST(Value, ReadsRealsFromStrings) {
  EXPECT_EQ(Value("9.3.5").doubleValue(), 9.3);
  EXPECT_EQ(Value(" -.5x").doubleValue(), -0.5);
  EXPECT_EQ(Value("+1.25").doubleValue(), 1.25);
  EXPECT_EQ(Value("1e3").doubleValue(), 1000);
  EXPECT_EQ(Value("1e999").doubleValue(), HUGE_VAL);
  EXPECT_EQ(Value("-1e999").doubleValue(), -HUGE_VAL);
  EXPECT_EQ(Value("1e-999").doubleValue(), 0);
  EXPECT_EQ(Value("0.0").doubleValue(), 0);
  for (const char* none : {"", " ", "-", "+", "+-5", "--5", "-+5", "inf", "-inf", "nan", ".", "e5", "x1"}) {
    EXPECT_EQ(Value(none).doubleValue(), 0) << none;
  }
  EXPECT_EQ(Value("0x1F").doubleValue(), 0);
}

TEST(Value, ReadsBooleansFromStrings) {
  for (const char* yes : {"YES", "y", "true", "T", "1", "9x", " +001", "-7", "Yonder"})
    EXPECT_TRUE(Value(yes).boolValue()) << yes;
  for (const char* no : {"", "NO", "0", "000", "false", "off", "++1", "x1"}) EXPECT_FALSE(Value(no).boolValue()) << no;
  EXPECT_TRUE(Value(-1).boolValue());
  EXPECT_TRUE(Value(0.1).boolValue());
  EXPECT_FALSE(Value(0).boolValue());
  EXPECT_FALSE(Value(-0.0).boolValue());
}

TEST(Value, ComparesNumbersAsNumbersAndOthersByKind) {
  EXPECT_EQ(Value(1), Value(1.0));
  EXPECT_FALSE(Value(1) == Value("1"));
  EXPECT_FALSE(Value(1) == Value(Date{1}));
  EXPECT_EQ(Value(), Value());
  EXPECT_EQ(Value("ann"), Value(std::string("ann")));
  EXPECT_EQ(Value(Array{1, "b"}), Value(Array{1.0, "b"}));
  EXPECT_FALSE(Value(Array{1}) == Value(Array{1, 2}));
}

TEST(Value, OrdersReferencesOfDatesAsDates) {
  const double dates[] = {-kInfinity, -1e18, -2.5, -1, -1e-300, 0, 1e-300, 1, 1.5, 978307200, 1e18, kInfinity};
  for (std::size_t i = 0; i + 1 < std::size(dates); ++i) {
    EXPECT_LT(Value(Date{dates[i]}).reference(), Value(Date{dates[i + 1]}).reference()) << dates[i];
    EXPECT_LT(Value(dates[i]).reference(), Value(dates[i + 1]).reference()) << dates[i];
  }
  EXPECT_EQ(Value(Date{-0.0}).reference(), Value(Date{0.0}).reference());
}

TEST(Value, OrdersReferencesOfIntegersAsIntegers) {
  const std::int64_t numbers[] = {kLeast, -2, -1, 0, 1, 2, kMost};
  for (std::size_t i = 0; i + 1 < std::size(numbers); ++i) {
    EXPECT_LT(Value(numbers[i]).reference(), Value(numbers[i + 1]).reference());
  }
}

TEST(Value, HasTheAddressOfACountedThingAsItsReference) {
  const Value string("ann");
  const Value same = string;
  EXPECT_EQ(string.reference(), same.reference());
  EXPECT_NE(string.reference(), Value("ann").reference());
  const Value array(Array{1});
  EXPECT_EQ(array.reference(), Value(array).reference());
}

TEST(Value, KeepsAnObjectAsLongAsSomebodyHoldsIt) {
  int living = 0;
  {
    Value value(Ref<Object>::adopt(new Counted(living)));
    Value copy = value;
    EXPECT_EQ(living, 1);
    EXPECT_EQ(value, copy);
    value = 5;
    EXPECT_EQ(living, 1);
    EXPECT_EQ(copy.description(), "<Counted: 1>");
    Value moved = std::move(copy);
    EXPECT_TRUE(copy.isNone());  // NOLINT: a moved-from value is nothing, on purpose
    EXPECT_NE(moved.asObject(), nullptr);
  }
  EXPECT_EQ(living, 0);
}

TEST(Value, MayBeAssignedAPartOfItself) {
  Value value(Array{Array{"inner"}, 2});
  value = Value(*value.asArray()).asArray()->operator[](0);
  EXPECT_EQ(value, Value(Array{"inner"}));

  std::vector<Value> items{Value("kept alive by nobody else")};
  Value owner{Array(std::move(items))};
  auto& inside = const_cast<Array*>(owner.asArray())->mutableItems();
  owner = std::move(inside[0]);
  EXPECT_EQ(owner.description(), "kept alive by nobody else");
  Value& same = owner;
  owner = std::move(same);
  EXPECT_EQ(owner.description(), "kept alive by nobody else");
}

TEST(Value, MayBeCopiedOnManyThreads) {
  const Value shared(Array{"a", Record{{"b", "c"}}});
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&shared] {
        for (int n = 0; n < 2000; ++n) {
          const Value copy = shared;
          ASSERT_EQ(copy.asArray()->size(), 2u);
        }
      });
    }
  }
  EXPECT_EQ(shared.asArray()->size(), 2u);
}

TEST(Array, IsCopiedOnTheFirstWriteAfterSharing) {
  Array first{1, 2};
  Array second = first;
  EXPECT_EQ(first.identity(), second.identity());
  second.append(3);
  EXPECT_EQ(first.size(), 2u);
  EXPECT_EQ(second.size(), 3u);
  const void* identity = second.identity();
  second.mutableItems()[0] = "x";
  EXPECT_EQ(second.identity(), identity);
  EXPECT_EQ(first[0], Value(1));
  EXPECT_EQ(second[0], Value("x"));
}

TEST(Array, IsEmptyWhenDefaultMade) {
  const Array array;
  EXPECT_TRUE(array.empty());
  EXPECT_EQ(array.begin(), array.end());
  EXPECT_EQ(array, Array({}));
}

TEST(Array, MayTakeItsOwnItems) {
  Array array{"a"};
  for (int i = 0; i < 20; ++i) array.append(array[0]);
  EXPECT_EQ(array.size(), 21u);
  EXPECT_EQ(array[20], Value("a"));
}

TEST(Date, ComparesAsItsSeconds) {
  EXPECT_LT(Date{-1}, Date{0});
  EXPECT_EQ(Date{-0.0}, Date{0});
  EXPECT_FALSE(Date{kNotANumber} == Date{kNotANumber});
  EXPECT_EQ(kSecondsFrom1970To2001, 978307200);
}

TEST(String, IsTheEmptyStringWhenDefaultMade) {
  EXPECT_TRUE(String().empty());
  EXPECT_EQ(String().view(), "");
  EXPECT_EQ(String(), String(""));
  EXPECT_FALSE(String("a") == String("b"));
}

TEST(String, KeepsZeroBytes) {
  const std::string bytes("a\0b", 3);
  EXPECT_EQ(String(bytes).view(), bytes);
  EXPECT_EQ(String(bytes).str().size(), 3u);
}

}  // namespace
}  // namespace chatsum
