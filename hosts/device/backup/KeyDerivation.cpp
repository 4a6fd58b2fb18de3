// One iteration is two compressions of one block each, because the states after the padded key are the same every time.
// Only the functions that OpenSSL calls deprecated can begin from a state; through the others an iteration takes about
// three times as long.
#define OPENSSL_SUPPRESS_DEPRECATED  // NOLINT(readability-identifier-naming)

#include "hosts/device/backup/KeyDerivation.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/sha.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <exception>
#include <future>
#include <string>

#include "platform/foundation/SideThread.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kBlock = 64;
constexpr std::uint32_t kRoundsPerStep = 1 << 14;
constexpr auto kPause = std::chrono::milliseconds(100);

struct Sha1 {
  static constexpr std::size_t kWords = 5;
  using State = std::array<SHA_LONG, kWords>;

  static const EVP_MD* digest() { return EVP_sha1(); }
  static State begin() {
    SHA_CTX context;
    SHA1_Init(&context);
    return {context.h0, context.h1, context.h2, context.h3, context.h4};
  }
  static void compress(State& state, const unsigned char* block) {
    SHA_CTX context{};
    context.h0 = state[0];
    context.h1 = state[1];
    context.h2 = state[2];
    context.h3 = state[3];
    context.h4 = state[4];
    SHA1_Transform(&context, block);
    state = {context.h0, context.h1, context.h2, context.h3, context.h4};
  }
};

struct Sha256 {
  static constexpr std::size_t kWords = 8;
  using State = std::array<SHA_LONG, kWords>;

  static const EVP_MD* digest() { return EVP_sha256(); }
  static State begin() {
    SHA256_CTX context;
    SHA256_Init(&context);
    State state;
    std::copy_n(context.h, kWords, state.begin());
    return state;
  }
  static void compress(State& state, const unsigned char* block) {
    SHA256_CTX context;
    std::copy_n(state.begin(), kWords, context.h);
    SHA256_Transform(&context, block);
    std::copy_n(context.h, kWords, state.begin());
  }
};

void putWord(unsigned char* to, SHA_LONG word) {
  to[0] = static_cast<unsigned char>(word >> 24U);
  to[1] = static_cast<unsigned char>(word >> 16U);
  to[2] = static_cast<unsigned char>(word >> 8U);
  to[3] = static_cast<unsigned char>(word);
}

template <class Hash>
class Hmac {
 public:
  using State = typename Hash::State;
  static constexpr std::size_t kLength = Hash::kWords * 4;

  explicit Hmac(std::string_view password) {
    std::array<unsigned char, kBlock> key{};
    if (password.size() > kBlock) {
      EVP_Digest(password.data(), password.size(), key.data(), nullptr, Hash::digest(), nullptr);
    } else if (!password.empty()) {
      std::memcpy(key.data(), password.data(), password.size());
    }
    inner_ = padded(key, 0x36);
    outer_ = padded(key, 0x5C);
    OPENSSL_cleanse(key.data(), key.size());
    // What follows the bytes in every block: a set bit, zeros, and the number of bits, the padded key's among them.
    block_[kLength] = 0x80;
    putWord(block_.data() + kBlock - 4, static_cast<SHA_LONG>((kBlock + kLength) * 8));
  }
  ~Hmac() {
    OPENSSL_cleanse(&inner_, sizeof inner_);
    OPENSSL_cleanse(&outer_, sizeof outer_);
    OPENSSL_cleanse(block_.data(), block_.size());
  }
  Hmac(const Hmac&) = delete;
  Hmac& operator=(const Hmac&) = delete;

  /// Sets the bytes that `next` begins with.
  void set(const unsigned char* bytes) { std::memcpy(block_.data(), bytes, kLength); }

  /// Replaces the bytes by their code, and answers it as words.
  State next() {
    State state = inner_;
    Hash::compress(state, block_.data());
    put(state);
    state = outer_;
    Hash::compress(state, block_.data());
    put(state);
    return state;
  }

 private:
  static State padded(std::array<unsigned char, kBlock> key, unsigned char pad) {
    for (unsigned char& byte : key) byte ^= pad;
    State state = Hash::begin();
    Hash::compress(state, key.data());
    OPENSSL_cleanse(key.data(), key.size());
    return state;
  }
  void put(const State& state) {
    for (std::size_t i = 0; i < Hash::kWords; ++i) putWord(block_.data() + 4 * i, state[i]);
  }

  State inner_, outer_;
  std::array<unsigned char, kBlock> block_{};
};

/// One block of the key, `number` from 1. False when it was stopped or the library failed.
template <class Hash>
bool deriveBlock(std::string_view password, std::string_view salt, unsigned char number, std::uint32_t iterations,
                 const std::function<bool(std::uint64_t)>& advance, std::array<unsigned char, kBlock>& block) {
  std::string first(salt);
  first.append(3, '\0').push_back(static_cast<char>(number));
  if (!HMAC(Hash::digest(), password.data(), static_cast<int>(password.size()),
            reinterpret_cast<const unsigned char*>(first.data()), first.size(), block.data(), nullptr)) {
    return false;
  }
  Hmac<Hash> hmac(password);
  hmac.set(block.data());
  typename Hash::State sum{};
  for (std::uint32_t done = 1; done < iterations;) {
    const std::uint32_t end = done + std::min(iterations - done, kRoundsPerStep);
    const std::uint64_t rounds = end - done;
    for (; done < end; ++done) {
      const typename Hash::State code = hmac.next();
      for (std::size_t i = 0; i < Hash::kWords; ++i) sum[i] ^= code[i];
    }
    if (advance && !advance(rounds)) return false;
  }
  for (std::size_t i = 0; i < Hash::kWords; ++i) {
    std::array<unsigned char, 4> word{};
    putWord(word.data(), sum[i]);
    for (std::size_t j = 0; j < word.size(); ++j) block[4 * i + j] ^= word[j];
  }
  OPENSSL_cleanse(&sum, sizeof sum);
  return true;
}

template <class Hash>
std::optional<SecretKey> derive(std::string_view password, std::string_view salt, std::uint32_t iterations,
                                const std::function<bool(std::uint64_t)>& advance) {
  constexpr std::size_t kLength = Hmac<Hash>::kLength;
  SecretKey key;
  std::array<unsigned char, kBlock> block{};
  unsigned char number = 0;
  bool isDone = iterations > 0;
  for (std::size_t at = 0; isDone && at < SecretKey::kLength; at += kLength) {
    isDone = deriveBlock<Hash>(password, salt, ++number, iterations, advance, block);
    if (isDone) std::memcpy(key.data() + at, block.data(), std::min(kLength, SecretKey::kLength - at));
  }
  OPENSSL_cleanse(block.data(), block.size());
  if (!isDone) return std::nullopt;
  return key;
}

std::optional<SecretKey> deriveAll(const KeyBag& bag, std::string_view password,
                                   const std::function<bool(std::uint64_t)>& advance) {
  if (bag.firstSalt.empty()) return pbkdf2(PasswordHash::kSha1, password, bag.salt, bag.iterations, advance);
  const auto first = pbkdf2(PasswordHash::kSha256, password, bag.firstSalt, bag.firstIterations, advance);
  if (!first) return std::nullopt;
  const std::string_view bytes(reinterpret_cast<const char*>(first->data()), SecretKey::kLength);
  return pbkdf2(PasswordHash::kSha1, bytes, bag.salt, bag.iterations, advance);
}

}  // namespace

std::optional<SecretKey> pbkdf2(PasswordHash hash, std::string_view password, std::string_view salt,
                                std::uint32_t iterations, const std::function<bool(std::uint64_t)>& advance) {
  return hash == PasswordHash::kSha1 ? derive<Sha1>(password, salt, iterations, advance)
                                     : derive<Sha256>(password, salt, iterations, advance);
}

std::optional<SecretKey> derivePasswordKey(const KeyBag& bag, std::string_view password,
                                           const std::function<bool(double)>& progress) {
  const double all = 2.0 * bag.iterations + (bag.firstSalt.empty() ? 0.0 : bag.firstIterations);
  std::atomic<std::uint64_t> rounds = 0;
  std::atomic<bool> isWanted = !progress || progress(0);
  if (!isWanted) return std::nullopt;
  const auto tell = [&] {
    if (progress) isWanted = progress(std::min(static_cast<double>(rounds) / all, 1.0));
  };
  bool isAlone = false;
  std::promise<std::optional<SecretKey>> making;
  auto made = making.get_future();
  SideThread worker([&] {
    try {
      making.set_value(deriveAll(bag, password, [&](std::uint64_t more) {
        rounds += more;
        if (isAlone) tell();
        return isWanted.load();
      }));
    } catch (...) {
      making.set_exception(std::current_exception());
    }
  });
  if (worker.hasThread()) {
    try {
      while (isWanted && made.wait_for(kPause) == std::future_status::timeout) tell();
    } catch (...) {
      isWanted = false;  // nobody waits for the work any more
      throw;
    }
  } else {
    isAlone = true;
  }
  worker.join();
  const std::optional<SecretKey> key = made.get();
  if (!isWanted) return std::nullopt;
  if (progress) progress(1);
  return key;
}

}  // namespace chatsum::device
