#pragma once

#include <cstddef>

#include "platform/Export.h"

namespace orv {

/// Overwrites memory that held a secret; no compiler leaves it out. Any thread.
ORV_EXPORT void WipeMemory(void* data, std::size_t size);

}  // namespace orv
