#include "SampleGrid.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace orv::cfg {

namespace {

constexpr double kSouth = 50.5, kWest = 2.0, kStep = 0.05;
constexpr std::int32_t kRows = 111, kColumns = 121;

template <class T>
void AppendBigEndian(std::string& bytes, T value) {
    std::array<char, sizeof(T)> raw;
    std::memcpy(raw.data(), &value, sizeof(T));
    if constexpr (std::endian::native == std::endian::little) std::reverse(raw.begin(), raw.end());
    bytes.append(raw.data(), raw.size());
}

}  // namespace

double SyntheticSeparation(double latitude, double longitude) {
    return 43.3 - 1.4 * (latitude - 52.0) + 0.15 * (longitude - 4.5) +
           0.2 * std::sin(2.0 * latitude) * std::cos(longitude);
}

std::string SyntheticGtx() {
    std::string bytes;
    AppendBigEndian(bytes, kSouth);
    AppendBigEndian(bytes, kWest);
    AppendBigEndian(bytes, kStep);
    AppendBigEndian(bytes, kStep);
    AppendBigEndian(bytes, kRows);
    AppendBigEndian(bytes, kColumns);
    for (std::int32_t row = 0; row < kRows; ++row) {
        for (std::int32_t column = 0; column < kColumns; ++column) {
            AppendBigEndian(bytes,
                            static_cast<float>(SyntheticSeparation(kSouth + kStep * row, kWest + kStep * column)));
        }
    }
    return bytes;
}

}  // namespace orv::cfg
