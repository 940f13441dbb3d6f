#pragma once

#include <string>
#include <string_view>

/// What a new or repaired project holds, beside formats and units.
namespace orv {

inline constexpr std::wstring_view kDefaultResource = L"default";
inline constexpr std::wstring_view kLogDataFolder = L"LogData";
inline constexpr std::wstring_view kPipelineWidth = L"10";
inline constexpr int kGpsTimeParameters = 18;  ///< seconds between GPS time and UTC

/// The text of an item that the user hasn't filled in, in the user's language.
std::wstring ProjectDefaultText();

}  // namespace orv
