// Rows of messages as reports take them, made by tests.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hosts/desktop/engine/MessageList.h"
#include "hosts/desktop/engine/ReportRows.h"

namespace chatsum::desktop::testing {

inline constexpr double kMonday = 1'578'307'200;  // 2020-01-06T10:40:00Z
inline constexpr double kDay = 86'400;

inline Record message(const std::string& text, double date = kMonday, bool isFromMe = false) {
  return Record{{"guid", "G" + text},
                {"Text", text},
                {"Date", Date{date}},
                {"is_from_me", isFromMe ? 1 : 0},
                {"Name", isFromMe ? "Me" : "Maya Lindqvist"},
                {"cache_has_attachments", 0}};
}

inline Record file(const std::string& path, double date = kMonday) {
  return Record{{"guid", "G" + path},
                {"Text", path},
                {"Date", Date{date}},
                {"is_from_me", 0},
                {"Name", "Maya"},
                {"cache_has_attachments", 1},
                {"attachment_location", path}};
}

inline Array arrayOf(std::vector<Record> records) {
  std::vector<Value> values;
  values.reserve(records.size());
  for (Record& record : records) values.emplace_back(std::move(record));
  return Array(std::move(values));
}

inline std::shared_ptr<const ReportRows> rowsOf(std::vector<Record> records) {
  return std::make_shared<const ReportRows>(arrayOf(std::move(records)), device::messagesContent(), "Maya Lindqvist");
}

inline std::shared_ptr<const MessageList> listOf(std::vector<Record> records, std::vector<std::uint32_t> events = {}) {
  auto list = std::make_shared<MessageList>();
  list->rows = ReportRows(arrayOf(std::move(records)), device::messagesContent(), "Maya Lindqvist");
  list->events = std::move(events);
  list->balance = "Rows: 1.";
  return list;
}

/// One every second; each hundredth is a file, and each thousandth a film. Made of few shapes, as those that are read.
inline std::shared_ptr<const MessageList> manyMessages(std::size_t count) {
  const auto words = Shape::of({"guid", "Text", "Date", "is_from_me", "Name", "cache_has_attachments"});
  const auto files =
      Shape::of({"guid", "Text", "Date", "is_from_me", "Name", "cache_has_attachments", "attachment_location"});
  const Value name = "Maya Lindqvist", picture = "User/Library/SMS/Attachments/a.jpg",
              film = "User/Library/SMS/Attachments/a.mov";
  std::vector<Value> records;
  records.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const bool isFile = i % 100 == 99;
    const Value place = i % 1000 == 999 ? film : picture;
    const std::string number = std::to_string(i);
    Value values[] = {"G" + number,
                      isFile ? place : Value("message " + number),
                      Date{kMonday + static_cast<double>(i)},
                      i % 3 == 0 ? 1 : 0,
                      name,
                      isFile ? 1 : 0,
                      place};
    records.emplace_back(Record(isFile ? files : words, values));
  }
  auto list = std::make_shared<MessageList>();
  list->rows = ReportRows(Array(std::move(records)), device::messagesContent(), "Maya Lindqvist");
  return list;
}

inline std::vector<std::string> textsOf(const Array& records) {
  std::vector<std::string> texts;
  for (const Value& item : records) texts.push_back((*item.asRecord())["Text"].description());
  return texts;
}

}  // namespace chatsum::desktop::testing
