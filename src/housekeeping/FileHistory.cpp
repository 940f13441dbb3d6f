#include "housekeeping/FileHistory.h"

#include <algorithm>
#include <set>

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

/// When a copy was valid from. Copies are told apart by it alone: a title keeps its copies when it is renamed to
/// another case, and those would sort in front of or behind all the others.
std::wstring_view TimePartOf(std::wstring_view name) {
    return name.substr(name.size() - kTimePartSize);
}

/// The last entry that isn't at or behind the first one for which `isLate` holds; the first entry if there is none
/// before that; the end of an empty list.
template <class IsLate>
auto LastBefore(const std::vector<std::wstring>& names, IsLate isLate) {
    auto name = std::find_if(names.begin(), names.end(), isLate);
    if (name != names.begin()) --name;
    return name;
}

bool StatusOf(const std::wstring& path, FileStatus& status) {
    return Files().Status(path, status) == FsResult::Ok && status.exists;
}

}  // namespace

/// Indexed by title, ignoring case, as a round over thousands of files asks for each.
class FileHistory::Folder {
public:
    Folder(const std::wstring& path, std::wstring_view extension) {
        std::vector<FolderEntry> entries;
        static_cast<void>(Files().List(path, entries));
        for (const FolderEntry& entry : entries) {
            const std::size_t size = entry.name.size();
            if (!EndsWithNoCase(entry.name, extension)) continue;
            if (entry.isLink) links.insert(ToLower(entry.name));
            const bool isCopy = !entry.isFolder && !entry.isLink && size >= kTimePartSize + extension.size();
            if (isCopy) {
                Add(entry.name.substr(0, size - extension.size()));
            } else {
                others.insert(ToLower(entry.name));
            }
        }
    }
    void Add(const std::wstring& name) {
        names[ToLower(std::wstring_view(name).substr(0, name.size() - kTimePartSize))].push_back(name);
    }
    Names Find(std::wstring_view title) const {
        const auto found = names.find(ToLower(title));
        Names copies = found != names.end() ? found->second : Names();
        std::sort(copies.begin(), copies.end(), [](const std::wstring& a, const std::wstring& b) {
            return std::pair(TimePartOf(a), std::wstring_view(a)) < std::pair(TimePartOf(b), std::wstring_view(b));
        });
        return copies;
    }
    bool HasLink(std::wstring_view nameWithExtension) const { return links.contains(ToLower(nameWithExtension)); }
    /// Anything of that name, in any case.
    bool Has(const std::wstring& name, const std::wstring& extension) const {
        const std::wstring lower = ToLower(name);
        const auto found = names.find(lower.substr(0, lower.size() - kTimePartSize));
        return others.contains(ToLower(name + extension)) ||
               (found != names.end() && std::any_of(found->second.begin(), found->second.end(),
                                                    [&](const std::wstring& n) { return ToLower(n) == lower; }));
    }
    /// A copy that is gone: where case tells two titles apart, the other one must not name it again.
    void Drop(const std::wstring& name) {
        std::erase(names[ToLower(std::wstring_view(name).substr(0, name.size() - kTimePartSize))], name);
    }
    const auto& All() const { return names; }
    bool isMade = false;  // the folder, or at least it was tried

private:
    std::map<std::wstring, Names> names;   // by title in lower case
    std::set<std::wstring> links, others;  // whole names in lower case; links are among the others
};

bool FileHistory::LoadSettings(DataSearch& search) {
    std::wstring folder;
    if (!search.GetDataPathInfo(kLocationFileHistory, folder)) return false;
    historyFolder = std::move(folder);
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

std::vector<FileHistory::DataFile> FileHistory::ListFiles(const TypeFolder& type) {
    std::vector<DataFile> files;
    for (const FolderEntry& entry : FindFiles(type.folder, L"*" + type.extension)) {
        if (entry.isFolder || entry.isLink) continue;
        // By the name on disk: where case tells two files apart, each must be itself.
        files.push_back({type.folder + entry.name, entry.name.substr(0, entry.name.size() - type.extension.size()),
                         type.extension});
    }
    return files;
}

void FileHistory::MakeBackup(const TypeFolders& types, CTime now, const std::atomic<bool>& stop) {
    for (const TypeFolder& type : types) {
        if (stop) return;
        Folder history(historyFolder, type.extension);
        bool copied = false;
        for (const DataFile& file : ListFiles(type)) {
            if (stop) break;
            Names copies = history.Find(file.title);
            copied = BackupFile(file, copies, history, now, stop) || copied;
            PurgeOld(file, copies, history, now);
        }
        // One flush for all: a copy that a power cut leaves empty before differs from its file, and is made again.
        if (copied) static_cast<void>(Files().SyncVolume(historyFolder));
    }
}

std::vector<HistoryStep> FileHistory::Plan(CTime now) const {
    std::vector<HistoryStep> steps;
    for (const TypeFolder& type : FindTypeFolders()) {
        Folder history(historyFolder, type.extension);
        for (const DataFile& file : ListFiles(type)) {
            Names copies = history.Find(file.title);
            if (const CopyWanted copy = WantsCopy(file, copies, now); !copy.name.empty()) {
                steps.push_back({copy.reason, file.path, CopyPath(copy.name, file.extension)});
                copies.push_back(copy.name);
                history.Add(copy.name);
            }
            for (const std::wstring& name : Outdated(copies, now)) {
                steps.push_back({HistoryStep::Reason::TooOld, CopyPath(name, file.extension), {}});
                history.Drop(name);
            }
        }
    }
    return steps;
}

std::vector<HistoryCopy> FileHistory::ListCopies(unsigned typeId, const std::wstring& title) const {
    std::vector<HistoryCopy> list;
    const auto type = fileTypes.find(typeId);
    if (type == fileTypes.end()) return list;
    const Folder history(historyFolder, type->second);
    for (const auto& [lower, names] : history.All()) {
        if (!title.empty() && lower != ToLower(title)) continue;
        for (const std::wstring& name : history.Find(lower)) {
            FileStatus status;
            const std::wstring path = CopyPath(name, type->second);
            if (!StatusOf(path, status)) continue;
            list.push_back({name.substr(0, name.size() - kTimePartSize), path, status.modified, status.size});
        }
    }
    return list;
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

std::wstring FileHistory::CopyPath(const std::wstring& name, const std::wstring& extension) const {
    return historyFolder + name + extension;
}

FileHistory::CopyWanted FileHistory::WantsCopy(const DataFile& file, const Names& copies, CTime now) const {
    FileStatus source, last;
    if (!StatusOf(file.path, source) || source.modified > now) return {};
    const std::wstring name = file.title + GetTimePart(source.modified);
    if (copies.empty()) return {name, HistoryStep::Reason::First};
    if (!StatusOf(CopyPath(copies.back(), file.extension), last)) return {};
    if (last.modified == source.modified && last.size == source.size) return {};
    // An older file was put back: it must still sort last, also behind one that was put back before.
    if (source.modified < last.modified || TimePartOf(name) < TimePartOf(copies.back())) {
        return {file.title + GetTimePart(now), HistoryStep::Reason::PutBack};
    }
    return {name, HistoryStep::Reason::Changed};
}

bool FileHistory::BackupFile(const DataFile& file, Names& copies, Folder& history, CTime now,
                             const std::atomic<bool>& stop) {
    const std::wstring name = WantsCopy(file, copies, now).name, target = CopyPath(name, file.extension);
    if (name.empty()) return false;
    if (!history.isMade) static_cast<void>(Files().MakeFolder(historyFolder));
    history.isMade = true;
    // Through a link the copy would replace whatever it leads to.
    FsResult result = FsResult::Denied;
    if (!history.HasLink(name + file.extension)) {
        result = history.Has(name, file.extension) ? CopyWholeFile(file.path, target, &stop)
                                                   : CopyToNewName(file.path, target, &stop);
    }
    if (result == FsResult::Ok) {
        reports.Report(kLevelInformation, kCreated, target);
        if (copies.empty() || copies.back() != name) {
            copies.push_back(name);
            history.Add(name);
        }
    } else if (!stop) {
        reports.Report(kLevelFailure, kNotCreated, file.path);
    }
    return result == FsResult::Ok;
}

/// Copies that go, oldest first. What was valid at the age limit is kept, so that every moment within the limit can be
/// looked up.
FileHistory::Names FileHistory::Outdated(const Names& copies, CTime now) const {
    const std::wstring key = GetTimePart(now - maxDays * kSecondsPerDay);
    return {copies.begin(), LastBefore(copies, [&](const std::wstring& name) { return TimePartOf(name) > key; })};
}

void FileHistory::PurgeOld(const DataFile& file, const Names& copies, Folder& history, CTime now) {
    for (const std::wstring& name : Outdated(copies, now)) {
        const std::wstring path = CopyPath(name, file.extension);
        const bool deleted = Files().Remove(path) == FsResult::Ok;
        if (deleted) history.Drop(name);
        reports.Report(deleted ? kLevelInformation : kLevelFailure, deleted ? kDeleted : kNotDeleted, path);
    }
}

bool FileHistory::GetFullPath(unsigned typeId, std::wstring& path, CTime time) const {
    const auto type = fileTypes.find(typeId);
    if (type == fileTypes.end()) return false;
    const Names copies = Folder(historyFolder, type->second).Find(path);
    const std::wstring key = GetTimePart(time);
    const auto found = LastBefore(copies, [&](const std::wstring& name) { return TimePartOf(name) >= key; });
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
