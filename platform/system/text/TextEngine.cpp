#include "platform/system/text/TextEngine.h"

#include <atomic>
#include <cstdint>

#include "platform/system/text/FontLibrary.h"
#include "platform/system/text/PieceCache.h"
#include "platform/system/text/Typesetter.h"
#include "platform/system/text/Words.h"

namespace chatsum::platform::system {

/// What the threads share, and where each finds the typesetter of its own.
class TextEngine::Parts {
 public:
  Typesetter& typesetter() {
    struct Own {
      std::uint64_t engine = 0;
      std::unique_ptr<Typesetter> typesetter;
    };
    // Of the engine that this thread used last. It outlives an engine that ends, but is not asked again then.
    static thread_local Own own;
    if (own.engine != number_ || !own.typesetter) {
      own.typesetter = std::make_unique<Typesetter>(fonts_, pieces_, words_);
      own.engine = number_;
    }
    return *own.typesetter;
  }
  FontLibrary& fonts() { return fonts_; }

 private:
  static std::uint64_t nextNumber() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
  }

  const std::uint64_t number_ = nextNumber();
  FontLibrary fonts_;
  PieceCache pieces_;
  WordTable words_{pieces_.bytes()};
};

TextEngine::TextEngine() : parts_(std::make_unique<Parts>()) {}
TextEngine::~TextEngine() = default;

bool TextEngine::hasFonts() { return parts_->fonts().fontNamed("").primary != nullptr; }

void TextEngine::layOut(std::string_view text, const UIFont& font, double width, LineBreakMode mode,
                        LayoutStore& store) {
  parts_->typesetter().layOut(text, font, width, mode, false, store);
}

void TextEngine::layOutLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode,
                            LayoutStore& store) {
  parts_->typesetter().layOut(text, font, width, mode, true, store);
}

}  // namespace chatsum::platform::system
