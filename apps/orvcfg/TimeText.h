#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Document.h"

namespace orv::cfg {

/// Seconds since 1970 UTC: local time for people, UTC in ISO form for programs.
Cell TimeCell(std::int64_t utcSeconds);
/// Local time as "2026-03-02", "2026-03-02 10:15" or "2026-03-02T10:15:07", with a Z behind it UTC, in seconds since
/// 1970 UTC. None for anything else.
std::optional<std::int64_t> ReadTime(std::string_view text);
/// What to tell about a text that `ReadTime` refuses.
inline constexpr std::string_view kTimeForms =
    "Give local time as \"2026-03-02 10:15\", the day alone, or UTC as 2026-03-02T10:15:00Z.";

}  // namespace orv::cfg
