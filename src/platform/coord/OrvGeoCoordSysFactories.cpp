#include "platform/coord/OrvGeoCoordSysFactories.h"

#include <dlfcn.h>

#include <algorithm>
#include <utility>

#include "platform/os/FileTools.h"
#include "platform/os/ProgramPath.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

template <class Factories>
auto Find(Factories& factories, const std::wstring& key) {
    return std::find_if(factories.begin(), factories.end(),
                        [&](const auto& entry) { return EqualNoCase(entry.first, key); });
}

template <class Factory>
void Enter(std::vector<std::pair<std::wstring, Factory>>& factories, const std::wstring& key, Factory factory) {
    const auto found = Find(factories, key);
    if (!factory) {
        if (found != factories.end()) factories.erase(found);
    } else if (found != factories.end()) {
        found->second = std::move(factory);
    } else {
        factories.emplace_back(key, std::move(factory));
    }
}

/// Why the last call of the loader failed.
std::wstring LoaderError() {
    const char* const text = dlerror();
    return text ? FromUtf8(text) : L"unknown error";
}

/// Loads one file and has it register itself; empty if that went well, else the reason.
std::wstring LoadModule(const std::wstring& path) {
    void* const module = dlopen(PathToBytes(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) return LoaderError();
    using Register = bool (*)(unsigned);
    const auto enter = reinterpret_cast<Register>(dlsym(module, "OrvRegisterCoordSysModule"));
    if (!enter) {
        std::wstring reason = LoaderError();
        dlclose(module);
        return reason;
    }
    // From here on the lists may hold factories whose code is in the module, so it stays whatever it answers.
    return enter(kCoordSysInterfaceVersion)
               ? L""
               : path + L" refuses interface version " + IntText(kCoordSysInterfaceVersion);
}

}  // namespace

OrvGeoCoordSysLoader& OrvGeoCoordSysLoader::Instance() {
    static OrvGeoCoordSysLoader loader;
    return loader;
}

bool OrvGeoCoordSysLoader::LoadDLL(const std::wstring& key, OrvGeoCoordSysBase* /*object*/) {
    lastError.clear();
    const OrvGeoCoordSysList& list = OrvGeoCoordSysList::GetCoordSysList();
    if (list.Has(key)) return true;
    // The key may come from a project: it must not lead out of the folders.
    if (key.empty() || !IsAllowedName(key)) {
        lastError = L"'" + key + L"' is no module key";
        return false;
    }
    std::wstring errors;
    for (const std::wstring& folder : SearchFolders()) {
        if (!errors.empty()) errors += L"; ";
        const std::wstring path = folder + key + L".so";
        if (!FileExists(path)) {
            errors += L"no " + path;
            continue;
        }
        std::wstring reason = LoadModule(Files().RealPath(path));
        if (list.Has(key)) return true;
        if (reason.empty()) reason.append(path).append(L" doesn't register ").append(key);
        errors += reason;
    }
    lastError = errors;
    return false;
}

void OrvGeoCoordSysLoader::SetSearchFolder(const std::wstring& folder) {
    searchFolder = WithSeparator(ToNativePath(folder));
}

std::vector<std::wstring> OrvGeoCoordSysLoader::SearchFolders() const {
    if (!searchFolder.empty()) return {searchFolder};
    std::vector<std::wstring> folders;
    Dl_info library;
    if (dladdr(reinterpret_cast<void*>(&LoadModule), &library) != 0 && library.dli_fname) {
        const std::wstring folder = GetFolderFromPath(Files().RealPath(PathFromBytes(library.dli_fname)));
        folders = {folder, folder + L"orv/modules/"};
    }
    if (std::wstring program = GetAppPath(); !program.empty()) folders.push_back(std::move(program));
    return folders;
}

OrvGeoCoordSysList& OrvGeoCoordSysList::GetCoordSysList() {
    static OrvGeoCoordSysList list;
    return list;
}

std::unique_ptr<OrvGeoCoordSysBase> OrvGeoCoordSysList::Create(const std::wstring& key) const {
    const auto found = Find(factories, key);
    return found == factories.end() ? nullptr : found->second();
}

void OrvGeoCoordSysList::Register(const std::wstring& key, Factory factory) {
    Enter(factories, key, std::move(factory));
}

bool OrvGeoCoordSysList::Has(const std::wstring& key) const {
    return Find(factories, key) != factories.end();
}

OrvGeoDatabaseBaseList& OrvGeoDatabaseBaseList::GetGeoDatabaseList() {
    static OrvGeoDatabaseBaseList list;
    return list;
}

std::unique_ptr<OrvGeoDatabaseBase> OrvGeoDatabaseBaseList::Create(const std::wstring& key) const {
    const auto found = Find(factories, key);
    return found == factories.end() ? nullptr : found->second();
}

void OrvGeoDatabaseBaseList::Register(const std::wstring& key, Factory factory) {
    Enter(factories, key, std::move(factory));
}

}  // namespace orv
