#include "platform/os/TemporaryFile.h"

#include <unistd.h>

#include <algorithm>

#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

constexpr std::size_t kBlock = 1 << 20;

/// A name that no other save, thread or process uses now. The target's own is in it so that a leftover of a killed
/// process tells where it belongs, cut so that it stays below the system's 255 bytes.
std::wstring TemporaryName(std::wstring_view target) {
    static std::atomic<unsigned> counter{0};
    return GetFolderFromPath(target) + L'.' + GetNameFromPath(target).substr(0, 40) + L'.' + IntText(getpid()) + L'-' +
           IntText(counter++) + L".tmp";
}

}  // namespace

FsResult TemporaryFile::Create(bool ownerOnly) {
    // A name is taken where a process of the same number was killed in a save.
    constexpr int tries = 100;
    for (int i = 0; i < tries; ++i) {
        const std::wstring name = TemporaryName(target);
        const OpenMode mode = {
            .read = false, .write = true, .share = Share::DenyNone, .createNew = true, .ownerOnly = ownerOnly};
        const FsResult result = files.Open(name, mode, file);
        if (result == FsResult::Ok) path = name;
        if (result != FsResult::Exists) return result;
    }
    return FsResult::Exists;
}

FsResult TemporaryFile::Finish() {
    const FsResult result = file->Sync();
    return result != FsResult::Ok ? result : file->Close();
}

FsResult TemporaryFile::CopyBlocks(File& from, std::uint64_t size, const std::atomic<bool>* cancel) {
    const auto room = static_cast<std::size_t>(std::clamp<std::uint64_t>(size, 4096, kBlock));
    const auto block = std::make_unique_for_overwrite<char[]>(room);
    for (;;) {
        if (cancel && *cancel) return FsResult::Cancelled;
        std::size_t got = 0;
        FsResult result = from.Read(block.get(), room, got);
        if (result != FsResult::Ok || got == 0) return result;
        result = Write({block.get(), got});
        if (result != FsResult::Ok) return result;
    }
}

FsResult TemporaryFile::CopyFrom(std::wstring_view source, const std::atomic<bool>* cancel, Flush flush) {
    std::unique_ptr<File> from;
    FileStatus status;
    FsResult result = files.Open(source, {}, from);
    if (result == FsResult::Ok) result = from->Status(status);
    if (result == FsResult::Ok) result = Create();
    if (result == FsResult::Ok) result = CopyBlocks(*from, status.size, cancel);
    if (result == FsResult::Ok) result = file->TakeStatus(status);
    if (result == FsResult::Ok) result = flush == Flush::Now ? Finish() : file->Close();
    return result;
}

FsResult TemporaryFile::Place() {
    const FsResult result = files.Replace(path, target);
    if (result != FsResult::Ok) return result;
    path.clear();
    return files.SyncFolder(GetFolderFromPath(target));
}

FsResult TemporaryFile::PlaceAsWritten() {
    const FsResult result = files.RenameAsWritten(path, target);
    if (result == FsResult::Ok) path.clear();
    return result;
}

FsResult TemporaryFile::PlaceNew() {
    const FsResult result = files.Rename(path, target);
    if (result != FsResult::Ok) return result;
    path.clear();
    return files.SyncFolder(GetFolderFromPath(target));
}

void TemporaryFile::Discard() {
    file.reset();
    if (path.empty()) return;
    // A copy of a read-only file is one itself.
    if (files.Remove(path) == FsResult::ReadOnly && files.SetReadOnly(path, false) == FsResult::Ok) {
        static_cast<void>(files.Remove(path));
    }
    path.clear();
}

}  // namespace orv
