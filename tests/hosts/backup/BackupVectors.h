// Answers that were computed once, by other programs, for the steps of an encrypted backup.
#pragma once

#include <string>

#include "hosts/device/backup/SecretKey.h"
#include "tests/support/BackupCrypto.h"

namespace chatsum::device::testing {

inline constexpr const char* kPassword = "secret-Pa55";
inline constexpr const char* kPasswordKey = "ebef4bb3a868dbaa2811f3bc21ede94410cc04b9e04e01713c9f9a05ead0c5c1";
inline constexpr const char* kOldPasswordKey = "9839a63f6f10bc6361c39318393fa43e7b6b581ebe8055ee385075efc4b0e66d";
inline constexpr const char* kWrappedClassKey3 =
    "5055c9c37ec543080cb5ffb19e7e28f2a2f2c055260b678db556bfdf973f20b2f8bdf650b90eb9f2";
inline constexpr const char* kWrappedClassKey4 =
    "49e40477870de51cd34a29228a04673de6b9cb16d09c35839dcb5e964110aa0c24c4f0418fc04117";
inline constexpr const char* kManifestKey =
    "0400000054900ad8fb1956b306ea8d95ff6a4e5c489d7a24436942f39f484b9e65dcf129a8ddd8d64827cc7b";
inline constexpr const char* kFileKey =
    "0300000010b729554be20b00367cd11c5ec05459ac2ec1e24b2394d6d5e3b7b257e36ec48d475217a1b05bed";
inline constexpr const char* kFileText = "hello backup file\n";
inline constexpr const char* kEncryptedFile = "bae57d804f55c4c42959c8d1cfaa059e24c37ef771606534ec0f727f94a46a3a";
inline constexpr const char* kKeyBagSha1 = "724b6d2537d7eac86d006d30f8f735d116c0caa0";
inline constexpr const char* kKeyBag =
    "5645525300000004000000035459504500000004000000015555494400000010aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
    "484d434b000000280000000000000000000000000000000000000000000000000000000000000000000000000000000057"
    "524150000000040000000153414c5400000014404142434445464748494a4b4c4d4e4f50515253495445520000000400"
    "0003e84450575400000004000000014450494300000004000003e84450534c0000001410111213141516171819"
    "1a1b1c1d1e1f20212223555549440000001003030303030303030303030303030303434c41530000000400000003575241"
    "5000000004000000024b545950000000040000000057504b59000000285055c9c37ec543080cb5ffb19e7e28f2a2f2c055"
    "260b678db556bfdf973f20b2f8bdf650b90eb9f2555549440000001004040404040404040404040404040404434c415300"
    "000004000000045752415000000004000000024b545950000000040000000057504b590000002849e40477870de51cd34a"
    "29228a04673de6b9cb16d09c35839dcb5e964110aa0c24c4f0418fc04117";

inline SecretKey keyOf(const std::string& bytes) {
  SecretKey key;
  for (std::size_t i = 0; i < SecretKey::kLength && i < bytes.size(); ++i) {
    key.data()[i] = static_cast<unsigned char>(bytes[i]);
  }
  return key;
}

inline std::string hexOf(const SecretKey& key) {
  return test::hexOf(std::string(reinterpret_cast<const char*>(key.data()), SecretKey::kLength));
}

inline std::string bytesOfHex(const char* digits) { return test::bytesOfHex(digits); }

}  // namespace chatsum::device::testing
