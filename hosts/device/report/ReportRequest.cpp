#include "hosts/device/report/ReportRequest.h"

#include <algorithm>
#include <utility>

#include "hosts/device/language/Say.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"

namespace chatsum::device {
namespace {

const std::vector<std::string>& defaultKeys() {
  static const std::vector<std::string> kKeys = {"Name", "Text", "Date"};
  return kKeys;
}

const std::vector<std::string>& keysOf(const ReportLayout& layout) {
  return layout.keys.empty() ? defaultKeys() : layout.keys;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) text.append(i ? separator : "").append(parts[i]);
  return text;
}

constexpr std::size_t kMostColumnsOfPage = 3;

std::size_t placesIn(std::string_view lineFormat) {
  std::size_t places = 0;
  for (std::size_t i = 0; i + 1 < lineFormat.size(); ++i) {
    if (lineFormat[i] != '%') continue;
    if (lineFormat[i + 1] == '@') ++places;
    ++i;
  }
  return places;
}

std::string lineFormatOf(const ReportLayout& layout) {
  if (layout.lineFormat) return *layout.lineFormat;
  const std::size_t count = keysOf(layout).size();
  if (layout.format == ReportFormat::kText && count == defaultKeys().size()) return "%@: %@ (%@)";
  const std::vector<std::string> places(count, "%@");
  return joined(places, layout.format == ReportFormat::kText ? ", " : layout.format == ReportFormat::kCsv ? "," : " ");
}

/// Titles go into the file as they are, so one that needs quotes brings them along.
std::string csvCell(const std::string& title) {
  if (title.find_first_of(",\"\r\n") == std::string::npos) return title;
  std::string cell = "\"";
  for (const char c : title) cell.append(c == '"' ? 2 : 1, c);
  return cell + "\"";
}

std::vector<std::string> titlesOf(const std::vector<std::string>& keys, const ReportContent& content) {
  std::vector<std::string> titles;
  for (const std::string& key : keys) {
    const auto title = content.titles.find(key);
    titles.push_back(title == content.titles.end() ? key : said(title->second));
  }
  return titles;
}

bool isNumber(const Value& value) {
  return value.kind() == Value::Kind::kInteger || value.kind() == Value::Kind::kReal ||
         value.kind() == Value::Kind::kBool;
}

void writeNumbersOut(Array& records, const std::vector<std::string>& keys) {
  for (const char* key : {"is_from_me", "cache_has_attachments"}) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) continue;
    for (Value& item : records.mutableItems()) {
      if (!isNumber((*item.asRecord())[key])) continue;
      Record record = *item.asRecord();
      item = Value();  // let go, so that the record is changed in place
      record.set(key, record[key].description());
      item = Value(std::move(record));
    }
  }
}

std::int64_t codeOf(ReportFormat format) {
  switch (format) {
    case ReportFormat::kCsv:
      return kFileFormatCSV;
    case ReportFormat::kPdf:
      return kFileFormatPDF;
    case ReportFormat::kText:
      break;
  }
  return kFileFormatText;
}

}  // namespace

std::string_view extensionOf(ReportFormat format) {
  switch (format) {
    case ReportFormat::kCsv:
      return "csv";
    case ReportFormat::kPdf:
      return "pdf";
    case ReportFormat::kText:
      break;
  }
  return "txt";
}

const ReportContent& messagesContent() {
  static const ReportContent kContent = {kAppTypeMessages,
                                         {"Name", "Text", "Date", "Address", "Service", "guid", "label", "is_from_me",
                                          "cache_has_attachments", "attachment_location"},
                                         {{"Name", toSay("Name")},
                                          {"Text", toSay("Text")},
                                          {"Date", toSay("Date")},
                                          {"Address", toSay("Address")},
                                          {"Service", toSay("Service")}}};
  return kContent;
}

std::vector<std::string> splitList(std::string_view list) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t end = std::min(list.find(',', start), list.size());
    std::string_view part = list.substr(start, end - start);
    const auto first = std::min(part.find_first_not_of(" \t"), part.size());
    part.remove_prefix(first);
    part = part.substr(0, part.find_last_not_of(" \t") + 1);
    parts.emplace_back(part);
    start = end + 1;
  }
  return parts;
}

std::optional<StoreProblem> checkLayout(const ReportLayout& layout, const ReportContent& content) {
  for (const std::string& key : layout.keys) {
    if (std::find(content.keys.begin(), content.keys.end(), key) != content.keys.end()) continue;
    return StoreProblem{say("There is no key '{0}'; the keys are {1}.", key, joined(content.keys, ", "))};
  }
  if (layout.columns && layout.columns->size() != keysOf(layout).size()) {
    return StoreProblem{say("There are {0} column titles for {1} keys ({2}); give one for each.",
                            layout.columns->size(), keysOf(layout).size(), joined(keysOf(layout), ","))};
  }
  if (layout.format == ReportFormat::kPdf && keysOf(layout).size() > kMostColumnsOfPage) {
    return StoreProblem{
        say("A pdf page has room for {0} columns, and {1} keys are given ({2}); give fewer, or use --format csv.",
            kMostColumnsOfPage, keysOf(layout).size(), joined(keysOf(layout), ","))};
  }
  if (layout.lineFormat && placesIn(*layout.lineFormat) == 0) {
    return StoreProblem{say("The line format '{0}' has no place for a value; write %@ for each of {1}.",
                            *layout.lineFormat, joined(keysOf(layout), ", "))};
  }
  return std::nullopt;
}

std::vector<std::string> notesOnLayout(const ReportLayout& layout) {
  std::vector<std::string> notes;
  if (layout.format == ReportFormat::kPdf) {
    const std::vector<std::string>& all = keysOf(layout);
    if (layout.lineFormat) notes.push_back(say("A pdf report has columns, no lines; the line format is not used."));
    if (all.size() == kMostColumnsOfPage && all.back() != "Date" && all.back() != "Name") {
      notes.push_back(say(
          "The third column of a pdf page is narrow: what is long under '{0}' is cut at the edge; give that key first "
          "or second.",
          all.back()));
    }
    return notes;
  }
  const std::size_t places = placesIn(lineFormatOf(layout)), keys = keysOf(layout).size();
  if (places < keys) {
    notes.push_back(
        say("The line format has {0} places for {1} keys; the last {2} are not shown.", places, keys, keys - places));
  } else if (places > keys) {
    notes.push_back(
        say("The line format has {0} places for {1} keys; the last {2} stay empty.", places, keys, places - keys));
  }
  if (layout.columns && layout.format == ReportFormat::kText) {
    notes.push_back(say("A text report has no column titles; they are not used."));
  }
  return notes;
}

Record makeRequest(const ReportLayout& layout, const std::string& fileName, Array records,
                   const ReportContent& content) {
  const std::vector<std::string>& keys = keysOf(layout);
  writeNumbersOut(records, keys);
  Array columns;
  for (const std::string& title : layout.columns.value_or(titlesOf(keys, content))) {
    columns.append(layout.format == ReportFormat::kCsv ? csvCell(title) : title);
  }
  Record lineFormat;
  lineFormat.set(lineFormatOf(layout), joined(keys, ","));
  Record request;
  request.set(request::kFileName, fileName);
  request.set(request::kFileFormat, codeOf(layout.format));
  request.set(request::kAppType, content.appType);
  request.set(request::kReportFormat, lineFormat);
  request.set(request::kColumns, columns);
  request.set(request::kRecords, std::move(records));
  return request;
}

}  // namespace chatsum::device
