#include "users/UserAccessLevelsFile.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "core/ProtectedFileObject.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "project/ProjectDefinition.h"

namespace orv {

bool UserAccessItem::Parse(const std::wstring& text) {
    const std::vector<std::wstring> parts = DataSearch::Split(text, {L";", L"="}, true);
    if (parts.size() != 4) return false;
    key = TrimBlanks(parts[0]);
    label = TrimBlanks(parts[1]);
    id = ParseLeadingInt(TrimBlanks(parts[2]));
    levels.LoadString(TrimBlanks(parts[3]), true);
    return true;
}

bool UserAccessItem::Allows(int level) const {
    int number = 1;
    levels.GetItem(level, number);
    return number != 0;
}

bool UserAccessLevelsFile::ReadUserAccessLevelsFile() {
    Clear();
    FileClose();
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, definition;
    if (!search.GetFilePath(kFileTypeSystem, folder)) return false;
    search.GetProjectDefinition().GetAppDefinition(definition);
    const std::wstring path = folder + definition + std::wstring(USER_ACCESS_LEVELS_EXTENSION);

    // Nobody may open rights to himself with an editor: the checksum must hold, for this very name.
    ProtectedFileObject verified;
    if (!verified.FileOpen(path, true, kOpenRead)) return false;
    Take(verified);
    return true;
}

void UserAccessLevelsFile::Take(const FileObject& verified) {
    Clear();
    static_cast<FileObject&>(*this) = verified;
    FobjSection cursor;
    std::wstring section;
    for (bool more = GetFirstSectionEntry(cursor, section); more; more = GetNextSectionEntry(cursor, section)) {
        if (section == USERLEVELS_SECTION) {
            std::wstring names;
            GetItem(section, USERLEVELS_KEY, names);
            for (const std::wstring& name : DataSearch::Split(names, {L";", L"="}, false)) {
                levels.emplace_back(TrimBlanks(name));
            }
        } else if (section != CHECKSUM_SECTION) {
            applications.push_back(section);
        }
    }
}

int UserAccessLevelsFile::UserAccessLevelIndex(const std::wstring& name) const {
    const auto level = std::find(levels.begin(), levels.end(), name);
    return level != levels.end() ? static_cast<int>(level - levels.begin()) : -1;
}

std::vector<std::wstring> UserAccessLevelsFile::GetItems(const std::wstring& application,
                                                         const std::wstring& prefix) const {
    std::vector<std::wstring> items;
    const auto section = std::find_if(applications.begin(), applications.end(),
                                      [&](const std::wstring& name) { return EqualNoCase(name, application); });
    if (section == applications.end()) return items;
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = GetFirstMapEntry(cursor, *section, key, value); more; more = GetNextMapEntry(cursor, key, value)) {
        if (key.starts_with(prefix)) items.push_back(key + L" = " + value);
    }
    return items;
}

void UserAccessLevelsFile::Clear() {
    levels.clear();
    applications.clear();
}

void UserAccessLevelsFile::RestoreFromBackupFile() {
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetFilePath(kFileTypeSystem, folder)) return;
    const std::wstring live = folder + std::wstring(USER_ACCESS_LEVELS_INI_FILENAME);
    (void)Files().Remove(live);
    (void)CopyWholeFile(folder + std::wstring(USER_ACCESS_LEVELS_BAK_FILENAME), live);
}

}  // namespace orv
