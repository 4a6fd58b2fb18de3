// Remembers the pictures and pages that were opened last while somebody wants that, so that a file named many times is
// decoded once. A file that changes is another file. Any thread.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/system/images/PixelSource.h"
#include "platform/system/images/SystemPDFPage.h"

namespace chatsum::platform::system {

class ImageMemo {
 public:
  /// What a file turned out to hold; both nullptr: neither a picture nor such a page.
  struct Opened {
    std::shared_ptr<const FilePixels> picture;
    std::shared_ptr<const SystemPDFPage> page;
  };
  struct Key {
    std::string path;
    int page = 0;  ///< of a document; 0: a picture
    FileIdentity identity;
    friend auto operator<=>(const Key&, const Key&) = default;
  };

  /// The memo remembers while one of these lives, and forgets everything with the last one. It must outlive them.
  class Scope {
   public:
    explicit Scope(ImageMemo& memo) : memo_(&memo) { memo.begin(); }
    Scope(Scope&& other) noexcept : memo_(std::exchange(other.memo_, nullptr)) {}
    Scope& operator=(Scope&& other) noexcept {
      std::swap(memo_, other.memo_);
      return *this;
    }
    ~Scope() {
      if (memo_) memo_->end();
    }

   private:
    ImageMemo* memo_;
  };

  ImageMemo() = default;
  ImageMemo(const ImageMemo&) = delete;
  ImageMemo& operator=(const ImageMemo&) = delete;

  /// What is remembered of the file, or else what `open` answers.
  [[nodiscard]] Opened find(const Key& key, const std::function<Opened()>& open);

 private:
  struct Entry {
    Opened opened;
    std::uint64_t lastUse = 0;
  };

  void begin();
  void end();
  void forgetOldest();
  [[nodiscard]] std::size_t keptBytes() const;

  std::mutex mutex_;
  std::size_t scopes_ = 0;
  std::uint64_t uses_ = 0;
  std::map<Key, Entry> entries_;
};

}  // namespace chatsum::platform::system
