#include "TimeText.h"

#include "platform/os/Clock.h"

namespace orv::cfg {

namespace {

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

}  // namespace

Cell TimeCell(std::int64_t utcSeconds) {
    return {Iso(LocalCalendar(utcSeconds), ' ', false), Iso(UtcCalendar(utcSeconds), 'T', true) + "Z", {}};
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
