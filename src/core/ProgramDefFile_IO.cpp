#include "core/ProgramDefFile_IO.h"

#include <array>

#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

// Rows of VESSEL_SECTION and NETWORK_SECTION.
constexpr std::wstring_view kMultiObject = vesselKeys[0], kMultiObjectMax = vesselKeys[1];
constexpr std::wstring_view kRelativeObject = vesselKeys[2], kRelativeObjectMax = vesselKeys[3];
constexpr std::wstring_view kDynamicObject = vesselKeys[4];
constexpr std::wstring_view kSimulation = vesselKeys[6], kDisableLogging = vesselKeys[7];
constexpr std::wstring_view kNetworkSupport = networkKeys[0];
constexpr std::wstring_view kRemoteMax = networkKeys[1], kPresentationMax = networkKeys[2];

// Index of a key, ignoring case; the table's size if it isn't there.
template <std::size_t N>
unsigned RowOf(const std::array<std::wstring_view, N>& table, std::wstring_view key) {
    unsigned row = 0;
    while (row < N && !EqualNoCase(table[row], key)) ++row;
    return row;
}

}  // namespace

bool ProgramDefFile_IO::Initialise(const std::wstring& name, bool verifyFileName) {
    SetErrorStatus(kFileOk);
    initialised = false;
    FileClose();
    initialised = FileOpen(name, verifyFileName, kOpenRead);
    return initialised;
}

template <class T>
bool ProgramDefFile_IO::Read(std::wstring_view section, std::wstring_view key, T& out) const {
    return initialised && GetItem(section, key, out);
}

template <class T>
bool ProgramDefFile_IO::ReadOr(const T& absent, std::wstring_view section, std::wstring_view key, T& out) const {
    if (initialised) out = absent;
    return Read(section, key, out);
}

bool ProgramDefFile_IO::Fail(int status) const {
    SetErrorStatus(status);
    return false;
}

bool ProgramDefFile_IO::GetFilePermissions(const std::wstring& key, bool& supported, bool& create, bool& select,
                                           int* location) const {
    const unsigned id = RowOf(fileTypeKeys, key);
    if (id == fileTypeKeys.size()) {
        supported = create = select = false;
        return Fail(kFileUnknownTypeKey);
    }
    return GetFilePermissions(id, supported, create, select, location);
}

bool ProgramDefFile_IO::GetFilePermissions(unsigned id, bool& supported, bool& create, bool& select,
                                           int* location) const {
    if (!initialised) return false;
    supported = create = select = true;
    if (location) *location = -1;
    if (id >= fileTypeKeys.size()) return Fail(kFileTypeOutOfRange);
    std::wstring text;
    if (GetItem(FILES_SECTION, fileTypeKeys[id], text)) {
        const COrvString row(text, L',', true);
        row.GetItem(0, supported);
        row.GetItem(1, create);
        row.GetItem(2, select);
        if (location) row.GetItem(3, *location);
    }
    SetErrorStatus(kFileOk);
    return true;
}

bool ProgramDefFile_IO::GetFileSupportFlag(unsigned id, bool& out) const {
    bool create = false, select = false;
    return GetFilePermissions(id, out, create, select);
}

bool ProgramDefFile_IO::GetFileCreateFlag(unsigned id, bool& out) const {
    bool supported = false, select = false;
    return GetFilePermissions(id, supported, out, select);
}

bool ProgramDefFile_IO::GetFileSelectFlag(unsigned id, bool& out) const {
    bool supported = false, create = false;
    return GetFilePermissions(id, supported, create, out);
}

bool ProgramDefFile_IO::GetViewMax(const std::wstring& key, int& out) const {
    if (!initialised) return false;
    const unsigned id = RowOf(viewTypeKeys, key);
    return id < viewTypeKeys.size() ? GetViewMax(id, out) : Fail(kFileUnknownViewKey);
}

bool ProgramDefFile_IO::GetViewMax(unsigned id, int& out) const {
    if (!initialised) return false;
    return id < viewTypeKeys.size() ? GetItem(VIEWS_SECTION, viewTypeKeys[id], out) : Fail(kFileViewOutOfRange);
}

bool ProgramDefFile_IO::GetLayerMax(const std::wstring& name, int& out) const {
    return ReadOr(1, LAYERS_SECTION, name, out);
}

bool ProgramDefFile_IO::GetMultiObjectFlag(bool& out) const {
    return ReadOr(false, VESSEL_SECTION, kMultiObject, out);
}

bool ProgramDefFile_IO::GetRelativeObjectFlag(bool& out) const {
    return ReadOr(false, VESSEL_SECTION, kRelativeObject, out);
}

bool ProgramDefFile_IO::GetDynamicObjectFlag(bool& out) const {
    return ReadOr(false, VESSEL_SECTION, kDynamicObject, out);
}

bool ProgramDefFile_IO::GetSimulationFlag(bool& out) const {
    return ReadOr(false, VESSEL_SECTION, kSimulation, out);
}

bool ProgramDefFile_IO::GetDisableLoggingFlag(bool& out) const {
    return ReadOr(false, VESSEL_SECTION, kDisableLogging, out);
}

bool ProgramDefFile_IO::GetMultiMax(int& out) const {
    return ReadOr(1, VESSEL_SECTION, kMultiObjectMax, out);
}

bool ProgramDefFile_IO::GetRelativeMax(int& out) const {
    return ReadOr(0, VESSEL_SECTION, kRelativeObjectMax, out);
}

bool ProgramDefFile_IO::GetVesselPermissions(bool& multi, int& multiMax, bool& relative, int& relativeMax,
                                             bool& dynamic) const {
    if (!initialised) return false;
    multi = relative = dynamic = false;
    multiMax = 1;
    relativeMax = 0;
    return GetMultiObjectFlag(multi) && (!multi || GetMultiMax(multiMax)) && GetRelativeObjectFlag(relative) &&
           (!relative || GetRelativeMax(relativeMax)) && GetDynamicObjectFlag(dynamic);
}

bool ProgramDefFile_IO::GetDeviceMax(unsigned type, int& out) const {
    return ReadOr(0, DEVICES_SECTION, IntText(type), out);
}

bool ProgramDefFile_IO::GetComputationMax(unsigned type, int& out) const {
    return ReadOr(0, COMPUTATIONS_SECTION, IntText(type), out);
}

bool ProgramDefFile_IO::GetDatasourceMax(unsigned type, int& out) const {
    return ReadOr(0, DATASOURCES_SECTION, IntText(type), out);
}

template <class T>
bool ProgramDefFile_IO::ProgramItem(unsigned id, int item, T& out) const {
    if (id >= programKeys.size()) return Fail(kFileProgramOutOfRange);
    std::wstring text;
    if (!GetItem(PROGRAMS_SECTION, programKeys[id], text)) return false;
    return COrvString(text, L',', true).GetItem(item, out) || Fail(kFileNoConvert);
}

bool ProgramDefFile_IO::GetExecutableName(const std::wstring& key, std::wstring& out) const {
    if (!initialised) return false;
    const unsigned id = RowOf(programKeys, key);
    return id < programKeys.size() ? GetExecutableName(id, out) : Fail(kFileUnknownProgramKey);
}

bool ProgramDefFile_IO::GetExecutableName(unsigned id, std::wstring& out) const {
    return initialised && ProgramItem(id, 1, out);
}

bool ProgramDefFile_IO::GetExecutablePermission(const std::wstring& key, bool& out) const {
    if (!initialised) return false;
    const unsigned id = RowOf(programKeys, key);
    return id < programKeys.size() ? GetExecutablePermission(id, out) : Fail(kFileUnknownProgramKey);
}

bool ProgramDefFile_IO::GetExecutablePermission(unsigned id, bool& out) const {
    return initialised && ProgramItem(id, 0, out);
}

bool ProgramDefFile_IO::GetNetworkSupportFlag(bool& out) const {
    return ReadOr(false, NETWORK_SECTION, kNetworkSupport, out);
}

bool ProgramDefFile_IO::GetRemoteNumMax(int& out) const {
    return ReadOr(0, NETWORK_SECTION, kRemoteMax, out);
}

bool ProgramDefFile_IO::GetPresentationsMax(int& out) const {
    return ReadOr(0, NETWORK_SECTION, kPresentationMax, out);
}

bool ProgramDefFile_IO::GetNetworkPermissions(bool& support, int& remotes, int& presentations) const {
    if (!initialised) return false;
    support = false;
    remotes = presentations = 0;
    return GetNetworkSupportFlag(support) &&
           (!support || (GetRemoteNumMax(remotes) && GetPresentationsMax(presentations)));
}

bool ProgramDefFile_IO::GetCoordSysKey(std::wstring& out) const {
    if (!initialised) return false;
    out = COORDSYS_MODULE_KEY;
    GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysModuleKey], out);
    SetErrorStatus(kFileOk);
    return true;
}

bool ProgramDefFile_IO::FlagOf(std::wstring_view section, std::span<const std::wstring_view> keys, int id,
                               bool& out) const {
    if (!initialised) return false;
    out = false;
    if (id >= 0 && static_cast<std::size_t>(id) < keys.size()) {
        return GetItem(section, keys[static_cast<std::size_t>(id)], out);
    }
    // Not an absent row: whoever merges two definitions must take it as a hard failure.
    return Fail(kFileOk);
}

bool ProgramDefFile_IO::GetLoggingPermission(int id, bool& out) const {
    return FlagOf(LOGGING_SECTION, loggingKeys, id, out);
}

bool ProgramDefFile_IO::GetExportPermission(int id, bool& out) const {
    return FlagOf(EXPORT_SECTION, exportKeys, id, out);
}

bool ProgramDefFile_IO::GetGuidancePermission(int id, bool& out) const {
    return FlagOf(GUIDANCE_SECTION, guidanceKeys, id, out);
}

bool ProgramDefFile_IO::GetToolPermission(const std::wstring& name, bool& out) const {
    return ReadOr(false, TOOL_SECTION, name, out);
}

bool ProgramDefFile_IO::GetUALSupportFlag(bool& out) const {
    return Read(USER_ACCESS_LEVELS_SECTION, USER_ACCESS_LEVELS_SUPPORT, out);
}

}  // namespace orv
