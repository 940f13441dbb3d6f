#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Export.h"
#include "platform/coord/OrvGeoCoordSysBase.h"

namespace orv {

/// Loads coordinate modules at run time. A module with key `ORVCoordSys` is the shared object `ORVCoordSys.so`, looked
/// for in the folders of `SearchFolders` in turn; it exports `extern "C" bool OrvRegisterCoordSysModule(unsigned
/// interfaceVersion)`, which enters its factories into the two lists below. Main thread.
class ORV_EXPORT OrvGeoCoordSysLoader {
public:
    static OrvGeoCoordSysLoader& Instance();
    /// True once the module with that key is loaded and its factories are registered; the key is matched ignoring
    /// case. A module is loaded once and stays. `object` is not used.
    bool LoadDLL(const std::wstring& key, OrvGeoCoordSysBase* object);
    /// Why the last `LoadDLL` failed, for tools; empty if it didn't.
    std::wstring LastError() const { return lastError; }

    /// A host may name the one folder to look in; an empty text puts the default back: the folder of this library,
    /// `orv/modules` below it, and the folder of the running program.
    void SetSearchFolder(const std::wstring& folder);
    std::vector<std::wstring> SearchFolders() const;

private:
    std::wstring searchFolder;
    std::wstring lastError;
};

inline constexpr unsigned kCoordSysInterfaceVersion = 1;

/// Factories by module key (matched ignoring case). Registering a key again replaces its factory; an empty factory
/// takes it out. Main thread.
class ORV_EXPORT OrvGeoCoordSysList {
public:
    using Factory = std::function<std::unique_ptr<OrvGeoCoordSysBase>()>;
    static OrvGeoCoordSysList& GetCoordSysList();
    /// A new object, or null if no module of that key is loaded.
    std::unique_ptr<OrvGeoCoordSysBase> Create(const std::wstring& key) const;
    void Register(const std::wstring& key, Factory factory);
    bool Has(const std::wstring& key) const;

private:
    std::vector<std::pair<std::wstring, Factory>> factories;
};

class ORV_EXPORT OrvGeoDatabaseBaseList {
public:
    using Factory = std::function<std::unique_ptr<OrvGeoDatabaseBase>()>;
    static OrvGeoDatabaseBaseList& GetGeoDatabaseList();
    std::unique_ptr<OrvGeoDatabaseBase> Create(const std::wstring& key) const;
    void Register(const std::wstring& key, Factory factory);

private:
    std::vector<std::pair<std::wstring, Factory>> factories;
};

}  // namespace orv
