#include "hosts/device/backup/BackupUnlocking.h"

#include <openssl/crypto.h>

#include <optional>
#include <string>
#include <utility>

#include "hosts/device/backup/KeyDerivation.h"
#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

/// A password, wiped when it goes.
class Password {
 public:
  explicit Password(std::optional<std::string> text) : text_(std::move(text)) {}
  ~Password() {
    if (text_) OPENSSL_cleanse(text_->data(), text_->size());
  }
  Password(const Password&) = delete;
  Password& operator=(const Password&) = delete;
  [[nodiscard]] const std::optional<std::string>& text() const { return text_; }

 private:
  std::optional<std::string> text_;
};

}  // namespace

StoreResult<KeyRing> unlockBackup(const BackupPlists& lists, const SourceAccess& access) {
  const std::string& backup = lists.facts.path;
  const auto bag = KeyBag::parse(lists.keyBag, lists.facts.path);
  if (!bag) return bag.problem();
  const Password password(access.password ? access.password() : std::nullopt);
  if (!password.text()) {
    return StoreProblem{
        say("The backup '{0}' is encrypted; give the file that holds its password with --password-file, "
            "or run this in a terminal to be asked for it.",
            backup)};
  }
  bool isStopped = false;
  const auto progress = [&](double done) {
    isStopped = access.progress && !access.progress(done);
    return !isStopped;
  };
  const auto key = derivePasswordKey(bag.value(), *password.text(), progress);
  if (isStopped) {
    return StoreProblem{say("The backup '{0}' was not opened, because the work on its password was stopped.", backup)};
  }
  if (!key) {
    return StoreProblem{
        say("The backup '{0}' cannot be opened: the key of its password cannot be made on this system.", backup)};
  }
  auto ring = KeyRing::open(bag.value(), *key);
  if (!ring) {
    return StoreProblem{
        say("The password does not open the backup '{0}'; it is the one that was set for encrypted "
            "backups in Finder or iTunes, which may differ from the device's passcode.",
            backup)};
  }
  return std::move(*ring);
}

}  // namespace chatsum::device
