#include <atomic>
#include <utility>

#include "platform/os/FileSystem.h"
#include "platform/text/PathText.h"

namespace orv {

struct FailingFileSystem::Counter {
    Counter(int at, std::function<void()> instead, FileSystem& forwardTo)
        : failAt(at), onFailure(std::move(instead)), base(forwardTo) {}

    /// Counts one call and tells whether it is the one that fails.
    bool Fails() {
        if (++calls != failAt) return false;
        if (onFailure) onFailure();
        return true;
    }
    template <class Call>
    FsResult Forward(Call call) {
        return Fails() ? FsResult::Failed : call();
    }

    const int failAt;
    const std::function<void()> onFailure;
    FileSystem& base;
    std::atomic<int> calls{0};
};

namespace {

/// A file whose calls count with those of the file system that opened it.
template <class Counter>
class FailingFile : public File {
public:
    FailingFile(std::shared_ptr<Counter> shared, std::unique_ptr<File> opened)
        : counter(std::move(shared)), base(std::move(opened)) {}
    FsResult Read(void* data, std::size_t size, std::size_t& got) override {
        return counter->Forward([&] { return base->Read(data, size, got); });
    }
    FsResult Write(const void* data, std::size_t size) override {
        return counter->Forward([&] { return base->Write(data, size); });
    }
    FsResult Seek(std::uint64_t position) override {
        return counter->Forward([&] { return base->Seek(position); });
    }
    FsResult Length(std::uint64_t& length) override {
        return counter->Forward([&] { return base->Length(length); });
    }
    FsResult Truncate(std::uint64_t length) override {
        return counter->Forward([&] { return base->Truncate(length); });
    }
    FsResult Status(FileStatus& status) override {
        return counter->Forward([&] { return base->Status(status); });
    }
    FsResult TakeStatus(const FileStatus& status) override {
        return counter->Forward([&] { return base->TakeStatus(status); });
    }
    FsResult Sync() override {
        return counter->Forward([&] { return base->Sync(); });
    }
    FsResult Close() override {
        return counter->Forward([&] { return base->Close(); });
    }

private:
    std::shared_ptr<Counter> counter;
    std::unique_ptr<File> base;
};

}  // namespace

FailingFileSystem::FailingFileSystem(int failAt, std::function<void()> onFailure, FileSystem& base)
    : counter(std::make_shared<Counter>(failAt, std::move(onFailure), base)) {}

FailingFileSystem::~FailingFileSystem() = default;

int FailingFileSystem::Calls() const {
    return counter->calls;
}

bool FailingFileSystem::HasFailed() const {
    return counter->failAt > 0 && counter->calls >= counter->failAt;
}

FsResult FailingFileSystem::Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) {
    return counter->Forward([&] {
        std::unique_ptr<File> opened;
        const FsResult result = counter->base.Open(path, mode, opened);
        if (result == FsResult::Ok) file = std::make_unique<FailingFile<Counter>>(counter, std::move(opened));
        return result;
    });
}

FsResult FailingFileSystem::Status(std::wstring_view path, FileStatus& status) {
    return counter->Forward([&] { return counter->base.Status(path, status); });
}

FsResult FailingFileSystem::List(std::wstring_view folder, std::vector<FolderEntry>& entries) {
    return counter->Forward([&] { return counter->base.List(folder, entries); });
}

FsResult FailingFileSystem::MakeFolder(std::wstring_view path) {
    return counter->Forward([&] { return counter->base.MakeFolder(path); });
}

FsResult FailingFileSystem::Remove(std::wstring_view path) {
    return counter->Forward([&] { return counter->base.Remove(path); });
}

FsResult FailingFileSystem::RemoveFolder(std::wstring_view path) {
    return counter->Forward([&] { return counter->base.RemoveFolder(path); });
}

FsResult FailingFileSystem::Rename(std::wstring_view from, std::wstring_view to) {
    return counter->Forward([&] { return counter->base.Rename(from, to); });
}

FsResult FailingFileSystem::RenameAsWritten(std::wstring_view from, std::wstring_view to) {
    return counter->Forward([&] { return counter->base.RenameAsWritten(from, to); });
}
FsResult FailingFileSystem::Replace(std::wstring_view from, std::wstring_view to) {
    return counter->Forward([&] { return counter->base.Replace(from, to); });
}

FsResult FailingFileSystem::CopyAttributes(std::wstring_view from, std::wstring_view to) {
    return counter->Forward([&] { return counter->base.CopyAttributes(from, to); });
}

FsResult FailingFileSystem::CopyOwner(std::wstring_view from, std::wstring_view to) {
    return counter->Forward([&] { return counter->base.CopyOwner(from, to); });
}

FsResult FailingFileSystem::SetReadOnly(std::wstring_view path, bool readOnly) {
    return counter->Forward([&] { return counter->base.SetReadOnly(path, readOnly); });
}

FsResult FailingFileSystem::SetModified(std::wstring_view path, std::int64_t seconds, std::int64_t nanoseconds) {
    return counter->Forward([&] { return counter->base.SetModified(path, seconds, nanoseconds); });
}

FsResult FailingFileSystem::SyncVolume(std::wstring_view folder) {
    return counter->Forward([&] { return counter->base.SyncVolume(folder); });
}
FsResult FailingFileSystem::SyncFolder(std::wstring_view folder) {
    return counter->Forward([&] { return counter->base.SyncFolder(folder); });
}

std::optional<std::uint64_t> FailingFileSystem::FreeSpace(std::wstring_view path) {
    if (counter->Fails()) return std::nullopt;
    return counter->base.FreeSpace(path);
}

std::wstring FailingFileSystem::RealPath(std::wstring_view path) {
    return counter->Fails() ? ToNativePath(path) : counter->base.RealPath(path);
}

}  // namespace orv
