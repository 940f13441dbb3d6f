#include "project/AliasMap.h"

#include "definitions/CDataId.h"
#include "platform/text/Fields.h"
#include "project/VesselConfig.h"

namespace orv {

namespace {

std::wstring ValueOf(const std::map<std::wstring, std::wstring, std::less<>>& map, std::wstring_view key) {
    const auto found = map.find(key);
    return found == map.end() ? std::wstring() : found->second;
}

}  // namespace

void AliasMap::Load(const VesselConfig& vessel) {
    aliases.clear();
    dataIds.clear();
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = vessel.GetFirstMapEntry(cursor, L"Aliases", key, value); more;
         more = vessel.GetNextMapEntry(cursor, key, value)) {
        const auto rest = BehindFields(value, L',', 1);
        CDataInfo info;
        if (!key.starts_with(L"Alias(") || !rest || !info.SetFromString(*rest)) continue;
        const std::wstring alias(*FieldAt(value, L',', 0)), id = info.DataId().GenerateString();
        aliases.insert_or_assign(id, alias);
        dataIds.insert_or_assign(alias, id);
    }
}

std::wstring AliasMap::GetAlias(std::wstring_view dataId) const {
    return ValueOf(aliases, dataId);
}

std::wstring AliasMap::GetDataId(std::wstring_view alias) const {
    return ValueOf(dataIds, alias);
}

}  // namespace orv
