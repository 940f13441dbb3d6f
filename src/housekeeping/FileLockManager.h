#pragma once

#include <string>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// A file and who holds it.
struct FileLockInfo {
    FileLockInfo() = default;
    FileLockInfo(std::wstring file, std::wstring locker) : fileName(std::move(file)), lockerName(std::move(locker)) {}
    bool operator==(const FileLockInfo&) const = default;  ///< both, with case

    std::wstring fileName, lockerName;
};

/// Which object of an application holds which file, so that an editor can refuse one or name its holder. It keeps the
/// record and touches no file. Main thread.
class ORV_EXPORT FileLockManager {
public:
    static FileLockManager& GetInstance();
    virtual ~FileLockManager() = default;
    FileLockManager(const FileLockManager&) = default;  ///< of the list
    FileLockManager& operator=(const FileLockManager&) = default;

    /// Nothing happens if the file has a holder already. An empty locker is none.
    void AddToFileLockInfoContainer(const std::wstring& file, const std::wstring& locker);
    /// With case, unlike all others: a name spelled differently stays locked.
    void RemoveFromFileLockInfoContainer(const std::wstring& file, const std::wstring& locker);
    /// Of the first entry, ignoring case; empty if there is none.
    std::wstring FindFirstLockernameInFileLockInfoContainer(const std::wstring& file) const;
    std::wstring FindFilenameInFileLockInfoContainer(const std::wstring& locker) const;
    bool IsFilenameInFileLockInfoContainer(const std::wstring& file) const;
    bool IsLockernameInFileLockInfoContainer(const std::wstring& locker) const;
    int GetLockInfoCount() const { return static_cast<int>(locks.size()); }
    void Dump() const {}  ///< does nothing; hosts call it

private:
    FileLockManager() = default;
    std::vector<FileLockInfo> locks;  // in the order they were added
};

}  // namespace orv
