#include "geoid/TextScan.h"

#include <charconv>
#include <cmath>
#include <type_traits>

#include "platform/text/Utf.h"

namespace orv {

void TextScan::SkipBlanks() {
    const std::size_t start = rest.find_first_not_of(" \t\r\v\f");
    rest.remove_prefix(start == std::string_view::npos ? rest.size() : start);
}

namespace {

// Of a number that is out of range: it is so small that it has a negative exponent, or nothing in front of its point.
bool IsTiny(std::string_view number) {
    const std::size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) return number.substr(exponent + 1).starts_with('-');
    return number.find_first_of("123456789") > number.find('.');
}

}  // namespace

template <class Number>
bool TextScan::Take(Number& value, std::size_t width) {
    SkipBlanks();
    std::string_view field = rest.substr(0, width);
    const bool plus = !field.empty() && field.front() == '+';
    if (plus) field.remove_prefix(1);
    if (plus && !field.empty() && field.front() == '-') return false;
    Number number{};
    const auto [stop, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    if constexpr (std::is_floating_point_v<Number>) {
        // What is too small to tell from 0 is 0; what is too large is no number.
        if (error == std::errc::result_out_of_range && !IsTiny({field.data(), stop})) return false;
        if (error != std::errc() && error != std::errc::result_out_of_range) return false;
        if (!std::isfinite(number)) return false;
    } else if (error != std::errc()) {
        return false;
    }
    value = number;
    rest.remove_prefix(static_cast<std::size_t>(stop - rest.data()));
    return true;
}

bool TextScan::Literal(char c) {
    if (rest.empty() || rest.front() != c) return false;
    rest.remove_prefix(1);
    return true;
}

bool TextScan::Int(std::int32_t& value) {
    return Take(value, std::string_view::npos);
}
bool TextScan::Real(double& value) {
    return Take(value, std::string_view::npos);
}
bool TextScan::Float(float& value, std::size_t width) {
    return Take(value, width);
}

bool NextLine(std::string_view& text, std::string_view& line) {
    if (text.empty()) return false;
    const std::size_t end = text.find('\n');
    line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return true;
}

bool NextListedHeight(std::string_view& text, ListedHeight& point) {
    for (std::string_view line; NextLine(text, line);) {
        double unused = 0.0;
        TextScan in(line);
        if (in.Real(point.latitude) && in.Real(point.longitude) && in.Real(point.height) && in.Real(unused))
            return true;
    }
    return false;
}

std::wstring GridText(std::string_view bytes) {
    return IsUtf8(bytes) ? FromUtf8(bytes) : FromUtf8(Windows1252ToUtf8(bytes));
}

}  // namespace orv
