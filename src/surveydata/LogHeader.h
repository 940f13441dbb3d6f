#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// The header at the start of a raw log: a configuration text in the log's second record. See docs/formats/log.md.
/// Readers here take bytes and know no path. Any thread may call.
namespace orv {

// Keys, for readers here and for the programs that write logs.

inline constexpr std::wstring_view HEADER = L"HEADER";  ///< the section
inline constexpr std::wstring_view TEXT_ENCODING = L"TextEncoding";
inline constexpr std::wstring_view ORV_VERSION = L"OrvVersion";
inline constexpr std::wstring_view FILE_VERSION = L"FileVersion";
inline constexpr std::wstring_view VESSELNAME = L"VesselName";
inline constexpr std::wstring_view SURVEYTYPE = L"SurveyType";
inline constexpr std::wstring_view RUNLINENAME = L"RunlineName";
inline constexpr std::wstring_view ACQUIS_LOGSTARTTIME = L"AcquisLogStartTime";
inline constexpr std::wstring_view REPLAY_LOGSTARTTIME = L"ReplayLogStartTime";

/// A record of a log: 16-bit type, 16-bit length, that many bytes, their 8-bit CRC; little-endian.
inline constexpr std::uint16_t kLogHeaderRecord = 2;

/// Where the text of the header lies in a log.
struct LogHeaderPlace {
    enum Search { Found, NoHeader, NeedMore } search = NoHeader;
    std::size_t offset = 0, length = 0;  ///< Found: of the text. NeedMore: `offset` bytes from the start are wanted.
};
/// Looks for it in the first bytes of a log; NeedMore if they don't reach to its end.
ORV_EXPORT LogHeaderPlace FindLogHeader(std::span<const std::byte> start);

/// The fields of a header.
struct LogHeader {
    std::wstring orvVersion, fileVersion, vessel, surveyType, runline;
    std::int64_t logTime = 0, replayTime = 0;  ///< seconds since 1970 UTC
};
/// What isn't in the text stays as it was. False if the text is none, or holds a time that is none; what stands in
/// front of that time in the above order is taken even so: a log with a spoilt time is still known by its vessel.
ORV_EXPORT bool ParseLogHeader(std::span<const std::byte> text, LogHeader& header);

/// The text with another run line, in exactly as many bytes: one that has grown is cut, one that has shrunk is filled
/// with NULs, so that the records behind it stay where they are. Empty if the text can't be read.
ORV_EXPORT std::string WithRunline(std::span<const std::byte> text, std::wstring_view runline);

// The same over a log on disk.

ORV_EXPORT bool ReadLogHeader(std::wstring_view path, LogHeader& header);
/// Changes the run line in place by one write, of the changed bytes only. Fails while the log is being written.
ORV_EXPORT bool WriteLogRunline(std::wstring_view path, std::wstring_view runline);

}  // namespace orv
