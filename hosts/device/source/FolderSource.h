// A folder that mirrors a device's "/", however that copy was made. Any thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/source/SourceFolder.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

class FolderSource final : public DeviceSource {
 public:
  /// Looks for the user's folder below `path`: `private/var/mobile`, `var/mobile` or `mobile`, then `User`; then, as
  /// extractions put folders of their own in front of it, for the same in the folders some levels below. The problem
  /// says where stores were looked for, or which of several devices could be meant.
  [[nodiscard]] static StoreResult<std::unique_ptr<DeviceSource>> find(const std::string& path);

  /// The device that a store belongs to by its place, as `/copy/var/mobile/Library/SMS/sms.db`; nullptr when the
  /// place is none of a device. `store` is absolute and has no links in it.
  [[nodiscard]] static std::unique_ptr<DeviceSource> around(const std::string& store);

  /// Whether the folder itself mirrors a device's "/" and has a store.
  [[nodiscard]] static bool isDevice(const std::string& path);

  [[nodiscard]] StoreResult<std::optional<StoreLocation>> store(SourceStore store) override;
  [[nodiscard]] std::string whyMissing(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> originals(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> absentees(SourceStore store) const override;
  /// Where another device's store would be found before this one's.
  [[nodiscard]] std::vector<SourceFile> lists() const override;
  [[nodiscard]] std::optional<std::string> fileOfMessage(std::string_view devicePath) const override;
  [[nodiscard]] std::optional<SourceFile> originalOfMessage(std::string_view devicePath) const override;

 private:
  FolderSource(SourceFolder folder, std::string mobile, std::vector<std::string> placesBefore);
  [[nodiscard]] std::optional<std::string> find(SourceStore store) const;

  SourceFolder folder_;
  std::string mobile_;                     // the user's folder, as a path of the device
  std::vector<std::string> placesBefore_;  // looked into in vain before it was found
};

}  // namespace chatsum::device
