// The look-ups that ask the address-book database itself.

#include "tests/support/OpenDescriptors.h"
#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ValueLookUp : public ReadingTest {};

TEST_F(ValueLookUp, FindsANumberAsItIs) {
  addressBook().value(3, "+15550100177");
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), 7);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ValueLookUp, FindsANumberAsTheSystemPrintsIt) {
  fake.addressBook.numbers["+15550100123"] = "+1 (555) 010-0123";
  addressBook().value(7, "+1 (555) 010-0123");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("5550100123"), -1);
}

TEST_F(ValueLookUp, TakesTheFirstRow) {
  addressBook().value(9, "+15550100123");
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), 9);
}

TEST_F(ValueLookUp, IgnoresTheCaseOfAsciiLettersOnly) {
  addressBook().value(7, "Ada@Example.com");
  addressBook().value(8, "\xC3\x84rger");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("ada@example.COM"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("\xC3\xA4rger"), -1);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("da@example.com"), -1);
}

TEST_F(ValueLookUp, TakesUnderscoreAndPercentForWildcards) {
  addressBook().value(7, "ada-one@example.com");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("ada_one@example.com"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("ada%"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("ada__one@example.com"), -1);
}

TEST_F(ValueLookUp, FindsValuesWithQuotes) {
  addressBook().value(7, "o'brien@example.com");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("o'brien@example.com"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("' OR 1=1 OR VALUE LIKE '"), -1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ValueLookUp, IsMinusOneWhenNothingIsFound) {
  addressBook().value(7, std::nullopt);
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), -1);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street 1"), -1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ValueLookUp, LogsWhenTheAddressBookCannotBeOpened) {
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), -1);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street 1"), -1);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils getMultiValueRecordID:], [Line 346], 2. Error "
                          "while opening connection.",
                          "com.orbelle.Chatsum: Error => +[ChatsumUtils getMultiValueEntryID:], [Line 370], 2. Error "
                          "while opening connection."));
}

TEST_F(ValueLookUp, LogsWhenTheStatementIsRefused) {
  addressBook().run("DROP TABLE ABMultiValue");
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), -1);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street 1"), -1);
  EXPECT_THAT(
      fake.log.lines(),
      ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils getMultiValueRecordID:], [Line 340], Error while "
                  "preparing statement. Error: 'no such table: ABMULTIVALUE'",
                  "com.orbelle.Chatsum: Error => +[ChatsumUtils getMultiValueEntryID:], [Line 364], Error while "
                  "preparing statement. Error: 'no such table: ABMULTIVALUE'"));
}

TEST_F(ValueLookUp, FindsThePersonOfAPartOfACompoundValue) {
  const std::int64_t address = addressBook().value(7, std::nullopt);
  addressBook().entry(address, 1, "Example Street 1");
  addressBook().entry(address, 2, "O'Town");
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street 1"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("EXAMPLE street 1"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("O'Town"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("%Street%"), 7);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Street"), -1);
}

TEST_F(ValueLookUp, IsZeroForAPartWhoseCompoundValueIsGone) {
  addressBook().entry(99, 1, "Example Street 1");
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street 1"), 0);
}

TEST_F(ValueLookUp, LeavesNoConnectionBehind) {
  addressBook().value(7, "+15550100123");
  const auto file = addressBook().path();
  addressBook().close();
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), 7);
  EXPECT_EQ(openDescriptors(file), 0U);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("nothing"), -1);
  EXPECT_EQ(openDescriptors(file), 0U);
}

TEST_F(ValueLookUp, LeavesNoConnectionBehindWhenTheStatementIsRefused) {
  addressBook().run("DROP TABLE ABMultiValue");
  const auto file = addressBook().path();
  addressBook().close();
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), -1);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("nothing"), -1);
  EXPECT_EQ(openDescriptors(file), 0U);
}

// A step that fails is taken for a row, and a column without a value is 0.
TEST_F(ValueLookUp, IsZeroWhenTheRowsCannotBeRead) {
  for (int i = 0; i < 400; ++i) {
    addressBook().value(i + 1, std::string(200, 'x') + std::to_string(i));
    addressBook().entry(i + 1, 1, std::string(200, 'y') + std::to_string(i));
  }
  const std::string firstLeaf =
      "SELECT pageno FROM dbstat WHERE name='ABMultiValue' AND pagetype='leaf' ORDER BY path LIMIT 1";
  const std::string firstEntries =
      "SELECT pageno FROM dbstat WHERE name='ABMultiValueEntry' AND pagetype='leaf' ORDER BY path LIMIT 1";
  addressBook().destroyPages({addressBook().number(firstLeaf), addressBook().number(firstEntries)});
  EXPECT_EQ(ChatsumUtils::getMultiValueRecordID("+15550100123"), 0);
  EXPECT_EQ(ChatsumUtils::getMultiValueEntryID("Example Street 1"), 0);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

}  // namespace
}  // namespace chatsum::tests
