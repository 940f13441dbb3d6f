#include "platform/text/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include "platform/text/CaseFold.h"

namespace orv {

namespace {

std::string_view Trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

template <class Number>
std::optional<Number> Parse(std::string_view text) {
    text = Trim(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return std::nullopt;
    }
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    if constexpr (std::is_floating_point_v<Number>) {
        // "nan" and "inf" are words, not numbers: let through, they would spread into positions and heights.
        if (!std::isfinite(value)) return std::nullopt;
    }
    return value;
}

std::optional<bool> ParseFlag(std::string_view text) {
    const auto is = [text = Trim(text)](std::string_view word) {
        return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                          [](char a, char b) { return LowerChar(static_cast<unsigned char>(a)) == b; });
    };
    if (is("true")) return true;
    if (is("false")) return false;
    const auto number = Parse<std::int64_t>(text);
    if (!number) return std::nullopt;
    return *number != 0;
}

/// Hands the wide text on as bytes; what isn't ASCII is no number.
template <class Result>
std::optional<Result> ParseWide(std::wstring_view text, std::optional<Result> (*parse)(std::string_view)) {
    text = TrimBlanks(text);
    if (std::any_of(text.begin(), text.end(), [](wchar_t c) { return static_cast<char32_t>(c) >= 0x80; })) {
        return std::nullopt;
    }
    const auto narrow = [](wchar_t c) { return static_cast<char>(c); };
    std::array<char, 128> few;
    if (text.size() <= few.size()) {
        std::transform(text.begin(), text.end(), few.begin(), narrow);
        return parse({few.data(), text.size()});
    }
    std::string many(text.size(), '\0');
    std::transform(text.begin(), text.end(), many.begin(), narrow);
    return parse(many);
}

std::wstring Widen(const char* begin, const char* end) {
    return {begin, end};
}

// Of usual figures the scaled whole number can be told for certain, unless it lies next to where rounding turns.
bool AppendShortFixed(std::wstring& to, double value, int decimals) {
    static constexpr std::array<double, 10> powers = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
    if (static_cast<std::size_t>(decimals) >= powers.size()) return false;
    const double scaled = std::fabs(value) * powers[static_cast<std::size_t>(decimals)];
    if (!(scaled < 1e12)) return false;
    auto whole = static_cast<std::uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(whole);  // within 0.0001 of the true one
    if (std::fabs(rest - 0.5) < 0.001) return false;
    if (rest > 0.5) ++whole;

    std::array<wchar_t, 24> text;
    std::size_t at = text.size();
    for (int digit = 0; whole > 0 || digit <= decimals; ++digit, whole /= 10) {
        if (digit == decimals && digit > 0) text[--at] = L'.';
        text[--at] = static_cast<wchar_t>(L'0' + whole % 10);
    }
    if (std::signbit(value)) text[--at] = L'-';
    to.append(&text[at], text.size() - at);
    return true;
}

}  // namespace

std::optional<int> ParseInt(std::wstring_view text) {
    return ParseWide<int>(text, Parse<int>);
}
std::optional<unsigned> ParseUnsigned(std::wstring_view text) {
    return ParseWide<unsigned>(text, Parse<unsigned>);
}
std::optional<std::int64_t> ParseInt64(std::wstring_view text) {
    return ParseWide<std::int64_t>(text, Parse<std::int64_t>);
}
std::optional<float> ParseFloat(std::wstring_view text) {
    return ParseWide<float>(text, Parse<float>);
}
std::optional<double> ParseDouble(std::wstring_view text) {
    return ParseWide<double>(text, Parse<double>);
}
std::optional<bool> ParseBool(std::wstring_view text) {
    return ParseWide<bool>(text, ParseFlag);
}

std::optional<int> ParseInt(std::string_view text) {
    return Parse<int>(text);
}
std::optional<unsigned> ParseUnsigned(std::string_view text) {
    return Parse<unsigned>(text);
}
std::optional<std::int64_t> ParseInt64(std::string_view text) {
    return Parse<std::int64_t>(text);
}
std::optional<float> ParseFloat(std::string_view text) {
    return Parse<float>(text);
}
std::optional<double> ParseDouble(std::string_view text) {
    return Parse<double>(text);
}
std::optional<bool> ParseBool(std::string_view text) {
    return ParseFlag(text);
}

int ParseLeadingInt(std::wstring_view text) {
    std::size_t at = 0;
    while (at < text.size() && (text[at] == L' ' || (text[at] >= L'\t' && text[at] <= L'\r'))) ++at;
    bool negative = false;
    if (at < text.size() && (text[at] == L'-' || text[at] == L'+')) negative = text[at++] == L'-';
    constexpr std::int64_t ceiling = std::int64_t{std::numeric_limits<int>::max()} + 1;
    std::int64_t value = 0;
    for (; at < text.size() && text[at] >= L'0' && text[at] <= L'9'; ++at) {
        value = std::min(ceiling, value * 10 + (text[at] - L'0'));
    }
    if (negative) return static_cast<int>(-value);
    return static_cast<int>(std::min(value, ceiling - 1));
}

std::wstring ShortestText(double value) {
    if (std::isnan(value)) return L"nan";
    const double size = std::fabs(value);
    const bool fixed = size == 0.0 || (size >= 1e-5 && size < 1e17);
    std::array<char, 64> text;
    const auto format = fixed ? std::chars_format::fixed : std::chars_format::scientific;
    return Widen(text.data(), std::to_chars(text.data(), text.data() + text.size(), value, format).ptr);
}

std::wstring FixedText(double value, int decimals) {
    std::wstring text;
    AppendFixed(text, value, decimals);
    return text;
}

void AppendFixed(std::wstring& to, double value, int decimals) {
    if (std::isnan(value)) {
        to += L"nan";
        return;
    }
    decimals = std::clamp(decimals, 0, 40);
    if (AppendShortFixed(to, value, decimals)) return;
    std::array<char, 400> text;  // the largest double has 309 digits before the point
    char* const end = text.data() + text.size();
    const char* const last = std::to_chars(text.data(), end, value, std::chars_format::fixed, decimals).ptr;
    to.append(static_cast<const char*>(text.data()), last);
}

std::wstring IntText(std::int64_t value) {
    std::array<char, 24> text;
    return Widen(text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr);
}

}  // namespace orv
