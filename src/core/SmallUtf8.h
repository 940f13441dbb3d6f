#pragma once

#include <array>
#include <cstddef>
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
        if (text.size() <= room.size() && NarrowAscii(text)) {
            view = std::string_view(room.data(), text.size());
        } else {
            AppendUtf8(large, text);
            view = large;
        }
    }
    SmallUtf8(const SmallUtf8&) = delete;
    SmallUtf8& operator=(const SmallUtf8&) = delete;
    std::string_view View() const { return view; }

private:
    bool NarrowAscii(std::wstring_view text) {
        std::size_t at = 0;
#if defined(__SSE2__) && __SIZEOF_WCHAR_T__ == 4
        constexpr std::size_t kStep = 8;
        if (text.size() >= kStep) {
            __m128i all = _mm_setzero_si128();
            const auto step = [&](std::size_t from) {
                const auto* wide = reinterpret_cast<const __m128i*>(text.data() + from);
                const __m128i low = _mm_loadu_si128(wide), high = _mm_loadu_si128(wide + 1);
                all = _mm_or_si128(all, _mm_or_si128(low, high));
                const __m128i packed = _mm_packs_epi32(low, high);
                _mm_storel_epi64(reinterpret_cast<__m128i*>(room.data() + from), _mm_packus_epi16(packed, packed));
            };
            for (; at + kStep <= text.size(); at += kStep) step(at);
            step(text.size() - kStep);  // the rest, some of it once more
            const __m128i above = _mm_andnot_si128(_mm_set1_epi32(0x7F), all);
            return _mm_movemask_epi8(_mm_cmpeq_epi8(above, _mm_setzero_si128())) == 0xFFFF;
        }
#endif
        wchar_t all = 0;
        for (; at < text.size(); ++at) {
            all |= text[at];
            room[at] = static_cast<char>(text[at]);
        }
        return static_cast<unsigned>(all) < 0x80;
    }

    std::array<char, 96> room;  // filled up to the length of the text only
    std::string large;
    std::string_view view;
};

}  // namespace orv
