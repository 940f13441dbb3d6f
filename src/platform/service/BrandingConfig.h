#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// Where an installation keeps machine-wide data when a host doesn't say: `/var/lib` and, below it, `orv/`. A host may
/// set others before `DataSearch::Initialise`. Main thread.
class ORV_EXPORT BrandingConfig {
public:
    static BrandingConfig& Instance();

    /// Root of machine-wide program data, without a separator at its end; false if it is set to nothing.
    bool GetRootProgramDataFolder(std::wstring& out) const;
    /// The suite's folder below the root; ends in a separator.
    std::wstring GetProgramDataFolder() const;
    std::wstring GetAppNameShort() const;

    void SetRootProgramDataFolder(std::wstring_view folder);
    void SetProgramDataFolder(std::wstring_view folder);
    void SetAppNameShort(std::wstring_view name);

private:
    std::wstring root = L"/var/lib";
    std::wstring programData = L"orv/";
    std::wstring appNameShort = L"Orv";
};

}  // namespace orv
