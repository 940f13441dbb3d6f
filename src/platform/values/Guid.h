#pragma once

#include <string>

#include "platform/Export.h"

namespace orv {

/// A new random identifier (RFC 4122 version 4), 36 lower-case characters; fills `out` and returns it. Any thread.
ORV_EXPORT std::wstring CreateGuid(std::wstring& out);

}  // namespace orv
