#include "PositionText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/text/NumberText.h"

namespace orv::cfg {

namespace {

constexpr int kParts = 3;
constexpr std::array<std::string_view, 5> kDegreeSigns = {"d", "D", "\xC2\xB0", "\xC2\xBA", ":"};
constexpr std::array<std::string_view, 4> kMinuteSigns = {"'", "\xE2\x80\xB2", "\xE2\x80\x99", ":"};
constexpr std::array<std::string_view, 4> kSecondSigns = {"\"", "\xE2\x80\xB3", "\xE2\x80\x9D", "''"};

/// N, S, E, W without regard to case, else 0.
char Hemisphere(char c) {
    const char upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return upper == 'N' || upper == 'S' || upper == 'E' || upper == 'W' ? upper : '\0';
}

template <std::size_t Count>
bool TakeSign(std::string_view& text, const std::array<std::string_view, Count>& signs) {
    for (const std::string_view sign : signs) {
        if (!text.starts_with(sign)) continue;
        text.remove_prefix(sign.size());
        return true;
    }
    return false;
}

std::string_view TakeDigits(std::string_view& text) {
    std::size_t size = 0;
    while (size < text.size() && ((text[size] >= '0' && text[size] <= '9') || text[size] == '.')) ++size;
    const std::string_view digits = text.substr(0, size);
    text.remove_prefix(size);
    return digits;
}

/// Degrees with minutes and seconds, without sign and letter. Only the last part may have a fraction.
std::optional<double> ReadParts(std::string_view text) {
    std::array<double, kParts> parts = {};
    for (std::size_t part = 0; part < parts.size() && !text.empty(); ++part) {
        const std::string_view digits = TakeDigits(text);
        const std::optional<double> value = ParseDouble(digits);
        if (!value || (part > 0 && *value >= 60.0)) return std::nullopt;
        parts[part] = *value;
        const bool sign = part == 0   ? TakeSign(text, kDegreeSigns)
                          : part == 1 ? TakeSign(text, kMinuteSigns)
                                      : TakeSign(text, kSecondSigns);
        if (!text.empty() && (!sign || digits.find('.') != std::string_view::npos)) return std::nullopt;
    }
    if (!text.empty()) return std::nullopt;
    return parts[0] + parts[1] / 60.0 + parts[2] / 3600.0;
}

const char* Check(double degrees, Angle kind) {
    if (kind == Angle::Latitude) {
        return degrees >= -90.0 && degrees <= 90.0 ? nullptr : "latitude outside -90 to 90 degrees";
    }
    return degrees >= -180.0 && degrees <= 360.0 ? nullptr : "longitude outside -180 to 360 degrees";
}

}  // namespace

const char* ReadAngle(std::string_view text, Angle kind, double& degrees) {
    const bool latitude = kind == Angle::Latitude;
    const char* const noAngle = latitude ? "latitude is no angle" : "longitude is no angle";
    if (const std::optional<double> plain = ParseDouble(text)) {
        if (const char* reason = Check(*plain, kind)) return reason;
        degrees = *plain;
        return nullptr;
    }
    char letter = '\0';
    if (!text.empty() && (letter = Hemisphere(text.front())) != '\0') {
        text.remove_prefix(1);
    } else if (!text.empty() && (letter = Hemisphere(text.back())) != '\0') {
        text.remove_suffix(1);
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        if (letter != '\0') return "angle has both a sign and a letter";
        text.remove_prefix(1);
    }
    if (letter != '\0' && latitude != (letter == 'N' || letter == 'S')) {
        return "latitude and longitude in the wrong order (see --lonlat)";
    }
    const std::optional<double> parts = text.empty() ? std::nullopt : ReadParts(text);
    if (!parts) return noAngle;
    const double value = negative || letter == 'S' || letter == 'W' ? -*parts : *parts;
    if (const char* reason = Check(value, kind)) return reason;
    degrees = value;
    return nullptr;
}

const char* ReadPlace(std::string_view first, std::string_view second, PlaceOrder order, double& y, double& x) {
    if (order == PlaceOrder::Grid) {
        if (second.empty()) return "a position has an easting and a northing";
        const std::optional<double> easting = ParseDouble(first), northing = ParseDouble(second);
        if (!easting || !northing) return easting ? "northing is no number" : "easting is no number";
        x = *easting;
        y = *northing;
        return nullptr;
    }
    if (second.empty()) return "a position has a latitude and a longitude";
    if (order == PlaceOrder::LonLat) std::swap(first, second);
    if (const char* wrong = ReadAngle(first, Angle::Latitude, y)) return wrong;
    return ReadAngle(second, Angle::Longitude, x);
}

void AppendFixed(std::string& text, double value, int decimals) {
    std::array<char, 400> digits;  // the largest double has 309 digits before the point
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
    if (error == std::errc()) text.append(digits.data(), end);
}

std::string AngleText(double degrees, Angle kind, unsigned flags, int decimals) {
    const bool seconds = (flags & 4) != 0, minutes = seconds || (flags & 2) != 0;
    const double size = std::fabs(degrees);
    std::string text;
    if (!minutes) {
        AppendFixed(text, size, decimals);
        text += "\xC2\xB0";
    } else {
        // Rounded once, in the last part, so that no 60 shows up in it.
        const double unit = std::pow(10.0, decimals);
        const auto whole = static_cast<std::int64_t>(std::llround(size * (seconds ? 3600.0 : 60.0) * unit));
        const auto sixty = static_cast<std::int64_t>(60.0 * unit);
        std::string last;
        AppendFixed(last, static_cast<double>(whole % sixty) / unit, decimals);
        std::int64_t rest = whole / sixty;
        const auto two = [](const std::string& digits) {
            return (digits.find('.') == 1 || digits.size() == 1 ? "0" : "") + digits;
        };
        const std::string middle = seconds ? two(std::to_string(rest % 60)) + "'" : "";
        if (seconds) rest /= 60;
        text = std::to_string(rest) + "\xC2\xB0" + middle + two(last) + (seconds ? "\"" : "'");
    }
    if (kind == Angle::Latitude) return text + (degrees < 0 ? "S" : "N");
    return text + (degrees < 0 ? "W" : "E");
}

std::string_view NextWord(std::string_view& line) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    std::size_t begin = 0;
    while (begin < line.size() && blank(line[begin])) ++begin;
    std::size_t end = begin;
    while (end < line.size() && !blank(line[end])) ++end;
    const std::string_view word = line.substr(begin, end - begin);
    line.remove_prefix(end);
    return word;
}

}  // namespace orv::cfg
