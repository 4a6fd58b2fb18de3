#include "hosts/desktop/engine/CallWords.h"

#include <QCoreApplication>
#include <QStringList>
#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "hosts/desktop/engine/Texts.h"

namespace chatsum::desktop {
namespace {

using device::CallMedium;

QString tr(const char* text, int number = -1) {
  return QCoreApplication::translate("CallWords", text, nullptr, number);
}

struct Kind {
  std::string_view service;
  CallMedium medium;
  const char* incoming;
  const char* outgoing;
};
// Whole sentences: languages put them together in different ways.
constexpr std::array<Kind, 6> kKinds = {{
    {device::kPhoneService, CallMedium::kUnknown, QT_TR_NOOP("Incoming phone call"), QT_TR_NOOP("Outgoing phone call")},
    {device::kPhoneService, CallMedium::kAudio, QT_TR_NOOP("Incoming phone call"), QT_TR_NOOP("Outgoing phone call")},
    {device::kPhoneService, CallMedium::kVideo, QT_TR_NOOP("Incoming phone video call"),
     QT_TR_NOOP("Outgoing phone video call")},
    {device::kFaceTimeService, CallMedium::kUnknown, QT_TR_NOOP("Incoming FaceTime call"),
     QT_TR_NOOP("Outgoing FaceTime call")},
    {device::kFaceTimeService, CallMedium::kAudio, QT_TR_NOOP("Incoming FaceTime audio call"),
     QT_TR_NOOP("Outgoing FaceTime audio call")},
    {device::kFaceTimeService, CallMedium::kVideo, QT_TR_NOOP("Incoming FaceTime video call"),
     QT_TR_NOOP("Outgoing FaceTime video call")},
}};

int shownNumber(std::size_t number) {
  return static_cast<int>(std::min<std::size_t>(number, std::numeric_limits<int>::max()));
}

QString shownPerson(const device::CallPerson& person) {
  if (!person.isNamed && person.address.empty()) return person.isEncrypted ? tr("(encrypted)") : tr("No caller ID");
  const QString name = shownName(person.name);
  if (!person.isNamed || person.address.empty()) return name;
  return QStringLiteral("%1 (%2)").arg(isolatedName(name), shownName(person.address));
}

}  // namespace

QString shownKind(const device::Call& call) {
  const auto* kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& one) {
    return one.service == call.service && one.medium == call.medium;
  });
  if (kind == kKinds.end()) return shownName(device::kindInWords(call));
  const QString words = tr(call.direction == device::CallDirection::kOutgoing ? kind->outgoing : kind->incoming);
  if (!call.isGroup()) return words;
  return tr("%1 with %Ln people", shownNumber(call.people.size() + call.unknownPeople)).arg(words);
}

QString shownPeople(const device::Call& call) {
  QStringList people;
  for (const device::CallPerson& person : call.people) people.append(shownPerson(person));
  const auto unknown = shownNumber(call.unknownPeople);
  if (unknown == 1 && people.isEmpty()) {
    people.append(tr("Unknown"));
  } else if (unknown > 0) {
    people.append(people.isEmpty() ? tr("%Ln unknown people", unknown) : tr("%Ln unknown", unknown));
  }
  return joinedNames(people);
}

}  // namespace chatsum::desktop
