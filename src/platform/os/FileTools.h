#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/FileSystem.h"

/// What the library does with whole files, made of the calls of `FileSystem`. Any thread may call.
namespace orv {

/// The whole content of a file. Refuses one longer than `limit` before memory is asked for; `bytes` is left alone on
/// failure.
[[nodiscard]] ORV_EXPORT FsResult ReadWholeFile(std::wstring_view path, std::string& bytes,
                                                Share share = Share::DenyWrite, std::uint64_t limit = 1ull << 31);

/// Who may read and write a saved file.
enum class SaveAccess {
    AsBefore,   ///< who could before; a new file as the system's defaults have it
    OwnerOnly,  ///< its owner alone, from the first moment on, also where more could before
};

/// Puts `bytes` in the place of the file's content so that a power cut, a kill or a full disk at any point leaves the
/// old content or the new, whole. Links are followed to their target, mode and owner are kept. Refuses a read-only
/// file (ReadOnly) and one that somebody holds open exclusively (InUse). Where no new file can be made in the folder
/// it writes in place and says so on the message channel.
[[nodiscard]] ORV_EXPORT FsResult SaveWholeFile(std::wstring_view path, std::string_view bytes,
                                                SaveAccess access = SaveAccess::AsBefore);

/// Copies through a temporary name and keeps the modification time; an existing target is replaced. `cancel` is asked
/// between blocks. On failure or cancel nothing is left at the target that wasn't there before.
[[nodiscard]] ORV_EXPORT FsResult CopyWholeFile(std::wstring_view from, std::wstring_view to,
                                                const std::atomic<bool>* cancel = nullptr);

/// One of many copies into a folder that has been listed: `to` is a name that it doesn't hold in any case (Exists if it
/// does by now). As above, but flushes nothing: until `Files().SyncVolume`, a power cut may leave the copy empty.
[[nodiscard]] ORV_EXPORT FsResult CopyToNewName(std::wstring_view from, std::wstring_view to,
                                                const std::atomic<bool>* cancel = nullptr);

ORV_EXPORT bool FileExists(std::wstring_view path);  ///< a file, not a folder
ORV_EXPORT bool FolderExists(std::wstring_view path);
/// Makes a folder and the parents it lacks.
[[nodiscard]] ORV_EXPORT FsResult MakeFolders(std::wstring_view path);

/// Names in `folder` that match `pattern` (see MatchesPattern), in ordinal order.
ORV_EXPORT std::vector<FolderEntry> FindFiles(std::wstring_view folder, std::wstring_view pattern);

/// Takes the read-only attribute off a file and puts it back when it goes, on every way out.
class ORV_EXPORT ReadOnlyLift {
public:
    /// Does nothing if the file is missing or writable.
    explicit ReadOnlyLift(std::wstring_view file);
    ~ReadOnlyLift();
    ReadOnlyLift(const ReadOnlyLift&) = delete;
    ReadOnlyLift& operator=(const ReadOnlyLift&) = delete;
    FsResult Result() const { return result; }  ///< Ok unless the attribute had to go and couldn't
    /// Puts the attribute back now, if it was taken off.
    [[nodiscard]] FsResult Restore();

private:
    std::wstring path;
    bool lifted = false;
    FsResult result = FsResult::Ok;
};

}  // namespace orv
