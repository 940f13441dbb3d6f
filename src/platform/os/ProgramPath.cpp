#include "platform/os/ProgramPath.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <limits>
#include <mutex>

#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

struct Hook {
    std::mutex mutex;
    std::wstring path;     // empty: ask the system
    bool missing = false;  // pretend that it can't tell
};

Hook& TheHook() {
    static Hook hook;
    return hook;
}

std::wstring AskSystem() {
    std::array<char, 4096> bytes;
    const ssize_t size = readlink("/proc/self/exe", bytes.data(), bytes.size());
    if (size <= 0 || static_cast<std::size_t>(size) == bytes.size()) return {};
    return PathFromBytes({bytes.data(), static_cast<std::size_t>(size)});
}

/// First line of the file that a build leaves beside its programs; empty if there is none.
std::wstring ReadDataRoot(const std::wstring& folder) {
    std::string bytes;
    if (ReadWholeFile(folder + L"orv-data-root", bytes, Share::DenyNone, 65536) != FsResult::Ok) return {};
    const std::wstring line = PathFromBytes(bytes.substr(0, bytes.find_first_of("\r\n")));
    return ToNativePath(TrimBlanks(line));
}

constexpr std::wstring_view kDataFolder = L"share/orv/";

// <prefix>/share/orv/ where this library lies in <prefix>/lib/ or a folder below it.
std::wstring DataFolderOfLibrary() {
    Dl_info info;
    if (dladdr(reinterpret_cast<const void*>(&DataFolderOfLibrary), &info) == 0 || !info.dli_fname) return {};
    std::wstring folder = GetFolderFromPath(RealFileSystem().RealPath(PathFromBytes(info.dli_fname)));
    for (int level = 0; level < 2 && !folder.empty(); ++level) {
        const std::wstring inner = WithoutSeparator(folder);
        folder = GetFolderFromPath(inner);
        if (GetNameFromPath(inner) == L"lib") return folder + std::wstring(kDataFolder);
    }
    return {};
}

}  // namespace

bool GetProgramPath(std::wstring& path, std::size_t limit) {
    std::wstring found;
    {
        Hook& hook = TheHook();
        const std::lock_guard lock(hook.mutex);
        if (hook.missing) return false;
        found = hook.path;
    }
    if (found.empty()) found = AskSystem();
    if (found.empty() || Utf16Length(found) > limit) return false;
    path = std::move(found);
    return true;
}

void SetProgramPath(std::wstring_view path) {
    Hook& hook = TheHook();
    const std::lock_guard lock(hook.mutex);
    hook.path = ToNativePath(path);
    hook.missing = false;
}

void SetProgramPathMissing() {
    Hook& hook = TheHook();
    const std::lock_guard lock(hook.mutex);
    hook.missing = true;
}

bool GetModulePath(std::wstring& path, std::size_t limit) {
    return GetProgramPath(path, limit);
}

std::wstring GetAppPath() {
    std::wstring program;
    if (!GetProgramPath(program, std::numeric_limits<std::size_t>::max())) return {};
    return GetFolderFromPath(program);
}

bool CheckAppPathForDevelopEnvironment(std::wstring& folder) {
    if (folder.empty()) return false;
    const std::wstring base = WithSeparator(folder);
    if (const std::wstring root = ReadDataRoot(base); !root.empty()) {
        folder = WithSeparator(root);
        return true;
    }
    const std::wstring bin = WithoutSeparator(base);
    std::wstring share;
    if (GetNameFromPath(bin) == L"bin") share = GetFolderFromPath(bin) + std::wstring(kDataFolder);
    // A host that is still in its own build tree belongs to the installation whose library it runs with, unless it
    // brings system files of its own.
    if (!FolderExists(share) && FindFiles(base, L"*.ini").empty()) share = DataFolderOfLibrary();
    if (!FolderExists(share)) return false;
    folder = share;
    return true;
}

}  // namespace orv
