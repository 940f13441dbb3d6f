#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// What a file operation can come to. `Ok` is 0, so that `if (result != FsResult::Ok)` reads as it should.
enum class FsResult {
    Ok = 0,
    NotFound,   ///< the file or its folder doesn't exist
    Exists,     ///< a target is there already, and may not be replaced
    ReadOnly,   ///< the file has the read-only attribute
    Denied,     ///< the system refuses access
    InUse,      ///< somebody holds the file open in a way that excludes this
    NoSpace,    ///< the disk is full
    TooLarge,   ///< the file is longer than the caller allows
    Cancelled,  ///< the caller's cancel flag was set
    Failed,     ///< anything else
};
/// A few words for a person, for instance "no such file or folder".
ORV_EXPORT std::wstring_view FsResultText(FsResult result);

/// Who else may have the file open at the same time. Advisory: honoured by all programs that use this library.
enum class Share {
    DenyNone,   ///< no lock
    DenyWrite,  ///< shared lock: others may read, none may hold it exclusively
    Exclusive,  ///< exclusive lock
};

struct OpenMode {
    bool read = true;
    bool write = false;
    bool create = false;    ///< make it if it is missing
    bool truncate = false;  ///< empty it once the lock is held
    Share share = Share::DenyWrite;
    bool createNew = false;  ///< make it; Exists if the name is taken, also by a link
    bool ownerOnly = false;  ///< what is made may be read and written by its owner alone
};

struct FileStatus {
    bool exists = false;
    bool isFolder = false;
    bool readOnly = false;      ///< no write bit for anyone; counts for root too
    std::uint64_t size = 0;     ///< bytes
    std::int64_t modified = 0;  ///< seconds since 1970 UTC
    std::int64_t modifiedNanoseconds = 0;
    std::int64_t created = 0;                 ///< seconds since 1970 UTC: the earlier of birth and modification
    std::uint64_t device = 0, inode = 0;      ///< together the identity of the file
    unsigned mode = 0, owner = 0, group = 0;  ///< as the system has them, for copies
};

struct FolderEntry {
    std::wstring name;
    bool isFolder = false;  ///< also a link to one
    bool isLink = false;
};

/// An open file. Closed by its destructor. One thread at a time.
class ORV_EXPORT File {
public:
    virtual ~File() = default;
    /// Reads up to `size` bytes; `got` is 0 at the end of the file.
    [[nodiscard]] virtual FsResult Read(void* data, std::size_t size, std::size_t& got) = 0;
    /// Writes all of it or fails.
    [[nodiscard]] virtual FsResult Write(const void* data, std::size_t size) = 0;
    [[nodiscard]] virtual FsResult Seek(std::uint64_t position) = 0;
    [[nodiscard]] virtual FsResult Length(std::uint64_t& length) = 0;
    [[nodiscard]] virtual FsResult Truncate(std::uint64_t length) = 0;
    [[nodiscard]] virtual FsResult Status(FileStatus& status) = 0;
    /// Takes over mode, owner and modification time, as a copy does; of the owner what the system allows.
    [[nodiscard]] virtual FsResult TakeStatus(const FileStatus& status) = 0;
    /// To the disk, not only to the system's buffers.
    [[nodiscard]] virtual FsResult Sync() = 0;
    /// Reports what a delayed write came to. The destructor closes too, silently.
    [[nodiscard]] virtual FsResult Close() = 0;
};

/// Everything the library does to files and folders, one call an operation. The real one is the default; tests put one
/// in that fails the n-th call. Names are tried as they stand, then component by component ignoring case (the first in
/// ordinal order); what is created takes an existing name that differs in case only. Any thread may call.
class ORV_EXPORT FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Opening for writing refuses a read-only file. A lock that somebody holds is waited for, 2 s at most, so that
    /// two programs that save and load at the same moment don't fail each other; then InUse.
    [[nodiscard]] virtual FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) = 0;
    /// `status.exists` is false and the result Ok if there is nothing. Follows links.
    [[nodiscard]] virtual FsResult Status(std::wstring_view path, FileStatus& status) = 0;
    /// Entries of a folder in ordinal order of their names, without "." and "..".
    [[nodiscard]] virtual FsResult List(std::wstring_view folder, std::vector<FolderEntry>& entries) = 0;
    /// One folder, no parents.
    [[nodiscard]] virtual FsResult MakeFolder(std::wstring_view path) = 0;
    /// Deletes a file. Refuses one that is read-only or that anybody, any program, has open: a log that is being
    /// written must not vanish.
    [[nodiscard]] virtual FsResult Remove(std::wstring_view path) = 0;
    [[nodiscard]] virtual FsResult RemoveFolder(std::wstring_view path) = 0;
    /// Never replaces: Exists if the target is there. Works across volumes.
    [[nodiscard]] virtual FsResult Rename(std::wstring_view from, std::wstring_view to) = 0;
    /// The same where the caller has listed the folder and knows that it holds no such name in any case: the folder
    /// isn't searched for one.
    [[nodiscard]] virtual FsResult RenameAsWritten(std::wstring_view from, std::wstring_view to) = 0;
    /// Puts `from` in the place of `to` in one step; both in one folder.
    [[nodiscard]] virtual FsResult Replace(std::wstring_view from, std::wstring_view to) = 0;
    /// Mode, owner and group of `from` onto `to`. Owner and group as far as the system lets us.
    [[nodiscard]] virtual FsResult CopyAttributes(std::wstring_view from, std::wstring_view to) = 0;
    /// Owner and group of `from` onto `to`, as far as the system lets us; the mode stays.
    [[nodiscard]] virtual FsResult CopyOwner(std::wstring_view from, std::wstring_view to) = 0;
    [[nodiscard]] virtual FsResult SetReadOnly(std::wstring_view path, bool readOnly) = 0;
    [[nodiscard]] virtual FsResult SetModified(std::wstring_view path, std::int64_t seconds,
                                               std::int64_t nanoseconds) = 0;
    /// Flushes the folder itself, so that a rename in it survives a power cut.
    [[nodiscard]] virtual FsResult SyncFolder(std::wstring_view folder) = 0;
    /// Flushes all that was written to the volume of the folder, by anybody: one wait for many files.
    [[nodiscard]] virtual FsResult SyncVolume(std::wstring_view folder) = 0;
    /// Bytes that a user may still write on the volume of `path`; none if it can't be told.
    virtual std::optional<std::uint64_t> FreeSpace(std::wstring_view path) = 0;
    /// The name as it is on disk, links followed; the native form of `path` itself if there is no such file.
    virtual std::wstring RealPath(std::wstring_view path) = 0;
};

/// The file system in force.
ORV_EXPORT FileSystem& Files();
/// The system's own, always there.
ORV_EXPORT FileSystem& RealFileSystem();
/// Puts another in force until `SetFileSystem(nullptr)`; not owned.
ORV_EXPORT void SetFileSystem(FileSystem* fileSystem);

/// Forwards to another file system, but its n-th call fails without effect. For tests of what a failure leaves behind.
class ORV_EXPORT FailingFileSystem : public FileSystem {
public:
    /// `failAt` counts from 1 over all calls that touch the disk, those of open files included; 0 never fails.
    /// `onFailure` runs instead of the call: a test ends the process in it; the default does nothing.
    explicit FailingFileSystem(int failAt, std::function<void()> onFailure = {}, FileSystem& base = RealFileSystem());
    ~FailingFileSystem() override;
    int Calls() const;
    bool HasFailed() const;

    FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) override;
    FsResult Status(std::wstring_view path, FileStatus& status) override;
    FsResult List(std::wstring_view folder, std::vector<FolderEntry>& entries) override;
    FsResult MakeFolder(std::wstring_view path) override;
    FsResult Remove(std::wstring_view path) override;
    FsResult RemoveFolder(std::wstring_view path) override;
    FsResult Rename(std::wstring_view from, std::wstring_view to) override;
    FsResult RenameAsWritten(std::wstring_view from, std::wstring_view to) override;
    FsResult Replace(std::wstring_view from, std::wstring_view to) override;
    FsResult CopyAttributes(std::wstring_view from, std::wstring_view to) override;
    FsResult CopyOwner(std::wstring_view from, std::wstring_view to) override;
    FsResult SetReadOnly(std::wstring_view path, bool readOnly) override;
    FsResult SetModified(std::wstring_view path, std::int64_t seconds, std::int64_t nanoseconds) override;
    FsResult SyncFolder(std::wstring_view folder) override;
    FsResult SyncVolume(std::wstring_view folder) override;
    std::optional<std::uint64_t> FreeSpace(std::wstring_view path) override;
    std::wstring RealPath(std::wstring_view path) override;

private:
    struct Counter;
    std::shared_ptr<Counter> counter;  // shared with the files it has opened
};

}  // namespace orv
