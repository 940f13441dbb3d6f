#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// Names of sections and keys with a number in parentheses, such as "Vessel(12)". Any thread may call.
namespace orv {

/// "Vessel" and 12 give "Vessel(12)".
ORV_EXPORT std::wstring NumberedName(std::wstring_view stem, unsigned number);
/// The number if `name` is `stem` with a number in parentheses and nothing else: digits only, at most 32 bits.
ORV_EXPORT std::optional<unsigned> NumberOfName(std::wstring_view name, std::wstring_view stem);

}  // namespace orv
