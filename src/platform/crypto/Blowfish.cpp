#include "platform/crypto/Blowfish.h"

#include <openssl/blowfish.h>
#include <openssl/crypto.h>

namespace orv {

namespace {

constexpr std::size_t kLongestKey = 56;

// OpenSSL 3 marks these calls as deprecated because the cipher is weak. The files that were written with it stay, and
// the replacement needs the legacy provider, a plug-in that a machine may lack.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
bool Crypt(std::string& bytes, std::string_view key, int direction) {
    if (bytes.size() % BF_BLOCK != 0 || key.empty() || key.size() > kLongestKey) return false;
    BF_KEY schedule;
    BF_set_key(&schedule, static_cast<int>(key.size()), reinterpret_cast<const unsigned char*>(key.data()));
    auto* const data = reinterpret_cast<unsigned char*>(bytes.data());
    for (std::size_t at = 0; at < bytes.size(); at += BF_BLOCK) {
        BF_ecb_encrypt(data + at, data + at, &schedule, direction);
    }
    OPENSSL_cleanse(&schedule, sizeof schedule);
    return true;
}
#pragma GCC diagnostic pop

}  // namespace

bool BlowfishEncipher(std::string& bytes, std::string_view key) {
    return Crypt(bytes, key, BF_ENCRYPT);
}

bool BlowfishDecipher(std::string& bytes, std::string_view key) {
    return Crypt(bytes, key, BF_DECRYPT);
}

}  // namespace orv
