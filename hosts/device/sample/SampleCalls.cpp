#include "hosts/device/sample/SampleCalls.h"

#include "hosts/device/sample/SampleTime.h"
#include "hosts/device/sample/SeededRandom.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kFaceTime = "com.apple.FaceTime";
constexpr int kVideo = 8, kAudio = 16, kOfApp = 0, kDeclined = 6;

constexpr std::string_view kMaya = "+15550100142", kDaniel = "+15550100175", kPriya = "+15550100118";
constexpr std::string_view kDanielsMail = "daniel.okafor@example.com";
constexpr std::string_view kPat = "5550155";

// In both lists, so its identifier is fixed.
constexpr std::string_view kInBothLists = "2F6A0C1E-8D3B-4B5A-9E47-6C1D2E3F4A5B";

double at(std::string_view moment, double seconds) { return static_cast<double>(secondsSince2001(moment)) + seconds; }

CallRow callInBothLists() {
  return {.date = at("2024-06-11 10:15", 42.125),
          .duration = 75.5,
          .address = kPat,
          .answered = true,
          .uniqueId = kInBothLists,
          .country = "us"};
}

/// Adds calls with identifiers that are the same every time.
class Script {
 public:
  explicit Script(CallWriter& writer) : writer_(writer) {}

  void add(CallRow row) {
    const std::string id = random_.guid();
    row.uniqueId = id;
    writer_.addCall(row);
  }

 private:
  CallWriter& writer_;
  SeededRandom random_{20240302};
};

void addPhoneCalls(Script& script) {
  script.add({.date = at("2024-03-02 10:15", 8.25),
              .duration = 134.2,
              .address = "+15550100120",
              .outgoing = true,
              .country = "us"});
  script.add(
      {.date = at("2024-03-02 18:40", 31.5), .duration = 192.7, .address = kMaya, .answered = true, .country = "us"});
  script.add({.date = at("2024-03-05 08:01", 12),
              .address = "+15550100163",
              .place = "Lakeview",
              .country = "us",
              .hasMessage = true});
  script.add({.date = at("2024-03-21 14:12", 3.75), .place = "<<RecentsNumberLocationNotFound>>"});
  script.add({.date = at("2024-03-22 16:45", 20),
              .address = "+15550100190",
              .country = "us",
              .junkConfidence = 2,
              .filteredReason = 1});
  script.add(
      {.date = at("2024-04-01 07:58", 55), .address = "+15550100131", .country = "us", .disconnectedCause = kDeclined});
  script.add({.date = at("2024-04-01 08:10", 1.5), .address = "+15550100131", .outgoing = true, .country = "us"});
  script.add(
      {.date = at("2024-04-02 17:20", 9), .duration = 61, .address = "911", .outgoing = true, .emergency = true});
  script.add({.date = at("2024-04-20 06:30", 44),
              .duration = 3725.9,
              .address = "+493055501234",
              .outgoing = true,
              .place = "Berlin",
              .country = "de"});
  script.add({.date = at("2024-05-05 15:00", 17),
              .duration = 1520,
              .address = "+15550100108",
              .answered = true,
              .country = "us"});
  script.add({.date = at("2024-05-19 11:11", 11), .address = "+15550100177", .blockedBy = "com.example.quiet"});
  // The list remembers a name that is on no card.
  script.add({.date = at("2024-06-01 08:45", 2),
              .duration = 48,
              .address = "+15550100185",
              .answered = true,
              .name = "Corner Bakery",
              .country = "us"});
}

void addFaceTimeCalls(CallWriter& writer, Script& script) {
  const std::int64_t maya = writer.addHandle(kMaya), daniel = writer.addHandle(kDaniel),
                     priya = writer.addHandle(kPriya);
  script.add({.date = at("2024-03-09 20:00", 5),
              .duration = 1843.4,
              .address = kMaya,
              .outgoing = true,
              .type = kVideo,
              .provider = kFaceTime,
              .people = {maya}});
  script.add({.date = at("2024-03-10 19:22", 30),
              .duration = 605,
              .address = kDanielsMail,
              .answered = true,
              .type = kAudio,
              .provider = kFaceTime});
  script.add({.date = at("2024-03-17 09:30", 0.5),
              .duration = 2710,
              .outgoing = true,
              .type = kVideo,
              .provider = kFaceTime,
              .people = {maya, daniel, priya}});
  script.add({.date = at("2024-03-17 10:25", 59),
              .type = kVideo,
              .provider = kFaceTime,
              .people = {maya, priya},
              .initiator = priya});
  script.add({.date = at("2024-05-18 17:50", 13),
              .address = kMaya,
              .outgoing = true,
              .type = kAudio,
              .provider = kFaceTime,
              .people = {maya}});
  script.add({.date = at("2024-05-26 18:05", 0),
              .duration = 312.5,
              .address = "+15550100151",
              .answered = true,
              .type = kVideo,
              .provider = kFaceTime});
}

}  // namespace

void writeSampleCalls(CallWriter& writer) {
  Script script(writer);
  addPhoneCalls(script);
  addFaceTimeCalls(writer, script);
  script.add({.date = at("2024-04-11 12:00", 26),
              .duration = 312,
              .address = kDaniel,
              .answered = true,
              .type = kOfApp,
              .provider = "com.example.chatter"});
  writer.addCall(callInBothLists());
}

void writeTemporarySampleCalls(CallWriter& writer) {
  writer.addCall(callInBothLists());
  writer.addCall({.date = at("2024-06-12 08:05", 6.5),
                  .address = kMaya,
                  .uniqueId = "7B1D5C90-42EF-4F0A-8A36-0D9E8C7B6A51",
                  .country = "us"});
}

}  // namespace chatsum::device
