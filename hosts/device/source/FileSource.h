// A single store given as the source, with what stands beside it in its folder: an address book, call lists, the files
// of messages. `store` on one thread, everything else on any.
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

class FileSource final : public DeviceSource {
 public:
  /// Opens the store at `path`, an absolute path without links. What kind it is its tables say when its name does not;
  /// a file that cannot be read is taken for a Messages store, and whoever reads that says why. `convertMacBooks` makes
  /// an address book of a Mac's, when one stands beside the store.
  [[nodiscard]] static StoreResult<std::unique_ptr<DeviceSource>> open(const std::string& path,
                                                                       BookConverter convertMacBooks);

  [[nodiscard]] StoreResult<std::optional<StoreLocation>> store(SourceStore store) override;
  [[nodiscard]] std::string whyMissing(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> originals(SourceStore store) const override;
  [[nodiscard]] std::vector<SourceFile> absentees(SourceStore store) const override;
  [[nodiscard]] std::optional<std::string> fileOfMessage(std::string_view devicePath) const override;
  [[nodiscard]] std::optional<SourceFile> originalOfMessage(std::string_view devicePath) const override;

 private:
  FileSource(const std::string& path, SourceStore kind, BookConverter convertMacBooks);
  /// The names of files in the folder that may be the store.
  [[nodiscard]] std::vector<std::string> namesOf(SourceStore store) const;
  [[nodiscard]] std::optional<std::string> find(SourceStore store) const;

  SourceFolder folder_;
  std::string name_;  // of the file in it
  SourceStore kind_;
  BookConverter convertMacBooks_;
  std::optional<ConvertedBook> book_;
};

}  // namespace chatsum::device
