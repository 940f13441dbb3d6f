#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// One field of a text that is split at a separator, without making texts of the others: lists are read and changed in
/// place by the ten thousands when a vessel gets a new id. Fields count from 0; an empty text has one empty field. Any
/// thread may call.
namespace orv {

/// What stands behind the first `count` separators; none if there are fewer.
inline std::optional<std::wstring_view> BehindFields(std::wstring_view text, wchar_t separator, int count) {
    for (; count > 0; --count) {
        const std::size_t at = text.find(separator);
        if (at == text.npos) return std::nullopt;
        text.remove_prefix(at + 1);
    }
    return text;
}

inline std::optional<std::wstring_view> FieldAt(std::wstring_view text, wchar_t separator, int index) {
    const std::optional<std::wstring_view> rest = BehindFields(text, separator, index);
    if (!rest) return std::nullopt;
    return rest->substr(0, rest->find(separator));
}

/// False, and nothing changes, if there is no such field.
inline bool SetFieldAt(std::wstring& text, wchar_t separator, int index, std::wstring_view value) {
    const std::optional<std::wstring_view> field = FieldAt(text, separator, index);
    if (!field) return false;
    text.replace(static_cast<std::size_t>(field->data() - text.data()), field->size(), value);
    return true;
}

}  // namespace orv
