#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/ConfigKeys.h"
#include "core/FileObject.h"

namespace orv {

class FileDependencies;

/// Which files of each type the user has ticked for display, and the colour table they are shown with. Kept in one file
/// of a fixed name in the project folder (docs/formats/application-configuration.md). One in a process; main thread.
class ORV_EXPORT ProjectModel {
public:
    using FileNames = std::vector<std::wstring>;

    static ProjectModel& Instance();
    ProjectModel(const ProjectModel&) = delete;
    ProjectModel& operator=(const ProjectModel&) = delete;

    /// Of the current project; its file is made if it is missing.
    bool Open();
    /// Of another project, by its name or its folder. After a failure none is open, and the next save goes to the
    /// current project, as it does for one that was never opened.
    bool Open(const std::wstring& project);
    /// Takes the content over, each list sorted. A type that the file doesn't mention keeps the list it had.
    bool FileOpen(const FileObject& from);
    /// True, and nothing is written, unless something has been changed. Counts as unchanged after it, also when it
    /// fails: the caller who wants another try changes something.
    bool Save();
    /// Replaces all of the content but the lines outside every section. Always true; a name that no line can hold is
    /// left out.
    bool FileSave(FileObject& to) const;
    bool IsOpen() const { return open; }
    bool IsModified() const { return modified; }

    // Names are compared exactly. A type of 147 or above has no files and takes none.

    bool SetCheckedFiles(unsigned type, const FileNames& names);
    bool GetCheckedFiles(unsigned type, FileNames& names) const;   ///< clears `names` on failure
    bool SetCheckedFile(unsigned type, const std::wstring& name);  ///< false if it is checked already
    bool RemoveCheckedFile(unsigned type, const std::wstring& name);
    bool IsChecked(unsigned type, const std::wstring& name) const;
    int GetSize(unsigned type) const;

    const std::wstring& GetColorTableName() const { return colorTableName; }
    void SetColorTableName(const std::wstring& name);

    /// Adds all files that a model lists.
    static void GetDependencies(const std::wstring& path, FileDependencies& dependencies);

private:
    ProjectModel() = default;
    bool OpenFile(const std::wstring& from, const std::wstring& to);
    bool OpenCurrent();

    bool open = false, modified = false;
    std::wstring path;  // where it is saved
    FileObject file;
    std::wstring colorTableName = L"default";
    std::array<FileNames, fileTypeKeys.size()> checkedFiles;
};

}  // namespace orv
