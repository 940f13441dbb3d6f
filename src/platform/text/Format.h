#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// `pattern` with each %s replaced by the next of `texts` in order; "%%" gives '%'. A missing text gives nothing, any
/// other conversion stays as it is. Safe on a pattern that comes from a file. Any thread may call.
ORV_EXPORT std::wstring FormatTexts(std::wstring_view pattern, std::initializer_list<std::wstring_view> texts);

/// `pattern` with its one %[flags][width][.precision](f|e|g|lf) replaced by `value`, as C's printf would in the "C"
/// locale; width and precision are clipped to 40. Anything else in it is plain text.
ORV_EXPORT std::wstring FormatNumber(std::wstring_view pattern, double value);

}  // namespace orv
