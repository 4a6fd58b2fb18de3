#include "hosts/device/sample/SampleScript.h"

namespace chatsum::device {

namespace {

constexpr std::string_view kMobile = "_$!<Mobile>!$_";
constexpr std::string_view kHome = "_$!<Home>!$_";
constexpr std::string_view kWork = "_$!<Work>!$_";
constexpr std::string_view kMain = "_$!<Main>!$_";

constexpr std::string_view kDaniel = "7C2E0B54-9A1D-4E63-8F0B-2D5A91C3E701";

}  // namespace

std::vector<SampleHandle> sampleHandles() {
  return {
      {"+15550100142", "iMessage", "0E6B7F12-43A9-4C5D-9B77-5F0C1A2D3E01"},
      {"+15550100175", "SMS", kDaniel},
      {"+15550100175", "iMessage", kDaniel},
      {"daniel.okafor@example.com", "iMessage", ""},
      {"+15550100118", "iMessage", ""},
      {"+15550100131", "iMessage", ""},
      {"+15550100199", "iMessage", ""},
      {"+493055501234", "iMessage", ""},
      {"55501", "SMS", ""},
      {"+15550100163", "SMS", ""},
      {"o'brien@example.com", "iMessage", ""},
      {"+15550100126", "iMessage", ""},
      {"+15550100127", "iMessage", ""},
      {"+15550100151", "iMessage", ""},
      {"+15550100142", "SMS", "0E6B7F12-43A9-4C5D-9B77-5F0C1A2D3E01"},
      {"+15550100151", "SMS", ""},
      {"+15550100131", "SMS", ""},
      {"+15550100108", "SMS", ""},
      {"+15550100120", "SMS", ""},
      {"ann@example.com", "iMessage", ""},
      {"joann@example.com", "iMessage", ""},
      {"eleni@example.com", "iMessage", ""},
      {"oksana@example.com", "iMessage", ""},
      {"layla@example.com", "iMessage", ""},
      {"noam@example.com", "iMessage", ""},
      {"arjun@example.com", "iMessage", ""},
      {"malee@example.com", "iMessage", ""},
      {"xiaoming@example.com", "iMessage", ""},
      {"yuki@example.com", "iMessage", ""},
      {"minji@example.com", "iMessage", ""},
      {"lea@example.com", "iMessage", ""},
  };
}

void writeSampleContacts(ContactWriter& writer) {
  writer.addContact({.first = "Maya",
                     .last = "Lindqvist",
                     .phones = {{kMobile, "+1 (555) 010-0142"}},
                     .emails = {{kHome, "maya@example.com"}}});
  writer.addContact({.first = "Daniel",
                     .last = "Okafor",
                     .organization = "Northside Bicycles",
                     .phones = {{"iPhone", "+1 555-010-0175"}, {kWork, "(555) 010-0176"}},
                     .emails = {{kWork, "daniel.okafor@example.com"}}});
  // Two cards of one person, the first has the name that is shown.
  const std::int64_t priya = writer.addLink();
  writer.addContact({.first = "Priya", .last = "Raman", .phones = {{kMobile, "+1 (555) 010-0118"}}, .link = priya});
  writer.addContact({.first = "P.",
                     .last = "Raman",
                     .organization = "Lakeview School",
                     .phones = {{kWork, "(555) 010-0119"}},
                     .emails = {{kWork, "p.raman@example.com"}},
                     .link = priya,
                     .preferredName = false});
  writer.addContact({.first = "Tomasz", .last = "Zielony", .phones = {{kMobile, "+15550100131"}}});
  writer.addContact({.first = "Jonas",
                     .last = "Weber",
                     .phones = {{kMobile, "+49 30 5550 1234"}},
                     .emails = {{"Büro", "jonas.weber@example.com"}},
                     .street = "Musterstraße 5",
                     .city = "Berlin"});
  writer.addContact({.first = "Siobhán", .last = "O'Brien", .emails = {{kWork, "o'brien@example.com"}}});
  writer.addContact({.first = "Tom", .last = "Ferreira", .phones = {{"Boat", "(555) 010-0126"}}});
  writer.addContact({.first = "Jerry", .last = "Castellan", .phones = {{kMobile, "+1 555 010 0127"}}});
  writer.addContact({.first = "Hannah",
                     .last = "Quist",
                     .middle = "Marie",
                     .phones = {{kHome, "+1 (555) 010-0152"}, {kMobile, "+1 (555)\u00a0010-0151"}}});
  writer.addContact({.nickname = "Gran", .phones = {{kHome, "+15550100108"}}});
  writer.addContact({.organization = "Harbour Dental Clinic",
                     .isOrganization = true,
                     .phones = {{kMain, "+1 555-010-0120"}},
                     .emails = {{kWork, "desk@example.com"}}});
  // Its address ends like that of somebody who has no card.
  writer.addContact({.first = "Jo Ann", .last = "Becker", .emails = {{kHome, "joann@example.com"}}});
  writer.addContact({.first = "Ελένη", .last = "Παπαδάκη", .emails = {{kHome, "eleni@example.com"}}});
  writer.addContact({.first = "Оксана", .last = "Коваленко", .emails = {{kHome, "oksana@example.com"}}});
  writer.addContact({.first = "ليلى", .last = "حداد", .emails = {{kHome, "layla@example.com"}}});
  writer.addContact({.first = "נועם", .last = "פרץ", .emails = {{kHome, "noam@example.com"}}});
  writer.addContact({.first = "अर्जुन", .last = "मेहता", .emails = {{kHome, "arjun@example.com"}}});
  writer.addContact({.first = "มาลี", .last = "ศรีสุข", .emails = {{kHome, "malee@example.com"}}});
  writer.addContact({.first = "小明", .last = "王", .emails = {{kHome, "xiaoming@example.com"}}});
  writer.addContact({.first = "由紀", .last = "田中", .emails = {{kHome, "yuki@example.com"}}});
  writer.addContact({.first = "민지", .last = "김", .emails = {{kHome, "minji@example.com"}}});
  writer.addContact({.first = "Léa", .last = "Fournier", .emails = {{"", "lea@example.com"}}});
  writer.addContact(
      {.first = "Pat", .last = "Nguyen", .phones = {{"", "555-0155"}}, .street = "12 Elm Street, Apt \"B\""});
}

}  // namespace chatsum::device
