#include "platform/text/PathText.h"

#include <algorithm>

#include "platform/text/CaseFold.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr std::wstring_view kSeparators = L"/\\";

/// Where the last component starts.
std::size_t NameStart(std::wstring_view path) {
    const std::size_t last = path.find_last_of(kSeparators);
    return last == std::wstring_view::npos ? 0 : last + 1;
}

/// Where the extension's dot stands in a name, or its size if there is none.
std::size_t ExtensionDot(std::wstring_view name) {
    const std::size_t dot = name.rfind(L'.');
    return dot == std::wstring_view::npos || dot == 0 || name == L".." ? name.size() : dot;
}

std::wstring_view LastComponent(std::wstring_view path) {
    if (EndsInSeparator(path)) path.remove_suffix(1);
    return path.substr(NameStart(path));
}

// Bytes of a name that are no UTF-8 stand in this range, which no valid text can hold.
constexpr char32_t kRawByte = 0xDC00;
bool IsRawByte(wchar_t c) {
    return c >= 0xDC80 && c <= 0xDCFF;
}

}  // namespace

std::wstring ToNativePath(std::wstring_view path) {
    std::wstring out(path);
    std::replace(out.begin(), out.end(), L'\\', kPathSeparator);
    return out;
}

bool IsAbsolutePath(std::wstring_view path) {
    return path.starts_with(kPathSeparator) || path.find(L':') != std::wstring_view::npos ||
           path.find(L"\\\\") != std::wstring_view::npos;
}

bool EndsInSeparator(std::wstring_view path) {
    return !path.empty() && IsPathSeparator(path.back());
}

std::wstring WithSeparator(std::wstring_view path) {
    std::wstring out(path);
    if (!out.empty() && !EndsInSeparator(out)) out += kPathSeparator;
    return out;
}

std::wstring WithoutSeparator(std::wstring_view path) {
    if (path.size() > 1 && EndsInSeparator(path)) path.remove_suffix(1);
    return std::wstring(path);
}

void SplitPath(std::wstring_view path, std::wstring& folder, std::wstring& name, std::wstring& extension) {
    const std::size_t start = NameStart(path);
    const std::wstring_view last = path.substr(start);
    const std::size_t dot = ExtensionDot(last);
    // Made apart first: a caller may pass the text that `path` looks at as a result.
    std::wstring newFolder(path.substr(0, start));
    std::wstring newName(last.substr(0, dot));
    std::wstring newExtension(dot < last.size() ? last.substr(dot + 1) : std::wstring_view());
    folder = std::move(newFolder);
    name = std::move(newName);
    extension = std::move(newExtension);
}

std::wstring GetTitleFromPath(std::wstring_view path) {
    const std::wstring_view last = LastComponent(path);
    return std::wstring(EndsInSeparator(path) ? last : last.substr(0, ExtensionDot(last)));
}

std::wstring GetNameFromPath(std::wstring_view path) {
    return std::wstring(LastComponent(path));
}

std::wstring GetFolderFromPath(std::wstring_view path) {
    return std::wstring(path.substr(0, NameStart(path)));
}

bool IsAllowedName(std::wstring_view name) {
    return name.find_first_of(L"<>:\"/\\|?*") == std::wstring_view::npos;
}

bool MatchesPattern(std::wstring_view name, std::wstring_view pattern) {
    if (pattern == L"*.*") return true;
    constexpr std::size_t none = std::wstring_view::npos;
    std::size_t n = 0, p = 0, star = none, resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() && LowerChar(pattern[p]) == LowerChar(name[n])) {
            ++p;
            ++n;
        } else if (star != none) {
            // The last star takes one character more; earlier ones never need to.
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', p) == none;
}

std::string PathToBytes(std::wstring_view path) {
    std::string out;
    const std::wstring native = ToNativePath(path);
    auto at = native.begin();
    while (at != native.end()) {
        const auto raw = std::find_if(at, native.end(), IsRawByte);
        AppendUtf8(out, {at, raw});
        for (at = raw; at != native.end() && IsRawByte(*at); ++at) {
            out.push_back(static_cast<char>(static_cast<char32_t>(*at) - kRawByte));
        }
    }
    return out;
}

std::wstring PathFromBytes(std::string_view bytes) {
    std::wstring out;
    FromUtf8(bytes, out);
    if (IsUtf8(bytes)) return out;
    // Rare: walk the replacement characters in step with the bytes they stand for.
    std::size_t at = 0;
    for (wchar_t& c : out) {
        const std::size_t length = ToUtf8({&c, 1}).size();
        if (c == 0xFFFD && bytes.substr(at, 3) != "\xEF\xBF\xBD") {
            c = static_cast<wchar_t>(kRawByte + static_cast<unsigned char>(bytes[at]));
            at += 1;
        } else {
            at += length;
        }
    }
    return out;
}

}  // namespace orv
