#pragma once

#include <cerrno>
#include <chrono>
#include <string>

#include "platform/os/FileSystem.h"

namespace orv {

/// What an errno means to a caller.
FsResult FromErrno(int error);

/// Calls the system again while signals interrupt it.
template <class Call>
auto Retry(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

/// The status of `name`, or of `descriptor` itself where that is empty; an errno, or 0.
int ReadStatus(int descriptor, const char* name, FileStatus& status);

/// The mode of a copy whose group can't be that of the original: another group must not get the rights of that one.
inline unsigned ModeForOtherGroup(unsigned mode) {
    return (mode & ~070u) | ((mode & 07u) << 3);
}

/// An open descriptor.
class PosixFile : public File {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    explicit PosixFile(int openDescriptor) : descriptor(openDescriptor) {}
    ~PosixFile() override;
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    int Descriptor() const { return descriptor; }
    /// Tries until `deadline`, at least once; `waited` tells whether the first try failed.
    FsResult Lock(Share share, Deadline deadline, bool& waited);
    /// True if `name` still leads to this file.
    bool IsNamed(const std::string& name) const;

    FsResult Read(void* data, std::size_t size, std::size_t& got) override;
    FsResult Write(const void* data, std::size_t size) override;
    FsResult Seek(std::uint64_t position) override;
    FsResult Length(std::uint64_t& length) override;
    FsResult Truncate(std::uint64_t length) override;
    FsResult Status(FileStatus& status) override;
    FsResult TakeStatus(const FileStatus& status) override;
    FsResult Sync() override;
    FsResult Close() override;

private:
    int descriptor;  ///< -1 once it is closed
};

/// Lets others go on for a moment before the next try at something that is held.
void PauseForHolder();

}  // namespace orv
