#include "surveydata/LogNaming.h"

#include <algorithm>
#include <optional>

#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "core/FileObject.h"
#include "platform/os/Clock.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

constexpr std::size_t kLongTime = 15, kShortTime = 13;  // with and without seconds

/// A decimal number of `width` places; longer ones aren't cut.
std::wstring Padded(int number, std::size_t width) {
    const std::wstring digits = IntText(number);
    return std::wstring(width - std::min(width, digits.size()), L'0') + digits;
}

std::wstring DateText(const CalendarTime& time) {
    return Padded(time.year, 4) + Padded(time.month, 2) + Padded(time.day, 2);
}

std::wstring TimeText(const CalendarTime& time) {
    return Padded(time.hour, 2) + Padded(time.minute, 2) + Padded(time.second, 2);
}

/// The decimal number of `count` digits at `from`, if it is in the range.
bool Field(std::wstring_view text, std::size_t from, std::size_t count, int lowest, int highest, int& out) {
    int number = 0;
    for (const wchar_t c : text.substr(from, count)) {
        if (c < L'0' || c > L'9') return false;
        number = number * 10 + static_cast<int>(c - L'0');
    }
    out = number;
    return number >= lowest && number <= highest;
}

/// What an item of a title by items stands for; empty for one that isn't known.
std::wstring ItemValue(std::wstring_view item, const LogFields& fields, const LogNaming& naming) {
    const auto place = std::find(kLogNameItems.begin(), kLogNameItems.end(), item) - kLogNameItems.begin();
    switch (place) {
        case 0:
            return fields.vessel;
        case 1:
            return fields.surveyType;
        case 2:
            return fields.runline;
        case 3:
            return DateText(LocalCalendar(fields.logTime));
        case 4:
            return TimeText(LocalCalendar(fields.logTime));
        case 5:
            return naming.userText;
        default:
            return {};
    }
}

std::wstring LogNameByItems(const LogFields& fields, const LogNaming& naming) {
    std::wstring name;
    for (const auto& [item, used] : naming.items) {
        const std::wstring value = used ? ItemValue(item, fields, naming) : std::wstring();
        if (!name.empty() && !value.empty()) name += naming.separator;
        name += value;
    }
    return name;
}

struct TimePlace {
    std::size_t start, length;
};

/// Where the log time stands: behind the first hyphen, from `from` on, that is followed by a date's length, a hyphen
/// and a time's length. So a run line may hold hyphens.
std::optional<TimePlace> FindLogTime(std::wstring_view name, std::size_t from) {
    for (std::size_t hyphen = name.find(L'-', from); hyphen != name.npos; hyphen = name.find(L'-', hyphen + 1)) {
        const std::size_t second = name.find(L'-', hyphen + 1);
        if (second == name.npos) return {};
        const std::size_t third = std::min(name.find(L'-', second + 1), name.size());
        if (second - hyphen != 9) continue;
        if (third - second == 7) return TimePlace{hyphen + 1, kLongTime};
        if (third - second == 5) return TimePlace{hyphen + 1, kShortTime};
    }
    return {};
}

}  // namespace

LogNaming LogNaming::Of(const FileObject& project) {
    LogNaming naming;
    std::wstring text;
    project.GetItem(DATA_PATH_SECTION, LOG_FILE_NAMING, naming.choice);
    if (project.GetItem(DATA_PATH_SECTION, FILENAME_ITEMS, text)) naming.items = ParseFilenameItems(text);
    project.GetItem(DATA_PATH_SECTION, LOG_FILE_USER_TEXT, naming.userText);
    project.GetItem(DATA_PATH_SECTION, LOG_FILE_SEPARATOR, naming.separator);
    project.GetItem(DATA_PATH_SECTION, REPLACE_DOTS_IN_LOGFILENAME, naming.replaceDots);
    return naming;
}

std::vector<std::pair<std::wstring, bool>> ParseFilenameItems(std::wstring_view text) {
    const COrvString parts(text, L',', false);
    std::vector<std::pair<std::wstring, bool>> items;
    for (int i = 0; i + 1 < parts.Size(); i += 2) items.emplace_back(parts[i], parts[i + 1] == L"1");
    return items;
}

std::wstring FilenameItemsText(const std::vector<std::pair<std::wstring, bool>>& items) {
    COrvString parts(L',');
    for (const auto& [item, used] : items) {
        parts.AddItem(item);
        parts.AddItem(used ? L"1" : L"0");
    }
    return parts.GetString();
}

std::wstring ComposeLogName(const LogFields& fields, const LogNaming& naming) {
    if (naming.choice == kLogNamingAutomatic) return AutomaticLogName(fields);
    return naming.choice == kLogNamingByItems ? LogNameByItems(fields, naming) : std::wstring();
}

std::wstring AutomaticLogName(const LogFields& fields) {
    std::wstring name =
        fields.vessel + L"[" + fields.surveyType + L"]_" + fields.runline + L"-" + LogTimeText(fields.logTime);
    if (fields.replayTime == 0) return name;
    name += L"-R" + LogTimeText(fields.replayTime);
    if (fields.replayCount != 0) name += L"-" + IntText(fields.replayCount);
    return name;
}

void ApplyDotsRule(std::wstring& name, const LogNaming& naming) {
    if (!naming.replaceDots) return;
    std::replace(name.begin(), name.end(), L'.', naming.separator == L"-" ? L'_' : L'-');
}

bool ParseLogName(std::wstring_view title, LogFields& fields) {
    fields = {};
    const std::size_t open = title.find(L'[');
    const std::size_t close = open == title.npos ? open : title.find(L']', open);
    if (open == 0 || close == title.npos) return false;
    const std::size_t runline = close + 2;  // behind the "_"
    const auto time = FindLogTime(title, runline);
    if (!time) return false;
    fields.vessel = title.substr(0, open);
    fields.surveyType = title.substr(open + 1, close - open - 1);
    fields.runline = title.substr(runline, time->start - 1 - runline);

    const std::size_t end = time->start + time->length;
    if (!ParseLogTime(title.substr(time->start, time->length), fields.logTime)) return false;
    if (end == title.size()) return true;
    if (title.size() < time->start + 2 * kLongTime) return false;
    const std::size_t replay = end + 2;  // behind "-R"
    if (title.size() < replay + time->length) return false;
    if (!ParseLogTime(title.substr(replay, time->length), fields.replayTime)) return false;
    const std::size_t count = replay + time->length + 1;
    if (count < title.size()) fields.replayCount = ParseLeadingInt(title.substr(count));
    return AreLogFieldsValid(fields);
}

bool AreLogFieldsValid(const LogFields& fields) {
    return fields.logTime != 0 && !fields.vessel.empty() && !fields.surveyType.empty() && !fields.runline.empty() &&
           (fields.replayCount < 1 || fields.replayTime != 0);
}

std::wstring LogTimeText(std::int64_t utcSeconds) {
    const CalendarTime time = LocalCalendar(utcSeconds);
    return DateText(time) + L"-" + TimeText(time);
}

bool ParseLogTime(std::wstring_view text, std::int64_t& utcSeconds) {
    CalendarTime time;
    if (text.size() < kShortTime || !Field(text, 0, 4, 1601, 30827, time.year) ||
        !Field(text, 4, 2, 1, 12, time.month) || !Field(text, 6, 2, 1, 31, time.day) ||
        !Field(text, 9, 2, 0, 23, time.hour) || !Field(text, 11, 2, 0, 59, time.minute)) {
        return false;
    }
    if (text.size() >= kLongTime && !Field(text, 13, 2, 0, 59, time.second)) return false;
    // What a log gets that has no start time, whatever the zone.
    const bool unset =
        time.year == 1970 && time.month == 1 && time.day == 1 && time.hour == 0 && time.minute == 0 && time.second == 0;
    utcSeconds = unset || time.year < 1900 ? 0 : LocalToUtc(time);
    return true;
}

std::wstring ReplayText(const std::vector<std::wstring>& replays, std::int64_t now) {
    std::int64_t number = 1;
    for (const std::wstring& name : replays) {
        const std::size_t mark = name.rfind(L'R'), dot = name.rfind(L'.');
        if (mark == name.npos || dot == name.npos || dot < mark + kLongTime) continue;
        // Behind a short time, or a long one; a long time without a number gives its last digit, which does no harm.
        const std::size_t place = mark + (dot - mark < 17 ? 15 : 17);
        const int found = place < name.size() ? ParseLeadingInt(std::wstring_view(name).substr(place)) : 0;
        if (found > number) number = std::int64_t{found} + 1;
    }
    std::wstring text = L"-R" + LogTimeText(now);
    if (number >= 2) text += L"-" + IntText(number);
    return text;
}

}  // namespace orv
