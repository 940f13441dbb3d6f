#include "frontend/DirectorySetup.h"

#include "core/ConfigKeys.h"
#include "core/ProtectedFileObject.h"
#include "platform/os/Clock.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

constexpr std::wstring_view kLogFolderKey = pathKeys[kLocationLogData];

bool SaveProject(ProtectedFileObject& project) {
    return project.FileSave(L"", 0, kSave);
}

}  // namespace

LogNaming DirectorySetup::DefaultNaming() {
    LogNaming naming;
    for (const std::wstring_view item : kLogNameItems) naming.items.emplace_back(item, item != kLogNameItems.back());
    return naming;
}

bool DirectorySetup::Open() {
    int backup = 0;
    project.GetItem(DATA_PATH_SECTION, kLogFolderKey, logFolder);
    project.GetItem(DATA_PATH_SECTION, BACKUP_LOG_FOLDER, backupFolder);
    project.GetItem(DATA_PATH_SECTION, USE_BACKUP_LOG_FOLDER, backup);
    useBackup = backup == 1;
    naming = LogNaming::Of(project);
    // A list without a whole item is one that was emptied, not one that was never made.
    if (!project.HasKey(DATA_PATH_SECTION, FILENAME_ITEMS)) naming.items = DefaultNaming().items;
    automaticOnly = false;
    project.GetItem(DATA_PATH_SECTION, BORACIET_VOLUME_CSV, automaticOnly);
    if (!automaticOnly) return true;
    naming.choice = kLogNamingAutomatic;
    return project.SetItem(DATA_PATH_SECTION, LOG_FILE_NAMING, naming.choice, true) && SaveProject(project);
}

bool DirectorySetup::Save() {
    const auto set = [&](std::wstring_view key, const auto& value) {
        return project.SetItem(DATA_PATH_SECTION, key, value, true);
    };
    return set(kLogFolderKey, logFolder) && set(BACKUP_LOG_FOLDER, backupFolder) &&
           set(USE_BACKUP_LOG_FOLDER, useBackup ? 1 : 0) && set(LOG_FILE_NAMING, AreItemsActive() ? 1 : 0) &&
           set(LOG_FILE_USER_TEXT, naming.userText) && set(LOG_FILE_SEPARATOR, naming.separator) &&
           set(FILENAME_ITEMS, FilenameItemsText(naming.items)) &&
           set(REPLACE_DOTS_IN_LOGFILENAME, naming.replaceDots) && SaveProject(project);
}

bool DirectorySetup::BrowseBackupFolder(const FolderDialog& dialog) {
    std::wstring path = backupFolder;
    if (!dialog(L"Search Backup Log folder", path)) return false;
    backupFolder = std::move(path);
    return true;
}

std::wstring DirectorySetup::ExampleName() const {
    LogFields example;
    example.vessel = L"Vessel";
    example.surveyType = L"Survey";
    example.runline = L"L001";
    example.logTime = TheClock().UtcMilliseconds() / 1000;
    std::wstring name = ComposeLogName(example, naming);
    ApplyDotsRule(name, naming);
    return name + L".orv";
}

std::wstring DirectorySetup::FilterUserText(std::wstring_view text, std::size_t& caret) {
    if (IsAllowedName(text)) return std::wstring(text);
    std::wstring kept;
    std::size_t newCaret = caret;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'.' && IsAllowedName(text.substr(i, 1))) {
            kept += text[i];
        } else if (i < caret) {
            --newCaret;
        }
    }
    caret = newCaret;
    return kept;
}

}  // namespace orv
