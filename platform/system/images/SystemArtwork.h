// Pictures, pages of PDF documents, and the artwork of Chatsum itself. Any thread; outlives what it answers.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/interfaces/Artwork.h"
#include "platform/system/images/ImageMemo.h"

namespace chatsum::platform::system {

struct ArtworkOptions {
  /// Device path → real path; empty: paths are taken as they are. Called on any thread.
  std::function<std::string(const std::string&)> mapPath;
  /// Where the device's folder kArtworkFolder really stands. Empty: beside the running program's folder,
  /// ../share/chatsum/ChatsumSettings.bundle.
  std::string folder;
  double screenScale = 3;  ///< which variant of a picture in the bundle is best
};

/// The device path of the artwork.
inline constexpr std::string_view kArtworkFolder = "/System/Library/PreferenceBundles/ChatsumSettings.bundle";

class SystemArtwork final : public Artwork {
 public:
  explicit SystemArtwork(ArtworkOptions options) : options_(std::move(options)) {}

  /// The artwork folder, for every class: there is one bundle.
  [[nodiscard]] BundleRef bundleForClass(std::string_view className) const override;
  /// Reads the file's header only. A name that ends with "@2x" or "@3x" before its extension gives a picture of that
  /// scale.
  [[nodiscard]] UIImageRef imageWithContentsOfFile(const std::string& path) const override;
  [[nodiscard]] PDFPageRef pageOfDocument(const std::string& path, int number) const override;

  /// Remembers opened files while a scope of it lives.
  [[nodiscard]] ImageMemo& memo() const { return memo_; }
  /// While files are remembered: opens the picture, or the first page of the document, and decodes what a thumbnail of
  /// that side (points) shows of it. False when there is nothing to show.
  bool prepare(const std::string& path, double side) const;

  /// The real path of a picture; empty for none.
  [[nodiscard]] std::string realPath(const std::string& path) const;

 private:
  ArtworkOptions options_;
  mutable ImageMemo memo_;
};

}  // namespace chatsum::platform::system
