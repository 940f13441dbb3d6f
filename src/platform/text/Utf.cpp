#include "platform/text/Utf.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orv {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// Number of ASCII bytes from `begin` on. Texts of surveys are nearly all ASCII, so 32 bytes go at a time.
std::size_t AsciiRun(const char* begin, std::size_t size) {
    constexpr std::uint64_t highBits = 0x8080808080808080u;
    std::size_t at = 0;
    for (; size - at >= 32; at += 32) {
        std::uint64_t words[4];
        std::memcpy(words, begin + at, sizeof words);
        if ((words[0] | words[1] | words[2] | words[3]) & highBits) break;
    }
    while (at < size && static_cast<unsigned char>(begin[at]) < 0x80) ++at;
    return at;
}

/// Number of bytes that aren't ASCII from `begin` on. No sequence goes past the end of such a run.
std::size_t NonAsciiRun(const char* begin, std::size_t size) {
    std::size_t at = 0;
    while (at < size && static_cast<unsigned char>(begin[at]) >= 0x80) ++at;
    return at;
}

bool IsCharacter(char32_t code) {
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

/// Writes through a block on the stack: no byte of the result is cleared before it is written.
void WidenAscii(std::wstring& out, const char* bytes, std::size_t size) {
    std::array<wchar_t, 1024> block;
    while (size > 0) {
        const std::size_t part = std::min(size, block.size());
        for (std::size_t i = 0; i < part; ++i) block[i] = static_cast<unsigned char>(bytes[i]);
        out.append(block.data(), part);
        bytes += part;
        size -= part;
    }
}

constexpr std::size_t kWideStep = 16;

/// Narrows a step of characters; false if one of them isn't ASCII, and what is in `out` is of no use then.
bool NarrowStep(const wchar_t* text, char* out) {
#if defined(__SSE2__) && __SIZEOF_WCHAR_T__ == 4
    // The compiler makes one character at a time of the loop below.
    const auto* const from = reinterpret_cast<const __m128i*>(text);
    const __m128i a = _mm_loadu_si128(from), b = _mm_loadu_si128(from + 1);
    const __m128i c = _mm_loadu_si128(from + 2), d = _mm_loadu_si128(from + 3);
    const __m128i all = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
    const __m128i high = _mm_and_si128(all, _mm_set1_epi32(~0x7F));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(high, _mm_setzero_si128())) != 0xFFFF) return false;
    const __m128i bytes = _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
    return true;
#else
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < kWideStep; ++i) {
        bits |= static_cast<std::uint32_t>(text[i]);
        out[i] = static_cast<char>(text[i]);
    }
    return bits < 0x80;
#endif
}

/// Narrows the ASCII characters that `text` begins with, up to the size of the block; returns how many those are.
std::size_t NarrowAscii(std::array<char, 4096>& block, std::wstring_view text) {
    const std::size_t size = std::min(text.size(), block.size());
    std::size_t at = 0;
    while (size - at >= kWideStep && NarrowStep(text.data() + at, block.data() + at)) at += kWideStep;
    // What is left of a text goes in one step that begins before it, in place of up to fifteen.
    const std::size_t last = size - std::min(size, kWideStep);
    if (at > last && at < size && NarrowStep(text.data() + last, block.data() + last)) return size;
    for (; at < size && static_cast<char32_t>(text[at]) < 0x80; ++at) block[at] = static_cast<char>(text[at]);
    return at;
}

/// A run without ASCII. The library's checked iterators throw on bad input; looking for the first bad byte doesn't.
void WidenRun(std::wstring& out, const char* begin, const char* end) {
    while (begin != end) {
        const char* const bad = utf8::find_invalid(begin, end);
        while (begin != bad) out.push_back(static_cast<wchar_t>(utf8::unchecked::next(begin)));
        if (begin == end) return;
        out.push_back(static_cast<wchar_t>(kReplacement));
        ++begin;
    }
}

// What the code page has at 0x80 to 0x9F; 81, 8D, 8F, 90 and 9D are free there.
constexpr std::array<char16_t, 32> kWindows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    AppendUtf8(out, text);
    return out;
}

void AppendUtf8(std::string& out, std::wstring_view text) {
    std::array<char, 4096> block;  // no byte of the result is cleared before it is written
    while (!text.empty()) {
        const std::size_t run = NarrowAscii(block, text);
        out.append(block.data(), run);
        text.remove_prefix(run);
        for (; !text.empty() && static_cast<char32_t>(text.front()) >= 0x80; text.remove_prefix(1)) {
            const auto code = static_cast<char32_t>(text.front());
            char sequence[4];
            const char* const last = utf8::unchecked::append(IsCharacter(code) ? code : kReplacement, sequence);
            out.append(sequence, static_cast<std::size_t>(last - sequence));
        }
    }
}

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring out;
    FromUtf8(bytes, out);
    return out;
}

void FromUtf8(std::string_view bytes, std::wstring& out) {
    out.clear();
    out.reserve(bytes.size());
    const char* at = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        const std::size_t ascii = AsciiRun(at, left);
        WidenAscii(out, at, ascii);
        const std::size_t other = NonAsciiRun(at + ascii, left - ascii);
        WidenRun(out, at + ascii, at + ascii + other);
        at += ascii + other;
        left -= ascii + other;
    }
}

bool IsUtf8(std::string_view bytes) {
    const char* at = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        const std::size_t ascii = AsciiRun(at, left);
        const std::size_t other = NonAsciiRun(at + ascii, left - ascii);
        if (!utf8::is_valid(at + ascii, at + ascii + other)) return false;
        at += ascii + other;
        left -= ascii + other;
    }
    return true;
}

std::string Windows1252ToUtf8(std::string_view bytes) {
    std::wstring wide;
    wide.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        wide.push_back(byte >= 0x80 && byte < 0xA0 ? static_cast<wchar_t>(kWindows1252[byte - 0x80]) : byte);
    }
    return ToUtf8(wide);
}

std::optional<std::string> Utf8ToWindows1252(std::string_view utf8) {
    if (!IsUtf8(utf8)) return std::nullopt;
    std::string out;
    out.reserve(utf8.size());
    for (const wchar_t c : FromUtf8(utf8)) {
        const auto code = static_cast<char32_t>(c);
        if (code < 0x80 || (code >= 0xA0 && code < 0x100)) {
            out.push_back(static_cast<char>(code));
            continue;
        }
        const auto* const found = std::find(kWindows1252.begin(), kWindows1252.end(), code);
        if (found == kWindows1252.end()) return std::nullopt;
        out.push_back(static_cast<char>(0x80 + (found - kWindows1252.begin())));
    }
    return out;
}

std::optional<std::string> Utf16LeToUtf8(std::string_view bytes) {
    if (bytes.size() % 2 != 0) return std::nullopt;
    const auto unitAt = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1])
                                                                                << 8);
    };
    std::wstring wide;
    wide.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        char32_t code = unitAt(i);
        if (code >= 0xD800 && code < 0xDC00 && i + 2 < bytes.size()) {
            const char32_t low = unitAt(i + 2);
            if (low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        wide.push_back(static_cast<wchar_t>(code));
    }
    return ToUtf8(wide);
}

std::string Utf8ToUtf16Le(std::string_view utf8) {
    std::string out;
    out.reserve(2 * utf8.size());
    ForEachUtf16Unit(FromUtf8(utf8), [&](unsigned unit) {
        out.push_back(static_cast<char>(unit & 0xFF));
        out.push_back(static_cast<char>(unit >> 8));
    });
    return out;
}

std::size_t Utf16Length(std::wstring_view text) {
    const auto pairs = std::count_if(text.begin(), text.end(), [](wchar_t c) { return c >= 0x10000; });
    return text.size() + static_cast<std::size_t>(pairs);
}

}  // namespace orv
