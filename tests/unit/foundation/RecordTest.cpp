#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/foundation/Value.h"

namespace chatsum {
namespace {

std::vector<std::string> keysOf(const Record& record) {
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < record.size(); ++i) keys.emplace_back(record.keyAt(i));
  return keys;
}

TEST(Record, KeepsTheOrderInWhichKeysCame) {
  Record record{{"Name", "Ann"}, {"Text", "Hi"}};
  record.set("Date", Date{0});
  record.set("Name", "Ben");
  EXPECT_EQ(keysOf(record), (std::vector<std::string>{"Name", "Text", "Date"}));
  EXPECT_EQ(record["Name"], Value("Ben"));
  EXPECT_EQ(record.valueAt(1), Value("Hi"));
}

TEST(Record, AnswersNothingForAMissingKey) {
  const Record record{{"a", 1}};
  EXPECT_EQ(record.find("b"), nullptr);
  EXPECT_TRUE(record["b"].isNone());
  EXPECT_EQ(Record().find("a"), nullptr);
  EXPECT_TRUE(Record()["a"].isNone());
  EXPECT_EQ(Record().size(), 0u);
}

TEST(Record, KeepsTheLastOfEqualKeysInAList) {
  const Record record{{"a", 1}, {"b", 2}, {"a", 3}};
  EXPECT_EQ(record.size(), 2u);
  EXPECT_EQ(record["a"], Value(3));
}

TEST(Record, IsCopiedOnTheFirstWriteAfterSharing) {
  Record first{{"a", 1}};
  Record second = first;
  EXPECT_EQ(first.identity(), second.identity());
  second.set("a", 2);
  second.set("b", 3);
  EXPECT_EQ(first["a"], Value(1));
  EXPECT_EQ(first.size(), 1u);
  EXPECT_EQ(keysOf(first), (std::vector<std::string>{"a"}));
  EXPECT_EQ(second["a"], Value(2));
  EXPECT_EQ(second["b"], Value(3));
}

TEST(Record, IsNotCopiedWhenNobodyElseHoldsIt) {
  Record record{{"a", 1}};
  const void* identity = record.identity();
  record.set("a", 2);
  EXPECT_EQ(record.identity(), identity);
}

TEST(Record, MadeFromAShapeSharesItsKeysUntilItGrows) {
  const auto shape = Shape::of({"a", "b"});
  Value one[] = {1, "x"};
  Value two[] = {2, "y"};
  Record first(shape, one);
  const Record second(shape, two);
  EXPECT_TRUE(first.shape() == second.shape());
  EXPECT_EQ(second["b"], Value("y"));
  first.set("b", "z");
  EXPECT_TRUE(first.shape() == second.shape());
  first.set("c", 3);
  EXPECT_FALSE(first.shape() == second.shape());
  EXPECT_EQ(keysOf(second), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(shape->keys().size(), 2u);
  EXPECT_EQ(first["a"], Value(1));
  EXPECT_EQ(first["c"], Value(3));
}

TEST(Record, LosesAKeyWithItsPlace) {
  Record record{{"a", 1}, {"b", 2}, {"c", 3}};
  const Record before = record;
  record.remove(record.keyAt(1));
  record.remove("z");
  EXPECT_EQ(keysOf(record), (std::vector<std::string>{"a", "c"}));
  EXPECT_EQ(record["c"], Value(3));
  EXPECT_EQ(before.size(), 3u);
  record.remove("a");
  record.remove("c");
  EXPECT_TRUE(record.empty());
  record.set("d", 4);
  EXPECT_EQ(record["d"], Value(4));
}

TEST(Record, EqualsOneWithTheSameEntriesInAnotherOrder) {
  EXPECT_EQ((Record{{"a", 1}, {"b", 2}}), (Record{{"b", 2.0}, {"a", 1}}));
  EXPECT_FALSE((Record{{"a", 1}}) == (Record{{"a", 1}, {"b", 2}}));
  EXPECT_FALSE((Record{{"a", 1}}) == (Record{{"b", 1}}));
  EXPECT_EQ(Record(), Record({}));
}

TEST(Record, MayTakeItsOwnValues) {
  Record record{{"a", "text"}};
  for (int i = 0; i < 40; ++i) record.set("k" + std::to_string(i), record["a"]);
  EXPECT_EQ(record.size(), 41u);
  EXPECT_EQ(record["k39"], Value("text"));
  record.set("a", record["k1"]);
  EXPECT_EQ(record["a"], Value("text"));
}

TEST(Record, MayHoldManyKeys) {
  Record record;
  for (int i = 0; i < 300; ++i) record.set(std::to_string(i), i);
  for (int i = 0; i < 300; ++i) ASSERT_EQ(record[std::to_string(i)], Value(i));
}

TEST(RecordField, FindsAKeyInRecordsOfAnyShape) {
  const auto shape = Shape::of({"a", "b"});
  Value one[] = {1, 2};
  Value two[] = {3, 4};
  const Record first(shape, one);
  const Record second(shape, two);
  const Record other{{"b", 5}};
  RecordField field("b");
  EXPECT_EQ(*field.find(first), Value(2));
  EXPECT_EQ(*field.find(second), Value(4));
  EXPECT_EQ(*field.find(other), Value(5));
  EXPECT_EQ(field.find(Record{{"c", 1}}), nullptr);
  EXPECT_EQ(field.find(Record()), nullptr);
  EXPECT_EQ(*field.find(first), Value(2));
  EXPECT_EQ(field.key(), "b");
}

TEST(RecordField, NoticesAKeyThatCameLater) {
  Record record{{"a", 1}};
  RecordField field("b");
  EXPECT_EQ(field.find(record), nullptr);
  record.set("b", 2);
  ASSERT_NE(field.find(record), nullptr);
  EXPECT_EQ(*field.find(record), Value(2));
  record.remove("a");
  EXPECT_EQ(*field.find(record), Value(2));
  record.remove("b");
  EXPECT_EQ(field.find(record), nullptr);
}

TEST(RecordField, IsNotFooledByARecordAtAnOldAddress) {
  RecordField field("b");
  for (int i = 0; i < 100; ++i) {
    Record record;
    if (i % 2) record.set("a", 0);
    record.set("b", i);
    ASSERT_EQ(*field.find(record), Value(i));
  }
}

}  // namespace
}  // namespace chatsum
