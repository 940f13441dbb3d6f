#include "platform/crypto/Sha256.h"

#include <openssl/evp.h>

#include <array>

namespace orv {

std::string Sha256Hex(std::string_view bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
    unsigned size = 0;
    // Fails only where memory is out; the empty text then is nobody's digest.
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &size, EVP_sha256(), nullptr) != 1) return {};
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * size);
    for (unsigned i = 0; i < size; ++i) {
        hex.push_back(digits[digest[i] >> 4]);
        hex.push_back(digits[digest[i] & 15]);
    }
    return hex;
}

}  // namespace orv
