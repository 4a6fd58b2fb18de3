#include "hosts/device/report/ReportJob.h"

#include <string_view>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/report/ShownRows.h"

namespace chatsum::device {
namespace {

void noteHidden(const Array& records, const ReportLayout& layout, bool isPlain, std::vector<std::string>& notes) {
  const HiddenRows hidden = countHidden(records, layout);
  if (hidden.pictures > 0) {
    const std::string_view format = layout.format == ReportFormat::kText ? "text" : "csv";
    notes.push_back(
        isPlain
            ? sayCounted(hidden.pictures, "{0} row is a picture, which a {1} report cannot show: no text stands there.",
                         "{0} rows are pictures, which a {1} report cannot show: no text stands there.", format)
            : sayCounted(hidden.pictures,
                         "{0} row is a picture, which a {1} report cannot show: its name stands there.",
                         "{0} rows are pictures, which a {1} report cannot show: their names stand there.", format));
  }
  if (!isPlain) return;  // made harmless
  if (hidden.texts > 0) {
    notes.push_back(
        sayCounted(hidden.texts,
                   "{0} message ends like the name of a picture and is taken for one: no text stands there; "
                   "leave --plain away to have it.",
                   "{0} messages end like the names of pictures and are taken for them: no text stands "
                   "there; leave --plain away to have it."));
  }
  if (hidden.cutOff > 0) {
    notes.push_back(sayCounted(hidden.cutOff,
                               "{0} message is taller than a page and cut off at its end; leave --plain away to have "
                               "the rest on further pages.",
                               "{0} messages are taller than a page and cut off at its end; leave --plain away to have "
                               "the rest on further pages."));
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
  const StoreResult<std::string> place = findReportPlace(session, options, messagesContent(), conversation.name);
  if (!place) return place.problem();

  ReadingOptions wanted = options.reading;
  const auto shows = [&](const char* key) {
    return std::find(options.layout.keys.begin(), options.layout.keys.end(), key) != options.layout.keys.end();
  };
  wanted.origins = wanted.origins || shows(kAddressKey) || shows(kServiceKey);
  StoreResult<Reading> read = readConversation(session, conversation, wanted);
  if (!read) return read.problem();
  Reading& reading = read.value();
  MadeReport made{place.value(), reading.balance, notesOnLayout(options.layout)};
  made.notes.insert(made.notes.end(), reading.notes.begin(), reading.notes.end());
  if (options.listsAttachments) made.attachments = attachmentsIn(reading.records);
  noteHidden(reading.records, options.layout, session.isPlain(), made.notes);
  const StoreResult<std::uint64_t> written =
      writeReport(session, options, messagesContent(), made.path, std::move(reading.records), made.notes);
  if (!written) return written.problem();
  made.balance.continued = written.value();
  made.balance.written += written.value();
  return made;
}

}  // namespace chatsum::device
