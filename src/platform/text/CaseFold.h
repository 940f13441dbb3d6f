#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

/// Case without locale: Unicode's simple one-to-one mapping, so lengths stay and every host agrees. Any thread may
/// call.
namespace orv {

ORV_EXPORT wchar_t LowerChar(wchar_t c);
ORV_EXPORT std::wstring ToLower(std::wstring_view text);
ORV_EXPORT bool EqualNoCase(std::wstring_view a, std::wstring_view b);
/// True if `text` ends in `tail`, ignoring case.
ORV_EXPORT bool EndsWithNoCase(std::wstring_view text, std::wstring_view tail);

/// `text` without blanks and tabs at both ends.
ORV_EXPORT std::wstring_view TrimBlanks(std::wstring_view text);

}  // namespace orv
