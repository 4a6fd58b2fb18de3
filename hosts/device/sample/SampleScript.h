// What the people of the sample device wrote to each other, and who they are. Invented throughout. Constant data: any
// thread.
#pragma once

#include <string_view>
#include <vector>

#include "hosts/device/sample/ContactWriter.h"

namespace chatsum::device {

/// What makes a line unlike an ordinary message; the values add up.
enum SampleTrait : unsigned {
  kPlain = 0,
  kBodyOnly = 1,     // the text stands only in the body
  kSameMoment = 2,   // carries the very date of the line before
  kMemberLeft = 4,   // a system row: the sender left the group
  kRenamed = 8,      // a system row: the sender named the group like the text
  kReaction = 16,    // a reaction to the line before, the text is the sentence that stands for it
  kNotSent = 32,     // sending failed
  kNoContent = 64,   // neither text nor body
  kReply = 128,      // a reply to the line before
  kEdited = 256,     // the text was another before, which is `extra`
  kUnsent = 512,     // taken back; nothing is left of the text
  kLink = 1024,      // the text is an address, `extra` the title of its page
  kCard = 2048,      // a card of the app that is called as `extra`, the text is its caption
  kBalloons = 4096,  // sent with balloons
};

struct SampleLine {
  int minutes;            // after the line before (a few seconds come on top), after the scene's start for the first
  int from;               // 0 is the owner of the device, else the place of the sender among the members, from 1
  std::string_view text;  // UTF-8, without the marks of attachments
  unsigned traits = kPlain;
  std::vector<std::string_view> files = {};  // names of attachments
  std::string_view extra = {};
};

struct SampleScene {
  std::string_view start;  // UTC, "2021-12-31 23:41"
  std::vector<SampleLine> lines;
};

struct SampleChat {
  std::string_view guid;
  std::string_view identifier;
  std::string_view service;
  bool group;
  std::string_view displayName;
  std::vector<std::string_view> members;  // handles
  std::string_view leaver;                // a member who is not in the group any more; empty: all still are
  std::vector<SampleScene> scenes;
};

struct SampleHandle {
  std::string_view id;
  std::string_view service;
  std::string_view personCentricId;
};

/// Every handle of the store, in the order of its rows.
std::vector<SampleHandle> sampleHandles();

/// Writes every card of the address book.
void writeSampleContacts(ContactWriter& writer);

// The chats, one operation per circle of people. All of them together are the store.
std::vector<SampleChat> sampleFriends();
std::vector<SampleChat> sampleGroups();
std::vector<SampleChat> sampleLanguages();
std::vector<SampleChat> sampleOthers();

}  // namespace chatsum::device
