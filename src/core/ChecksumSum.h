#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

class ConfigText;

/// How a character meets its seed byte.
enum class SumMode { Xor, And };

/// Sum over the UTF-16 units of a text of (seed[i] XOR unit) or (seed[i] AND unit), modulo 2^32. The index runs from 0
/// to 64 and on at 1, so that the first seed byte serves only a text's first unit. Any thread may call.
ORV_EXPORT std::uint32_t CalcCheckSum(std::wstring_view text, SumMode mode);
/// The same over a text in UTF-8.
ORV_EXPORT std::uint32_t CalcCheckSum(std::string_view utf8, SumMode mode);

/// Sum over the extra lines, the section names and each key joined to its value, without the checksum section. The
/// order of lines has no influence.
ORV_EXPORT std::uint32_t SumOfContent(const ConfigText& content, SumMode mode);

/// Constants of the file forms, the same in every installation: a file signed on one computer verifies on all others.
inline constexpr std::string_view kContentSalt = "01f72b0a-43c2-4f56-b10a-853eec9a72f2";
inline constexpr std::string_view kTitleSalt = "7a674d0a-5fd1-4a32-a4e7-52cc93a9b8b6";
inline constexpr std::string_view kCipherKey = "Tq7!hW2";

}  // namespace orv
