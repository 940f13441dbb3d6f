#include "platform/os/NameOnDisk.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <optional>

#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// True unless the system says that there is no such name; a name that we may not look at counts as there.
bool MayExist(const std::string& name) {
    struct stat status;
    return lstat(name.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

/// The first name in ordinal order that equals `wanted` but for case. Data comes from systems that don't tell case
/// apart, so several such names in one folder are rare but must give the same answer each time.
std::optional<std::string> Match(const std::string& folder, const std::string& wanted) {
    const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries) return std::nullopt;
    const std::wstring wantedText = PathFromBytes(wanted);
    std::optional<std::string> found;
    while (const dirent* const entry = readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        // The order of UTF-8 bytes is that of the characters.
        if (EqualNoCase(PathFromBytes(name), wantedText) && (!found || name < *found)) found = name;
    }
    return found;
}

}  // namespace

std::string FolderOnDisk(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    return slash == std::string::npos ? "./" : name.substr(0, slash + 1);
}

std::string NameOnDisk(std::wstring_view path, LastName last) {
    if (path.find(L'\0') != std::wstring_view::npos) return {};
    std::string name = PathToBytes(path);
    if (MayExist(name)) return name;
    if (last == LastName::AsWritten && MayExist(FolderOnDisk(name))) return name;
    std::string found;
    std::size_t at = 0;
    while (at < name.size()) {
        std::size_t end = name.find_first_not_of('/', at);
        if (end == at) {
            end = std::min(name.find('/', at), name.size());
            std::string component = name.substr(at, end - at);
            const bool match = end < name.size() || last == LastName::Find;
            if (match && !MayExist(found + component)) {
                const auto other = Match(found, component);
                if (!other) return found + name.substr(at);
                component = *other;
            }
            found += component;
        } else {
            end = std::min(end, name.size());
            found.append(name, at, end - at);
        }
        at = end;
    }
    return found;
}

}  // namespace orv
