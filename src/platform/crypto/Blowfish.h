#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// Blowfish (Schneier 1993) in ECB mode over 8-byte blocks, each two big-endian 32-bit words; `bytes` is changed in
/// place and its length must be a multiple of 8, else false. Keys of 1 to 56 bytes. What it protects against: a curious
/// eye, no more (see SECURITY.md).
[[nodiscard]] ORV_EXPORT bool BlowfishEncipher(std::string& bytes, std::string_view key);
[[nodiscard]] ORV_EXPORT bool BlowfishDecipher(std::string& bytes, std::string_view key);

}  // namespace orv
