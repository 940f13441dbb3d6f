#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/os/FileSystem.h"

namespace orv {

/// A new file beside its target, to be written whole and then put in the target's place in one step; removed when it
/// goes before that. One thread.
class TemporaryFile {
public:
    TemporaryFile(FileSystem& fileSystem, std::wstring_view targetPath) : files(fileSystem), target(targetPath) {}
    ~TemporaryFile() { Discard(); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Makes it under a hidden name that nobody else uses.
    [[nodiscard]] FsResult Create(bool ownerOnly = false);
    [[nodiscard]] FsResult Write(std::string_view bytes) { return file->Write(bytes.data(), bytes.size()); }
    /// To the disk, and closes.
    [[nodiscard]] FsResult Finish();
    enum class Flush { Now, Later };
    /// Create, Write and Finish with the content of another file, with its mode, owner and modification time. `Later`:
    /// the caller has it flushed with others.
    [[nodiscard]] FsResult CopyFrom(std::wstring_view source, const std::atomic<bool>* cancel,
                                    Flush flush = Flush::Now);
    /// Mode and owner of `other`.
    [[nodiscard]] FsResult TakeAttributes(std::wstring_view other) { return files.CopyAttributes(other, path); }

    /// Owner of `other`; the mode stays.
    [[nodiscard]] FsResult TakeOwner(std::wstring_view other) { return files.CopyOwner(other, path); }

    /// In the place of the target, whether there is one or not; flushes the folder.
    [[nodiscard]] FsResult Place();
    /// The same, but Exists if there is a target.
    [[nodiscard]] FsResult PlaceNew();
    /// The same under a name that the folder is known not to hold in any case; flushes nothing.
    [[nodiscard]] FsResult PlaceAsWritten();
    void Discard();

private:
    [[nodiscard]] FsResult CopyBlocks(File& from, std::uint64_t size, const std::atomic<bool>* cancel);
    FileSystem& files;
    std::wstring target;
    std::wstring path;  ///< empty while there is no file to clean up
    std::unique_ptr<File> file;
};

}  // namespace orv
