// The ids of vessels in the references of a vessel file.

#include "core/ConfigText.h"
#include "core/SmallUtf8.h"
#include "definitions/CCompOffset.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"
#include "project/VesselConfig.h"

namespace orv {

namespace {

// Groups of data that belong to no vessel, and the two forms of one group, of which a copy has the second.
constexpr unsigned kUnboundGroups[] = {20, 1007};
constexpr unsigned kGroupOfOriginal = 1012, kGroupOfCopy = 1011;
constexpr std::wstring_view kIntervalLogItem = L"IntervalLogItem";
constexpr std::wstring_view kLogging = L"LOGGING", kLoadAndDraught = L"LoadAndDraught";

bool IsUnbound(unsigned group) {
    return group == kUnboundGroups[0] || group == kUnboundGroups[1];
}

/// Items that hold a vessel id in a field of their comma list, by the part of the key ahead of "(".
struct IdField {
    std::wstring_view section, key;
    int field;
    std::wstring_view writtenTo;
};
constexpr IdField kIdFields[] = {
    {L"Aliases", L"Alias", 2, L"Aliases"},
    {kLogging, L"DataCondition", 1, kLogging},
    {kLogging, L"DtmDevice", 1, kLogging},
    {kLogging, L"ProductionUpdateDtmDevice", 1, kLogging},
    // Conditions of the next line land beside those of logging, where the applications have always looked for the ones
    // of a copied vessel; the ones in the guidance stay those of the vessel it was copied from.
    {L"GUIDANCE", L"AutoNextLineCondition", 1, kLogging},
};

/// An attribute's value: its flags, and the reference behind them.
template <class Reference>
struct ReferenceValue {
    explicit ReferenceValue(std::wstring_view value) {
        const auto number = ParseUnsigned(*FieldAt(value, L',', 0));
        const auto rest = BehindFields(value, L',', 1);
        good = number && rest && reference.SetFromString(*rest);
        flags = number.value_or(0);
    }
    bool Follows() const { return good && !IsUnbound(reference.DataId().GroupId()); }
    bool IsFixed() const { return (flags & kAttribFixed) != 0; }
    Reference reference;
    unsigned flags = 0;
    bool good = false;
};

// Each changes the value and is true, or leaves it and is false.

bool SetInDataInfo(std::wstring& value, std::wstring_view id) {
    const ReferenceValue<CDataInfo> parsed(value);
    if (!parsed.Follows()) return false;
    if (!parsed.IsFixed()) SetFieldAt(value, L',', 2, id);
    if (parsed.reference.DataId().GroupId() == kGroupOfOriginal) SetFieldAt(value, L',', 3, IntText(kGroupOfCopy));
    return true;
}

bool SetInCompOffset(std::wstring& value, std::wstring_view id) {
    const ReferenceValue<CCompOffset> parsed(value);
    return parsed.Follows() && !parsed.IsFixed() && SetFieldAt(value, L',', 2, id) && SetFieldAt(value, L',', 5, id);
}

bool SetInIntervalItem(std::wstring& value, std::wstring_view id) {
    const auto list = FieldAt(value, L',', 1);
    const auto field = list ? FieldAt(*list, L';', 1) : std::nullopt;
    if (!field) return false;
    value.replace(static_cast<std::size_t>(field->data() - value.data()), field->size(), id);
    return true;
}

bool SetInAttribute(std::wstring_view key, std::wstring& value, std::wstring_view id) {
    const std::wstring_view mnemonic = StripAttributeIndex(MnemonicOfKey(key));
    if (mnemonic == kIntervalLogItem) return SetInIntervalItem(value, id);
    switch (CAttribDefMap::GetAttribType(mnemonic)) {
        case kAttribDataInfo:
            return SetInDataInfo(value, id);
        case kAttribCompOffset:
            return SetInCompOffset(value, id);
        default:
            return false;
    }
}

/// What a device puts out and what triggers it.
bool SetInDeviceItem(std::wstring_view key, std::wstring& value, unsigned id) {
    const bool output = key.starts_with(L"DataOutItem");
    if (!output && !key.starts_with(L"DataId")) return false;
    CDataInfo info;
    if (!info.SetFromString(value)) return false;
    CDataId& data = info.DataId();
    if (data.VesselId() == 0 || IsUnbound(data.GroupId())) return false;
    data.SetVesselId(id);
    if (output && data.GroupId() == kGroupOfOriginal) data.SetGroupId(kGroupOfCopy);
    value = info.GenerateString();
    return true;
}

}  // namespace

bool VesselConfig::SetVesselID(unsigned id) {
    const std::wstring idText = IntText(id);
    std::wstring name, key, value;  // kept, for most of the time would go into making them
    // Places of items stay good while values change and items are added.
    const auto forEach = [&](std::uint32_t section, auto&& visit) {
        FromUtf8(Content().SectionName(section), name);
        for (std::uint32_t item = Content().FirstItem(section); item != ConfigText::kNone;
             item = Content().NextItem(item)) {
            visit(item);
        }
    };
    const auto read = [&](std::uint32_t item) {
        FromUtf8(Content().Key(item), key);
        FromUtf8(Content().Value(item), value);
    };
    for (std::uint32_t section = Content().FirstSection(); section != ConfigText::kNone;
         section = Content().NextSection(section)) {
        const std::string_view sectionName = Content().SectionName(section);
        const bool listed = sectionName == "Aliases" || sectionName == "LOGGING" || sectionName == "GUIDANCE" ||
                            sectionName == "LoadAndDraught";
        forEach(section, [&](std::uint32_t item) {
            const bool attribute = Content().Key(item).starts_with('@');
            if (!attribute && !listed) return;
            read(item);
            if (attribute && IsAttributeKey(key) && SetInAttribute(key, value, idText)) SetItem(name, key, value, true);
            if (!listed) return;
            const std::wstring_view kind = std::wstring_view(key).substr(0, key.find(L'('));
            for (const IdField& row : kIdFields) {
                if (name != row.section || kind != row.key) continue;
                if (SetFieldAt(value, L',', row.field, idText)) SetItem(row.writtenTo, key, value, true);
            }
            if (name == kLoadAndDraught &&
                CAttribDefMap::GetAttribType(StripAttributeIndex(key)) == kAttribCompOffset &&
                SetInCompOffset(value, idText)) {
                SetItem(name, key, value, true);
            }
        });
    }
    const unsigned devices = GetNumDevices();
    for (unsigned no = 1; no <= devices; ++no) {
        const std::uint32_t section = Content().FindSection(SmallUtf8(NumberedSection(kDeviceWord, no)).View());
        if (section == ConfigText::kNone) break;
        forEach(section, [&](std::uint32_t item) {
            if (!Content().Key(item).starts_with("Data")) return;
            read(item);
            if (SetInDeviceItem(key, value, id)) SetItem(name, key, value, true);
        });
    }
    return true;
}

bool VesselConfig::GetVesselID(unsigned& out) const {
    FobjSection cursor;
    std::wstring section, key, value;
    for (bool more = GetFirstSectionEntry(cursor, section); more; more = GetNextSectionEntry(cursor, section)) {
        for (bool item = GetFirstMapEntry(cursor, section, key, value); item;
             item = GetNextMapEntry(cursor, key, value)) {
            if (!IsAttributeKey(key)) continue;
            // An indexed mnemonic has no type of its own, so such an attribute doesn't tell.
            const int type = CAttribDefMap::GetAttribType(MnemonicOfKey(key));
            if (type != kAttribDataInfo && type != kAttribCompOffset) continue;
            const auto field = FieldAt(value, L',', 2);
            const auto id = field ? ParseUnsigned(*field) : std::nullopt;
            if (id) out = *id;
            return id.has_value();
        }
    }
    return false;
}

}  // namespace orv
