#include "platform/system/contacts/ContactMatcher.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/unit/contacts/BookFixture.h"

namespace chatsum::platform::system {
namespace {

using tests::BookFixture;

TEST(ContactMatcher, FindsANumberHoweverItIsWritten) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "(555) 010-0123");
  const auto book = fixture.book();
  for (const char* handle : {"+15550100123", "15550100123", "5550100123", "+1 (555) 010-0123", "001 555 010 0123",
                             "011 1 555 010 0123", "+15550100123;ext=5", "+١٥٥٥٠١٠٠١٢٣", "tel:+1-555-010-0123"}) {
    EXPECT_EQ(book->matcher().match(handle).record, ann) << handle;
  }
  for (const char* handle : {"+15550100124", "0100123", "100123", "+445550100123", "50100123"}) {
    EXPECT_EQ(book->matcher().match(handle).record, -1) << handle;
  }
}

TEST(ContactMatcher, KnowsTheTrunkPrefixOfTheRegion) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  const int bob = fixture.person("Bob", "Example");
  fixture.phone(ann, "+33 6 12 34 56 78");
  fixture.phone(bob, "06 12 34 56 79");
  const auto book = fixture.book("FR");
  EXPECT_EQ(book->matcher().match("0612345678").record, ann);
  EXPECT_EQ(book->matcher().match("+33612345679").record, bob);
  EXPECT_EQ(book->matcher().match("0033612345679").record, bob);
  EXPECT_EQ(book->matcher().match("+34612345679").record, -1);
}

TEST(ContactMatcher, TakesOnlyTheSurestMatches) {
  BookFixture fixture;
  const int exact = fixture.person("Ann", "Example");
  const int atHome = fixture.person("Bob", "Example");
  fixture.phone(atHome, "555-010-0123");
  fixture.phone(exact, "+1 555 010 0123");
  const auto book = fixture.book();
  EXPECT_EQ(book->matcher().match("+15550100123").record, exact);
  EXPECT_EQ(book->matcher().match("5550100123").record, atHome);
}

TEST(ContactMatcher, ComparesEmailAddressesWhole) {
  BookFixture fixture;
  const int joann = fixture.person("Joann", "Example");
  fixture.email(joann, "joann@example.com");
  const int ann = fixture.person("Ann", "Example");
  fixture.email(ann, "Ann@Example.com");
  const int brien = fixture.person("Pat", "O'Brien");
  fixture.email(brien, "o'brien@example.com");
  const auto book = fixture.book();
  EXPECT_EQ(book->matcher().match("ann@example.com").record, ann);
  EXPECT_EQ(book->matcher().match("JOANN@example.com").record, joann);
  EXPECT_EQ(book->matcher().match("o'brien@example.com").record, brien);
  EXPECT_EQ(book->matcher().match("nn@example.com").record, -1);
  EXPECT_EQ(book->matcher().match("@").record, -1);
}

TEST(ContactMatcher, FindsAnAddressKeptAmongTheNumbers) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "ann@example.com");
  fixture.email(ann, "5550100123");
  const auto book = fixture.book();
  EXPECT_EQ(book->matcher().match("ann@example.com").record, ann);
  EXPECT_EQ(book->matcher().match("5550100123").record, -1) << "what stands among the addresses is no number";
}

TEST(ContactMatcher, FindsShortCodesAndSenderNamesExactlyOnly) {
  BookFixture fixture;
  const int shop = fixture.person({{"Organization", "Example Shop"}, {"Kind", "1"}});
  fixture.phone(shop, "222-22");
  fixture.phone(shop, "ExampleShop");
  const auto book = fixture.book();
  EXPECT_EQ(book->matcher().match("22222").record, shop);
  EXPECT_EQ(book->matcher().match("ExampleShop").record, shop);
  for (const char* handle : {"2222", "222222", "122222", "exampleshop", "Example", "urn:biz:22222", ""}) {
    EXPECT_EQ(book->matcher().match(handle).record, -1) << handle;
  }
}

TEST(ContactMatcher, SpellsVanityNumbersOut) {
  BookFixture fixture;
  const int taxi = fixture.person("Example", "Taxi");
  fixture.phone(taxi, "1-800-EXAMPLE");
  EXPECT_EQ(fixture.book()->matcher().match("+18003926753").record, taxi);
}

TEST(ContactMatcher, TakesOneOfLinkedCards) {
  BookFixture fixture;
  const int other = fixture.person({{"First", "A."}, {"PersonLink", "1"}, {"IsPreferredName", "0"}});
  const int naming = fixture.person({{"First", "Ann"}, {"PersonLink", "1"}});
  fixture.run("INSERT INTO ABPersonLink (ROWID, PreferredNamePersonID) VALUES (1, " + std::to_string(naming) + ")");
  fixture.phone(other, "+15550100123");
  fixture.phone(naming, "+15550100123", "_$!<Work>!$_");
  fixture.phone(other, "+15550100124");
  const auto book = fixture.book();
  const ContactMatch both = book->matcher().match("+15550100123");
  EXPECT_EQ(both.record, naming);
  EXPECT_EQ(book->store().label(book->store().values()[both.value].label), "_$!<Work>!$_");
  // The card that has the number, so that its label is found, under the name of the person.
  EXPECT_EQ(book->matcher().match("+15550100124").record, other);
  EXPECT_EQ(book->store().personName(other), "Ann");
}

TEST(ContactMatcher, TakesTheFirstOfCardsWithTheSameName) {
  BookFixture fixture;
  const int first = fixture.person("Ann", "Example");
  const int second = fixture.person("Ann", "Example");
  fixture.phone(second, "+15550100123");
  fixture.phone(first, "+15550100123");
  EXPECT_EQ(fixture.book()->matcher().match("+15550100123").record, first);
}

TEST(ContactMatcher, JoinsCardsThatAreTheSameByDifferentSigns) {
  BookFixture fixture;
  const int a = fixture.person({{"First", "A."}, {"PersonLink", "4"}, {"IsPreferredName", "0"}});
  const int other = fixture.person("Ann", "Example");
  const int b = fixture.person({{"First", "Ann"}, {"Last", "Example"}, {"PersonLink", "4"}});
  for (const int record : {a, other, b}) fixture.phone(record, "+15550100123");
  EXPECT_EQ(fixture.book()->matcher().match("+15550100123").record, b);
}

TEST(ContactMatcher, NamesTheCandidatesOfAnAmbiguousNumber) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  const int bob = fixture.person("Bob", "Example");
  fixture.phone(bob, "+1 555 010 0123");
  fixture.phone(ann, "+15550100123");
  fixture.phone(ann, "+15550100123");
  const auto book = fixture.book();
  const ContactMatch match = book->matcher().match("+15550100123");
  EXPECT_EQ(match.record, -1);
  EXPECT_TRUE(match.isAmbiguous());
  EXPECT_EQ(match.candidates, (std::vector<ABRecordID>{ann, bob}));
}

TEST(ContactMatcher, PassesNumbersOfCardsThatAreGone) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "+15550100123");
  fixture.phone(77, "+15550100123");
  fixture.phone(77, "+15550100124");
  const auto book = fixture.book();
  EXPECT_EQ(book->matcher().match("+15550100123").record, ann);
  EXPECT_EQ(book->matcher().match("+15550100124").record, -1);
  EXPECT_FALSE(book->matcher().match("+15550100124").isAmbiguous());
}

TEST(ContactMatcher, FindsNobodyInAnEmptyBook) {
  const auto book = std::make_shared<ContactBook>([] { return sqlite::Connection(); }, "US");
  EXPECT_EQ(book->matcher().match("+15550100123").record, -1);
  EXPECT_EQ(book->matcher().match("").record, -1);
}

TEST(ContactMatcher, AnswersManyThreadsAtOnce) {
  BookFixture fixture;
  std::vector<int> records;
  for (int i = 0; i < 50; ++i) {
    records.push_back(fixture.person("Person", std::to_string(i)));
    fixture.phone(records.back(), "555-010-01" + std::to_string(10 + i));
  }
  const auto book = fixture.book();
  std::vector<std::thread> threads;
  std::vector<int> wrong(4, 0);
  for (std::size_t t = 0; t < wrong.size(); ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t i = 0; i < records.size(); ++i) {
        const ContactMatch match = book->matcher().match("+155501001" + std::to_string(10 + i));
        const bool isNamed = book->store().personName(match.record) == "Person " + std::to_string(i);
        if (match.record != records[i] || !isNamed) ++wrong[t];
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

}  // namespace
}  // namespace chatsum::platform::system
