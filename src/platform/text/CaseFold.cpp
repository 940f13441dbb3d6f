#include "platform/text/CaseFold.h"

#include <utf8proc.h>

#include <algorithm>

namespace orv {

namespace {
// Apart from the exported one, which the compiler may not put in line.
inline wchar_t Lower(wchar_t c) {
    if (static_cast<char32_t>(c) < 0x80) return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
    return static_cast<wchar_t>(utf8proc_tolower(c));
}
}  // namespace

wchar_t LowerChar(wchar_t c) {
    return Lower(c);
}

std::wstring ToLower(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = Lower(c);
    return out;
}

bool EqualNoCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](wchar_t x, wchar_t y) { return x == y || Lower(x) == Lower(y); });
}

bool EndsWithNoCase(std::wstring_view text, std::wstring_view tail) {
    return text.size() >= tail.size() && EqualNoCase(text.substr(text.size() - tail.size()), tail);
}

std::wstring_view TrimBlanks(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

}  // namespace orv
