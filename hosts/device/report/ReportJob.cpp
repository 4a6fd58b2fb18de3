#include "hosts/device/report/ReportJob.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

#include "hosts/device/report/Counted.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::device {
namespace {

/// Texts that name a picture, which the writers leave empty: those of attachments and those that people wrote.
struct Pictures {
  std::uint64_t attached = 0, written = 0;
};

/// A quick look that passes over nearly every text: a picture's name ends with a dot and some letters or digits.
bool mayNameFile(std::string_view text) {
  constexpr std::size_t kLongestEnd = 9;  // with the dot
  const std::string_view end = text.substr(text.size() > kLongestEnd ? text.size() - kLongestEnd : 0);
  const std::size_t dot = end.rfind('.');
  if (dot == std::string_view::npos || dot + 1 == end.size()) return false;
  return std::all_of(end.begin() + static_cast<std::ptrdiff_t>(dot) + 1, end.end(),
                     [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

Pictures countPictures(const Array& records) {
  Pictures pictures;
  RecordField textField("Text"), attachmentField("attachment_location");
  for (const Value& item : records) {
    const Value* value = textField.find(*item.asRecord());
    const String* text = value ? value->asString() : nullptr;
    if (!text || !mayNameFile(text->view()) || !ChatsumUtils::isImageFile(text->view())) continue;
    ++(attachmentField.find(*item.asRecord()) ? pictures.attached : pictures.written);
  }
  return pictures;
}

/// Puts the names of attached pictures, in brackets, where a report of text would have nothing.
void namePictures(Array& records) {
  RecordField textField("Text"), attachmentField("attachment_location");
  for (Value& item : records.mutableItems()) {
    const Value* value = textField.find(*item.asRecord());
    const String* text = value ? value->asString() : nullptr;
    if (!text || !mayNameFile(text->view()) || !attachmentField.find(*item.asRecord())) continue;
    if (!ChatsumUtils::isImageFile(text->view())) continue;
    std::string name = "[" + path::lastComponent(text->view()) + "]";
    Record record = *item.asRecord();
    item = Value();  // let go, so that the record is changed in place
    record.set("Text", std::move(name));
    item = Value(std::move(record));
  }
}

void notePictures(const Array& records, const ReportLayout& layout, bool isPlain, std::vector<std::string>& notes) {
  const std::vector<std::string>& keys = layout.keys;
  const bool showsText = keys.empty() || std::find(keys.begin(), keys.end(), "Text") != keys.end();
  if (!showsText) return;
  const Pictures pictures = countPictures(records);
  if (pictures.attached > 0 && layout.format != ReportFormat::kPdf) {
    const std::string_view instead = isPlain                  ? "no text stands there."
                                     : pictures.attached == 1 ? "its name stands there."
                                                              : "their names stand there.";
    notes.push_back(fmt::format("{}, which a {} report cannot show: {}",
                                counted(pictures.attached, "row is a picture", "rows are pictures"),
                                layout.format == ReportFormat::kText ? "text" : "csv", instead));
  }
  if (pictures.written > 0) {
    notes.push_back(
        counted(pictures.written, "message is just a picture's file name", "messages are just pictures' file names") +
        " and taken for the picture: no text stands there.");
  }
}

std::vector<std::string> attachmentsIn(const Array& records) {
  std::vector<std::string> attachments;
  RecordField field("attachment_location");
  for (const Value& item : records) {
    const Value* value = field.find(*item.asRecord());
    if (value && value->asString()) attachments.push_back(value->asString()->str());
  }
  return attachments;
}

}  // namespace

std::optional<StoreProblem> checkReportOptions(const ReportOptions& options) {
  if (auto problem = checkWritingOptions(options, messagesContent())) return problem;
  return checkTimes(options.reading.range);
}

StoreResult<MadeReport> makeReport(DeviceSession& session, const Conversation& conversation,
                                   const ReportOptions& options) {
  session.startLibrary();
  const StoreResult<std::string> place = findReportPlace(options, messagesContent(), conversation.name);
  if (!place) return place.problem();

  StoreResult<Reading> read = readConversation(session, conversation, options.reading);
  if (!read) return read.problem();
  Reading& reading = read.value();
  MadeReport made{place.value(), reading.balance, notesOnLayout(options.layout)};
  made.notes.insert(made.notes.end(), reading.notes.begin(), reading.notes.end());
  if (options.listsAttachments) made.attachments = attachmentsIn(reading.records);
  notePictures(reading.records, options.layout, session.isPlain(), made.notes);
  if (!session.isPlain() && options.layout.format != ReportFormat::kPdf) namePictures(reading.records);
  if (auto problem =
          writeReport(session, options, messagesContent(), made.path, std::move(reading.records), made.notes)) {
    return *problem;
  }
  return made;
}

}  // namespace chatsum::device
