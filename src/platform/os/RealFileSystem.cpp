#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "platform/os/FileSystem.h"
#include "platform/os/NameOnDisk.h"
#include "platform/os/PosixFile.h"
#include "platform/os/TemporaryFile.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

/// Two programs of the suite that meet at a file keep it for milliseconds; whoever waits longer waits for a person.
constexpr std::chrono::seconds kLockPatience{2};

constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

/// The attribute, not the right: root may write to such files, and still must not.
bool HasReadOnlyMode(const struct stat& status) {
    return (status.st_mode & kWriteBits) == 0;
}

bool IsReadOnlyFile(const std::string& name) {
    struct stat status;
    return stat(name.c_str(), &status) == 0 && HasReadOnlyMode(status);
}

FsResult ResultOf(int outcome) {
    return outcome == 0 ? FsResult::Ok : FromErrno(errno);
}

/// What the descriptor leads to must be of a kind that can be read and written, and writable if that is wanted.
FsResult CheckKind(int descriptor, bool write) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return FromErrno(errno);
    if (S_ISDIR(status.st_mode)) return FsResult::Denied;
    if (!S_ISREG(status.st_mode) && !S_ISCHR(status.st_mode)) return FsResult::Failed;
    return write && HasReadOnlyMode(status) ? FsResult::ReadOnly : FsResult::Ok;
}

/// Network file systems answer EAGAIN to a lease for reasons of their own.
bool TellsLeasesTruly(int descriptor) {
    struct statfs volume;
    if (fstatfs(descriptor, &volume) != 0) return false;
    constexpr std::array<unsigned, 7> networks = {NFS_SUPER_MAGIC, CIFS_SUPER_MAGIC, SMB_SUPER_MAGIC, SMB2_SUPER_MAGIC,
                                                  AFS_SUPER_MAGIC, CEPH_SUPER_MAGIC, V9FS_MAGIC};
    return std::find(networks.begin(), networks.end(), static_cast<unsigned>(volume.f_type)) == networks.end();
}

/// True if some other descriptor, of any program, has the file open. `descriptor`: ours on the same file.
bool IsOpenElsewhere(int descriptor) {
    // Programs of the suite hold a lock; the lease notices the others, where it is to be had.
    if (Retry([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) != 0 && errno == EWOULDBLOCK) return true;
    if (!TellsLeasesTruly(descriptor)) return false;
    // Somebody who opens the file in the moment that we hold the lease has the system send us a signal; the usual one
    // would end the process, this one is ignored unless a host asks for it.
    if (fcntl(descriptor, F_SETSIG, SIGURG) != 0) return false;
    if (fcntl(descriptor, F_SETLEASE, F_WRLCK) != 0) return errno == EAGAIN;
    fcntl(descriptor, F_SETLEASE, F_UNLCK);
    return false;
}

/// renameat2 that never replaces, made of what there is where the volume doesn't know it.
FsResult RenameToFree(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return FsResult::Ok;
    if (errno != EINVAL && errno != ENOSYS) return FromErrno(errno);
    struct stat status;
    if (lstat(from.c_str(), &status) != 0) return FromErrno(errno);
    if (S_ISDIR(status.st_mode)) {
        // A folder may be renamed onto an empty one; making that one is what tells whether the name is free.
        if (mkdir(to.c_str(), 0777) != 0) return FromErrno(errno);
        if (rename(from.c_str(), to.c_str()) == 0) return FsResult::Ok;
        const int error = errno;
        rmdir(to.c_str());
        return FromErrno(error);
    }
    if (link(from.c_str(), to.c_str()) != 0) return FromErrno(errno);
    if (unlink(from.c_str()) == 0) return FsResult::Ok;
    const int error = errno;
    unlink(to.c_str());
    return FromErrno(error);
}

/// The path as it is written; empty for one that no file can have.
std::string PlainName(std::wstring_view path) {
    return path.find(L'\0') == std::wstring_view::npos ? PathToBytes(path) : std::string();
}

std::string ReadLink(const std::string& name) {
    std::array<char, 4096> target;
    const ssize_t size = readlink(name.c_str(), target.data(), target.size());
    return size <= 0 ? std::string() : std::string(target.data(), static_cast<std::size_t>(size));
}

bool IsLinkEntry(DIR* folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_LNK;
    struct stat status;
    return fstatat(dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

bool IsFolderEntry(DIR* folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return entry.d_type == DT_DIR;
    struct stat status;
    return fstatat(dirfd(folder), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

class PosixFileSystem : public FileSystem {
public:
    FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) override {
        const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
        for (;;) {
            int descriptor = -1;
            std::string name;
            FsResult result = OpenOnce(path, mode, name, descriptor);
            if (result == FsResult::InUse && std::chrono::steady_clock::now() < deadline) {
                PauseForHolder();
                continue;
            }
            if (result != FsResult::Ok) return result;
            auto opened = std::make_unique<PosixFile>(descriptor);
            bool waited = false;
            result = opened->Lock(mode.share, deadline, waited);
            if (result != FsResult::Ok) return result;
            // Whoever held it may have put another file in its place: ours then is one that nobody sees any more.
            if (waited && !opened->IsNamed(name)) continue;
            if (mode.truncate) result = opened->Truncate(0);
            if (result == FsResult::Ok) file = std::move(opened);
            return result;
        }
    }

    FsResult Status(std::wstring_view path, FileStatus& status) override {
        // Most names are as they are written: they need no second look.
        if (const std::string plain = PlainName(path);
            !plain.empty() && ReadStatus(AT_FDCWD, plain.c_str(), status) == 0) {
            return FsResult::Ok;
        }
        const std::string name = NameOnDisk(path);
        const int error = name.empty() ? ENOENT : ReadStatus(AT_FDCWD, name.c_str(), status);
        const FsResult result = FromErrno(error);
        if (result != FsResult::NotFound && error != ENAMETOOLONG) return result;
        status = {};
        return FsResult::Ok;
    }

    FsResult List(std::wstring_view folder, std::vector<FolderEntry>& entries) override {
        const std::string name = folder.empty() ? "." : NameOnDisk(folder);
        DIR* const open = opendir(name.c_str());
        if (!open) return FromErrno(errno);
        std::vector<FolderEntry> found;
        errno = 0;
        while (const dirent* const entry = readdir(open)) {
            const std::string_view entryName = entry->d_name;
            if (entryName != "." && entryName != "..") {
                found.push_back({PathFromBytes(entryName), IsFolderEntry(open, *entry), IsLinkEntry(open, *entry)});
            }
            errno = 0;
        }
        const int error = errno;
        closedir(open);
        if (error != 0) return FromErrno(error);
        std::sort(found.begin(), found.end(),
                  [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
        entries = std::move(found);
        return FsResult::Ok;
    }

    FsResult MakeFolder(std::wstring_view path) override { return ResultOf(mkdir(NameOnDisk(path).c_str(), 0777)); }

    FsResult Remove(std::wstring_view path) override {
        const std::string name = NameOnDisk(path);
        struct stat status;
        if (lstat(name.c_str(), &status) != 0) return FromErrno(errno);
        if (S_ISDIR(status.st_mode)) return FsResult::Denied;
        if (!S_ISREG(status.st_mode)) return ResultOf(unlink(name.c_str()));
        if (HasReadOnlyMode(status)) return FsResult::ReadOnly;
        const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (descriptor < 0 && errno == EWOULDBLOCK) return FsResult::InUse;  // somebody else's lease
        const PosixFile closer(descriptor);                                  // keeps our lock until the name is gone
        if (descriptor >= 0 && IsOpenElsewhere(descriptor)) return FsResult::InUse;
        return ResultOf(unlink(name.c_str()));
    }

    FsResult RemoveFolder(std::wstring_view path) override { return ResultOf(rmdir(NameOnDisk(path).c_str())); }

    FsResult Rename(std::wstring_view from, std::wstring_view to) override {
        const std::string source = NameOnDisk(from);
        std::string target = NameOnDisk(to);
        if (target == source) target = NameOnDisk(to, LastName::AsWritten);  // may change the case of its name
        const FsResult result = RenameToFree(source, target);
        if (result == FsResult::Ok || errno != EXDEV) return result;
        TemporaryFile copy(*this, PathFromBytes(target));
        const FsResult copied = copy.CopyFrom(PathFromBytes(source), nullptr);
        if (copied != FsResult::Ok) return copied;
        const FsResult placed = copy.PlaceNew();
        if (placed != FsResult::Ok) return placed;
        if (unlink(source.c_str()) == 0) return FsResult::Ok;
        const FsResult kept = FromErrno(errno);
        unlink(target.c_str());
        return kept;
    }

    FsResult RenameAsWritten(std::wstring_view from, std::wstring_view to) override {
        const std::string source = PlainName(from), target = PlainName(to);
        if (!source.empty() && !target.empty()) {
            const FsResult result = RenameToFree(source, target);
            if (result != FsResult::NotFound) return result;  // else a folder is written in another case
        }
        return RenameToFree(NameOnDisk(from), NameOnDisk(to, LastName::AsWritten));
    }

    FsResult Replace(std::wstring_view from, std::wstring_view to) override {
        const std::string source = NameOnDisk(from), target = NameOnDisk(to);
        struct stat status;
        if (stat(target.c_str(), &status) == 0) {
            if (!S_ISREG(status.st_mode)) return FsResult::Denied;  // a device must stay one
            if (HasReadOnlyMode(status)) return FsResult::ReadOnly;
        }
        if (rename(source.c_str(), target.c_str()) == 0) return FsResult::Ok;
        // A file that is mounted by itself can be written but not replaced.
        return errno == EBUSY ? FsResult::Denied : FromErrno(errno);
    }

    FsResult CopyAttributes(std::wstring_view from, std::wstring_view to) override {
        const std::string target = NameOnDisk(to);
        struct stat wanted, now;
        if (stat(NameOnDisk(from).c_str(), &wanted) != 0 || stat(target.c_str(), &now) != 0) return FromErrno(errno);
        mode_t mode = wanted.st_mode & 07777;
        if (now.st_uid != wanted.st_uid || now.st_gid != wanted.st_gid) {
            constexpr auto keep = static_cast<uid_t>(-1);
            if (chown(target.c_str(), wanted.st_uid, wanted.st_gid) != 0 &&
                chown(target.c_str(), keep, wanted.st_gid) != 0) {
                mode = ModeForOtherGroup(mode);
            }
        }
        return ResultOf(chmod(target.c_str(), mode));
    }

    FsResult CopyOwner(std::wstring_view from, std::wstring_view to) override {
        const std::string target = NameOnDisk(to);
        struct stat wanted;
        if (stat(NameOnDisk(from).c_str(), &wanted) != 0) return FromErrno(errno);
        if (chown(target.c_str(), wanted.st_uid, wanted.st_gid) == 0 || errno == EPERM) return FsResult::Ok;
        return FromErrno(errno);
    }

    FsResult SetReadOnly(std::wstring_view path, bool readOnly) override {
        const std::string name = NameOnDisk(path);
        struct stat status;
        if (stat(name.c_str(), &status) != 0) return FromErrno(errno);
        const mode_t mode = status.st_mode & 07777;
        const mode_t wanted = readOnly ? mode & ~kWriteBits : mode | S_IWUSR;
        return wanted == mode ? FsResult::Ok : ResultOf(chmod(name.c_str(), wanted));
    }

    FsResult SetModified(std::wstring_view path, std::int64_t seconds, std::int64_t nanoseconds) override {
        const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT}, timespec{seconds, nanoseconds}};
        return ResultOf(utimensat(AT_FDCWD, NameOnDisk(path).c_str(), times.data(), 0));
    }

    FsResult SyncFolder(std::wstring_view folder) override {
        const std::string name = folder.empty() ? "." : NameOnDisk(folder);
        const int descriptor = Retry([&] { return open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
        // One that takes new names but may not be looked into can't be flushed, and the rename in it stands.
        if (descriptor < 0) return errno == EACCES ? FsResult::Ok : FromErrno(errno);
        return PosixFile(descriptor).Sync();
    }

    FsResult SyncVolume(std::wstring_view folder) override {
        const std::string name = folder.empty() ? "." : NameOnDisk(folder);
        const int descriptor = Retry([&] { return open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
        if (descriptor < 0) return FromErrno(errno);
        const PosixFile closer(descriptor);
        return ResultOf(syncfs(descriptor));
    }

    std::optional<std::uint64_t> FreeSpace(std::wstring_view path) override {
        std::string name = path.empty() ? "." : NameOnDisk(path);
        struct statvfs volume;
        // A file that is yet to be written lies on the volume of its nearest folder.
        while (statvfs(name.c_str(), &volume) != 0) {
            if ((errno != ENOENT && errno != ENOTDIR) || name.empty() || name == "/" || name == "./") {
                return std::nullopt;
            }
            while (name.size() > 1 && name.back() == '/') name.pop_back();
            name = FolderOnDisk(name);
        }
        return std::uint64_t{volume.f_bavail} * volume.f_frsize;
    }

    std::wstring RealPath(std::wstring_view path) override {
        std::string name = NameOnDisk(path);
        if (char* const real = realpath(name.c_str(), nullptr)) {
            std::wstring found = PathFromBytes(real);
            std::free(real);
            return found;
        }
        // A link whose target is yet to be made leads there all the same.
        constexpr int mostLinks = 8;
        std::string target = ReadLink(name);
        if (target.empty()) return ToNativePath(path);
        for (int i = 0; i < mostLinks && !target.empty(); ++i, target = ReadLink(name)) {
            name = target.starts_with('/') ? target : FolderOnDisk(name).append(target);
        }
        return PathFromBytes(name);
    }

private:
    /// One try, without lock. `name`: what was opened.
    static FsResult OpenOnce(std::wstring_view path, const OpenMode& mode, std::string& name, int& descriptor) {
        const int access = mode.write ? (mode.read ? O_RDWR : O_WRONLY) : O_RDONLY;
        // Without O_NONBLOCK a named pipe would keep us until somebody opens its other end.
        const int flags = access | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
        const int create = O_CREAT | (mode.createNew ? O_EXCL : 0);
        const mode_t rights = mode.ownerOnly ? 0600 : 0666;
        // Most names are as they are written: only one that isn't there is looked for in another case.
        name = PlainName(path);
        if (!name.empty()) {
            const int first = mode.createNew ? flags | create : flags;
            descriptor = Retry([&] { return open(name.c_str(), first, rights); });
        }
        if (descriptor < 0 && (name.empty() || errno == ENOENT || errno == ENOTDIR)) {
            name = NameOnDisk(path, mode.createNew ? LastName::AsWritten : LastName::Find);
        }
        if (!mode.createNew) {
            if (descriptor < 0) descriptor = Retry([&] { return open(name.c_str(), flags); });
            if (descriptor >= 0) {
                const FsResult result = CheckKind(descriptor, mode.write);
                if (result != FsResult::Ok) ::close(descriptor);
                return result;
            }
            const int error = errno;
            if (error == EACCES && mode.write && IsReadOnlyFile(name)) return FsResult::ReadOnly;
            if (error != ENOENT || !mode.create) return FromErrno(error);
        }
        if (descriptor < 0) descriptor = Retry([&] { return open(name.c_str(), flags | create, rights); });
        return descriptor >= 0 ? FsResult::Ok : FromErrno(errno);
    }
};

std::atomic<FileSystem*> fileSystemInForce{nullptr};

}  // namespace

std::wstring_view FsResultText(FsResult result) {
    switch (result) {
        case FsResult::Ok:
            return L"done";
        case FsResult::NotFound:
            return L"no such file or folder";
        case FsResult::Exists:
            return L"a file of that name exists already";
        case FsResult::ReadOnly:
            return L"the file is read-only";
        case FsResult::Denied:
            return L"access denied";
        case FsResult::InUse:
            return L"the file is in use";
        case FsResult::NoSpace:
            return L"the disk is full";
        case FsResult::TooLarge:
            return L"the file is too large";
        case FsResult::Cancelled:
            return L"cancelled";
        case FsResult::Failed:
            break;
    }
    return L"the system reports an error";
}

FileSystem& RealFileSystem() {
    static PosixFileSystem& fileSystem = *new PosixFileSystem;  // never destroyed: workers may outlive main
    return fileSystem;
}

FileSystem& Files() {
    FileSystem* const set = fileSystemInForce.load();
    return set ? *set : RealFileSystem();
}

void SetFileSystem(FileSystem* fileSystem) {
    fileSystemInForce = fileSystem;
}

}  // namespace orv
