// Opens an encrypted backup with its password. No state, any thread.
#pragma once

#include "hosts/device/backup/BackupPlists.h"
#include "hosts/device/backup/KeyRing.h"
#include "hosts/device/source/SourceAccess.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Asks for the password, derives its key (which takes seconds) and unwraps the keys of the classes. The problem when
/// there is no password, it is wrong, the work was stopped, or the backup's keys are damaged; none of them holds it.
[[nodiscard]] StoreResult<KeyRing> unlockBackup(const BackupPlists& lists, const SourceAccess& access);

}  // namespace chatsum::device
