#include "project/ProjectModel.h"

#include <algorithm>

#include "core/DataSearch.h"
#include "core/SectionNumber.h"
#include "platform/text/PathText.h"
#include "project/FileDependencies.h"

namespace orv {

namespace {

constexpr std::wstring_view kModelName = L"#PMF@";                // in every project
constexpr std::wstring_view kColorTableName = L"ColorTableName";  // section and key
constexpr std::wstring_view kFile = L"File";                      // stem of the keys

}  // namespace

ProjectModel& ProjectModel::Instance() {
    static ProjectModel instance;
    return instance;
}

// ---- file

bool ProjectModel::OpenFile(const std::wstring& from, const std::wstring& to) {
    open = false;
    if (!file.FileOpen(from, kOpenRead) && !file.FileOpen(to, kOpenCreateWrite)) return false;
    path = to;  // not before: what isn't open must not be where the next save goes
    return true;
}

// Read as it was at the moment that is looked at, but never saved into an old copy.
bool ProjectModel::OpenCurrent() {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring from(kModelName), to(kModelName);
    return search.GetFullPath(kFileTypeProjectFile, from) && search.GetFullPathForWriting(kFileTypeProjectFile, to) &&
           OpenFile(from, to);
}

bool ProjectModel::Open() {
    return OpenCurrent() && FileOpen(file);
}

bool ProjectModel::Open(const std::wstring& project) {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, extension;
    if (!search.GetFileExtension(kFileTypeProjectFile, extension)) return false;
    if (!IsAbsolutePath(project) && !search.GetDataPathInfo(kLocationProjects, folder)) return false;
    const std::wstring name = WithSeparator(folder + ToNativePath(project)) + std::wstring(kModelName) + extension;
    return OpenFile(name, name) && FileOpen(file);
}

bool ProjectModel::FileOpen(const FileObject& from) {
    open = modified = false;
    colorTableName = L"default";
    if (from.HasKey(kColorTableName, kColorTableName)) from.GetItem(kColorTableName, kColorTableName, colorTableName);
    for (std::size_t type = 0; type < checkedFiles.size(); ++type) {
        if (!from.HasSection(fileTypeKeys[type])) continue;
        FileNames names;
        FobjSection cursor;
        std::wstring key, name;
        // The numbers of the keys are only for telling them apart.
        for (bool more = from.GetFirstMapEntry(cursor, fileTypeKeys[type], key, name); more;
             more = from.GetNextMapEntry(cursor, key, name)) {
            names.push_back(name);
        }
        std::sort(names.begin(), names.end());
        checkedFiles[type] = std::move(names);
    }
    open = true;
    return true;
}

bool ProjectModel::Save() {
    if (!modified) return true;
    modified = false;  // one try a change: on a full disk, hosts that save when a view closes would never get out
    return (open || OpenCurrent()) && FileSave(file) && file.FileSave(path, kSave);
}

bool ProjectModel::FileSave(FileObject& to) const {
    to.MakeEmpty();
    to.SetItem(kColorTableName, kColorTableName, colorTableName, true);
    for (std::size_t type = 0; type < checkedFiles.size(); ++type) {
        unsigned number = 0;
        for (const std::wstring& name : checkedFiles[type]) {
            to.SetItem(fileTypeKeys[type], NumberedName(kFile, number++), name, true);
        }
    }
    return true;
}

// ---- lists

bool ProjectModel::SetCheckedFiles(unsigned type, const FileNames& names) {
    if (type >= checkedFiles.size()) return false;
    checkedFiles[type] = names;
    modified = true;
    return true;
}

bool ProjectModel::GetCheckedFiles(unsigned type, FileNames& names) const {
    names.clear();
    if (type >= checkedFiles.size()) return false;
    names = checkedFiles[type];
    return true;
}

bool ProjectModel::SetCheckedFile(unsigned type, const std::wstring& name) {
    if (type >= checkedFiles.size() || IsChecked(type, name)) return false;
    checkedFiles[type].push_back(name);
    modified = true;
    return true;
}

bool ProjectModel::RemoveCheckedFile(unsigned type, const std::wstring& name) {
    if (!IsChecked(type, name)) return false;
    FileNames& names = checkedFiles[type];
    names.erase(std::find(names.begin(), names.end(), name));
    modified = true;
    return true;
}

bool ProjectModel::IsChecked(unsigned type, const std::wstring& name) const {
    if (type >= checkedFiles.size()) return false;
    const FileNames& names = checkedFiles[type];
    return std::find(names.begin(), names.end(), name) != names.end();
}

int ProjectModel::GetSize(unsigned type) const {
    return type < checkedFiles.size() ? static_cast<int>(checkedFiles[type].size()) : 0;
}

void ProjectModel::SetColorTableName(const std::wstring& name) {
    if (name == colorTableName) return;
    colorTableName = name;
    modified = true;
}

void ProjectModel::GetDependencies(const std::wstring& path, FileDependencies& dependencies) {
    FileObject file;
    ProjectModel model;
    if (!file.FileOpen(path, kOpenRead) || !model.FileOpen(file)) return;
    for (unsigned type = 0; type < model.checkedFiles.size(); ++type) {
        for (const std::wstring& name : model.checkedFiles[type]) dependencies.Add(type, name);
    }
}

}  // namespace orv
