#include "core/SectionNumber.h"

#include "platform/text/NumberText.h"

namespace orv {

std::wstring NumberedName(std::wstring_view stem, unsigned number) {
    return std::wstring(stem) + L"(" + IntText(number) + L")";
}

std::optional<unsigned> NumberOfName(std::wstring_view name, std::wstring_view stem) {
    if (name.size() < stem.size() + 3 || !name.starts_with(stem) || name[stem.size()] != L'(' || name.back() != L')') {
        return std::nullopt;
    }
    const std::wstring_view digits = name.substr(stem.size() + 1, name.size() - stem.size() - 2);
    if (digits.find_first_not_of(L"0123456789") != digits.npos) return std::nullopt;  // no sign, no blanks
    return ParseUnsigned(digits);
}

}  // namespace orv
