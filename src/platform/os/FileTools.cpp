#include "platform/os/FileTools.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/notify/Notices.h"
#include "platform/os/TemporaryFile.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

/// Holds an existing target so that nobody else reads or writes it meanwhile; `held` stays empty if there is none.
/// Opening it for writing also tells whether it may be written at all.
FsResult HoldTarget(FileSystem& files, const std::wstring& target, std::unique_ptr<File>& held) {
    const FsResult result = files.Open(target, {.read = false, .write = true, .share = Share::Exclusive}, held);
    return result == FsResult::NotFound ? FsResult::Ok : result;
}

/// Overwrites the held file itself. A kill in the middle leaves a mixture, which can't be helped here; a full disk
/// doesn't: the part that needs new space is written first, and cut off again if there is none.
FsResult SaveInPlace(File& file, std::string_view bytes) {
    std::uint64_t oldLength = 0;
    FsResult result = file.Length(oldLength);
    if (result != FsResult::Ok) return result;
    const std::size_t head = static_cast<std::size_t>(std::min<std::uint64_t>(oldLength, bytes.size()));
    result = file.Seek(head);
    if (result == FsResult::Ok) result = file.Write(bytes.data() + head, bytes.size() - head);
    if (result == FsResult::Ok) result = file.Sync();
    if (result != FsResult::Ok) {
        static_cast<void>(file.Truncate(oldLength));
        return result;
    }
    result = file.Seek(0);
    if (result == FsResult::Ok) result = file.Write(bytes.data(), head);
    if (result == FsResult::Ok) result = file.Truncate(bytes.size());
    if (result == FsResult::Ok) result = file.Sync();
    return result;
}

FsResult SaveBeside(FileSystem& files, const std::wstring& target, bool exists, std::string_view bytes,
                    SaveAccess access) {
    TemporaryFile temporary(files, target);
    const bool ownerOnly = access == SaveAccess::OwnerOnly;
    FsResult result = temporary.Create(ownerOnly);
    // Before the content: what only some may read must not lie open for a moment.
    if (result == FsResult::Ok && exists) {
        result = ownerOnly ? temporary.TakeOwner(target) : temporary.TakeAttributes(target);
    }
    if (result == FsResult::Ok) result = temporary.Write(bytes);
    if (result == FsResult::Ok) result = temporary.Finish();
    if (result == FsResult::Ok) result = temporary.Place();
    return result;
}

FsResult ReadAll(File& file, std::string& bytes, std::uint64_t limit) {
    std::uint64_t length = 0;
    FsResult result = file.Length(length);
    if (result != FsResult::Ok) return result;
    if (length > limit) return FsResult::TooLarge;
    std::string content;
    std::size_t used = 0;
    // One byte more than it says: the read that meets the end is the one that proves it, also where somebody appends.
    std::size_t room = static_cast<std::size_t>(length) + 1;
    for (;;) {
        content.resize(used + room);
        std::size_t got = 0;
        result = file.Read(content.data() + used, room, got);
        if (result != FsResult::Ok) return result;
        if (got == 0) break;
        used += got;
        if (used > limit) return FsResult::TooLarge;
        room -= got;
        if (room == 0) room = 4096;
    }
    content.resize(used);
    bytes = std::move(content);
    return FsResult::Ok;
}

bool IsSameContent(const FileStatus& a, const FileStatus& b) {
    return a.device == b.device && a.inode == b.inode && a.size == b.size && a.modified == b.modified &&
           a.modifiedNanoseconds == b.modifiedNanoseconds;
}

bool IsFolder(FileSystem& files, std::wstring_view path) {
    FileStatus status;
    return files.Status(path, status) == FsResult::Ok && status.exists && status.isFolder;
}

}  // namespace

// User-space volumes keep one cache for a name: a file that is put in the place of another while that one is read gives
// a mixture of both. So the name must stand for the same content before and after.
FsResult ReadWholeFile(std::wstring_view path, std::string& bytes, Share share, std::uint64_t limit) {
    constexpr int kTries = 5;
    FileSystem& files = Files();
    FileStatus before, after;
    FsResult result = files.Status(path, before);
    for (int tries = 0; result == FsResult::Ok && tries < kTries; ++tries) {
        std::string content;
        std::unique_ptr<File> file;
        result = files.Open(path, {.share = share}, file);
        if (result == FsResult::NotFound && before.exists && tries < kTries - 1) {
            // They also move an open file aside before another takes its name.
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            before.exists = false;
            result = FsResult::Ok;
            continue;
        }
        if (result == FsResult::Ok) result = ReadAll(*file, content, limit);
        if (result == FsResult::Ok) result = files.Status(path, after);
        if (result != FsResult::Ok) return result;
        const bool same = IsSameContent(before, after);
        // What grows by the moment, as a log does, is good as far as it has been read.
        if (same || (tries == kTries - 1 && before.inode == after.inode)) {
            bytes = std::move(content);
            return FsResult::Ok;
        }
        before = after;
    }
    return result == FsResult::Ok ? FsResult::InUse : result;
}

FsResult SaveWholeFile(std::wstring_view path, std::string_view bytes, SaveAccess access) {
    FileSystem& files = Files();
    const std::wstring target = files.RealPath(path);
    std::unique_ptr<File> held;
    const FsResult result = HoldTarget(files, target, held);
    if (result != FsResult::Ok) return result;
    const FsResult saved = SaveBeside(files, target, held != nullptr, bytes, access);
    if (saved != FsResult::Denied || !held) return saved;
    const FsResult inPlace = SaveInPlace(*held, bytes);
    held.reset();
    if (inPlace == FsResult::Ok) {
        Notify(Notice::Information, L"saved in place, its folder takes no new file: " + target);
    }
    return inPlace;
}

FsResult CopyWholeFile(std::wstring_view from, std::wstring_view to, const std::atomic<bool>* cancel) {
    FileSystem& files = Files();
    const std::wstring target = files.RealPath(to);
    FileStatus source, old;
    FsResult result = files.Status(from, source);
    if (result == FsResult::Ok) result = files.Status(target, old);
    if (result != FsResult::Ok) return result;
    if (!source.exists) return FsResult::NotFound;
    if (old.exists && old.device == source.device && old.inode == source.inode) return FsResult::Failed;
    std::unique_ptr<File> held;
    result = HoldTarget(files, target, held);
    if (result != FsResult::Ok) return result;
    TemporaryFile copy(files, target);
    result = copy.CopyFrom(from, cancel);
    return result != FsResult::Ok ? result : copy.Place();
}

FsResult CopyToNewName(std::wstring_view from, std::wstring_view to, const std::atomic<bool>* cancel) {
    TemporaryFile copy(Files(), to);
    const FsResult result = copy.CopyFrom(from, cancel, TemporaryFile::Flush::Later);
    return result != FsResult::Ok ? result : copy.PlaceAsWritten();
}

bool FileExists(std::wstring_view path) {
    FileStatus status;
    return Files().Status(path, status) == FsResult::Ok && status.exists && !status.isFolder;
}

bool FolderExists(std::wstring_view path) {
    return IsFolder(Files(), path);
}

FsResult MakeFolders(std::wstring_view path) {
    FileSystem& files = Files();
    if (path.empty()) return FsResult::NotFound;
    if (IsFolder(files, path)) return FsResult::Ok;
    for (std::size_t end = 0; end < path.size();) {
        end = std::min(path.find_first_of(L"/\\", end + 1), path.size());
        const std::wstring_view folder = path.substr(0, end);
        if (IsFolder(files, folder)) continue;
        const FsResult result = files.MakeFolder(folder);
        // Somebody else may have made it in the meantime.
        if (result != FsResult::Ok && !(result == FsResult::Exists && IsFolder(files, folder))) return result;
    }
    return FsResult::Ok;
}

std::vector<FolderEntry> FindFiles(std::wstring_view folder, std::wstring_view pattern) {
    std::vector<FolderEntry> entries;
    if (Files().List(folder, entries) != FsResult::Ok) return {};
    std::erase_if(entries, [&](const FolderEntry& entry) { return !MatchesPattern(entry.name, pattern); });
    return entries;
}

ReadOnlyLift::ReadOnlyLift(std::wstring_view file) : path(file) {
    FileStatus status;
    if (Files().Status(path, status) != FsResult::Ok || !status.exists || !status.readOnly) return;
    result = Files().SetReadOnly(path, false);
    lifted = result == FsResult::Ok;
}

ReadOnlyLift::~ReadOnlyLift() {
    static_cast<void>(Restore());
}

FsResult ReadOnlyLift::Restore() {
    if (!lifted) return FsResult::Ok;
    const FsResult restored = Files().SetReadOnly(path, true);
    if (restored == FsResult::Ok) lifted = false;
    return restored;
}

}  // namespace orv
