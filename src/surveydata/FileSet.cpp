#include "surveydata/FileSet.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "core/FileObject.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "surveydata/LogFileName.h"

namespace orv {

namespace {

std::wstring FileKey(int number) {
    return L"File(" + IntText(number) + L")";
}

}  // namespace

void FileSet::Init() {
    const DataSearch& search = DataSearch::GetDataSearch();
    search.GetDataPathInfo(kLocationProject, folder);
    search.GetFileExtension(kFileTypeORV2000Raw, extension);
}

bool FileSet::IsFileNamePresent(std::wstring_view path) const {
    return std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.path == path; });
}

void FileSet::GetFileNames(std::vector<std::wstring>& out) {
    EnsureSorted();
    out.clear();
    for (const Entry& entry : entries) out.push_back(entry.path);
}

void FileSet::GetFileNamesShort(std::vector<std::wstring>& out) {
    EnsureSorted();
    out.clear();
    for (const Entry& entry : entries) {
        std::wstring name = GetNameFromPath(entry.path);
        if (name.size() == entry.path.size()) continue;
        name.resize(name.size() - std::min(name.size(), extension.size()));
        out.push_back(std::move(name));
    }
}

void FileSet::GetFileNamesOfRunLine(std::wstring_view runline, std::vector<std::wstring>& out) {
    EnsureSorted();
    out.clear();
    for (const Entry& entry : entries) {
        if (LogFileName(entry.path).RunlineName() == runline) out.push_back(entry.path);
    }
}

const std::wstring& FileSet::operator[](int index) {
    static const std::wstring none;
    EnsureSorted();
    return Has(index) ? entries[static_cast<std::size_t>(index)].path : none;
}

void FileSet::GetFileNameAt(int index, std::wstring& out) const {
    if (Has(index)) out = entries[static_cast<std::size_t>(index)].path;
}

void FileSet::SetFileNameAt(int index, const std::wstring& path) {
    if (Has(index)) entries[static_cast<std::size_t>(index)].path = path;
}

void FileSet::AddFileName(const std::wstring& path) {
    Append(MakeFullPath(StripPath(path)));
}

void FileSet::AddFileNames(const std::vector<std::wstring>& paths) {
    for (const std::wstring& path : paths) AddFileName(path);
}

void FileSet::DeleteFileName(std::wstring path) {  // NOLINT(performance-unnecessary-value-param)
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].path == path) entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void FileSet::DeleteFileNames(const std::vector<std::wstring>& paths) {
    for (const std::wstring& path : paths) DeleteFileName(path);
}

void FileSet::DeleteAll() {
    entries.clear();
    sorted = true;
}

bool FileSet::FileOpen(const std::wstring& path) {
    filesetName = path;
    FileObject file;
    return file.FileOpen(path, kOpenRead) && FileOpen(file);
}

bool FileSet::FileOpen(const FileObject& file) {
    entries.clear();
    std::wstring name;
    for (int number = 0; file.GetItem(FILES_SECTION, FileKey(number), name); ++number) Append(MakeFullPath(name));
    sorted = false;
    return true;
}

bool FileSet::FileSave(const std::wstring& path) const {
    FileObject file;
    return FileSave(file) && file.FileSave(path, kSave);
}

bool FileSet::FileSave(FileObject& file) const {
    for (int index = 0; index < NumFiles(); ++index) {
        const std::wstring name = StripPath(entries[static_cast<std::size_t>(index)].path);
        if (!file.SetItem(FILES_SECTION, FileKey(index), name, true)) return false;
    }
    return true;
}

std::wstring FileSet::MakeFullPath(const std::wstring& name) const {
    if (IsAbsolutePath(name)) return ToNativePath(name) + extension;
    if (std::find_if(name.begin() + !name.empty(), name.end(), IsPathSeparator) != name.end()) {
        return folder + ToNativePath(name) + extension;
    }
    std::wstring path = name;
    DataSearch::GetDataSearch().GetFullPath(kFileTypeORV2000Raw, path);
    return path;
}

std::wstring FileSet::StripPath(const std::wstring& path) const {
    std::wstring name = path;
    if (EqualNoCase(ToNativePath(path.substr(0, folder.size())), folder)) name.erase(0, folder.size());
    if (EndsWithNoCase(name, extension)) name.resize(name.size() - extension.size());
    return name;
}

void FileSet::Append(std::wstring fullPath) {
    const std::int64_t logTime = LogFileName(fullPath).LogTime();
    entries.push_back({std::move(fullPath), logTime});
    sorted = false;
}

void FileSet::EnsureSorted() {
    if (sorted) return;
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.logTime < b.logTime; });
    sorted = true;
}

}  // namespace orv
