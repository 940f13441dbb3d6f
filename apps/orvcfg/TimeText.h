#pragma once

#include <cstdint>

#include "Document.h"

namespace orv::cfg {

/// Seconds since 1970 UTC: local time for people, UTC in ISO form for programs.
Cell TimeCell(std::int64_t utcSeconds);

}  // namespace orv::cfg
