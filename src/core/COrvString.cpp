#include "core/COrvString.h"

#include <algorithm>
#include <cstdint>

#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

template <class T>
bool Assign(const std::optional<T>& parsed, T& out) {
    if (parsed) out = *parsed;
    return parsed.has_value();
}

std::wstring Joined(std::vector<std::wstring>::const_iterator first, std::vector<std::wstring>::const_iterator last,
                    wchar_t separator) {
    std::wstring text;
    for (auto item = first; item != last; ++item) {
        if (item != first) text += separator;
        text += *item;
    }
    return text;
}

}  // namespace

COrvString::COrvString(wchar_t at) : separator(at) {}

COrvString::COrvString(std::wstring_view text, wchar_t at, bool strip) : separator(at) {
    LoadString(text, strip);
}

void COrvString::LoadString(std::wstring_view text, bool strip) {
    items.clear();
    if (text.empty()) return;
    for (std::size_t start = 0;;) {
        const std::size_t end = text.find(separator, start);
        const std::wstring_view item = text.substr(start, end == text.npos ? end : end - start);
        items.emplace_back(strip ? TrimBlanks(item) : item);
        if (end == text.npos) return;
        start = end + 1;
    }
}

std::wstring& COrvString::operator[](int index) {
    if (Has(index)) return items[static_cast<std::size_t>(index)];
    scratch.clear();
    return scratch;
}

const std::wstring& COrvString::operator[](int index) const {
    static const std::wstring none;
    return Has(index) ? items[static_cast<std::size_t>(index)] : none;
}

bool COrvString::GetItem(int index, int& out) const {
    return Has(index) && Assign(ParseInt((*this)[index]), out);
}

bool COrvString::GetItem(int index, unsigned& out) const {
    return Has(index) && Assign(ParseUnsigned((*this)[index]), out);
}

bool COrvString::GetItem(int index, float& out) const {
    return Has(index) && Assign(ParseFloat((*this)[index]), out);
}

bool COrvString::GetItem(int index, double& out) const {
    return Has(index) && Assign(ParseDouble((*this)[index]), out);
}

bool COrvString::GetItem(int index, std::wstring& out) const {
    if (!Has(index)) return false;
    out = (*this)[index];
    return true;
}

bool COrvString::GetItem(int index, bool& out) const {
    return Has(index) && Assign(ParseBool((*this)[index]), out);
}

bool COrvString::SetItem(int index, std::wstring_view text) {
    if (!Has(index)) return false;
    (*this)[index] = text;
    return true;
}

void COrvString::AddItem(std::wstring_view text) {
    items.emplace_back(text);
}

COrvString& COrvString::operator+=(double value) {
    items.push_back(ShortestText(value));
    return *this;
}

COrvString& COrvString::operator+=(int value) {
    items.push_back(IntText(value));
    return *this;
}

void COrvString::Erase(int first, int count) {
    const std::int64_t begin = std::clamp<std::int64_t>(first, 0, Size());
    const std::int64_t end = std::clamp<std::int64_t>(std::int64_t{first} + std::max(count, 0), begin, Size());
    items.erase(items.begin() + begin, items.begin() + end);
}

std::wstring COrvString::Left(int count) const {
    return Joined(items.begin(), items.begin() + std::clamp(count, 0, Size()), separator);
}

bool COrvString::HasSubString(std::wstring_view text, int& index) const {
    const auto holds = [&](const std::wstring& item) { return item.find(text) != item.npos; };
    const auto found = std::find_if(items.begin(), items.end(), holds);
    if (found == items.end()) return false;
    index = static_cast<int>(found - items.begin());
    return true;
}

std::wstring COrvString::GetString() const {
    return Joined(items.begin(), items.end(), separator);
}

}  // namespace orv
