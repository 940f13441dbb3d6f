#include "platform/os/PosixFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <thread>

namespace orv {

namespace {
bool FitsOffset(std::uint64_t value) {
    return value <= std::numeric_limits<off_t>::max();
}
}  // namespace

FsResult FromErrno(int error) {
    switch (error) {
        case 0:
            return FsResult::Ok;
        case ENOENT:
        case ENOTDIR:
            return FsResult::NotFound;
        case EEXIST:
            return FsResult::Exists;
        case EACCES:
        case EPERM:
        case EISDIR:
        case EROFS:
            return FsResult::Denied;
        case EBUSY:
        case ETXTBSY:
        case EWOULDBLOCK:
            return FsResult::InUse;
        case ENOSPC:
        case EDQUOT:
            return FsResult::NoSpace;
        default:
            return FsResult::Failed;
    }
}

int ReadStatus(int descriptor, const char* name, FileStatus& status) {
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    struct statx found;
    if (statx(descriptor, name, *name ? 0 : AT_EMPTY_PATH, wanted, &found) != 0) return errno;
    status.exists = true;
    status.isFolder = S_ISDIR(found.stx_mode);
    status.readOnly = (found.stx_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
    status.size = found.stx_size;
    status.modified = found.stx_mtime.tv_sec;
    status.modifiedNanoseconds = found.stx_mtime.tv_nsec;
    const bool hasBirth = (found.stx_mask & STATX_BTIME) != 0;
    status.created = hasBirth ? std::min<std::int64_t>(found.stx_btime.tv_sec, status.modified) : status.modified;
    status.device = makedev(found.stx_dev_major, found.stx_dev_minor);
    status.inode = found.stx_ino;
    status.mode = found.stx_mode;
    status.owner = found.stx_uid;
    status.group = found.stx_gid;
    return 0;
}

void PauseForHolder() {
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
}

PosixFile::~PosixFile() {
    if (descriptor >= 0) ::close(descriptor);
}

FsResult PosixFile::Lock(Share share, Deadline deadline, bool& waited) {
    waited = false;
    if (share == Share::DenyNone) return FsResult::Ok;
    const int operation = (share == Share::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
    while (Retry([&] { return flock(descriptor, operation); }) != 0) {
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline) return FromErrno(errno);
        waited = true;
        PauseForHolder();
    }
    return FsResult::Ok;
}

bool PosixFile::IsNamed(const std::string& name) const {
    struct stat mine, named;
    return fstat(descriptor, &mine) == 0 && stat(name.c_str(), &named) == 0 && mine.st_dev == named.st_dev &&
           mine.st_ino == named.st_ino;
}

FsResult PosixFile::Read(void* data, std::size_t size, std::size_t& got) {
    const ssize_t count = Retry([&] { return ::read(descriptor, data, size); });
    if (count < 0) return FromErrno(errno);
    got = static_cast<std::size_t>(count);
    return FsResult::Ok;
}

FsResult PosixFile::Write(const void* data, std::size_t size) {
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t count = Retry([&] { return ::write(descriptor, at, size); });
        if (count < 0) return FromErrno(errno);
        at += count;
        size -= static_cast<std::size_t>(count);
    }
    return FsResult::Ok;
}

FsResult PosixFile::Seek(std::uint64_t position) {
    if (!FitsOffset(position)) return FsResult::Failed;
    return lseek(descriptor, static_cast<off_t>(position), SEEK_SET) < 0 ? FromErrno(errno) : FsResult::Ok;
}

FsResult PosixFile::Length(std::uint64_t& length) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return FromErrno(errno);
    length = static_cast<std::uint64_t>(status.st_size);
    return FsResult::Ok;
}

FsResult PosixFile::Truncate(std::uint64_t length) {
    if (!FitsOffset(length)) return FsResult::Failed;
    const int result = Retry([&] { return ftruncate(descriptor, static_cast<off_t>(length)); });
    return result != 0 ? FromErrno(errno) : FsResult::Ok;
}

FsResult PosixFile::Status(FileStatus& status) {
    return FromErrno(ReadStatus(descriptor, "", status));
}

FsResult PosixFile::TakeStatus(const FileStatus& status) {
    struct stat now;
    if (fstat(descriptor, &now) != 0) return FromErrno(errno);
    mode_t mode = status.mode & 07777;
    const bool isForeign = now.st_uid != status.owner || now.st_gid != status.group;
    constexpr auto keep = static_cast<uid_t>(-1);
    if (isForeign && fchown(descriptor, status.owner, status.group) != 0 &&
        fchown(descriptor, keep, status.group) != 0) {
        mode = ModeForOtherGroup(mode);
    }
    // A new owner takes some bits of the mode with him.
    if ((isForeign || (now.st_mode & 07777) != mode) && fchmod(descriptor, mode) != 0) return FromErrno(errno);
    const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT},
                                           timespec{status.modified, status.modifiedNanoseconds}};
    return futimens(descriptor, times.data()) == 0 ? FsResult::Ok : FromErrno(errno);
}

FsResult PosixFile::Sync() {
    const int result = Retry([&] { return fsync(descriptor); });
    // Devices and some network file systems have nothing to flush to.
    return result == 0 || errno == EINVAL || errno == ENOTSUP ? FsResult::Ok : FromErrno(errno);
}

FsResult PosixFile::Close() {
    if (descriptor < 0) return FsResult::Failed;
    const int result = ::close(descriptor);
    descriptor = -1;  // the system has let go of it whatever it says
    return result == 0 || errno == EINTR ? FsResult::Ok : FromErrno(errno);
}

}  // namespace orv
