#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Export.h"

/// How the title of a raw log is made of what it holds, and taken apart again. Texts only: nothing here asks the disk
/// or the project. Times in titles are local, in fields seconds since 1970 UTC. Any thread may call.
namespace orv {

class FileObject;

// Keys of the project's section DataPath.

inline constexpr std::wstring_view LOG_FILE_NAMING = L"LogFileNaming";
inline constexpr std::wstring_view FILENAME_ITEMS = L"FilenameItems";
inline constexpr std::wstring_view LOG_FILE_USER_TEXT = L"LogFileUserText";
inline constexpr std::wstring_view LOG_FILE_SEPARATOR = L"LogFileSeparator";
inline constexpr std::wstring_view REPLACE_DOTS_IN_LOGFILENAME = L"ReplaceDotsInLogfilename";
inline constexpr std::wstring_view BORACIET_VOLUME_CSV = L"BoracietVolumeCSV";

/// What a log is known by.
struct LogFields {
    std::wstring vessel, surveyType, runline;
    std::int64_t logTime = 0;     ///< 0: not set
    std::int64_t replayTime = 0;  ///< 0: not a replayed log
    int replayCount = 0;
};

/// Parts that a title by items can be made of; the texts stand in project files.
inline constexpr std::array<std::wstring_view, 6> kLogNameItems = {
    {L"Vessel name", L"Survey type", L"Run line name", L"Start date", L"Start time", L"User text"}};

enum LogNamingChoice : int { kLogNamingAutomatic = 0, kLogNamingByItems = 1 };

/// The naming setup of a project.
struct ORV_EXPORT LogNaming {
    int choice = kLogNamingAutomatic;                  ///< any other value than the two gives empty names
    std::vector<std::pair<std::wstring, bool>> items;  ///< in order, with whether it is used
    std::wstring userText;
    std::wstring separator = L"-";
    bool replaceDots = false;

    /// Reads the keys of `project`; what is missing is as above.
    static LogNaming Of(const FileObject& project);
};

/// `FilenameItems`: item, flag, item, flag, ...; an item is used when its flag is exactly "1".
ORV_EXPORT std::vector<std::pair<std::wstring, bool>> ParseFilenameItems(std::wstring_view text);
ORV_EXPORT std::wstring FilenameItemsText(const std::vector<std::pair<std::wstring, bool>>& items);

/// The title of a log. The form by items has no place for a replay.
ORV_EXPORT std::wstring ComposeLogName(const LogFields& fields, const LogNaming& naming);
/// vessel[type]_runline-time, with -Rtime and -count for a replay.
ORV_EXPORT std::wstring AutomaticLogName(const LogFields& fields);
/// Takes dots out of a title where the project wants it: some converters cut names there.
ORV_EXPORT void ApplyDotsRule(std::wstring& name, const LogNaming& naming);

/// Takes an automatic title apart. False: `fields` holds what was found up to there, the rest is empty.
ORV_EXPORT bool ParseLogName(std::wstring_view title, LogFields& fields);
/// A log is known by a time and three texts, and counts replays only if it is one.
ORV_EXPORT bool AreLogFieldsValid(const LogFields& fields);

/// YYYYMMDD-hhmmss, local.
ORV_EXPORT std::wstring LogTimeText(std::int64_t utcSeconds);
/// Reads the above, of which the seconds may be missing; the character between date and time isn't looked at, nor is
/// what follows. Years before 1900 give 0.
ORV_EXPORT bool ParseLogTime(std::wstring_view text, std::int64_t& utcSeconds);

/// What follows the title of a log when it is replayed at `now`: -Rtime, or -Rtime-number when `replays`, the names of
/// earlier ones, hold numbers. Numbers needn't run without gaps; they only rise.
ORV_EXPORT std::wstring ReplayText(const std::vector<std::wstring>& replays, std::int64_t now);

}  // namespace orv
