// OpenSSL's context of a cipher, wiped and freed when its owner goes. One thread at a time.
#pragma once

#include <openssl/evp.h>

#include <memory>

namespace chatsum::device {

struct FreeCipherContext {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, FreeCipherContext>;

}  // namespace chatsum::device
