#include "surveydata/TideStationFile.h"

#include <bit>
#include <cstring>

#include "platform/os/Clock.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "platform/values/TruncToInt.h"

namespace orv {

namespace {

constexpr std::int32_t kMarker = -1, kVersion = 2;
constexpr int kFirstYear = 1970, kLastYear = 3000;

/// Fields one after the other. A field that the bytes are too short for is left alone, and so are all behind it.
class FieldReader {
public:
    explicit FieldReader(std::span<const std::byte> from) : bytes(from) {}

    template <class T>
    bool Read(T& out) {
        if (bytes.size() < sizeof(T)) return Stop();
        std::memcpy(&out, bytes.data(), sizeof(T));
        bytes = bytes.subspan(sizeof(T));
        return true;
    }
    bool Read(bool& out) {
        std::uint8_t byte = 0;
        if (!Read<std::uint8_t>(byte)) return false;
        out = byte != 0;
        return true;
    }
    bool ReadText(std::int32_t length, std::wstring& out) {
        if (length < 0 || static_cast<std::size_t>(length) > bytes.size()) return Stop();
        const auto size = static_cast<std::size_t>(length);
        out = FromUtf8({reinterpret_cast<const char*>(bytes.data()), size});
        bytes = bytes.subspan(size);
        return true;
    }

private:
    bool Stop() {
        bytes = {};
        return false;
    }
    std::span<const std::byte> bytes;
};

template <class T>
void Put(std::string& bytes, const T& value) {
    static_assert(std::endian::native == std::endian::little);
    char raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof(T));
    bytes.append(raw, sizeof(T));
}

void PutText(std::string& bytes, std::wstring_view text) {
    const std::string utf8 = ToUtf8(text);
    Put(bytes, static_cast<std::int32_t>(utf8.size()));
    bytes += utf8;
}

double MonthStart(int year, int month) {
    CalendarTime first;
    first.year = month > 12 ? year + 1 : year;
    first.month = month > 12 ? 1 : month;
    return static_cast<double>(CalendarToUtc(first)) * 1000.0;
}

}  // namespace

TideStationRead ParseTideStation(std::span<const std::byte> bytes, TideStationData& station) {
    FieldReader reader(bytes);
    std::int32_t length = 0;
    if (!reader.Read(length)) return TideStationRead::Empty;
    if (length == kMarker) {
        std::int32_t version = 0;  // every version so far has the same fields
        reader.Read(version);
        reader.Read(station.maximumGap);
        reader.Read(station.limitGaps);
        reader.Read(station.maximumSpan);
        reader.Read(station.extrapolate);
        if (!reader.Read(length)) return TideStationRead::NoName;
    } else {
        station.maximumGap = station.maximumSpan = kTideLimit;
    }
    if (!reader.ReadText(length, station.name)) return TideStationRead::NoName;
    reader.Read(station.x);
    reader.Read(station.y);
    reader.Read(station.offset);
    if (!reader.Read(length) || !reader.ReadText(length, station.id)) station.id = TideStationData().id;
    return TideStationRead::Complete;
}

std::string TideStationBytes(const TideStationData& station) {
    std::string bytes;
    Put(bytes, kMarker);
    Put(bytes, kVersion);
    Put(bytes, station.maximumGap);
    Put(bytes, static_cast<std::uint8_t>(station.limitGaps));
    Put(bytes, station.maximumSpan);
    Put(bytes, static_cast<std::uint8_t>(station.extrapolate));
    PutText(bytes, station.name);
    Put(bytes, station.x);
    Put(bytes, station.y);
    Put(bytes, station.offset);
    PutText(bytes, station.id);
    return bytes;
}

bool ParseTideFileTitle(std::wstring_view title, TideSpan& span) {
    const std::size_t underscore = title.rfind(L'_');
    if (underscore == title.npos) return false;
    const std::wstring_view digits = title.substr(underscore + 1);
    if (digits.size() < 5) return false;
    const int year = ParseLeadingInt(digits.substr(0, 4)), month = ParseLeadingInt(digits.substr(4));
    if (year < kFirstYear || year > kLastYear || month < 1 || month > 12) return false;
    span = {MonthStart(year, month), MonthStart(year, month + 1)};
    return true;
}

std::wstring TideFileTitle(std::wstring_view stationTitle, double time) {
    std::int64_t seconds = 0;
    if (!TruncToInt(time / 1000.0, seconds)) return {};
    const CalendarTime month = UtcCalendar(seconds);
    // A longer year would read as another one with another month.
    if (month.year < kFirstYear || month.year > kLastYear) return {};
    return ToLower(stationTitle) + L"_" + IntText(month.year) + IntText(month.month);
}

}  // namespace orv
