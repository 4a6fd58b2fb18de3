#include "hosts/device/backup/CopyProblems.h"

#include <cerrno>
#include <cstring>

namespace chatsum::device {

StoreProblem copyProblem(const std::string& shownPath, const std::string& folder, int error) {
  if (error == ENOSPC || error == EDQUOT || error == EFBIG) {
    return {"There is not enough room in '" + folder + "' for a decrypted copy of '" + shownPath +
            "'; free some or set TMPDIR to a folder with more."};
  }
  return {"'" + shownPath + "' cannot be decrypted into a private folder (" + std::strerror(error) +
          "); check that it may be read."};
}

}  // namespace chatsum::device
