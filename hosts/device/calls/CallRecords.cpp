#include "hosts/device/calls/CallRecords.h"

#include <cmath>
#include <string>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/report/ShownRows.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"

namespace chatsum::device {
namespace {

ReportContent contentOf(AppType appType) {
  return {appType,
          {"Name", "Text", "Date", "Address", "Duration", "Direction", "Status", "Service", "Medium"},
          {{"Name", toSay("Name")},
           {"Text", toSay("Call")},
           {"Date", toSay("Date")},
           {"Address", toSay("Address")},
           {"Duration", toSay("Duration")},
           {"Direction", toSay("Direction")},
           {"Status", toSay("Status")},
           {"Service", toSay("Service")},
           {"Medium", toSay("Medium")}}};
}

std::string addressesOf(const Call& call) {
  std::string addresses;
  for (const CallPerson& person : call.people) {
    if (!person.address.empty()) addresses.append(addresses.empty() ? "" : ", ").append(person.address);
  }
  return addresses;
}

}  // namespace

const ReportContent& callsContent(CallApp app) {
  static const ReportContent kPhone = contentOf(kAppTypePhone), kFaceTime = contentOf(kAppTypeFaceTime);
  return app == CallApp::kPhone ? kPhone : kFaceTime;
}

Array recordsOf(const std::vector<Call>& calls) {
  std::vector<Value> records;
  records.reserve(calls.size());
  for (const Call& call : calls) {
    Record record{{"Name", keptAsText(peopleInWords(call))}, {"Text", keptAsText(callInWords(call))}};
    if (call.date) record.set("Date", Date{std::floor(call.date->secondsSince1970)});
    record.set("Address", keptAsText(addressesOf(call)));
    record.set("Duration", durationText(call.duration));
    record.set("Direction", said(wordOf(call.direction)));
    record.set("Status", said(wordOf(call.status)));
    record.set("Service", keptAsText(call.service));
    record.set("Medium", said(wordOf(call.medium)));
    records.emplace_back(std::move(record));
  }
  return Array(std::move(records));
}

}  // namespace chatsum::device
