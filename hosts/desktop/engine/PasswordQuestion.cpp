#include "hosts/desktop/engine/PasswordQuestion.h"

namespace chatsum::desktop {

void wipe(char* bytes, std::size_t count) {
  // A compiler may leave out what is written to memory that nobody reads again, but not this.
  for (volatile char* byte = bytes; count > 0; --count) *byte++ = 0;
}

PasswordQuestion::~PasswordQuestion() { forget(); }

std::optional<std::string> PasswordQuestion::wait() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isGivenUp_ || password_; });
  if (isGivenUp_) return std::nullopt;
  std::optional<std::string> given = password_;  // a copy, so that this one can be wiped whatever its length
  forget();
  return given;
}

void PasswordQuestion::answer(std::string password) {
  {
    const std::lock_guard lock(mutex_);
    forget();
    password_ = password;
  }
  wipe(password.data(), password.size());
  changed_.notify_all();
}

void PasswordQuestion::giveUp() {
  {
    const std::lock_guard lock(mutex_);
    isGivenUp_ = true;
  }
  changed_.notify_all();
}

void PasswordQuestion::forget() {
  if (password_) wipe(password_->data(), password_->size());
  password_.reset();
}

}  // namespace chatsum::desktop
