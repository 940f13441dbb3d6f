#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// Number to text and back, never through the locale. Any thread may call.
namespace orv {

/// A number that takes up the whole text but for blanks around it. Empty text, trailing letters and values that don't
/// fit give none; the unsigned forms refuse a minus. A plus in front is accepted.
ORV_EXPORT std::optional<int> ParseInt(std::wstring_view text);
ORV_EXPORT std::optional<unsigned> ParseUnsigned(std::wstring_view text);
ORV_EXPORT std::optional<std::int64_t> ParseInt64(std::wstring_view text);
ORV_EXPORT std::optional<float> ParseFloat(std::wstring_view text);
ORV_EXPORT std::optional<double> ParseDouble(std::wstring_view text);
/// 0, 1, true and false in any case; any other whole number counts as true.
ORV_EXPORT std::optional<bool> ParseBool(std::wstring_view text);

/// The same over UTF-8 bytes, which is how files are held.
ORV_EXPORT std::optional<int> ParseInt(std::string_view text);
ORV_EXPORT std::optional<unsigned> ParseUnsigned(std::string_view text);
ORV_EXPORT std::optional<std::int64_t> ParseInt64(std::string_view text);
ORV_EXPORT std::optional<float> ParseFloat(std::string_view text);
ORV_EXPORT std::optional<double> ParseDouble(std::string_view text);
ORV_EXPORT std::optional<bool> ParseBool(std::string_view text);

/// The leading decimal integer of a text, as C's atoi reads it; 0 if there is none. Clipped to the range of int.
ORV_EXPORT int ParseLeadingInt(std::wstring_view text);

/// Shortest text that reads back as the same double; fixed notation from 1e-5 to 1e17, else with an exponent.
ORV_EXPORT std::wstring ShortestText(double value);
/// As C's `%.*f`; `decimals` is clipped to 0..40. "nan", "inf", "-inf" where it isn't finite.
ORV_EXPORT std::wstring FixedText(double value, int decimals);
ORV_EXPORT void AppendFixed(std::wstring& text, double value, int decimals);  ///< the same behind a text
ORV_EXPORT std::wstring IntText(std::int64_t value);

}  // namespace orv
