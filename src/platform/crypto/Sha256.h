#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// SHA-256 (FIPS 180-4) of bytes as 64 lower-case hexadecimal characters.
ORV_EXPORT std::string Sha256Hex(std::string_view bytes);

}  // namespace orv
