#include <algorithm>
#include <array>
#include <utility>

#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/service/Translator.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
// Upward: the folders of logs and of their backup are the project's; files of a past moment are the history's.
#include "housekeeping/FileHistory.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

/// Where the folder of a location comes from.
enum class Source {
    AppFolder,       ///< of the system, as it stands
    SystemFolder,    ///< of the settings, as it stands
    ProgramFolder,   ///< of the running program, as it stands
    Setting,         ///< ORV.ini under the row's key
    Projects,        ///< all projects: what the host gave, else as Setting
    Common,          ///< common project files
    LogData,         ///< the project's
    BackupLogData,   ///< the project's
    UnderGeneral,    ///< a folder named by its key below location 1
    UnderCommon,     ///< below location 8
    UnderApp,        ///< below location 0
    UnderResources,  ///< below location 22
};

/// What a relative value is completed with. Without a base it comes to nothing.
enum class Base { None, App, Projects, Project };

struct LocationRule {
    Source source;
    Base base = Base::None;
    const wchar_t* absent = nullptr;  ///< value when the setting is missing; none makes that a failure
};

constexpr std::array<LocationRule, kLocationCount> kLocations = {{
    /*  0 */ {Source::AppFolder},
    /*  1 */ {Source::Setting, Base::App},
    /*  2 */ {Source::Setting, Base::Projects},
    /*  3 */ {Source::LogData, Base::Project},
    /*  4 */ {Source::Projects},
    /*  5 */ {Source::Setting},
    /*  6 */ {Source::Setting, Base::Project},
    /*  7 */ {Source::Setting, Base::App},
    /*  8 */ {Source::Common},
    /*  9 */ {Source::UnderGeneral},
    /* 10 */ {Source::SystemFolder},
    /* 11 */ {Source::UnderGeneral},
    /* 12 */ {Source::Setting, Base::Project, L"Reports"},
    /* 13 */ {Source::BackupLogData},
    /* 14 */ {Source::Setting, Base::Project, L"Multimedia"},
    /* 15 */ {Source::UnderGeneral},
    /* 16 */ {Source::UnderGeneral},
    /* 17 */ {Source::Setting, Base::Project, L"SonarTargets"},
    /* 18 */ {Source::UnderApp},
    /* 19 */ {Source::UnderApp},
    /* 20 */ {Source::Setting, Base::Project, L"Camera Images"},
    /* 21 */ {Source::UnderGeneral},
    /* 22 */ {Source::UnderApp},
    /* 23 */ {Source::Setting, Base::Project, L""},
    /* 24 */ {Source::Setting, Base::App},
    /* 25 */ {Source::UnderCommon},
    /* 26 */ {Source::Setting},
    /* 27 */ {Source::UnderGeneral},
    /* 28 */ {Source::UnderGeneral},
    /* 29 */ {Source::ProgramFolder},
    /* 30 */ {Source::UnderResources},
    /* 31 */ {Source::UnderGeneral, Base::App},
    /* 32 */ {Source::UnderApp},
    /* 33 */ {Source::Setting},
    /* 34 */ {Source::UnderCommon},
}};

std::wstring KeyFolder(int location) {
    return std::wstring(pathKeys[static_cast<std::size_t>(location)]) + kPathSeparator;
}

/// A folder and what is below it; the separator between and behind is added where it is missing. Of nothing at all it
/// is the separator alone.
std::wstring Below(const std::wstring& base, const std::wstring& value) {
    std::wstring path = base + value;
    if (!EndsInSeparator(path)) path += kPathSeparator;
    return path;
}

}  // namespace

bool DataSearch::Setting(int location, std::wstring& out) const {
    return orvIni.GetItem(DATA_PATH_SECTION, pathKeys[static_cast<std::size_t>(location)], out);
}

bool DataSearch::CommonFilesPath(std::wstring& out) const {
    out = commonPath;
    if (!out.empty()) return true;
    bool standard = true;
    orvIni.GetUseDefaultCommonPath(standard);
    if (!standard) return Setting(kLocationCommon, out);
    if (!Setting(kLocationProjects, out)) return false;
    out = WithSeparator(out) + std::wstring(PROJECTS_COMMON_FILES);
    return true;
}

/// The value of a location before it is completed: false if there is none.
bool DataSearch::PathValue(int location, std::wstring& out) const {
    const LocationRule& rule = kLocations[static_cast<std::size_t>(location)];
    switch (rule.source) {
        case Source::AppFolder:
            out = appPath;
            return true;
        case Source::SystemFolder:
            out = systemFolder;
            return true;
        case Source::ProgramFolder:
            out = exePath;
            return true;
        case Source::Setting:
            if (Setting(location, out)) return true;
            if (rule.absent) out = rule.absent;
            return rule.absent != nullptr;
        case Source::Projects:
            out = projectRootPath;
            return !out.empty() || Setting(location, out);
        case Source::Common:
            return CommonFilesPath(out);
        case Source::LogData:
            return projectDefinition->GetLogDataPath(out);
        case Source::BackupLogData:
            return projectDefinition->GetLogDataBackupPath(out);
        case Source::UnderGeneral:
            if (!GetDataPathInfo(kLocationGeneral, out)) return false;
            out += KeyFolder(location);
            return true;
        case Source::UnderCommon:
            if (!GetDataPathInfo(kLocationCommon, out)) return false;
            out += KeyFolder(location);  // below no folder at all it is relative, and so comes to nothing
            return true;
        case Source::UnderApp:
            out = appPath + KeyFolder(location);
            return true;
        case Source::UnderResources:
            out = appPath + KeyFolder(kLocationResources) + KeyFolder(location);
            return true;
    }
    return false;
}

bool DataSearch::CompletePath(int location, const std::wstring& value, std::wstring& out) const {
    std::wstring base;
    switch (kLocations[static_cast<std::size_t>(location)].base) {
        case Base::None:
            return true;
        case Base::App:
            out = Below(appPath, value);
            return true;
        case Base::Projects:
            if (!GetDataPathInfo(kLocationProjects, base)) return false;
            out = Below(base, value);
            return true;
        case Base::Project:
            if (!GetDataPathInfo(kLocationProject, base)) return false;
            // Without any project the sonar targets lie with the system's own files, not in the root folder.
            if (location == kLocationSonarTargets && base.size() == 1 && IsPathSeparator(base[0])) {
                out = systemFolder;
            } else {
                out = value.empty() ? base : Below(base, value);
            }
            return true;
    }
    return false;
}

bool DataSearch::GetDataPathInfo(int location, std::wstring& out) const {
    SetErrorStatus(kSearchOk);
    if (location < 0 || location >= kLocationCount) return Fail(kSearchLocationOutOfRange);
    out.clear();
    std::wstring value;
    if (!PathValue(location, value)) return false;
    const Source source = kLocations[static_cast<std::size_t>(location)].source;
    if (source == Source::AppFolder || source == Source::SystemFolder || source == Source::ProgramFolder) {
        out = value;
        return true;
    }
    const bool absolute = IsAbsolutePath(value);
    value = ToNativePath(value);
    if (!absolute) return CompletePath(location, value, out);
    out = WithSeparator(value);
    return true;
}

namespace {

/// Whether a name given for a file is a full path already. Two characters never are: they are short names.
bool IsFullPath(std::wstring_view name) {
    const bool share = name.size() > 2 && name[0] == L'\\' && name[1] == L'\\';
    const bool drive = name.size() > 3 && name[1] == L':' && IsPathSeparator(name[2]);
    const bool rooted = name.size() > 2 && name[0] == L'/';
    return share || drive || rooted;
}

std::wstring WithDot(const CFileType& type) {
    return L"." + type.GetExtension();
}

bool IsWantedFilter(const CFileType& type, int exportFilter) {
    return exportFilter < 1 || exportFilter > 6 || type.GetExpFilter() == exportFilter;
}

bool Holds(std::wstring_view text, std::wstring_view part) {
    return text.find(part) != text.npos;
}

bool MatchesFilter(const std::wstring& name, const COrvString& filter) {
    for (int word = 0; word < filter.Size(); ++word) {
        if (Holds(name, L"[" + filter[word] + L"]")) return true;
    }
    return false;
}

/// A file's subtype stands between brackets in its name; a text without them is the subtype itself.
std::wstring SubTypeOf(const std::wstring& name) {
    const std::size_t open = name.find(L'[');
    const std::size_t close = open == name.npos ? open : name.find(L']', open);
    return close == name.npos ? name : name.substr(open + 1, close - open - 1);
}

template <class Visit>
void ForEachSupportedType(Visit visit) {
    const CFileTypeList& list = GetFileTypeList();
    CFileTypeList::Iterator iterator;
    std::wstring key;
    CFileType* type = nullptr;
    for (bool more = list.GetFirst(iterator, key, type); more; more = list.GetNext(iterator, key, type)) {
        if (type->IsSupported()) visit(*type);
    }
}

}  // namespace

bool DataSearch::GetFullPath(unsigned id, std::wstring& name) const {
    std::wstring asked = name;
    if (!GetFullPathForWriting(id, name)) return false;
    if (fileHistoryTime == 0 || !fileHistory->IsEnabled() || IsFullPath(asked)) return true;
    if (asked.empty() && !GetDefaultFileName(id, asked)) return true;
    if (fileHistory->GetFullPath(id, asked, fileHistoryTime)) name = asked;
    return true;
}

bool DataSearch::GetFullPathForWriting(unsigned id, std::wstring& name) const {
    if (!Ready()) return false;
    std::wstring extension, folder, defaultName;
    if (!GetFileInfo(id, extension, folder, defaultName)) return false;
    if (IsFullPath(name)) return true;
    name = folder + ToNativePath(name.empty() ? defaultName : name) + extension;
    return true;
}

bool DataSearch::GetFullBackupLogPath(unsigned id, std::wstring& name) const {
    if (!Ready()) return false;
    bool use = false;
    if (!projectDefinition->GetUseLogDataBackup(use) || !use) return false;
    std::wstring extension, folder, defaultName;
    if (!GetFileExtension(id, extension) || !GetDefaultFileName(id, defaultName) ||
        !GetDataPathInfo(kLocationBackupLogData, folder)) {
        return false;
    }
    name = folder + ToNativePath(name.empty() ? defaultName : name) + extension;
    return true;
}

bool DataSearch::GetFilePath(const CFileType* type, std::wstring& out) const {
    return type ? GetDataPathInfo(type->GetLocation(), out) : Fail(kSearchUnknownFileType);
}

bool DataSearch::GetFilePath(unsigned id, std::wstring& out) const {
    return GetFilePath(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileLocation(unsigned id, int& out) const {
    SetErrorStatus(kSearchOk);
    const CFileType* type = GetFileTypeList().GetFileTypeID(id);
    if (!type) return Fail(kSearchUnknownFileType);
    out = type->GetLocation();
    return true;
}

bool DataSearch::GetFileExtension(const CFileType* type, std::wstring& out) const {
    SetErrorStatus(kSearchOk);
    if (!type) return Fail(kSearchUnknownFileType);
    out = WithDot(*type);
    return true;
}

bool DataSearch::GetFileExtension(unsigned id, std::wstring& out) const {
    return GetFileExtension(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileInfo(const CFileType* type, std::wstring& extension, std::wstring& path,
                             std::wstring& name) const {
    return GetFileExtension(type, extension) && GetFilePath(type, path) && GetDefaultFileName(type, name);
}

bool DataSearch::GetFileInfo(unsigned id, std::wstring& extension, std::wstring& path, std::wstring& name) const {
    return GetFileInfo(GetFileTypeList().GetFileTypeID(id), extension, path, name);
}

bool DataSearch::GetDefaultFileName(const CFileType* type, std::wstring& out) const {
    SetErrorStatus(kSearchOk);
    out.clear();
    if (!type) return Fail(kSearchUnknownFileType);
    const std::wstring& name = type->GetDefaultName();
    if (name.empty()) return Fail(kSearchNoDescription);
    if (Holds(name, L"<default>")) {
        out = DEFAULT_NAME;
    } else if (Holds(name, L"<appname>")) {
        out = appName;
    } else if (Holds(name, L"<project>")) {
        std::wstring folder;
        if (GetDataPathInfo(kLocationProject, folder)) out = GetTitleFromPath(folder);
    } else if (!Holds(name, L"<date>")) {
        // Placeholders that belong to the caller, such as the vessel's name, go out as they stand.
        out = name;
    }
    return true;
}

bool DataSearch::GetDefaultFileName(unsigned id, std::wstring& out) const {
    return GetDefaultFileName(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileDescription(const CFileType* type, std::wstring& out) const {
    SetErrorStatus(kSearchOk);
    if (!type) return Fail(kSearchUnknownFileType);
    const std::wstring description = type->GetDescription();
    if (description.empty()) return Fail(kSearchNoDescription);
    out = description;
    return true;
}

bool DataSearch::GetFileDescription(unsigned id, std::wstring& out) const {
    return GetFileDescription(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileDescription(unsigned id, const std::wstring& subType, std::wstring& out) const {
    std::wstring attributes;
    if (!GetFileSubTypeAttribs(id, subType, attributes)) return false;
    if (!COrvString(attributes, L',', true).GetItem(1, out)) out = GetFileKeyForType(id);
    return true;
}

bool DataSearch::GetFileDesc(int location, std::vector<std::wstring>& out, bool onlyCreatable) const {
    SetErrorStatus(kSearchOk);
    out.clear();
    ForEachSupportedType([&](const CFileType& type) {
        if (type.GetLocation() == location && (type.CanCreate() || !onlyCreatable)) {
            out.push_back(type.GetDescription());
        }
    });
    std::sort(out.begin(), out.end());
    return true;
}

bool DataSearch::GetFileNames(unsigned id, std::vector<std::wstring>& out) const {
    out.clear();
    std::wstring folder;
    return GetFilePath(id, folder) && GetFileNames(id, out, folder);
}

bool DataSearch::GetFileNames(unsigned id, std::vector<std::wstring>& out, const std::wstring& folder) const {
    out.clear();
    std::wstring extension;
    if (!GetFileExtension(id, extension)) return false;
    for (const FolderEntry& entry : FindFiles(WithSeparator(ToNativePath(folder)), L"*" + extension)) {
        if (!entry.isFolder) out.push_back(entry.name.substr(0, entry.name.size() - extension.size()));
    }
    std::sort(out.begin(), out.end());
    return true;
}

bool DataSearch::GetFileNames(unsigned id, const COrvString& filter, std::vector<std::wstring>& out) const {
    if (!GetFileNames(id, out)) return false;
    std::erase_if(out, [&](const std::wstring& name) { return !MatchesFilter(name, filter); });
    return true;
}

bool DataSearch::GetFileNames(unsigned id, GetStringFunctionObject& visit, bool fullPath) const {
    std::vector<std::wstring> names;
    return GetFileNames(id, names) && VisitFiles(id, names, visit, fullPath);
}

bool DataSearch::GetFileNames(unsigned id, const COrvString& filter, GetStringFunctionObject& visit,
                              bool fullPath) const {
    std::vector<std::wstring> names;
    return GetFileNames(id, filter, names) && VisitFiles(id, names, visit, fullPath);
}

bool DataSearch::VisitFiles(unsigned id, const std::vector<std::wstring>& names, GetStringFunctionObject& visit,
                            bool fullPath) const {
    std::wstring folder, extension;
    if (fullPath && (!GetFilePath(id, folder) || !GetFileExtension(id, extension))) return false;
    return std::all_of(names.begin(), names.end(),
                       [&](const std::wstring& name) { return visit(folder + name + extension); });
}

bool DataSearch::DoesFileExist(unsigned id, const std::wstring& name) const {
    std::wstring folder, extension;
    return GetFilePath(id, folder) && GetFileExtension(id, extension) &&
           FileExists(WithSeparator(folder) + ToNativePath(name) + extension);
}

bool DataSearch::GetTypeForExtension(const std::wstring& extension, unsigned& out) const {
    SetErrorStatus(kSearchOk);
    for (unsigned id = 0; id < kFileTypeCount; ++id) {
        const CFileType* type = GetFileTypeList().GetFileTypeID(id);
        if (!type || !EqualNoCase(WithDot(*type), extension)) continue;
        out = id;
        return true;
    }
    return false;
}

bool DataSearch::SubFolders(int location, std::vector<std::wstring>& out) const {
    out.clear();
    std::wstring folder;
    if (!GetDataPathInfo(location, folder)) return false;
    for (FolderEntry& entry : FindFiles(folder, L"*")) {
        if (entry.isFolder) out.push_back(std::move(entry.name));
    }
    return true;
}

bool DataSearch::GetProjects(std::vector<std::wstring>& out) const {
    return SubFolders(kLocationProjects, out);
}

bool DataSearch::GetLogDataPaths(std::vector<std::wstring>& out) const {
    if (!SubFolders(kLocationProject, out)) return false;
    std::erase_if(out, [](const std::wstring& name) { return EqualNoCase(name, pathKeys[kLocationReports]); });
    return true;
}

bool DataSearch::GetFileIDs(int location, std::vector<unsigned>& ids, int& count, int exportFilter) const {
    SetErrorStatus(kSearchOk);
    std::vector<std::pair<std::wstring, unsigned>> found;
    ForEachSupportedType([&](const CFileType& type) {
        if ((location >= kLocationCount || type.GetLocation() == location) && IsWantedFilter(type, exportFilter)) {
            found.emplace_back(type.GetDescription(), type.GetID());
        }
    });
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    ids.clear();
    for (const auto& [description, id] : found) ids.push_back(id);
    count = static_cast<int>(ids.size());
    return true;
}

bool DataSearch::GetSupportedFileIDs(std::vector<unsigned>& ids, int& count, int exportFilter) const {
    return GetFileIDs(kLocationCount, ids, count, exportFilter);
}

bool DataSearch::GetExtFileIDs(const std::wstring& extension, std::vector<unsigned>& ids, int& count,
                               int exportFilter) const {
    SetErrorStatus(kSearchOk);
    ids.clear();
    ForEachSupportedType([&](const CFileType& type) {
        if (type.GetExtension() == extension && IsWantedFilter(type, exportFilter)) ids.push_back(type.GetID());
    });
    count = static_cast<int>(ids.size());
    return true;
}

bool DataSearch::GetFileSubTypes(unsigned id, std::vector<std::wstring>& out) const {
    SetErrorStatus(kSearchOk);
    out.clear();
    if (id >= kFileTypeCount) return Fail(kSearchUnknownFileType);
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = fileTypesIni.GetFirstMapEntry(cursor, fileTypeKeys[id], key, value); more;
         more = fileTypesIni.GetNextMapEntry(cursor, key, value)) {
        out.push_back(key);
    }
    return true;
}

bool DataSearch::GetFileSubID(unsigned id, const std::wstring& name, int& out) const {
    SetErrorStatus(kSearchOk);
    if (id >= kFileTypeCount) return Fail(kSearchUnknownFileType);
    const std::wstring subType = SubTypeOf(name);
    const auto row = std::find(fileTypeSubKeys.begin(), fileTypeSubKeys.end(), subType);
    if (!fileTypesIni.HasKey(fileTypeKeys[id], subType) || row == fileTypeSubKeys.end()) return false;
    out = static_cast<int>(row - fileTypeSubKeys.begin());
    return true;
}

bool DataSearch::GetFileSubTypeAttribs(unsigned id, const std::wstring& name, std::wstring& out) const {
    SetErrorStatus(kSearchOk);
    if (id >= kFileTypeCount) return Fail(kSearchUnknownFileType);
    const std::wstring subType = SubTypeOf(name);
    if (!fileTypesIni.GetItem(fileTypeKeys[id], subType, out)) return false;
    const Translator& translator = Translator::Instance();
    const std::wstring translated = translator.IsActive() ? translator.GetFileTypesString(id, subType) : std::wstring();
    if (!translated.empty()) out = translated;
    return true;
}

std::vector<std::wstring> DataSearch::Split(const std::wstring& text, const std::vector<std::wstring>& separators,
                                            bool keepEmpty) {
    if (separators.empty()) return {text};
    std::vector<std::wstring> parts;
    std::size_t start = 0, at = 0;
    const auto cut = [&](std::size_t end) {
        if (keepEmpty || end > start) parts.push_back(text.substr(start, end - start));
    };
    while (at < text.size()) {
        const auto separator = std::find_if(separators.begin(), separators.end(), [&](const std::wstring& s) {
            return !s.empty() && text.compare(at, s.size(), s) == 0;
        });
        if (separator == separators.end()) {
            ++at;
            continue;
        }
        cut(at);
        at += separator->size();
        start = at;
    }
    cut(text.size());
    return parts;
}

}  // namespace orv
