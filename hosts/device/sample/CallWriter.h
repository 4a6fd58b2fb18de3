// Writes a device's call lists of any generation through prepared statements in one transaction.
// One thread at a time. Texts handed over are read during the call only.
// A failure is kept: later calls answer 0 and `finish` answers the sentence.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/sample/StoreFile.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

/// Systems whose call list differs: before iOS 10 it names no service, before iOS 13 it has addresses as bytes and no
/// table of people.
enum class CallGeneration { ios9, ios10, ios13, ios17, ios27 };

struct CallRow {
  double date = 0;                // seconds since 2001-01-01T00:00:00Z
  double duration = 0;            // seconds
  std::string_view address = {};  // empty: NULL
  bool isAddressBytes = false;    // keep it as bytes whatever the generation
  bool outgoing = false;
  bool answered = false;
  int type = 1;                                       // 1 phone, 8 FaceTime with video, 16 FaceTime audio, 0 an app
  std::string_view provider = "com.apple.Telephony";  // empty: NULL
  std::string_view uniqueId = {};                     // empty: NULL
  std::string_view name = {};
  std::string_view place = {};
  std::string_view country = {};
  int disconnectedCause = 0;
  int junkConfidence = 0;
  int filteredReason = 0;
  bool hasMessage = false;
  bool emergency = false;
  std::string_view blockedBy = {};        // an app that keeps numbers away; empty: NULL
  std::vector<std::int64_t> people = {};  // rows of handles
  std::int64_t initiator = 0;             // row of a handle, 0 for none
};

class CallWriter {
 public:
  /// Starts the list that is to stand at `path`, CallHistory.storedata or its temporary twin.
  explicit CallWriter(const std::filesystem::path& path, CallGeneration generation = CallGeneration::ios17,
                      Placement placement = Placement::mainFile);
  ~CallWriter();

  // Each adds one row and answers its key, 0 after a failure.
  std::int64_t addHandle(std::string_view value);
  std::int64_t addCall(const CallRow& row);

  /// For rows that have no operation here; inside the transaction.
  [[nodiscard]] StoreFile& file() { return file_; }

  /// Builds the index and puts the list in its place. Nothing when all is well, else one sentence.
  [[nodiscard]] std::optional<std::string> finish();

 private:
  bool run(const sqlite::Statement& statement);

  StoreFile file_;
  CallGeneration generation_;
  sqlite::Statement calls_, handles_, people_;
};

struct OldCallRow {
  std::int64_t date = 0;  // seconds since 1970-01-01T00:00:00Z
  std::int64_t duration = 0;
  std::string_view address = {};
  std::int64_t flags = 4;  // 1 outgoing, 4 phone, 8 blocked or failed, 16 FaceTime; they add up
  std::string_view name = {};
};

/// call_history.db of iOS 7 and earlier.
class OldCallWriter {
 public:
  explicit OldCallWriter(const std::filesystem::path& path, Placement placement = Placement::mainFile);
  ~OldCallWriter();

  std::int64_t addCall(const OldCallRow& row);
  [[nodiscard]] StoreFile& file() { return file_; }
  [[nodiscard]] std::optional<std::string> finish();

 private:
  StoreFile file_;
  sqlite::Statement calls_;
};

}  // namespace chatsum::device
