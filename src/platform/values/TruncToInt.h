#pragma once

#include <concepts>
#include <cstdint>
#include <limits>

namespace orv {

/// Truncates toward zero; false for NaN and for what doesn't fit, `out` is left alone then. The one way from a
/// floating value of a file or a caller to an index.
template <std::integral Int>
[[nodiscard]] constexpr bool TruncToInt(double value, Int& out) {
    // 2^digits is exact in a double, max() needn't be.
    constexpr double above = static_cast<double>(std::uint64_t{1} << (std::numeric_limits<Int>::digits - 1)) * 2.0;
    constexpr double lowest = static_cast<double>(std::numeric_limits<Int>::min());
    const bool aboveLowest = std::numeric_limits<Int>::digits < 53 ? value > lowest - 1.0 : value >= lowest;
    if (!(aboveLowest && value < above)) return false;
    out = static_cast<Int>(value);
    return true;
}

}  // namespace orv
