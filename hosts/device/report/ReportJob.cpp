#include "hosts/device/report/ReportJob.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/report/PictureRows.h"

namespace chatsum::device {
namespace {

void notePictures(const Array& records, const ReportLayout& layout, bool isPlain, std::vector<std::string>& notes) {
  const std::vector<std::string>& keys = layout.keys;
  const bool showsText = keys.empty() || std::find(keys.begin(), keys.end(), "Text") != keys.end();
  if (!showsText) return;
  const Pictures pictures = countPictures(records);
  if (pictures.attached > 0 && layout.format != ReportFormat::kPdf) {
    const std::string_view format = layout.format == ReportFormat::kText ? "text" : "csv";
    notes.push_back(
        isPlain ? sayCounted(pictures.attached,
                             "{0} row is a picture, which a {1} report cannot show: no text stands there.",
                             "{0} rows are pictures, which a {1} report cannot show: no text stands there.", format)
                : sayCounted(
                      pictures.attached, "{0} row is a picture, which a {1} report cannot show: its name stands there.",
                      "{0} rows are pictures, which a {1} report cannot show: their names stand there.", format));
  }
  if (pictures.written > 0) {
    notes.push_back(sayCounted(
        pictures.written, "{0} message is just a picture's file name and taken for the picture: no text stands there.",
        "{0} messages are just pictures' file names and taken for the picture: no text stands there."));
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
  if (!session.isPlain() && options.layout.format != ReportFormat::kPdf) {
    reading.records = withPicturesNamed(std::move(reading.records));
  }
  if (auto problem =
          writeReport(session, options, messagesContent(), made.path, std::move(reading.records), made.notes)) {
    return *problem;
  }
  return made;
}

}  // namespace chatsum::device
