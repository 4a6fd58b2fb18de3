#include "hosts/device/report/DrawingNotes.h"

#include <cstdint>

#include "hosts/device/language/Say.h"
#include "platform/system/graphics/SystemGraphics.h"
#include "platform/system/translations/Languages.h"

namespace chatsum::device {
namespace {

std::string describeUnshown(const platform::system::UnshownCharacters& characters) {
  const std::vector<std::string> languages = platform::system::languagesFromEnvironment();
  const std::string language = languages.empty() ? "en" : languages.front();
  std::uint64_t all = 0;
  std::string scripts;
  for (const auto& [script, count] : characters) {
    all += count;
    scripts.append(scripts.empty() ? "" : ", ").append(platform::system::nameOfScript(script, language));
  }
  return sayCounted(all,
                    "{0} character is shown as a box because no installed font has it ({1}); install a font for it and "
                    "make the report again.",
                    "{0} characters are shown as boxes because no installed font has them ({1}); install fonts for "
                    "them and make the report again.",
                    scripts);
}

}  // namespace

std::string describeUndrawn(std::uint64_t files) {
  return sayCounted(files, "{0} picture is missing or damaged: its name stands in its place.",
                    "{0} pictures are missing or damaged: their names stand in their places.");
}

DrawingNotes::DrawingNotes(platform::system::SystemGraphics& graphics)
    : graphics_(graphics), missingBefore_(graphics.missingPictures()), partialBefore_(graphics.partialPictures()) {
  graphics_.forgetLackOfFonts();
  (void)graphics_.takeUnshownCharacters();
}

std::optional<std::string> DrawingNotes::failure() const {
  if (!graphics_.lacksFonts()) return std::nullopt;
  return say(
      "A PDF report needs a font, and none that can be used is installed; install one (in Debian the package "
      "fonts-dejavu-core), or make a text or CSV report.");
}

std::vector<std::string> DrawingNotes::sentences() {
  std::vector<std::string> sentences;
  if (const std::uint64_t missing = graphics_.missingPictures() - missingBefore_; missing > 0) {
    sentences.push_back(sayCounted(missing, "{0} picture is missing or damaged: an empty place stands for it.",
                                   "{0} pictures are missing or damaged: an empty place stands for each of them."));
  }
  if (const std::uint64_t partial = graphics_.partialPictures() - partialBefore_; partial > 0) {
    sentences.push_back(sayCounted(partial, "{0} picture is incomplete: only the part that is there is drawn.",
                                   "{0} pictures are incomplete: only the parts that are there are drawn."));
  }
  const auto unshown = graphics_.takeUnshownCharacters();
  if (!unshown.empty()) sentences.push_back(describeUnshown(unshown));
  return sentences;
}

}  // namespace chatsum::device
