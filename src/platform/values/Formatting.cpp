#include "platform/values/Formatting.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "platform/text/NumberText.h"

namespace orv {

namespace {

constexpr std::int64_t kInchesPerFoot = 12;
constexpr std::int64_t kFractions = 16;  // a tape measure's
constexpr double kMostFeet = 1e9, kMostDegrees = 1e6;
constexpr int kMostInchDecimals = 6, kMostGeogsDecimals = 9;  // so that the whole value fits 64 bits

std::int64_t PowerOfTen(int exponent) {
    std::int64_t power = 1;
    for (; exponent > 0; --exponent) power *= 10;
    return power;
}

std::wstring Padded(std::int64_t value, std::size_t digits) {
    std::wstring text = IntText(value);
    if (text.size() < digits) text.insert(0, digits - text.size(), L'0');
    return text;
}

/// `units` counted in 1/10^decimals as a decimal number with at least `digits` before the point.
std::wstring Scaled(std::int64_t units, int decimals, std::size_t digits) {
    const std::int64_t scale = PowerOfTen(decimals);
    std::wstring text = Padded(units / scale, digits);
    if (decimals > 0) text += L'.' + Padded(units % scale, static_cast<std::size_t>(decimals));
    return text;
}

/// "6", "6 1/2", "1/2", "0".
std::wstring WithFraction(std::int64_t sixteenths) {
    const std::int64_t whole = sixteenths / kFractions, rest = sixteenths % kFractions;
    if (rest == 0) return IntText(whole);
    const std::int64_t divisor = std::gcd(rest, kFractions);
    const std::wstring fraction = IntText(rest / divisor) + L'/' + IntText(kFractions / divisor);
    return whole == 0 ? fraction : IntText(whole) + L' ' + fraction;
}

std::wstring FeetText(double feet, int decimals, unsigned flags) {
    const bool fractions = (flags & kFeetFractions) != 0;
    std::wstring text;
    std::int64_t units = 0;
    if ((flags & kFeetInch) == 0) {
        units = std::llround(feet * static_cast<double>(kFractions));
        text = WithFraction(units) + L'\'';
    } else {
        decimals = std::min(decimals, kMostInchDecimals);
        const std::int64_t scale = fractions ? kFractions : PowerOfTen(decimals);
        // Rounded as a whole, so that 11.999 inches carry over into the feet.
        units = std::llround(feet * static_cast<double>(kInchesPerFoot * scale));
        std::int64_t inches = units;
        if ((flags & kFeet) != 0) {
            text = IntText(units / (kInchesPerFoot * scale)) + L'\'';
            inches %= kInchesPerFoot * scale;
        }
        text += (fractions ? WithFraction(inches) : Scaled(inches, decimals, 1)) + L'"';
    }
    return text;
}

}  // namespace

std::wstring FormatDouble(double value, int decimals, unsigned flags) {
    decimals = std::clamp(decimals, 0, kMostDecimals);
    if (flags < kFeetInch || !(std::fabs(value) < kMostFeet)) return FixedText(value, decimals);
    const std::wstring text = FeetText(std::fabs(value), decimals, flags);
    return value < 0 && text.find_first_of(L"123456789") != text.npos ? L'-' + text : text;
}

std::wstring FormatGeogs(double degrees, int kind, unsigned flags, int decimals) {
    decimals = std::clamp(decimals, 0, kMostGeogsDecimals);
    if (!(std::fabs(degrees) < kMostDegrees)) return FixedText(degrees, decimals);
    const bool seconds = (flags & kGeogsSeconds) != 0, minutes = seconds || (flags & kGeogsMinutes) != 0;
    const std::int64_t parts = seconds ? 3600 : minutes ? 60 : 1, scale = PowerOfTen(decimals);
    const std::int64_t units =
        std::llround(std::fabs(degrees) * static_cast<double>(parts) * static_cast<double>(scale));
    std::wstring text = minutes ? IntText(units / (parts * scale)) : Scaled(units, decimals, 1);
    text += L'\u00B0';
    const std::int64_t below = units % (parts * scale);
    if (seconds) {
        text += Padded(below / (60 * scale), 2) + L'\'' + Scaled(below % (60 * scale), decimals, 2) + L'"';
    } else if (minutes) {
        text += Scaled(below, decimals, 2) + L'\'';
    }
    const bool negative = degrees < 0 && units != 0;
    return text + (kind == kLongitude ? (negative ? L'W' : L'E') : (negative ? L'S' : L'N'));
}

std::wstring FormatInt(std::int64_t value) {
    return IntText(value);
}

int GetDoublePrecision(double value) {
    const std::wstring text = ShortestText(value);
    const std::size_t mark = std::min(text.find(L'e'), text.size()), point = text.find(L'.');
    int decimals = point < mark ? static_cast<int>(mark - point) - 1 : 0;
    if (mark < text.size()) decimals -= ParseLeadingInt(std::wstring_view(text).substr(mark + 1));
    return std::clamp(decimals, 0, kMostDecimals);
}

}  // namespace orv
