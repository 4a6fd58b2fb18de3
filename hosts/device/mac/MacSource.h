// The home folder of a Mac's user, the living one or a copy. `store` on one thread, everything else on any.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/source/ConvertedBook.h"
#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/source/SourceFolder.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

class MacSource final : public DeviceSource {
 public:
  /// Whether the folder holds a Mac's Messages store or call list, or may well do so behind what may not be read.
  [[nodiscard]] static bool isMacHome(const std::string& folder);

  /// Opens a folder that is one.
  [[nodiscard]] static StoreResult<std::unique_ptr<DeviceSource>> open(const std::string& folder);

  /// The home that a store belongs to by its place, as `/copy/Library/Messages/chat.db`; nullptr when the place is none
  /// of a Mac. `store` is absolute and has no links in it.
  [[nodiscard]] static std::unique_ptr<DeviceSource> around(const std::string& store);

  /// The address books of all accounts become one, in a private folder, at the first question for it.
  [[nodiscard]] StoreResult<std::optional<StoreLocation>> store(SourceStore store) override;
  [[nodiscard]] std::string whyMissing(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> originals(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> absentees(SourceStore store) const override;
  [[nodiscard]] std::optional<std::string> fileOfMessage(std::string_view devicePath) const override;
  [[nodiscard]] std::optional<SourceFile> originalOfMessage(std::string_view devicePath) const override;

 private:
  explicit MacSource(SourceFolder home);
  /// The address books, that of the Mac itself first.
  [[nodiscard]] std::vector<std::string> books() const;

  SourceFolder home_;
  std::optional<ConvertedBook> book_;
};

}  // namespace chatsum::device
