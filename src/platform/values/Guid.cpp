#include "platform/values/Guid.h"

#include <unistd.h>

#include <array>
#include <random>

namespace orv {

std::wstring CreateGuid(std::wstring& out) {
    std::array<unsigned char, 16> bytes;
    if (getentropy(bytes.data(), bytes.size()) != 0) {  // a kernel or a sandbox without the call
        std::random_device device;
        for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(device());
    }
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);  // the RFC's variant
    out.clear();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) out.push_back(L'-');
        out.push_back(L"0123456789abcdef"[bytes[i] >> 4]);
        out.push_back(L"0123456789abcdef"[bytes[i] & 15]);
    }
    return out;
}

}  // namespace orv
