#include <algorithm>
#include <functional>

#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/service/CToolList.h"

namespace orv {

using Definition = ProgramDefFile_IO;

bool DataSearch::Ready() const {
    if (isInit) SetErrorStatus(kSearchOk);
    return isInit;
}

/// Calls `ask(definition)` for the definitions in use, the application's first. False from `ask` means no restriction
/// where the definition lacks the row; any other failure ends the walk with the status of that definition.
template <class Ask>
bool DataSearch::AskDefinitions(Ask ask) const {
    const auto passes = [&](const Definition& definition, int status) {
        return ask(definition) || definition.LastRowAbsent() || Fail(status);
    };
    return (!useAppDef || passes(appDef, kSearchAppDefFailed)) &&
           (!useUserDef || passes(userDef, kSearchUserDefFailed));
}

/// The lower of what `query(definition, value)` gives; kNoLimit if neither restricts.
template <class Query>
bool DataSearch::MergeMaximum(Query query, int& out) const {
    if (!Ready()) return false;
    int merged = kNoLimit;
    const bool good = AskDefinitions([&](const Definition& definition) {
        int value = kNoLimit;
        const bool given = std::invoke(query, definition, value);
        if (given) merged = std::min(merged, value);
        return given;
    });
    if (good) out = merged;
    return good;
}

/// True unless `query(definition, value)` gives false for one, or the user's level forbids the item (0: no item).
template <class Query>
bool DataSearch::MergeFlag(Query query, bool& out, int itemId) const {
    if (!Ready()) return false;
    bool merged = true;
    const bool good = AskDefinitions([&](const Definition& definition) {
        bool value = true;
        const bool given = std::invoke(query, definition, value);
        if (given) merged = merged && value;
        return given;
    });
    if (good) out = merged && (itemId == 0 || PermissionToUseItem(itemId));
    return good;
}

namespace {

using FlagGetter = bool (Definition::*)(bool&) const;
using MaximumGetter = bool (Definition::*)(int&) const;

// The rules of the two merges for an answer of several items. False when the definition fails otherwise than by lacking
// the row; `given` is the definition's own flag.

bool NarrowFlag(const Definition& definition, FlagGetter getter, bool& merged, bool& given) {
    given = false;
    if (!(definition.*getter)(given)) return definition.LastRowAbsent();
    merged = merged && given;
    return true;
}

bool NarrowMaximum(const Definition& definition, MaximumGetter getter, int& merged) {
    int value = kNoLimit;
    if (!(definition.*getter)(value)) return definition.LastRowAbsent();
    merged = std::min(merged, value);
    return true;
}

}  // namespace

bool DataSearch::GetFilePermissions(const CFileType* type, bool& supported, bool& create, bool& select) const {
    if (!Ready()) return false;
    supported = type && type->IsSupported();
    create = type && type->CanCreate();
    select = type && type->CanSelect();
    return type || Fail(kSearchUnknownFileType);
}

bool DataSearch::GetFilePermissions(unsigned id, bool& supported, bool& create, bool& select) const {
    return GetFilePermissions(GetFileTypeList().GetFileTypeID(id), supported, create, select);
}

bool DataSearch::GetFileSupportFlag(const CFileType* type, bool& out) const {
    bool create = false, select = false;
    return GetFilePermissions(type, out, create, select);
}

bool DataSearch::GetFileSupportFlag(unsigned id, bool& out) const {
    return GetFileSupportFlag(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileCreateFlag(const CFileType* type, bool& out) const {
    bool supported = false, select = false;
    return GetFilePermissions(type, supported, out, select);
}

bool DataSearch::GetFileCreateFlag(unsigned id, bool& out) const {
    return GetFileCreateFlag(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileSelectFlag(const CFileType* type, bool& out) const {
    bool supported = false, create = false;
    return GetFilePermissions(type, supported, create, out);
}

bool DataSearch::GetFileSelectFlag(unsigned id, bool& out) const {
    return GetFileSelectFlag(GetFileTypeList().GetFileTypeID(id), out);
}

bool DataSearch::GetFileBmpID(unsigned id, unsigned& out) const {
    if (!Ready()) return false;
    const CFileType* type = GetFileTypeList().GetFileTypeID(id);
    if (!type) return Fail(kSearchUnknownFileType);
    out = type->GetBmpId();
    return true;
}

bool DataSearch::GetViewMax(const std::wstring& key, int& out) const {
    return MergeMaximum([&](const Definition& d, int& value) { return d.GetViewMax(key, value); }, out);
}

bool DataSearch::GetViewMax(unsigned id, int& out) const {
    return MergeMaximum([&](const Definition& d, int& value) { return d.GetViewMax(id, value); }, out);
}

bool DataSearch::GetLayerMax(const std::wstring& name, int& out) const {
    return MergeMaximum([&](const Definition& d, int& value) { return d.GetLayerMax(name, value); }, out);
}

bool DataSearch::GetMultiObjectFlag(bool& out) const {
    return MergeFlag(&Definition::GetMultiObjectFlag, out);
}

bool DataSearch::GetRelativeObjectFlag(bool& out) const {
    return MergeFlag(&Definition::GetRelativeObjectFlag, out);
}

bool DataSearch::GetDynamicObjectFlag(bool& out) const {
    return MergeFlag(&Definition::GetDynamicObjectFlag, out);
}

bool DataSearch::GetMultiMax(int& out) const {
    return MergeMaximum(&Definition::GetMultiMax, out);
}

bool DataSearch::GetRelativeMax(int& out) const {
    return MergeMaximum(&Definition::GetRelativeMax, out);
}

bool DataSearch::GetVesselPermissions(bool& multi, int& multiMax, bool& relative, int& relativeMax,
                                      bool& dynamic) const {
    if (!Ready()) return false;
    bool allMulti = true, allRelative = true, allDynamic = true;
    int lowestMulti = kNoLimit, lowestRelative = kNoLimit;
    const bool good = AskDefinitions([&](const Definition& d) {
        bool given = false;
        return NarrowFlag(d, &Definition::GetMultiObjectFlag, allMulti, given) &&
               (!given || NarrowMaximum(d, &Definition::GetMultiMax, lowestMulti)) &&
               NarrowFlag(d, &Definition::GetRelativeObjectFlag, allRelative, given) &&
               (!given || NarrowMaximum(d, &Definition::GetRelativeMax, lowestRelative)) &&
               NarrowFlag(d, &Definition::GetDynamicObjectFlag, allDynamic, given);
    });
    if (!good) return false;
    multi = allMulti;
    multiMax = lowestMulti;
    relative = allRelative;
    relativeMax = lowestRelative;
    dynamic = allDynamic;
    return true;
}

bool DataSearch::GetDeviceMax(unsigned type, int& out) const {
    return MergeMaximum([&](const Definition& d, int& value) { return d.GetDeviceMax(type, value); }, out);
}

bool DataSearch::GetComputationMax(unsigned type, int& out) const {
    return MergeMaximum([&](const Definition& d, int& value) { return d.GetComputationMax(type, value); }, out);
}

bool DataSearch::GetDatasourceMax(unsigned type, int& out) const {
    return MergeMaximum([&](const Definition& d, int& value) { return d.GetDatasourceMax(type, value); }, out);
}

bool DataSearch::GetExecutablePermission(unsigned id, bool& out, int itemId) const {
    return MergeFlag([&](const Definition& d, bool& value) { return d.GetExecutablePermission(id, value); }, out,
                     itemId);
}

bool DataSearch::GetExecutablePermission(const std::wstring& key, bool& out, int itemId) const {
    return MergeFlag([&](const Definition& d, bool& value) { return d.GetExecutablePermission(key, value); }, out,
                     itemId);
}

// The rest of a program's row, the coordinate module and the two vessel switches belong to the application alone.

bool DataSearch::GetExecutableName(unsigned id, std::wstring& out) const {
    return Ready() && (appDef.GetExecutableName(id, out) || Fail(kSearchUnknownName));
}

bool DataSearch::GetExecutableName(const std::wstring& key, std::wstring& out) const {
    return Ready() && (appDef.GetExecutableName(key, out) || Fail(kSearchUnknownName));
}

bool DataSearch::GetNetworkSupportFlag(bool& out) const {
    return MergeFlag(&Definition::GetNetworkSupportFlag, out);
}

bool DataSearch::GetRemoteNumMax(int& out) const {
    return MergeMaximum(&Definition::GetRemoteNumMax, out);
}

bool DataSearch::GetPresentationsMax(int& out) const {
    return MergeMaximum(&Definition::GetPresentationsMax, out);
}

bool DataSearch::GetNetworkPermissions(bool& support, int& remotes, int& presentations) const {
    if (!Ready()) return false;
    bool allSupport = true;
    int fewestRemotes = kNoLimit, fewestPresentations = kNoLimit;
    const bool good = AskDefinitions([&](const Definition& d) {
        bool given = false;
        return NarrowFlag(d, &Definition::GetNetworkSupportFlag, allSupport, given) &&
               (!given || (NarrowMaximum(d, &Definition::GetRemoteNumMax, fewestRemotes) &&
                           NarrowMaximum(d, &Definition::GetPresentationsMax, fewestPresentations)));
    });
    if (!good) return false;
    support = allSupport;
    remotes = fewestRemotes;
    presentations = fewestPresentations;
    return true;
}

bool DataSearch::GetCoordSysKey(std::wstring& out) const {
    return Ready() && (appDef.GetCoordSysKey(out) || Fail(kSearchUnknownName));
}

bool DataSearch::GetSimulationFlag(bool& out) const {
    if (!Ready()) return false;
    out = false;
    return appDef.GetSimulationFlag(out);
}

bool DataSearch::GetDisableLoggingFlag(bool& out) const {
    if (!Ready()) return false;
    out = false;
    return appDef.GetDisableLoggingFlag(out);
}

bool DataSearch::GetLoggingPermission(int id, bool& out) const {
    return MergeFlag([&](const Definition& d, bool& value) { return d.GetLoggingPermission(id, value); }, out);
}

bool DataSearch::GetExportPermission(int id, bool& out) const {
    return MergeFlag([&](const Definition& d, bool& value) { return d.GetExportPermission(id, value); }, out);
}

bool DataSearch::GetGuidancePermission(int id, bool& out, int itemId) const {
    return MergeFlag([&](const Definition& d, bool& value) { return d.GetGuidancePermission(id, value); }, out, itemId);
}

bool DataSearch::GetGuidancePermission(int itemId) const {
    for (int id = 0; id < static_cast<int>(guidanceKeys.size()); ++id) {
        bool allowed = false;
        if (GetGuidancePermission(id, allowed) && allowed) return PermissionToUseItem(itemId);
    }
    return false;
}

bool DataSearch::GetToolPermission(const std::wstring& name, bool& out) const {
    return MergeFlag([&](const Definition& d, bool& value) { return d.GetToolPermission(name, value); }, out);
}

bool DataSearch::GetToolPermission() const {
    const std::vector<std::wstring>& names = CToolList::GetToolList().GetToolNames();
    return std::any_of(names.begin(), names.end(), [&](const std::wstring& name) {
        bool allowed = false;
        return GetToolPermission(name, allowed) && allowed;
    });
}

bool DataSearch::UseUserAccessLevels() const {
    bool support = false;
    return Ready() && appDef.GetUALSupportFlag(support) && support;
}

}  // namespace orv
