#include "housekeeping/FileLockManager.h"

#include <algorithm>

#include "platform/text/CaseFold.h"

namespace orv {

namespace {

using Part = std::wstring FileLockInfo::*;

/// `wanted` of the first lock whose `known` part is `text`.
std::wstring FindFirst(const std::vector<FileLockInfo>& locks, Part known, const std::wstring& text, Part wanted) {
    const auto lock = std::find_if(locks.begin(), locks.end(),
                                   [&](const FileLockInfo& info) { return EqualNoCase(info.*known, text); });
    return lock != locks.end() ? (*lock).*wanted : std::wstring();
}

}  // namespace

FileLockManager& FileLockManager::GetInstance() {
    static FileLockManager manager;
    return manager;
}

void FileLockManager::AddToFileLockInfoContainer(const std::wstring& file, const std::wstring& locker) {
    const bool isHeld = std::any_of(locks.begin(), locks.end(), [&](const FileLockInfo& info) {
        return !info.lockerName.empty() && EqualNoCase(info.fileName, file);
    });
    if (!isHeld) locks.emplace_back(file, locker);
}

void FileLockManager::RemoveFromFileLockInfoContainer(const std::wstring& file, const std::wstring& locker) {
    std::erase(locks, FileLockInfo(file, locker));
}

std::wstring FileLockManager::FindFirstLockernameInFileLockInfoContainer(const std::wstring& file) const {
    return FindFirst(locks, &FileLockInfo::fileName, file, &FileLockInfo::lockerName);
}

std::wstring FileLockManager::FindFilenameInFileLockInfoContainer(const std::wstring& locker) const {
    return FindFirst(locks, &FileLockInfo::lockerName, locker, &FileLockInfo::fileName);
}

bool FileLockManager::IsFilenameInFileLockInfoContainer(const std::wstring& file) const {
    return !FindFirstLockernameInFileLockInfoContainer(file).empty();
}

bool FileLockManager::IsLockernameInFileLockInfoContainer(const std::wstring& locker) const {
    return !FindFilenameInFileLockInfoContainer(locker).empty();
}

}  // namespace orv
