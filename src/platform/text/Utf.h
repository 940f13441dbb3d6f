#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// Conversions between the wide texts of the public operations (UTF-32 in a std::wstring) and bytes. None of them asks
/// the locale. Any thread may call.
namespace orv {

/// Wide to UTF-8. What is no character (a lone surrogate, a value above U+10FFFF) becomes U+FFFD.
ORV_EXPORT std::string ToUtf8(std::wstring_view text);
/// The same, appended to `out`.
ORV_EXPORT void AppendUtf8(std::string& out, std::wstring_view text);

/// UTF-8 to wide. Each byte that starts no valid sequence becomes U+FFFD.
ORV_EXPORT std::wstring FromUtf8(std::string_view bytes);
/// The same into `out`, whose memory is used again.
ORV_EXPORT void FromUtf8(std::string_view bytes, std::wstring& out);
/// True if `bytes` is valid UTF-8 throughout (no overlong form, no surrogate).
ORV_EXPORT bool IsUtf8(std::string_view bytes);

/// Windows code page 1252 to UTF-8; the five bytes without a character there become the C1 control of the same number,
/// so that every byte sequence reads and is written back as it was.
ORV_EXPORT std::string Windows1252ToUtf8(std::string_view bytes);
/// UTF-8 to Windows code page 1252; none if a character isn't in the page.
ORV_EXPORT std::optional<std::string> Utf8ToWindows1252(std::string_view utf8);

/// UTF-16, little-endian bytes without byte order mark, to and from UTF-8. An odd last byte makes the reading fail.
ORV_EXPORT std::optional<std::string> Utf16LeToUtf8(std::string_view bytes);
ORV_EXPORT std::string Utf8ToUtf16Le(std::string_view utf8);

/// Number of UTF-16 units of a wide text: what limits and record fields of the suite count.
ORV_EXPORT std::size_t Utf16Length(std::wstring_view text);

/// Calls `visit(std::uint16_t)` for each UTF-16 unit of a wide text.
template <class Visit>
void ForEachUtf16Unit(std::wstring_view text, Visit&& visit) {
    for (const wchar_t c : text) {
        const auto code = static_cast<char32_t>(c);
        if (code < 0x10000) {
            visit(static_cast<unsigned short>(code));
        } else {
            visit(static_cast<unsigned short>(0xD7C0 + (code >> 10)));
            visit(static_cast<unsigned short>(0xDC00 + (code & 0x3FF)));
        }
    }
}

}  // namespace orv
