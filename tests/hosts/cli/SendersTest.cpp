#include <nlohmann/json.hpp>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli::testing {
namespace {

using Json = nlohmann::ordered_json;

/// One person who writes over two services and from an e-mail address; messages of nobody; a message with a file.
class Senders : public ProgramTest {
 protected:
  Senders() {
    SmallStore small(storePath());
    const auto chat = small.chat("+15550100142", "SMS");
    const std::int64_t number = small.lastHandle;
    const std::int64_t address = small.store.addHandle({.id = "ann@example.com"});
    const std::int64_t file[] = {
        small.store.addAttachment({.guid = "A1", .filename = "~/Library/SMS/Attachments/a.bin"})};
    const auto add = [&](const char* text, std::int64_t handle, const char* service, bool fromMe = false) {
      small.message(
          {.text = text, .handle = handle, .fromMe = fromMe, .service = service, .chats = std::span(&chat, 1)});
    };
    add("by text", number, "SMS");
    add("by mail", address, "iMessage");
    add("answered", 0, "RCS", true);
    add("of a handle that is gone", 999, "SMS");
    add("of nobody", 0, "");
    small.message(
        {.text = "\uFFFC", .handle = number, .service = "SMS", .chats = std::span(&chat, 1), .attachments = file});
    small.message({.chats = std::span(&chat, 1), .itemType = 3});
    small.finish();
  }

  [[nodiscard]] Json records(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"messages", "+15550100142", "--json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Json::parse(run(arguments).out, nullptr, false);
  }
};

TEST_F(Senders, WhoseHandleIsGoneAreUnknownInTheLanguageOfTheUser) {
  EXPECT_NE(report("+15550100142").find("\nUnknown: of a handle that is gone ("), std::string::npos);
  environment["LC_ALL"] = "de_DE.UTF-8";
  const std::string german = report("+15550100142", {"--format", "csv", "--replace"});
  EXPECT_NE(german.find("\nUnbekannt,of a handle that is gone,"), std::string::npos) << german;
  EXPECT_NE(german.find("\nUnbekannt,of nobody,"), std::string::npos) << german;
}

TEST_F(Senders, StayAsTheLibraryHasThemWhenPlain) {
  EXPECT_NE(report("+15550100142", {"--plain"}).find("\n: of nobody ("), std::string::npos);
}

TEST_F(Senders, OfWhatTheOwnerDidInAGroupAreTheOwner) {
  const Json record = records().at(6);
  EXPECT_EQ(record.at("Text"), "[left the group]");
  EXPECT_EQ(record.at("Name"), "Me");
  EXPECT_EQ(record.at("is_from_me"), 0);
}

TEST_F(Senders, HaveTheAddressAndServiceThatTheMessageNames) {
  for (const bool plain : {false, true}) {
    const Json all = records(plain ? std::vector<std::string>{"--plain"} : std::vector<std::string>());
    ASSERT_GE(all.size(), 6U);
    EXPECT_EQ(all[0].value("Address", ""), "+15550100142");
    EXPECT_EQ(all[0].value("Service", ""), "SMS");
    EXPECT_EQ(all[1].value("Address", ""), "ann@example.com");
    EXPECT_EQ(all[1].value("Service", ""), "iMessage");
    EXPECT_FALSE(all[2].contains("Address"));
    EXPECT_EQ(all[2].value("Service", ""), "RCS");
    EXPECT_FALSE(all[3].contains("Address"));
    EXPECT_FALSE(all[4].contains("Service"));
    EXPECT_EQ(all[0].at("cache_has_attachments"), 0);
    EXPECT_EQ(all[5].at("cache_has_attachments"), 1);
    EXPECT_EQ(all[5].value("Address", ""), "+15550100142");
  }
}

TEST_F(Senders, HaveTheirAddressAndServiceInReports) {
  EXPECT_TRUE(report("+15550100142", {"--format", "csv", "--keys", "Address,Service,Text,cache_has_attachments"})
                  .starts_with("Address,Service,Text,cache_has_attachments\n"
                               "+15550100142,SMS,by text,0\n"
                               "ann@example.com,iMessage,by mail,0\n"
                               ",RCS,answered,0\n"
                               ",SMS,of a handle that is gone,0\n"
                               ",,of nobody,0\n"));
  EXPECT_TRUE(report("+15550100142", {"--keys", "Service"}).starts_with("SMS\niMessage\nRCS\n"));
}

TEST_F(ProgramTest, TellsTheAddressesOfMoreMembersThanIsUsual) {
  SmallStore small(storePath());
  const auto chat = small.chat("+15550100142");
  constexpr int kMembers = 60;
  std::vector<std::string> addresses;
  for (int i = 0; i < kMembers; ++i) addresses.push_back("member" + std::to_string(i) + "@example.com");
  for (int round = 0; round < 2; ++round) {
    for (const std::string& address : addresses) {
      const auto handle = round == 0 ? small.store.addHandle({.id = address}) : 0;
      small.message({.text = address,
                     .handle = handle != 0 ? handle : small.lastHandle + 1 + (&address - addresses.data()),
                     .chats = std::span(&chat, 1)});
    }
  }
  small.finish();
  const Json all = Json::parse(run({"messages", "+15550100142", "--json"}).out, nullptr, false);
  ASSERT_EQ(all.size(), 2U * kMembers);
  for (const Json& record : all) EXPECT_EQ(record.value("Address", ""), record.at("Text"));
}

}  // namespace
}  // namespace chatsum::cli::testing
