#include "core/ChecksumSum.h"

#include <algorithm>
#include <array>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/ConfigText.h"
#include "core/FileObject.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr std::size_t kSeedSize = 65;
// Behind the seeds stands what a read of whole blocks may touch and never uses.
constexpr std::array<std::uint8_t, kSeedSize + 16> kSeed = {
    0x59, 0x8F, 0xB2, 0x2A, 0xAC, 0x25, 0x02, 0x5C, 0x52, 0xB9, 0xB3, 0x57, 0x54, 0xBA, 0xC9, 0xB3, 0xB0,
    0x3B, 0x7D, 0xD1, 0x27, 0xF0, 0x28, 0xA7, 0x4C, 0x2F, 0x76, 0x6B, 0xBD, 0x01, 0xB3, 0xDC, 0x0C, 0x6F,
    0x64, 0x59, 0x43, 0x86, 0xBD, 0xBF, 0xC4, 0xDE, 0xEB, 0xDD, 0x87, 0x0A, 0x70, 0x7C, 0xEF, 0xF1, 0xCA,
    0xF6, 0xEC, 0x3B, 0xFF, 0xB9, 0x26, 0xC8, 0x3C, 0xEC, 0xAF, 0x9F, 0x31, 0x5C, 0x9D,
};

constexpr std::size_t kBlock = 16;
using Block = std::array<std::uint8_t, kBlock>;

// A block of which the first bytes count: all ones, then zeros.
constexpr std::array<std::uint8_t, 2 * kBlock> kFirstBytes = [] {
    std::array<std::uint8_t, 2 * kBlock> mask{};
    std::fill_n(mask.begin(), kBlock, std::uint8_t{0xFF});
    return mask;
}();

// Sums of single-byte characters, a block at a time. `high` collects their bits, so that the caller sees whether they
// were single-byte characters at all.
template <SumMode mode>
class BlockSum {
public:
#if defined(__SSE2__)
    void Add(const void* data, const void* seeds, const void* mask) {
        const __m128i use = Load(mask), text = _mm_and_si128(Load(data), use), seed = _mm_and_si128(Load(seeds), use);
        high = _mm_or_si128(high, text);
        const __m128i terms = mode == SumMode::Xor ? _mm_xor_si128(text, seed) : _mm_and_si128(text, seed);
        sums = _mm_add_epi64(sums, _mm_sad_epu8(terms, _mm_setzero_si128()));
    }
    std::uint32_t Sum() const {
        return static_cast<std::uint32_t>(_mm_cvtsi128_si32(sums)) +
               static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
    }
    bool IsAscii() const {
        return _mm_movemask_epi8(high) == 0;
    }

private:
    static __m128i Load(const void* data) {
        return _mm_loadu_si128(static_cast<const __m128i*>(data));
    }
    __m128i sums = _mm_setzero_si128(), high = _mm_setzero_si128();
#else
    void Add(const void* data, const void* seeds, const void* mask) {
        Block text, seed, use;
        std::memcpy(text.data(), data, kBlock);
        std::memcpy(seed.data(), seeds, kBlock);
        std::memcpy(use.data(), mask, kBlock);
        for (std::size_t i = 0; i < kBlock; ++i) {
            const auto unit = static_cast<std::uint8_t>(text[i] & use[i]);
            const auto with = static_cast<std::uint8_t>(seed[i] & use[i]);
            high = static_cast<std::uint8_t>(high | unit);
            sum += static_cast<std::uint8_t>(mode == SumMode::Xor ? unit ^ with : unit & with);
        }
    }
    std::uint32_t Sum() const {
        return sum;
    }
    bool IsAscii() const {
        return high < 0x80;
    }

private:
    std::uint32_t sum = 0;
    std::uint8_t high = 0;
#endif
};

// From index `i` on, none past the end of the seeds. Reads up to a block past the end of the text.
template <SumMode mode>
void SumStretch(const char* data, std::size_t size, std::size_t i, BlockSum<mode>& sum) {
    std::size_t at = 0;
    for (; at + kBlock <= size; at += kBlock) sum.Add(data + at, &kSeed[i + at], kFirstBytes.data());
    sum.Add(data + at, &kSeed[i + at], &kFirstBytes[kBlock - (size - at)]);
}

// One text after the other as if they were joined.
template <SumMode mode>
class Summer {
public:
    /// `readable`: up to where memory may be read, if that is further than the text.
    void Add(std::string_view utf8, const char* readable) {
        BlockSum<mode> stretches;
        std::size_t at = index;
        for (std::string_view left = utf8; !left.empty();) {
            const std::size_t stretch = std::min(left.size(), kSeedSize - at);
            if (readable - left.data() >= static_cast<std::ptrdiff_t>(stretch + kBlock)) {
                SumStretch(left.data(), stretch, at, stretches);
            } else {
                std::array<char, kSeedSize + kBlock> copy{};
                std::copy_n(left.data(), stretch, copy.begin());
                SumStretch(copy.data(), stretch, at, stretches);
            }
            at = After(at, stretch);
            left.remove_prefix(stretch);
        }
        if (!stretches.IsAscii()) return AddWide(FromUtf8(utf8));
        sum += stretches.Sum();
        index = at;
    }
    void AddWide(std::wstring_view text) {
        ForEachUtf16Unit(text, [this](std::uint16_t unit) {
            sum += static_cast<std::uint32_t>(mode == SumMode::Xor ? kSeed[index] ^ unit : kSeed[index] & unit);
            index = After(index, 1);
        });
    }
    std::uint32_t Sum() const { return sum; }

private:
    static std::size_t After(std::size_t at, std::size_t count) { return at + count == kSeedSize ? 1 : at + count; }
    std::uint32_t sum = 0;
    std::size_t index = 0;
};

template <SumMode mode>
std::uint32_t SumOf(std::string_view utf8) {
    Summer<mode> summer;
    summer.Add(utf8, utf8.data() + utf8.size());
    return summer.Sum();
}

template <SumMode mode>
std::uint32_t SumOfAll(const ConfigText& content) {
    constexpr std::string_view kChecksumSection = "Checksum";
    std::uint32_t sum = 0;
    for (std::uint32_t section = content.FirstSection(); section != ConfigText::kNone;
         section = content.NextSection(section)) {
        if (content.SectionName(section) == kChecksumSection) continue;
        sum += SumOf<mode>(content.SectionName(section));
        for (std::uint32_t item = content.FirstItem(section); item != ConfigText::kNone;
             item = content.NextItem(item)) {
            const std::string_view key = content.Key(item), value = content.Value(item);
            const char* const readable = content.ReadableEnd(value);
            Summer<mode> summer;
            summer.Add(key, readable);
            summer.Add(value, readable);
            sum += summer.Sum();
        }
    }
    return sum;
}

}  // namespace

std::uint32_t CalcCheckSum(std::string_view utf8, SumMode mode) {
    return mode == SumMode::Xor ? SumOf<SumMode::Xor>(utf8) : SumOf<SumMode::And>(utf8);
}

std::uint32_t CalcCheckSum(std::wstring_view text, SumMode mode) {
    return CalcCheckSum(ToUtf8(text), mode);
}

std::uint32_t SumOfContent(const ConfigText& content, SumMode mode) {
    return mode == SumMode::Xor ? SumOfAll<SumMode::Xor>(content) : SumOfAll<SumMode::And>(content);
}

}  // namespace orv
