#pragma once

#include <atomic>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "housekeeping/TypeFolder.h"
#include "platform/os/Clock.h"
#include "platform/os/FileSystem.h"

namespace orv {

class FileObject;

/// What a round of the file history does to one file, and why.
struct HistoryStep {
    enum class Reason {
        First,    ///< copied: there is no copy yet
        Changed,  ///< copied: time or size differ from the newest copy
        PutBack,  ///< copied: an older file was put back
        TooOld,   ///< a copy is deleted
    };
    Reason reason = Reason::First;
    std::wstring path;    ///< of the file, or of the copy that goes
    std::wstring target;  ///< of the new copy
};
/// One dated copy.
struct HistoryCopy {
    std::wstring title, path;
    CTime modified = 0;  ///< of the file that was copied
    std::uint64_t size = 0;
};

/// Dated copies of configuration and project files: copies what has changed, removes what is too old, and finds the
/// copy that was valid at a moment. A copy is called title + "_YYYY-MM-DD-hhmm" + extension, local time. Links are
/// neither copied nor taken for copies.
///
/// `LoadSettings` and the queries: main thread, while no round is made. A round: any thread.
class ORV_EXPORT FileHistory {
public:
    FileHistory() = default;
    virtual ~FileHistory() = default;
    FileHistory(const FileHistory&) = delete;
    FileHistory& operator=(const FileHistory&) = delete;

    void SetMessageLog(BaseORVMessage* messageLog) { reports.Set(messageLog); }
    /// From the current project. False, and all stays as it was, if the history folder is unknown.
    bool LoadSettings(DataSearch& search);
    bool IsEnabled() const { return enabled; }
    /// One round over all types under history; `stop` ends it after the file under way. Main thread.
    void MakeBackup(CTime now, const std::atomic<bool>& stop);
    /// What a round at `now` would do. It does nothing.
    std::vector<HistoryStep> Plan(CTime now) const;
    /// All copies of a type by title, oldest first; those of one title if it isn't empty. Also of files that are gone.
    std::vector<HistoryCopy> ListCopies(unsigned typeId, const std::wstring& title) const;
    const std::map<unsigned, std::wstring>& Types() const { return fileTypes; }  ///< under history: extension by id
    /// `path`: a title, and on success the full path of its newest copy before the minute of `time`, or of the oldest.
    bool GetFullPath(unsigned typeId, std::wstring& path, CTime time) const;

protected:
    using TypeFolders = std::vector<TypeFolder>;
    TypeFolders FindTypeFolders() const;  ///< of the types under history; main thread
    void MakeBackup(const TypeFolders& types, CTime now, const std::atomic<bool>& stop);

private:
    using Names = std::vector<std::wstring>;  ///< copies of one title, without extension, oldest first
    class Folder;                             // what the history folder holds of one type
    struct DataFile {
        std::wstring path, title, extension;
    };
    struct CopyWanted {
        std::wstring name;  ///< empty: none
        HistoryStep::Reason reason = HistoryStep::Reason::First;
    };
    static std::wstring GetTimePart(CTime time);
    static std::vector<DataFile> ListFiles(const TypeFolder& type);
    std::wstring CopyPath(const std::wstring& name, const std::wstring& extension) const;
    CopyWanted WantsCopy(const DataFile& file, const Names& copies, CTime now) const;
    Names Outdated(const Names& copies, CTime now) const;
    /// True if it made a copy.
    bool BackupFile(const DataFile& file, Names& copies, Folder& history, CTime now, const std::atomic<bool>& stop);
    void PurgeOld(const DataFile& file, const Names& copies, Folder& history, CTime now);

    ReportTarget reports;
    std::wstring historyFolder;  ///< ends in a separator
    bool enabled = false;
    int maxDays = 30;
    std::map<unsigned, std::wstring> fileTypes;  ///< extension, with its dot, by type id
};

/// What the form of a project's file history shows and stores.
struct FileHistorySetup {
    bool enabled = false;
    int maxDays = 30;
    std::vector<unsigned> types;
};
/// Types that may be put under history: all supported ones but vessels and logged data, by description.
ORV_EXPORT std::vector<unsigned> ListHistoryTypes(const DataSearch& search);
ORV_EXPORT FileHistorySetup LoadFileHistorySetup(const FileObject& project);
ORV_EXPORT bool StoreFileHistorySetup(FileObject& project, const FileHistorySetup& setup);  ///< the caller saves

}  // namespace orv
