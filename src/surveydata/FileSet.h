#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

class FileObject;

/// A named list of raw logs that belong together, such as the lines of a day. Handed out in order of log time, equal
/// times in the order they came. See docs/formats/file-set.md. A value; one thread at a time, as it asks the project.
class ORV_EXPORT FileSet {
public:
    FileSet() { Init(); }
    /// Takes the folder and the extension of logs from the current project again.
    void Init();
    void SetSorted() { sorted = true; }                                 ///< says so, without sorting
    const std::wstring& GetFilesetName() const { return filesetName; }  ///< the path that was opened

    int NumFiles() const { return static_cast<int>(entries.size()); }
    bool IsFileNamePresent(std::wstring_view path) const;  ///< compared exactly

    // In order of time.

    void GetFileNames(std::vector<std::wstring>& out);       ///< full paths
    void GetFileNamesShort(std::vector<std::wstring>& out);  ///< without folder and extension
    /// Paths whose log has exactly this run line.
    void GetFileNamesOfRunLine(std::wstring_view runline, std::vector<std::wstring>& out);
    const std::wstring& operator[](int index);  ///< an empty text out of range

    // In the present order, without sorting. Out of range they do nothing.

    void GetFileNameAt(int index, std::wstring& out) const;
    void SetFileNameAt(int index, const std::wstring& path);  ///< the time of the entry stays

    void AddFileName(const std::wstring& path);  ///< a name may be in it twice
    void AddFileNames(const std::vector<std::wstring>& paths);
    /// Of two equal neighbours the second stays. By value: `path` may be an element of the set itself.
    void DeleteFileName(std::wstring path);
    void DeleteFileNames(const std::vector<std::wstring>& paths);
    void DeleteAll();

    bool FileOpen(const std::wstring& path);
    bool FileOpen(const FileObject& file);
    bool FileSave(const std::wstring& path) const;
    bool FileSave(FileObject& file) const;  ///< an empty set writes nothing

    /// From a name as it stands in a file to a full path, and back.
    std::wstring MakeFullPath(const std::wstring& name) const;
    std::wstring StripPath(const std::wstring& path) const;

private:
    struct Entry {
        std::wstring path;
        std::int64_t logTime = 0;  ///< seconds since 1970 UTC; 0 if the log can't be read
    };
    bool Has(int index) const { return index >= 0 && index < NumFiles(); }
    void Append(std::wstring fullPath);
    void EnsureSorted();

    std::vector<Entry> entries;
    bool sorted = true;
    std::wstring folder, extension;  ///< the extension with its dot
    std::wstring filesetName;
};

}  // namespace orv
