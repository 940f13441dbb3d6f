#include "TimeText.h"

#include <cmath>
#include <cstdlib>
#include <ctime>

#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr double kFirst = -62135596800000.0, kBehindLast = 253402300800000.0;  // years 1 to 9999
constexpr int kFinest = 7;  // decimals of a second: what a double of milliseconds can tell today

std::string Digits(int number, std::size_t width) {
    std::string text = std::to_string(number);
    return std::string(width > text.size() ? width - text.size() : 0, '0') + text;
}

std::string Iso(const CalendarTime& time, char between, bool seconds) {
    std::string text = Digits(time.year, 4) + "-" + Digits(time.month, 2) + "-" + Digits(time.day, 2) + between +
                       Digits(time.hour, 2) + ":" + Digits(time.minute, 2);
    if (seconds) text += ":" + Digits(time.second, 2);
    return text;
}

/// Takes exactly `count` digits off the front of `text`.
bool TakeDigits(std::string_view& text, std::size_t count, int& number) {
    if (text.size() < count) return false;
    number = 0;
    for (const char c : text.substr(0, count)) {
        if (c < '0' || c > '9') return false;
        number = number * 10 + (c - '0');
    }
    text.remove_prefix(count);
    return true;
}

bool Take(std::string_view& text, std::string_view oneOf) {
    if (text.empty() || oneOf.find(text.front()) == oneOf.npos) return false;
    text.remove_prefix(1);
    return true;
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
    return text;
}

/// +1, -03:30 or +0100, to the end of `text`; in seconds.
bool ReadOffset(std::string_view text, std::int64_t& offset) {
    const bool minus = text.starts_with('-');
    int hours = 0, minutes = 0;
    if (!Take(text, "+-")) return false;
    if (!TakeDigits(text, 2, hours) && !TakeDigits(text, 1, hours)) return false;
    if (!text.empty()) {
        Take(text, ":");
        if (!TakeDigits(text, 2, minutes)) return false;
    }
    if (!text.empty() || hours > 14 || minutes > 59) return false;
    offset = (hours * 60 + minutes) * (minus ? -60 : 60);
    return true;
}

bool ReadCalendar(std::string_view& text, CalendarTime& time, double& fraction) {
    if (!TakeDigits(text, 4, time.year) || !Take(text, "-") || !TakeDigits(text, 2, time.month) || !Take(text, "-") ||
        !TakeDigits(text, 2, time.day) || !Take(text, "T ") || !TakeDigits(text, 2, time.hour) || !Take(text, ":") ||
        !TakeDigits(text, 2, time.minute)) {
        return false;
    }
    if (!Take(text, ":")) return true;
    if (!TakeDigits(text, 2, time.second)) return false;
    if (!text.starts_with('.')) return true;
    const std::size_t end = std::min(text.find_first_not_of("0123456789", 1), text.size());
    const std::optional<double> read = end > 1 ? ParseDouble("0" + std::string(text.substr(0, end))) : std::nullopt;
    text.remove_prefix(end);
    if (read) fraction = *read;
    return read.has_value();
}

bool Same(const CalendarTime& a, const CalendarTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
           a.second == b.second;
}

}  // namespace

Cell TimeCell(std::int64_t utcSeconds) {
    return {Iso(LocalCalendar(utcSeconds), ' ', false), Iso(UtcCalendar(utcSeconds), 'T', true) + "Z", {}};
}

bool IsCivilTime(double utcMilliseconds) {
    return utcMilliseconds >= kFirst && utcMilliseconds < kBehindLast;
}

std::string UtcText(double utcMilliseconds) {
    if (!IsCivilTime(utcMilliseconds)) return ToUtf8(ShortestText(utcMilliseconds));
    double seconds = std::floor(utcMilliseconds / 1000.0);
    std::string fraction = Fixed((utcMilliseconds - seconds * 1000.0) / 1000.0, kFinest);
    if (fraction.front() == '1') {  // rounded up to a whole second
        ++seconds;
        fraction.clear();
    }
    while (fraction.ends_with('0')) fraction.pop_back();
    if (fraction == "0." || fraction.empty()) fraction = "0";
    return Iso(UtcCalendar(static_cast<std::int64_t>(seconds)), 'T', true) + fraction.substr(1) + "Z";
}

Cell UtcCell(double utcMilliseconds) {
    return Cell::Of(UtcText(utcMilliseconds));
}

std::string DurationText(double milliseconds) {
    constexpr double kLongest = 1e15;  // up to here milliseconds count exactly
    constexpr std::pair<double, const char*> units[] = {{86400e3, " d"}, {3600e3, " h"}, {60e3, " min"}};
    if (!(milliseconds >= 1000)) return ToUtf8(ShortestText(milliseconds)) + " ms";
    if (milliseconds > kLongest) return ToUtf8(ShortestText(milliseconds / units[0].first)) + " d";
    std::string text;
    for (const auto& [length, name] : units) {
        const double whole = std::floor(milliseconds / length);
        milliseconds -= whole * length;
        if (whole > 0) text += (text.empty() ? "" : " ") + Fixed(whole, 0) + name;
    }
    if (milliseconds > 0 || text.empty())
        text += (text.empty() ? "" : " ") + ToUtf8(ShortestText(milliseconds / 1000)) + " s";
    return text;
}

// ---- reading

const char* TimeReader::SetZone(std::string_view words) {
    words = Trimmed(words);
    if (words == "local") {
        zone = Zone::ByRules;
        return nullptr;
    }
    if (words.starts_with("UTC")) {
        zone = Zone::Fixed;
        fixedOffset = 0;
        if (words == "UTC" || ReadOffset(words.substr(3), fixedOffset)) return nullptr;
        zone = Zone::None;
        return "behind UTC stands an offset such as +1 or -3:30";
    }
    const std::string name(words);
    const char* const folder = std::getenv("TZDIR");
    const std::string path = std::string(folder ? folder : "/usr/share/zoneinfo") + "/" + name;
    if (name.empty() || name.front() == '/' || name.find("..") != name.npos || !FileExists(PathFromBytes(path))) {
        return "it is not UTC, UTC with an offset, \"local\" or a place that this computer knows";
    }
    setenv("TZ", (":" + name).c_str(), 1);
    tzset();
    zone = Zone::ByRules;
    return nullptr;
}

const char* TimeReader::FromLocal(std::int64_t asUtc, std::int64_t& utcSeconds) {
    const CalendarTime shown = UtcCalendar(asUtc);
    utcSeconds = LocalToUtc(shown);
    if (!Same(LocalCalendar(utcSeconds), shown)) return "the clocks went forward over this time, so there is none";
    for (const std::int64_t shift : {3600, 1800, 7200}) {
        const std::int64_t again = utcSeconds + shift;
        if (!Same(LocalCalendar(again), shown)) continue;
        ++ambiguous;
        if (utcSeconds <= last && again > last) utcSeconds = again;
        break;
    }
    last = utcSeconds;
    return nullptr;
}

const char* TimeReader::Read(std::string_view text, double& utcMilliseconds) {
    text = Trimmed(text);
    CalendarTime time;
    double fraction = 0;
    if (!ReadCalendar(text, time, fraction)) return "a time reads like 2021-03-02 10:15:30";
    std::int64_t seconds = CalendarToUtc(time), offset = 0;
    if (!Same(UtcCalendar(seconds), time)) return "there is no such day or time";
    text = Trimmed(text);
    const bool ownZone = !text.empty();
    if (ownZone && text != "Z" && !ReadOffset(text, offset))
        return "behind a time stands Z or an offset such as +01:00";
    if (!ownZone) {
        if (zone == Zone::None) return "its zone isn't told: put Z behind it, or give --zone";
        offset = fixedOffset;
    }
    if (!ownZone && zone == Zone::ByRules) {
        if (const char* const wrong = FromLocal(seconds, seconds)) return wrong;
    } else {
        seconds -= offset;
    }
    utcMilliseconds = static_cast<double>(seconds) * 1000.0 + fraction * 1000.0;
    return nullptr;
}

std::optional<std::int64_t> ReadTime(std::string_view text) {
    const bool utc = text.ends_with('Z');
    if (utc) text.remove_suffix(1);
    // Missing parts at the end are zero.
    constexpr std::string_view form = "0000-00-00 00:00:00";
    if (text.size() != 10 && text.size() != 16 && text.size() != form.size()) return std::nullopt;
    int fields[6] = {}, field = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        const bool fits = form[i] == '0' ? digit : text[i] == form[i] || (form[i] == ' ' && text[i] == 'T');
        if (!fits) return std::nullopt;
        if (digit) {
            fields[field] = fields[field] * 10 + (text[i] - '0');
        } else {
            ++field;
        }
    }
    const CalendarTime time = {fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]};
    const std::int64_t seconds = utc ? CalendarToUtc(time) : LocalToUtc(time);
    // A 31st of February rolls over; here it is a slip of the pen. An hour that summer time skips is none.
    const CalendarTime back = utc ? UtcCalendar(seconds) : LocalCalendar(seconds);
    const bool same =
        back.month == time.month && back.day == time.day && back.minute == time.minute && back.second == time.second;
    if (!same || time.hour > 23) return std::nullopt;
    return seconds;
}

}  // namespace orv::cfg
