// The same fonts on every machine: as long as it lives, fontconfig sees Debian's packages of DejaVu, Liberation 2 and
// Noto and nothing else. Make it before the first font is looked for; one at a time, before other threads.
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::test {

class PinnedFonts {
 public:
  PinnedFonts()
      : PinnedFonts({"/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/truetype/liberation2",
                     "/usr/share/fonts/truetype/noto", "/usr/share/fonts/opentype/noto"}) {}
  /// The fonts in other folders, which may be none at all.
  explicit PinnedFonts(const std::vector<std::string>& folders) {
    const std::string file = folder_.path() + "/fonts.conf";
    std::ofstream conf(file);
    conf << "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\">\n<fontconfig>\n";
    for (const auto& fonts : folders) conf << "  <dir>" << fonts << "</dir>\n";
    // What the system has read of these folders already serves too; nothing is written there.
    conf << "  <cachedir>" << folder_.path() << "/cache</cachedir>\n  <cachedir>/var/cache/fontconfig</cachedir>\n";
    for (const auto& [family, preferred] : {std::pair{"sans-serif", "DejaVu Sans"}, {"emoji", "Noto Color Emoji"}}) {
      conf << "  <alias><family>" << family << "</family><prefer><family>" << preferred
           << "</family></prefer></alias>\n";
    }
    conf << "</fontconfig>\n";
    conf.close();
    setenv("FONTCONFIG_FILE", file.c_str(), 1);
  }
  ~PinnedFonts() { unsetenv("FONTCONFIG_FILE"); }
  PinnedFonts(const PinnedFonts&) = delete;
  PinnedFonts& operator=(const PinnedFonts&) = delete;

 private:
  platform::fake::TemporaryFolder folder_;
};

}  // namespace chatsum::test
