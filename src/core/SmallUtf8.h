#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "platform/text/Utf.h"

namespace orv {

/// A wide argument as UTF-8, on the stack while it is short: names of sections and keys are looked up all the time.
class SmallUtf8 {
public:
    explicit SmallUtf8(std::wstring_view text) {
        padded = text.size() <= kMax && NarrowAscii(text);
        if (padded) {
            view = std::string_view(room.data(), text.size());
        } else {
            AppendUtf8(large, text);
            view = large;
        }
    }
    SmallUtf8(const SmallUtf8&) = delete;
    SmallUtf8& operator=(const SmallUtf8&) = delete;
    std::string_view View() const { return view; }
    /// True if the text may be read in words of eight bytes, the last one filled up with zeros.
    bool Padded() const { return padded; }

private:
    static constexpr std::size_t kWord = 8, kMax = 96;

    // Whole words only are written, each once: who reads them right away needn't wait for memory.
    bool NarrowAscii(std::wstring_view text) {
        const std::size_t left = text.size() % kWord, whole = text.size() - left;
        std::size_t at = 0;
#if defined(__SSE2__) && __SIZEOF_WCHAR_T__ == 4
        if (whole > 0) {
            __m128i all = _mm_setzero_si128();
            const auto narrow = [&](std::size_t from) {
                const auto* wide = reinterpret_cast<const __m128i*>(text.data() + from);
                const __m128i low = _mm_loadu_si128(wide), high = _mm_loadu_si128(wide + 1);
                all = _mm_or_si128(all, _mm_or_si128(low, high));
                const __m128i packed = _mm_packs_epi32(low, high);
                return static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packus_epi16(packed, packed)));
            };
            for (; at < whole; at += kWord) Put(at, narrow(at));
            if (left > 0) Put(whole, narrow(text.size() - kWord) >> (8 * (kWord - left)));
            const __m128i above = _mm_andnot_si128(_mm_set1_epi32(0x7F), all);
            return _mm_movemask_epi8(_mm_cmpeq_epi8(above, _mm_setzero_si128())) == 0xFFFF;
        }
#endif
        std::uint32_t all = 0;
        for (; at < text.size(); at += kWord) {
            std::uint64_t word = 0;
            for (std::size_t i = std::min(text.size() - at, kWord); i-- > 0;) {
                const std::uint32_t character = static_cast<char32_t>(text[at + i]);
                all |= character;
                word = word << 8 | (character & 0xFF);
            }
            Put(at, word);
        }
        return all < 0x80;
    }
    void Put(std::size_t at, std::uint64_t word) {
        std::memcpy(room.data() + at, &word, sizeof(word));
    }

    std::array<char, kMax> room;  // filled up to the word in which the text ends
    bool padded = false;
    std::string large;
    std::string_view view;
};

}  // namespace orv
