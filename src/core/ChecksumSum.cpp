#include "core/ChecksumSum.h"

#include <algorithm>
#include <array>

#include "core/ConfigText.h"
#include "core/FileObject.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr std::size_t kSeedSize = 65;
constexpr std::array<std::uint8_t, kSeedSize> kSeed = {
    0x59, 0x8F, 0xB2, 0x2A, 0xAC, 0x25, 0x02, 0x5C, 0x52, 0xB9, 0xB3, 0x57, 0x54, 0xBA, 0xC9, 0xB3, 0xB0,
    0x3B, 0x7D, 0xD1, 0x27, 0xF0, 0x28, 0xA7, 0x4C, 0x2F, 0x76, 0x6B, 0xBD, 0x01, 0xB3, 0xDC, 0x0C, 0x6F,
    0x64, 0x59, 0x43, 0x86, 0xBD, 0xBF, 0xC4, 0xDE, 0xEB, 0xDD, 0x87, 0x0A, 0x70, 0x7C, 0xEF, 0xF1, 0xCA,
    0xF6, 0xEC, 0x3B, 0xFF, 0xB9, 0x26, 0xC8, 0x3C, 0xEC, 0xAF, 0x9F, 0x31, 0x5C, 0x9D,
};

// Adds up one stretch of single-byte characters from index `i` on, none past the end of the seeds.
template <SumMode mode>
std::uint32_t SumStretch(const char* data, std::size_t size, std::size_t i) {
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < size; ++at) {
        const auto unit = static_cast<std::uint8_t>(data[at]);
        sum += static_cast<std::uint8_t>(mode == SumMode::Xor ? kSeed[i + at] ^ unit : kSeed[i + at] & unit);
    }
    return sum;
}

// One text after the other as if they were joined.
template <SumMode mode>
class Summer {
public:
    void Add(std::string_view utf8) {
        unsigned char all = 0;
        for (const char c : utf8) all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
        if (all >= 0x80) return AddWide(FromUtf8(utf8));
        while (!utf8.empty()) {
            const std::size_t stretch = std::min(utf8.size(), kSeedSize - index);
            sum += SumStretch<mode>(utf8.data(), stretch, index);
            Step(stretch);
            utf8.remove_prefix(stretch);
        }
    }
    void AddWide(std::wstring_view text) {
        ForEachUtf16Unit(text, [this](std::uint16_t unit) {
            sum += static_cast<std::uint32_t>(mode == SumMode::Xor ? kSeed[index] ^ unit : kSeed[index] & unit);
            Step(1);
        });
    }
    std::uint32_t Sum() const { return sum; }

private:
    void Step(std::size_t count) {
        index += count;
        if (index == kSeedSize) index = 1;
    }
    std::uint32_t sum = 0;
    std::size_t index = 0;
};

template <SumMode mode>
std::uint32_t SumOf(std::string_view first, std::string_view second = {}) {
    Summer<mode> summer;
    summer.Add(first);
    summer.Add(second);
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
            sum += SumOf<mode>(content.Key(item), content.Value(item));
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
