#include "project/AppConfig.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "core/SectionNumber.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "project/FileDependencies.h"

namespace orv {

namespace {

constexpr std::wstring_view kMaster = L"Master", kACServer = L"ACServer", kColorTables = L"COLORTABLES";
constexpr std::wstring_view kVessel = L"Vessel";  // stem of its sections
constexpr const wchar_t *kRemotes = L"Remote(%d)", *kPresentations = L"Presentation(%d)";

constexpr std::wstring_view kName = L"Name", kPort = L"Port", kProfile = L"UserInterfaceProfile", kLayout = L"Layout";
constexpr std::wstring_view kEnable = L"Enable", kVesselConfig = L"VesselConfig";
constexpr std::wstring_view kRemoteId = L"RemoteVesselId", kRemoteHost = L"RemoteVesselHost";
constexpr std::wstring_view kRemotePort = L"RemoteVesselPort", kRemoteConfig = L"RemoteVesselAppConfig";
constexpr std::wstring_view kRateEnabled = L"RemoteVesselRateEnabled", kUpdateRate = L"RemoteVesselUpdateRate";

std::wstring VesselSection(unsigned id) {
    return NumberedName(kVessel, id);
}

/// The number in the place of the format's "%d" or "%u"; empty without one, as then all numbers name one section.
std::wstring Formatted(const std::wstring& format, int no) {
    const std::size_t at = std::min(format.find(L"%d"), format.find(L"%u"));
    if (at == format.npos) return {};
    return format.substr(0, at) + IntText(no) + format.substr(at + 2);
}

// A user's name becomes part of a key, so what ends a key or looks like a section goes.
std::wstring LayoutKey(std::wstring& user) {
    if (user.empty()) return std::wstring(kLayout);
    std::erase_if(user, [](wchar_t c) { return c == L'=' || c == L'[' || c == L']'; });
    return std::wstring(kLayout) + L"(" + user + L")";
}

void CompleteProfile(std::wstring& profile, std::wstring_view mark) {
    if (profile.empty()) profile = L"Default";
    if (profile.find(mark) == profile.npos) profile += mark;
}

}  // namespace

// ---- vessels

bool AppConfig::GetVesselConfig(unsigned id, std::wstring& name) const {
    return GetItem(VesselSection(id), kVesselConfig, name);
}

bool AppConfig::SetVesselConfig(unsigned id, const std::wstring& name) {
    return SetItem(VesselSection(id), kVesselConfig, name, true);
}

bool AppConfig::GetVesselEnable(unsigned id, bool& enable) const {
    return GetItem(VesselSection(id), kEnable, enable);
}

bool AppConfig::SetVesselEnable(unsigned id, bool enable) {
    return SetItem(VesselSection(id), kEnable, enable, true);
}

bool AppConfig::SetRemoteVessel(unsigned id, unsigned remoteId, const std::wstring& host, unsigned port,
                                bool rateEnabled, double rate, const std::wstring& config) {
    const std::wstring section = VesselSection(id);
    return SetItem(section, kRemoteId, remoteId, true) && SetItem(section, kRemoteHost, host, true) &&
           SetItem(section, kRemotePort, port, true) && SetItem(section, kRateEnabled, rateEnabled, true) &&
           SetItem(section, kUpdateRate, rate, true) && SetItem(section, kRemoteConfig, config, true);
}

bool AppConfig::GetRemoteVesselId(unsigned id, unsigned& remoteId) const {
    return GetItem(VesselSection(id), kRemoteId, remoteId);
}

bool AppConfig::GetRemoteVesselHost(unsigned id, std::wstring& host, unsigned& port) const {
    const std::wstring section = VesselSection(id);
    const bool hasHost = GetItem(section, kRemoteHost, host);
    return GetItem(section, kRemotePort, port) && hasHost;
}

bool AppConfig::GetRemoteUpdateRate(unsigned id, bool& enabled, double& rate) const {
    const std::wstring section = VesselSection(id);
    const bool hasEnabled = GetItem(section, kRateEnabled, enabled);
    return GetItem(section, kUpdateRate, rate) && hasEnabled;
}

bool AppConfig::GetRemoteConfig(unsigned id, std::wstring& config) const {
    return GetItem(VesselSection(id), kRemoteConfig, config);
}

void AppConfig::ScanForVessels() {
    vesselIds.clear();
    FobjSection cursor;
    std::wstring section;
    for (bool more = GetFirstSectionEntry(cursor, section); more; more = GetNextSectionEntry(cursor, section)) {
        if (const auto id = NumberOfName(section, kVessel)) vesselIds.push_back(*id);
    }
    std::sort(vesselIds.begin(), vesselIds.end());
}

bool AppConfig::GetFirstVesselId(unsigned& id) {
    ScanForVessels();
    unsigned first = 0;
    if (!GetNextVesselId(first)) return false;
    id = first;
    return true;
}

bool AppConfig::GetNextVesselId(unsigned& id) const {
    const auto next = std::upper_bound(vesselIds.begin(), vesselIds.end(), id);
    if (next == vesselIds.end()) return false;
    id = *next;
    return true;
}

void AppConfig::RemoveAllVessels() {
    FobjSection cursor;
    std::wstring section;
    for (bool more = GetFirstSectionEntry(cursor, section); more; more = GetNextSectionEntry(cursor, section)) {
        if (NumberOfName(section, kVessel)) DeleteSection(cursor, section);
    }
}

// ---- computers

bool AppConfig::GetMaster(std::wstring& name, unsigned& port, std::wstring& profile) const {
    profile = L"Default[Master]";
    const bool hasName = GetItem(kMaster, kName, name);
    return GetItem(kMaster, kPort, port) && hasName;
}

bool AppConfig::SetMaster(const std::wstring& name, unsigned port, const std::wstring& profile) {
    return SetItem(kMaster, kName, name, true) && SetItem(kMaster, kPort, port, true) &&
           SetItem(kMaster, kProfile, profile, true);
}

bool AppConfig::GetRemote(int no, std::wstring& name, unsigned& port) const {
    const std::wstring section = Formatted(kRemotes, no);
    if (!HasSection(section)) return false;
    GetItem(section, kName, name);
    GetItem(section, kPort, port);
    return true;
}

bool AppConfig::SetRemote(int no, const std::wstring& name, unsigned port) {
    const std::wstring section = Formatted(kRemotes, no);
    return SetItem(section, kName, name, true) && SetItem(section, kPort, port, true);
}

bool AppConfig::GetACServer(std::wstring& name, unsigned& port, std::wstring& layout, std::wstring& profile,
                            std::wstring& user) const {
    bool good = false;
    if (HasSection(kACServer)) {
        const bool hasName = GetItem(kACServer, kName, name);
        good = GetItem(kACServer, kPort, port) && hasName;
        ReadStation(kACServer, layout, profile, user);
    }
    CompleteProfile(profile, L"[AcqComp]");
    return good;
}

bool AppConfig::SetACServer(const std::wstring& name, unsigned port, const std::wstring& layout,
                            const std::wstring& profile, std::wstring& user) {
    return SetItem(kACServer, kName, name, true) && SetItem(kACServer, kPort, port, true) &&
           SetItem(kACServer, LayoutKey(user), layout, true) && SetItem(kACServer, kProfile, profile, true);
}

bool AppConfig::GetPresentation(int no, std::wstring& name, std::wstring& layout, std::wstring& profile,
                                std::wstring& user, bool& enable) const {
    const std::wstring section = Formatted(kPresentations, no);
    bool good = false;
    if (HasSection(section)) {
        good = GetItem(section, kName, name);
        ReadStation(section, layout, profile, user);
        enable = true;
        GetItem(section, kEnable, enable);
    }
    CompleteProfile(profile, L"[Presentation]");
    return good;
}

bool AppConfig::SetPresentation(int no, const std::wstring& name, const std::wstring& layout,
                                const std::wstring& profile, std::wstring& user, bool enable) {
    const std::wstring section = Formatted(kPresentations, no);
    return SetItem(section, kName, name, true) && SetItem(section, LayoutKey(user), layout, true) &&
           SetItem(section, kProfile, profile, true) && SetItem(section, kEnable, enable, true);
}

void AppConfig::ReadStation(std::wstring_view section, std::wstring& layout, std::wstring& profile,
                            std::wstring& user) const {
    if (!GetItem(section, LayoutKey(user), layout)) GetItem(section, kLayout, layout);
    GetItem(section, kProfile, profile);
}

bool AppConfig::RemovePresentation(int no) {
    return DeleteSection(Formatted(kPresentations, no));
}

int AppConfig::GetNumEntries(const std::wstring& format) const {
    int last = 0;
    while (HasSection(Formatted(format, last + 1))) ++last;
    return last == 0 ? -1 : last;
}

bool AppConfig::FindRemote(const std::wstring& name, int& no) const {
    const int last = GetNumEntries(kRemotes);
    no = last < 1 ? 1 : last + 1;
    for (int i = 1; i <= last; ++i) {
        std::wstring known;
        if (!GetItem(Formatted(kRemotes, i), kName, known) || !EqualNoCase(known, name)) continue;
        no = i;
        return true;
    }
    return false;
}

bool AppConfig::FindPresentation(int remoteNo, int& no) const {
    const int last = GetNumEntries(kPresentations);
    const std::wstring remote = Formatted(kRemotes, remoteNo);
    for (int i = std::max(no, 0); i < last;) {
        ++i;
        std::wstring name, layout, profile, user;
        bool enable = false;
        if (!GetPresentation(i, name, layout, profile, user, enable) || !EqualNoCase(name, remote)) continue;
        no = i;
        return true;
    }
    return false;
}

// ---- colours

bool AppConfig::GetUseProjectColorTables() const {
    bool enabled = false;
    GetItem(kColorTables, L"Enabled", enabled);
    return enabled;
}

std::wstring AppConfig::GetColorTable(int kind) const {
    if (kind != 0) return {};
    std::wstring name = L"Default";
    GetItem(kColorTables, L"Depth", name);
    return name;
}

void AppConfig::GetDependencies(const std::wstring& path, FileDependencies& dependencies) {
    AppConfig config;
    if (!config.FileOpen(path, kOpenRead)) return;
    unsigned id = 0;
    for (bool more = config.GetFirstVesselId(id); more; more = config.GetNextVesselId(id)) {
        std::wstring name;
        if (!config.GetVesselConfig(id, name)) continue;
        dependencies.Add(kFileTypeVesselConfig, name);
        dependencies.Add(kFileTypeVesselSetup, name.substr(0, name.find(L'[')));
    }
}

}  // namespace orv
