#include "housekeeping/FileHistory.h"

#include <algorithm>

#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

constexpr std::size_t kTimePartSize = 16;
constexpr std::int64_t kSecondsPerDay = 86400;

constexpr std::wstring_view kCreated = L"[File History] Created backup file: %s";
constexpr std::wstring_view kNotCreated = L"[File History] Failed to backup file: %s";
constexpr std::wstring_view kDeleted = L"[File History] Deleted backup file: %s";
constexpr std::wstring_view kNotDeleted = L"[File History] Failed to delete backup file: %s";

/// The last entry that isn't at or behind the first one for which `isLate` holds; the first entry if there is none
/// before that; the end of an empty list.
template <class IsLate>
auto LastBefore(const std::vector<std::wstring>& names, IsLate isLate) {
    auto name = std::find_if(names.begin(), names.end(), isLate);
    if (name != names.begin()) --name;
    return name;
}

std::vector<FolderEntry> ListFolder(const std::wstring& folder) {
    std::vector<FolderEntry> entries;
    static_cast<void>(Files().List(folder, entries));
    return entries;
}

bool StatusOf(const std::wstring& path, FileStatus& status) {
    return Files().Status(path, status) == FsResult::Ok && status.exists;
}

}  // namespace

bool FileHistory::LoadSettings(DataSearch& search) {
    enabled = false;
    if (!search.GetDataPathInfo(kLocationFileHistory, historyFolder)) return false;
    const FileHistorySetup setup = LoadFileHistorySetup(search.GetProjectDefinition());
    enabled = setup.enabled;
    maxDays = setup.maxDays;
    fileTypes.clear();
    for (const unsigned id : setup.types) {
        std::wstring extension;
        if (search.GetFileExtension(id, extension)) fileTypes.emplace(id, extension);
    }
    return true;
}

FileHistory::TypeFolders FileHistory::FindTypeFolders() const {
    TypeFolders types;
    for (const auto& [id, extension] : fileTypes) {
        if (auto type = FindTypeFolder(DataSearch::GetDataSearch(), id)) types.push_back(std::move(*type));
    }
    return types;
}

void FileHistory::MakeBackup(CTime now, const std::atomic<bool>& stop) {
    MakeBackup(FindTypeFolders(), now, stop);
}

void FileHistory::MakeBackup(const TypeFolders& types, CTime now, const std::atomic<bool>& stop) {
    for (const TypeFolder& type : types) {
        std::vector<FolderEntry> history = ListFolder(historyFolder);
        for (const FolderEntry& entry : orv::FindFiles(type.folder, L"*" + type.extension)) {
            if (stop) return;
            if (entry.isFolder || entry.isLink) continue;
            // By the name on disk: where case tells two files apart, each must be itself.
            const std::wstring title = entry.name.substr(0, entry.name.size() - type.extension.size());
            const DataFile file = {type.folder + entry.name, title, type.extension};
            Names copies = FindFiles(history, title, type.extension);
            BackupFile(file, copies, history, now, stop);
            PurgeOld(file, copies, now);
        }
    }
}

std::wstring FileHistory::GetTimePart(CTime time) {
    // Years beyond four digits would break the order of the names.
    constexpr CTime year0 = -62167132800, year9999 = 253402214400;
    const double milliseconds = static_cast<double>(std::clamp(time, year0, year9999)) * 1000.0;
    std::wstring text = L"_" + CExTime::TimeToString(milliseconds, 1, 0, 1);  // _YYYY-MM-DD hh:mm:ss
    text[11] = L'-';
    text.erase(14, 1);
    return text.substr(0, kTimePartSize);
}

FileHistory::Names FileHistory::FindFiles(const std::vector<FolderEntry>& history, std::wstring_view title,
                                          std::wstring_view extension) {
    Names names;
    for (const FolderEntry& entry : history) {
        if (entry.isFolder || entry.isLink || entry.name.size() != title.size() + kTimePartSize + extension.size() ||
            !EndsWithNoCase(entry.name, extension) ||
            !EqualNoCase(std::wstring_view(entry.name).substr(0, title.size()), title)) {
            continue;
        }
        names.push_back(entry.name.substr(0, title.size() + kTimePartSize));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::wstring FileHistory::CopyPath(const std::wstring& name, const std::wstring& extension) const {
    return historyFolder + name + extension;
}

void FileHistory::BackupFile(const DataFile& file, Names& copies, std::vector<FolderEntry>& history, CTime now,
                             const std::atomic<bool>& stop) {
    FileStatus source, last;
    if (!StatusOf(file.path, source) || source.modified > now) return;
    CTime time = source.modified;
    if (!copies.empty()) {
        if (!StatusOf(CopyPath(copies.back(), file.extension), last)) return;
        if (last.modified == source.modified && last.size == source.size) return;
        // An older file was put back: it must still sort last, also behind one that was put back before.
        const bool sortsBefore = file.title + GetTimePart(source.modified) < copies.back();
        if (source.modified < last.modified || sortsBefore) time = now;
    }
    const std::wstring name = file.title + GetTimePart(time), target = CopyPath(name, file.extension);
    static_cast<void>(Files().MakeFolder(historyFolder));
    // Through a link the copy would replace whatever it leads to.
    const bool isLink = std::any_of(history.begin(), history.end(), [&](const FolderEntry& entry) {
        return entry.isLink && EqualNoCase(entry.name, name + file.extension);
    });
    if (!isLink && CopyWholeFile(file.path, target, &stop) == FsResult::Ok) {
        reports.Report(kLevelInformation, kCreated, target);
        if (copies.empty() || copies.back() != name) copies.push_back(name);
        history.push_back({name + file.extension, false});
    } else if (!stop) {
        reports.Report(kLevelFailure, kNotCreated, file.path);
    }
}

void FileHistory::PurgeOld(const DataFile& file, const Names& copies, CTime now) {
    const std::wstring key = file.title + GetTimePart(now - maxDays * kSecondsPerDay);
    // What was valid at the age limit is kept, so that every moment within the limit can be looked up.
    const auto kept = LastBefore(copies, [&](const std::wstring& name) { return name > key; });
    for (auto name = copies.begin(); name != kept; ++name) {
        const std::wstring path = CopyPath(*name, file.extension);
        const bool deleted = Files().Remove(path) == FsResult::Ok;
        reports.Report(deleted ? kLevelInformation : kLevelFailure, deleted ? kDeleted : kNotDeleted, path);
    }
}

bool FileHistory::GetFullPath(unsigned typeId, std::wstring& path, CTime time) const {
    const auto type = fileTypes.find(typeId);
    if (type == fileTypes.end()) return false;
    const Names copies = FindFiles(ListFolder(historyFolder), path, type->second);
    const std::wstring key = path + GetTimePart(time);
    const auto found = LastBefore(copies, [&](const std::wstring& name) { return name >= key; });
    if (found == copies.end()) return false;
    path = CopyPath(*found, type->second);
    return true;
}

// ---- setup form

std::vector<unsigned> ListHistoryTypes(const DataSearch& search) {
    std::vector<unsigned> ids;
    int count = 0;
    search.GetFileIDs(kLocationCount, ids, count, 0);
    std::erase_if(ids, [&](unsigned id) {
        int location = kLocationLogData;
        return id == kFileTypeVesselConfig || !search.GetFileLocation(id, location) || location == kLocationLogData;
    });
    return ids;
}

FileHistorySetup LoadFileHistorySetup(const FileObject& project) {
    FileHistorySetup setup;
    project.GetItem(FILE_HISTORY_SECTION, FILE_HISTORY_ENABLED, setup.enabled);
    project.GetItem(FILE_HISTORY_SECTION, MAX_DAYS, setup.maxDays);
    for (unsigned id = 0; id < kFileTypeCount; ++id) {
        bool on = false;
        if (project.GetItem(FILE_HISTORY_SECTION, fileTypeKeys[id], on) && on) setup.types.push_back(id);
    }
    return setup;
}

bool StoreFileHistorySetup(FileObject& project, const FileHistorySetup& setup) {
    project.DeleteSection(FILE_HISTORY_SECTION);
    bool stored = project.SetItem(FILE_HISTORY_SECTION, FILE_HISTORY_ENABLED, setup.enabled, true) &&
                  project.SetItem(FILE_HISTORY_SECTION, MAX_DAYS, setup.maxDays, true);
    for (const unsigned id : setup.types) {
        if (id < kFileTypeCount) stored = project.SetItem(FILE_HISTORY_SECTION, fileTypeKeys[id], 1, true) && stored;
    }
    return stored;
}

}  // namespace orv
