// The built program run as a child, with an environment and folders of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/sample/SeededDevice.h"
#include "hosts/device/sample/StoreWriter.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::cli::testing {

struct Outcome {
  int code = -1;  ///< exit code, 128 + the number of the signal that ended it
  std::string out, err;
  std::uint64_t peakBytes = 0;  ///< of memory that was its own at one time
};

class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest();

  /// Runs the program without --source and --home.
  Outcome runPlain(const std::vector<std::string>& arguments) const;
  /// Runs it with the test's source and home; a report is a text when its arguments do not say what it is.
  Outcome run(const std::vector<std::string>& arguments) const;
  /// Begins `run` with its results going to a descriptor, and answers the child's number.
  [[nodiscard]] int start(const std::vector<std::string>& arguments, int out) const;
  /// Waits for a child that was started. `out` stays empty.
  [[nodiscard]] Outcome finish(int child) const;
  /// `run` of `report CONVERSATION` and more; expects success and answers the bytes of the report.
  std::string report(const std::string& conversation, const std::vector<std::string>& more = {}) const;

  void writeSample() const;
  void writeSeeded(const device::SeededDeviceOptions& options) const;
  /// The Messages store's place, its folder made.
  [[nodiscard]] std::filesystem::path storePath() const;
  [[nodiscard]] std::filesystem::path addressBookPath() const;
  /// Makes sure that a command fails with exit code 1 and one sentence that holds `part`, and that nothing was written.
  void expectFailure(const std::vector<std::string>& arguments, const std::string& part) const;

  [[nodiscard]] std::filesystem::path root() const { return folder_.path(); }
  [[nodiscard]] std::filesystem::path device() const { return root() / "device"; }
  [[nodiscard]] std::filesystem::path home() const { return root() / "home"; }
  [[nodiscard]] std::filesystem::path reports() const { return home() / "Library/Preferences/Chatsum"; }
  [[nodiscard]] std::filesystem::path temporary() const { return root() / "tmp"; }

  std::map<std::string, std::string> environment;  ///< changed by tests that need another
  std::optional<std::uint64_t> largestFile;        ///< bytes; what is longer cannot be written
  std::optional<std::uint64_t> addressSpace;       ///< bytes of memory that it may ask for
  bool hasNoThreads = false;                       ///< no thread can be started

 private:
  [[nodiscard]] std::vector<std::string> withPlaces(const std::vector<std::string>& arguments) const;
  [[nodiscard]] int startPlain(const std::vector<std::string>& arguments, int out) const;

  platform::fake::TemporaryFolder folder_;
};

[[nodiscard]] std::string bytesOf(const std::filesystem::path& path);
void putBytes(const std::filesystem::path& path, const std::string& bytes);
/// Every file below a folder with its bytes and the time of its last change, links as links, folders too.
[[nodiscard]] std::map<std::string, std::string> everythingBelow(const std::filesystem::path& folder);
[[nodiscard]] std::vector<std::string> linesOf(const std::string& text);
[[nodiscard]] std::size_t countOf(const std::string& text, const std::string& part);

/// A store of a test's own at `path`; rows go in through `store`, then `finish`.
class SmallStore {
 public:
  explicit SmallStore(const std::filesystem::path& path, device::Generation generation = device::Generation::ios17,
                      device::Placement placement = device::Placement::mainFile)
      : store(path, generation, placement) {}

  /// A chat with one person. Answers its row; the person's handle is `lastHandle`.
  std::int64_t chat(const std::string& handle, const std::string& service = "iMessage");
  /// A message in it, a minute after the one before, the first on 2020-01-06T10:40:00Z. Its GUID is M1, M2, …
  void message(std::int64_t chat, const std::string& text, bool fromMe = false);
  void message(device::MessageRow row);
  void finish();

  device::StoreWriter store;
  std::int64_t lastHandle = 0;
  std::int64_t nextDate = 600'000'000'000'000'000;

 private:
  int messages_ = 0;
};

}  // namespace chatsum::cli::testing
