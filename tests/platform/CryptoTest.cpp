#include "platform/crypto/Blowfish.h"
#include "platform/crypto/Sha256.h"
#include "support/TestSupport.h"

#include <tuple>

namespace orv::test {

std::string Hex(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

// From the set of vectors that Eric Young published for the cipher.
TEST(Blowfish, PublishedVectors) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"0000000000000000", "0000000000000000", "4EF997456198DD78"},
        {"0123456789ABCDEF", "1111111111111111", "61F9C3802281B096"},
        {"FEDCBA9876543210", "0123456789ABCDEF", "0ACEAB0FC6A0A28D"},
        {"F0E1D2C3B4A596", "FEDCBA9876543210", "8BB77032F960629D"}};
    for (const auto& [key, plain, cipher] : rows) {
        std::string bytes = Hex(plain) + Hex(plain);  // each block by itself
        EXPECT_TRUE(BlowfishEncipher(bytes, Hex(key)));
        EXPECT_EQ(bytes, Hex(cipher) + Hex(cipher)) << key;
        EXPECT_TRUE(BlowfishDecipher(bytes, Hex(key)));
        EXPECT_EQ(bytes, Hex(plain) + Hex(plain)) << key;
    }
}

TEST(Blowfish, RefusesOddSizes) {
    std::string bytes = "12345678", odd = "1234567";
    EXPECT_FALSE(BlowfishEncipher(odd, "key"));
    EXPECT_EQ(odd, "1234567");
    EXPECT_FALSE(BlowfishDecipher(bytes, ""));
    EXPECT_FALSE(BlowfishEncipher(bytes, std::string(57, 'k')));
    EXPECT_TRUE(BlowfishEncipher(bytes, std::string(56, 'k')));
}

TEST(Sha256, PublishedVectors) {
    EXPECT_EQ(Sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Sha256Hex(std::string(1000000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

}  // namespace orv::test
