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

}  // namespace orv::cfg
