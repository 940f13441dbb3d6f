#include "platform/service/BrandingConfig.h"

#include "platform/text/PathText.h"

namespace orv {

BrandingConfig& BrandingConfig::Instance() {
    static BrandingConfig config;
    return config;
}

bool BrandingConfig::GetRootProgramDataFolder(std::wstring& out) const {
    if (root.empty()) return false;
    out = root;
    return true;
}

std::wstring BrandingConfig::GetProgramDataFolder() const {
    return programData;
}

std::wstring BrandingConfig::GetAppNameShort() const {
    return appNameShort;
}

void BrandingConfig::SetRootProgramDataFolder(std::wstring_view folder) {
    root = WithoutSeparator(ToNativePath(folder));
}

void BrandingConfig::SetProgramDataFolder(std::wstring_view folder) {
    programData = WithSeparator(ToNativePath(folder));
}

void BrandingConfig::SetAppNameShort(std::wstring_view name) {
    appNameShort = name;
}

}  // namespace orv
