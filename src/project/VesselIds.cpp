// The ids of vessels in the references of a vessel file.

#include <algorithm>
#include <array>
#include <string>

#include "core/ConfigText.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "project/VesselConfig.h"

namespace orv {

namespace {

// Groups of data that belong to no vessel, and the two forms of one group, of which a copy has the second.
constexpr unsigned kUnboundGroups[] = {20, 1007};
constexpr unsigned kGroupOfOriginal = 1012;
constexpr std::string_view kGroupOfCopy = "1011";
constexpr std::wstring_view kIntervalLogItem = L"IntervalLogItem";
constexpr std::string_view kLoadAndDraught = "LoadAndDraught";

bool IsUnbound(unsigned group) {
    return group == kUnboundGroups[0] || group == kUnboundGroups[1];
}

/// Items that hold a vessel id in a field of their comma list, by the part of the key ahead of "(".
struct IdField {
    std::string_view section, key;
    std::size_t field;
    std::string_view writtenTo;
};
constexpr IdField kIdFields[] = {
    {"Aliases", "Alias", 2, "Aliases"},
    {"LOGGING", "DataCondition", 1, "LOGGING"},
    {"LOGGING", "DtmDevice", 1, "LOGGING"},
    {"LOGGING", "ProductionUpdateDtmDevice", 1, "LOGGING"},
    // Conditions of the next line land beside those of logging, where the applications have always looked for the ones
    // of a copied vessel; the ones in the guidance stay those of the vessel it was copied from.
    {"GUIDANCE", "AutoNextLineCondition", 1, "LOGGING"},
};

/// The fields of one value, and where they stand in it. A vessel has thousands of references, so they are looked at in
/// the bytes of the file. The layouts are those of CDataInfo and CCompOffset.
class Fields {
public:
    Fields(std::string_view value, char separator) : text(value) {
        for (std::size_t begin = 0;; ++count) {
            const std::size_t end = std::min(value.find(separator, begin), value.size());
            if (count < fields.size()) fields[count] = value.substr(begin, end - begin);
            if (end == value.size()) break;
            begin = end + 1;
        }
        ++count;
    }
    std::size_t Count() const { return count; }
    bool Has(std::size_t index) const { return index < std::min(count, fields.size()); }
    std::string_view operator[](std::size_t index) const { return fields[index]; }
    /// One letter a field: 'u' an unsigned number, 'i' a number, '*' any text; and no field more.
    bool Read(std::string_view layout) const {
        if (count != layout.size()) return false;
        for (std::size_t i = 0; i < count; ++i) {
            if (layout[i] == 'u' && !ParseUnsigned(fields[i])) return false;
            if (layout[i] == 'i' && !ParseInt(fields[i])) return false;
        }
        return true;
    }
    unsigned Unsigned(std::size_t index) const { return ParseUnsigned(fields[index]).value_or(0); }
    /// Replaces a field in `out`, a copy of the value. The last field first: those behind it have moved after that.
    void Replace(std::size_t index, std::string_view value, std::string& out) const {
        out.replace(static_cast<std::size_t>(fields[index].data() - text.data()), fields[index].size(), value);
    }

private:
    std::string_view text;
    std::array<std::string_view, 10> fields;
    std::size_t count = 0;
};

// Flags that are empty or don't read are none, as where attributes are loaded.
// Each puts the changed value into `out` and is true, or is false.

bool SetInDataInfo(std::string_view value, std::string_view id, std::string& out) {
    const Fields fields(value, ',');
    if (!fields.Read("*iuuii")) return false;
    const unsigned group = fields.Unsigned(3);
    if (IsUnbound(group)) return false;
    out = value;
    if (group == kGroupOfOriginal) fields.Replace(3, kGroupOfCopy, out);
    if ((fields.Unsigned(0) & kAttribFixed) == 0) fields.Replace(2, id, out);
    return true;
}

bool SetInCompOffset(std::string_view value, std::string_view id, std::string& out) {
    const Fields fields(value, ',');
    if (!fields.Read("*iu*iuuii") || IsUnbound(fields.Unsigned(6)) || (fields.Unsigned(0) & kAttribFixed) != 0) {
        return false;
    }
    out = value;
    fields.Replace(5, id, out);
    fields.Replace(2, id, out);
    return true;
}

bool SetField(std::string_view value, char separator, std::size_t index, std::string_view id, std::string& out) {
    const Fields fields(value, separator);
    if (!fields.Has(index)) return false;
    out = value;
    fields.Replace(index, id, out);
    return true;
}

bool SetInIntervalItem(std::string_view value, std::string_view id, std::string& out) {
    const Fields fields(value, ',');
    std::string list;
    if (!fields.Has(1) || !SetField(fields[1], ';', 1, id, list)) return false;
    out = value;
    fields.Replace(1, list, out);
    return true;
}

/// What a device puts out and what triggers it.
bool SetInDeviceItem(std::string_view key, std::string_view value, std::string_view id, std::string& out) {
    const bool output = key.starts_with("DataOutItem");
    if (!output && !key.starts_with("DataId")) return false;
    const Fields fields(value, ',');
    if (!fields.Read("iuuii") || fields.Unsigned(1) == 0 || IsUnbound(fields.Unsigned(2))) return false;
    out = value;
    if (output && fields.Unsigned(2) == kGroupOfOriginal) fields.Replace(2, kGroupOfCopy, out);
    fields.Replace(1, id, out);
    return true;
}

/// Type of the attribute that a key names, index or not.
class TypeFinder {
public:
    int operator()(std::string_view name) {
        FromUtf8(name, wide);  // into the same room each time
        mnemonic = StripAttributeIndex(MnemonicOfKey(wide));
        return mnemonic == kIntervalLogItem ? kInterval : CAttribDefMap::GetAttribType(mnemonic);
    }
    static constexpr int kInterval = -1;

private:
    std::wstring wide;
    std::wstring_view mnemonic;
};

bool SetByType(int type, std::string_view value, std::string_view id, std::string& out) {
    switch (type) {
        case TypeFinder::kInterval:
            return SetInIntervalItem(value, id, out);
        case kAttribDataInfo:
            return SetInDataInfo(value, id, out);
        case kAttribCompOffset:
            return SetInCompOffset(value, id, out);
        default:
            return false;
    }
}

bool IsAttribute(std::string_view key) {
    return key.starts_with("@tr") && (key.size() == 3 || key[3] == '.');
}

}  // namespace

bool VesselConfig::SetVesselID(unsigned id) {
    const std::string idText = std::to_string(id);
    std::string out;
    TypeFinder typeOf;
    // Places of items stay good while values change and items are added.
    ConfigText& items = Content();
    // Looking up again what has just been found would take longer than all the rest.
    const auto write = [&](std::uint32_t item) { items.SetValue(item, out); };
    for (std::uint32_t section = items.FirstSection(); section != ConfigText::kNone;
         section = items.NextSection(section)) {
        const std::string name(items.SectionName(section));
        const bool listed = name == "Aliases" || name == "LOGGING" || name == "GUIDANCE" || name == kLoadAndDraught;
        for (std::uint32_t item = items.FirstItem(section); item != ConfigText::kNone; item = items.NextItem(item)) {
            const std::string_view key = items.Key(item);
            if (IsAttribute(key)) {
                if (SetByType(typeOf(key), items.Value(item), idText, out)) write(item);
            } else if (listed) {
                for (const IdField& row : kIdFields) {
                    if (name != row.section || key.substr(0, key.find('(')) != row.key) continue;
                    if (!SetField(items.Value(item), ',', row.field, idText, out)) continue;
                    if (row.section == row.writtenTo) {
                        write(item);
                    } else {
                        SetItem(FromUtf8(row.writtenTo), FromUtf8(key), FromUtf8(out), true);
                    }
                    break;
                }
                if (name == kLoadAndDraught && key.find('.') == key.npos && typeOf(key) == kAttribCompOffset &&
                    SetInCompOffset(items.Value(item), idText, out)) {
                    write(item);
                }
            }
        }
    }
    const unsigned devices = GetNumDevices();
    for (unsigned no = 1; no <= devices; ++no) {
        const std::string name = ToUtf8(NumberedSection(kDeviceWord, no));
        const std::uint32_t section = items.FindSection(name);
        if (section == ConfigText::kNone) break;
        for (std::uint32_t item = items.FirstItem(section); item != ConfigText::kNone; item = items.NextItem(item)) {
            if (SetInDeviceItem(items.Key(item), items.Value(item), idText, out)) write(item);
        }
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
            if (!id) continue;  // one damaged reference doesn't hide the others
            out = *id;
            return true;
        }
    }
    return false;
}

}  // namespace orv
