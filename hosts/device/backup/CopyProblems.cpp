#include "hosts/device/backup/CopyProblems.h"

#include <cerrno>
#include <cstring>

#include "hosts/device/language/Say.h"

namespace chatsum::device {

StoreProblem copyProblem(const std::string& shownPath, const std::string& folder, int error) {
  if (error == ENOSPC || error == EDQUOT || error == EFBIG) {
    return {
        say("There is not enough room in '{0}' for a decrypted copy of '{1}'; free some or set TMPDIR to a folder "
            "with more.",
            folder, shownPath)};
  }
  return {say("'{0}' cannot be decrypted into a private folder ({1}); check that it may be read.", shownPath,
              std::strerror(error))};
}

}  // namespace chatsum::device
