#pragma once

#include <string_view>

#include "platform/Export.h"

namespace orv {

/// What a status of `DataSearch` means, for a person; words of a start that failed. Empty for `kSearchOk` and for codes
/// that aren't known.
ORV_EXPORT std::wstring_view DataSearchStatusText(int status);

}  // namespace orv
