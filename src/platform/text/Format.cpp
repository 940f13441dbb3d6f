#include "platform/text/Format.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace orv {

namespace {

constexpr int kMostWidth = 40;

/// What one conversion of a number asks for.
struct Conversion {
    bool left = false, plus = false, blank = false, alternate = false, zeros = false;
    int width = 0, precision = 6;
    wchar_t type = L'f';
    std::size_t length = 0;  ///< characters of the pattern that it takes
};

int ReadCount(std::wstring_view pattern, std::size_t& at) {
    int count = 0;
    for (; at < pattern.size() && pattern[at] >= L'0' && pattern[at] <= L'9'; ++at) {
        count = std::min(kMostWidth, count * 10 + static_cast<int>(pattern[at] - L'0'));
    }
    return count;
}

bool ReadFlag(wchar_t c, Conversion& conversion) {
    switch (c) {
        case L'-':
            return conversion.left = true;
        case L'+':
            return conversion.plus = true;
        case L' ':
            return conversion.blank = true;
        case L'#':
            return conversion.alternate = true;
        case L'0':
            return conversion.zeros = true;
        default:
            return false;
    }
}

/// The conversion that starts at the '%' in front of `pattern`; none if it is one that we don't know.
std::optional<Conversion> ReadConversion(std::wstring_view pattern) {
    Conversion conversion;
    std::size_t at = 1;
    while (at < pattern.size() && ReadFlag(pattern[at], conversion)) ++at;
    conversion.width = ReadCount(pattern, at);
    if (at < pattern.size() && pattern[at] == L'.') conversion.precision = ReadCount(pattern, ++at);
    if (at < pattern.size() && pattern[at] == L'l') ++at;  // says nothing more of a double
    if (at == pattern.size()) return std::nullopt;
    conversion.type = pattern[at];
    if (std::wstring_view(L"fegFEG").find(conversion.type) == std::wstring_view::npos) return std::nullopt;
    conversion.length = at + 1;
    return conversion;
}

/// %#g keeps its trailing zeros, which makes it one of the other two; the formatting library has it a digit off.
void ResolveAlternateGeneral(Conversion& conversion, double value) {
    const bool capital = conversion.type == L'G';
    conversion.precision = std::max(1, conversion.precision) - 1;
    conversion.type = capital ? L'E' : L'e';
    const std::string text = fmt::format("{:.{}e}", value, conversion.precision);
    const std::size_t mark = text.find('e');
    if (mark == std::string::npos) return;  // not finite
    const int exponent = std::stoi(text.substr(mark + 1));
    if (exponent < -4 || exponent > conversion.precision) return;
    conversion.type = capital ? L'F' : L'f';
    conversion.precision -= exponent;
}

std::wstring Render(Conversion conversion, double value) {
    if (conversion.alternate && (conversion.type == L'g' || conversion.type == L'G'))
        ResolveAlternateGeneral(conversion, value);
    std::string field = "{:";
    if (conversion.left) field += '<';
    if (conversion.plus) field += '+';
    if (conversion.blank && !conversion.plus) field += ' ';
    if (conversion.alternate) field += '#';
    if (conversion.zeros && !conversion.left) field += '0';
    if (conversion.width > 0) field += std::to_string(conversion.width);
    field += '.' + std::to_string(conversion.precision) + static_cast<char>(conversion.type) + '}';
    const std::string text = fmt::format(fmt::runtime(field), value);
    return {text.begin(), text.end()};
}

}  // namespace

std::wstring FormatTexts(std::wstring_view pattern, std::initializer_list<std::wstring_view> texts) {
    std::wstring out;
    const auto* next = texts.begin();
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const std::wstring_view two = pattern.substr(i, 2);
        if (two == L"%s") {
            if (next != texts.end()) out += *next++;
            ++i;
        } else if (two == L"%%") {
            out += L'%';
            ++i;
        } else {
            out += pattern[i];
        }
    }
    return out;
}

std::wstring FormatNumber(std::wstring_view pattern, double value) {
    std::wstring out;
    bool placed = false;
    for (std::size_t i = 0; i < pattern.size();) {
        const std::wstring_view rest = pattern.substr(i);
        if (rest.starts_with(L"%%")) {
            out += L'%';
            i += 2;
            continue;
        }
        const auto conversion = rest.front() == L'%' && !placed ? ReadConversion(rest) : std::nullopt;
        if (conversion) {
            out += Render(*conversion, value);
            placed = true;
            i += conversion->length;
        } else {
            out += rest.front();
            ++i;
        }
    }
    return out;
}

}  // namespace orv
