// Systems before 11 find people through a function of the AddressBook framework.

#include <memory>

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr const char* kFramework = "/System/Library/Frameworks/AddressBook.framework/AddressBook";
constexpr const char* kSymbol = "ABCFindPersonMatchingPhoneNumber";
constexpr const char* kLoaded = "************ Loading AddressBook.framework is success.";
constexpr const char* kMissing =
    "************ Unable to get function pointer for 'ABCFindPersonMatchingPhoneNumber'***";
constexpr const char* kFound = "************ Loading ABCFindPersonMatchingPhoneNumber is success.";

class OlderSystem : public ReadingTest {
 protected:
  OlderSystem() { fake.device.version = "10.3.4"; }
  platform::ABRecordID lookUp(const std::string& handle) {
    return ChatsumUtils::addressBookRecordForPhoneNumber(handle, given_);
  }
  platform::ABAddressBookRef given_;
};

TEST_F(OlderSystem, FindsNobodyWithoutAWordWhenTheFrameworkCannotBeLoaded) {
  EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_THAT(fake.runtime.opened, ElementsAre(Pair(kFramework, 2)));
  EXPECT_THAT(fake.log.lines(), IsEmpty());
  EXPECT_EQ(fake.addressBook.created, 0);
}

TEST_F(OlderSystem, LogsAMissingFunction) {
  fake.runtime.libraries[kFramework] = {};
  EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_THAT(fake.log.lines(), ElementsAre(kLoaded, kMissing));
  EXPECT_EQ(fake.addressBook.created, 0);
}

TEST_F(OlderSystem, CallsTheFunctionWithAFreshAddressBookAndTheHandleAsItIs) {
  given_ = fake.addressBook.create();
  platform::ABAddressBookRef used;
  fake.runtime.libraries[kFramework][kSymbol] = [&](const platform::ABAddressBookRef& book, std::string_view number,
                                                    int first, int second) -> platform::ABRecordRef {
    used = book;
    EXPECT_EQ(number, "(555) 010-0123");
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 0);
    return std::make_shared<platform::fake::FakeRecord>(7, std::nullopt);
  };
  EXPECT_EQ(lookUp("(555) 010-0123"), 7);
  EXPECT_NE(used, nullptr);
  EXPECT_NE(used, given_);
  EXPECT_EQ(fake.addressBook.access.requests(), 1);
  EXPECT_THAT(fake.log.lines(), ElementsAre(kLoaded, kFound));
}

TEST_F(OlderSystem, FindsNobodyWhenTheFunctionFindsNobody) {
  fake.runtime.libraries[kFramework][kSymbol] = [](const platform::ABAddressBookRef&, std::string_view, int,
                                                   int) -> platform::ABRecordRef { return nullptr; };
  EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_THAT(fake.log.lines(), ElementsAre(kLoaded, kFound));
}

TEST_F(OlderSystem, LeavesTheFrameworkLoaded) {
  const auto token = std::make_shared<int>();
  fake.runtime.libraries[kFramework][kSymbol] = [token](const platform::ABAddressBookRef&, std::string_view, int,
                                                        int) -> platform::ABRecordRef { return nullptr; };
  const long before = token.use_count();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_EQ(token.use_count(), before + 1) << "one library, which is not closed again";
}

TEST_F(OlderSystem, NeitherBuildsTheIndexNorAsksTheContactsService) {
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("+15550100123"), -1);
  EXPECT_EQ(lookUp("55512"), -1);
  EXPECT_EQ(opens(kAddressBookPath), 0);
  EXPECT_EQ(fake.contacts.created, 0);
  EXPECT_EQ(fake.runtime.opened.size(), 2U);
}

TEST_F(OlderSystem, EndsAtElevenExactly) {
  fake.device.version = "11.0";
  addressBook().value(7, "+15550100123");
  EXPECT_EQ(lookUp("+15550100123"), 7);
  EXPECT_THAT(fake.runtime.opened, IsEmpty());
}

}  // namespace
}  // namespace chatsum::tests
