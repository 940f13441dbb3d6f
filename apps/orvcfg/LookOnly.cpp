#include "LookOnly.h"

namespace orv::cfg {

namespace {

constexpr FsResult kRefused = FsResult::ReadOnly;

class ReadOnlyFiles : public FileSystem {
public:
    FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) override {
        const bool changes = mode.write || mode.create || mode.createNew || mode.truncate;
        return changes ? kRefused : base.Open(path, mode, file);
    }
    FsResult Status(std::wstring_view path, FileStatus& status) override { return base.Status(path, status); }
    FsResult List(std::wstring_view folder, std::vector<FolderEntry>& entries) override {
        return base.List(folder, entries);
    }
    std::optional<std::uint64_t> FreeSpace(std::wstring_view path) override { return base.FreeSpace(path); }
    std::wstring RealPath(std::wstring_view path) override { return base.RealPath(path); }

    FsResult MakeFolder(std::wstring_view) override { return kRefused; }
    FsResult Remove(std::wstring_view) override { return kRefused; }
    FsResult RemoveFolder(std::wstring_view) override { return kRefused; }
    FsResult Rename(std::wstring_view, std::wstring_view) override { return kRefused; }
    FsResult RenameAsWritten(std::wstring_view, std::wstring_view) override { return kRefused; }
    FsResult Replace(std::wstring_view, std::wstring_view) override { return kRefused; }
    FsResult CopyAttributes(std::wstring_view, std::wstring_view) override { return kRefused; }
    FsResult CopyOwner(std::wstring_view, std::wstring_view) override { return kRefused; }
    FsResult SetReadOnly(std::wstring_view, bool) override { return kRefused; }
    FsResult SetModified(std::wstring_view, std::int64_t, std::int64_t) override { return kRefused; }
    FsResult SyncFolder(std::wstring_view) override { return kRefused; }
    FsResult SyncVolume(std::wstring_view) override { return kRefused; }

private:
    FileSystem& base = RealFileSystem();
};

int depth = 0;  // a report looks at what the doctor looks at

}  // namespace

LookOnly::LookOnly() {
    static ReadOnlyFiles files;
    if (depth++ == 0) SetFileSystem(&files);
}

LookOnly::~LookOnly() {
    if (--depth == 0) SetFileSystem(nullptr);
}

bool LookOnly::InForce() {
    return depth > 0;
}

}  // namespace orv::cfg
