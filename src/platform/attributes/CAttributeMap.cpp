#include "platform/attributes/CAttributeMap.h"

#include <algorithm>

#include "core/FileObject.h"  // attributes are items of configuration files
#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"

namespace orv {

namespace {

std::wstring KeyPrefix(std::wstring_view group) {
    std::wstring prefix(ATTRIB_MARK);
    prefix += KEY_DIVCHAR;
    prefix += group;
    prefix += KEY_DIVCHAR;
    return prefix;
}

template <class T>
bool Assign(const std::optional<T>& parsed, T& out) {
    if (parsed) out = *parsed;
    return parsed.has_value();
}

bool Read(std::wstring_view text, int& out) {
    return Assign(ParseInt(text), out);
}
bool Read(std::wstring_view text, double& out) {
    return Assign(ParseDouble(text), out);
}
bool Read(std::wstring_view text, bool& out) {
    return Assign(ParseBool(text), out);
}
bool Read(std::wstring_view text, std::wstring& out) {
    out = text;
    return true;
}
bool Read(std::wstring_view text, COrvDouble3D& out) {
    COrvDouble3D vector;
    double* const parts[] = {&vector.X, &vector.Y, &vector.Z};
    for (int i = 0; i < 3; ++i) {
        const auto part = FieldAt(text, L',', i);
        if (!part || !Read(*part, *parts[i])) return false;
    }
    out = vector;
    return true;
}

template <class T>
bool ReadFrom(const CAttributeRec* record, T& out) {
    return record && Read(record->Value(), out);
}

}  // namespace

std::wstring IndexedMnemonic(std::wstring_view name, int index) {
    std::wstring text(name);
    if (index != 0) text += L"(" + IntText(index) + L")";
    return text;
}

bool CAttributeMap::LoadFromFObj(const FileObject& file, std::wstring_view section, bool keepExisting, bool onlyKnown,
                                 bool /*includeDefaults*/) {
    if (!keepExisting) records.clear();
    if (!file.HasSection(section)) return false;
    const std::wstring prefix = KeyPrefix(group);
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        if (!key.starts_with(prefix)) continue;
        const std::wstring_view mnemonic = std::wstring_view(key).substr(prefix.size());
        const int type = CAttribDefMap::GetAttribType(StripAttributeIndex(mnemonic));
        if (onlyKnown && type == kAttribUnknown) continue;
        CAttributeRec record(mnemonic, type, ParseUnsigned(*FieldAt(value, L',', 0)).value_or(0),
                             BehindFields(value, L',', 1).value_or(L""));
        const auto held = std::find_if(records.begin(), records.end(),
                                       [&](const CAttributeRec& other) { return other.mnemonic == mnemonic; });
        if (keepExisting && held != records.end()) {
            *held = std::move(record);
        } else {
            records.push_back(std::move(record));
        }
    }
    return true;
}

bool CAttributeMap::SaveToFObj(FileObject& file, std::wstring_view section) const {
    const std::wstring prefix = KeyPrefix(group);
    return std::all_of(records.begin(), records.end(), [&](const CAttributeRec& record) {
        return file.SetItem(section, prefix + record.mnemonic, IntText(record.flags) + L"," + record.value, true);
    });
}

const CAttributeRec& CAttributeMap::operator[](int index) const {
    static const CAttributeRec none;
    return index >= 0 && index < Count() ? records[static_cast<std::size_t>(index)] : none;
}

const CAttributeRec* CAttributeMap::Find(std::wstring_view name, int index) const {
    const auto named = [&](std::wstring_view mnemonic) -> const CAttributeRec* {
        const auto found = std::find_if(records.begin(), records.end(),
                                        [&](const CAttributeRec& record) { return record.mnemonic == mnemonic; });
        return found == records.end() ? nullptr : &*found;
    };
    if (index != 0) return named(IndexedMnemonic(name, index));
    const CAttributeRec* const plain = named(name);
    return plain ? plain : named(std::wstring(name) + L"(0)");
}

bool CAttributeMap::GetAttribValue(std::wstring_view name, int index, int& out) const {
    return ReadFrom(Find(name, index), out);
}
bool CAttributeMap::GetAttribValue(std::wstring_view name, int index, double& out) const {
    return ReadFrom(Find(name, index), out);
}
bool CAttributeMap::GetAttribValue(std::wstring_view name, int index, bool& out) const {
    return ReadFrom(Find(name, index), out);
}
bool CAttributeMap::GetAttribValue(std::wstring_view name, int index, std::wstring& out) const {
    return ReadFrom(Find(name, index), out);
}
bool CAttributeMap::GetAttribValue(std::wstring_view name, int index, COrvDouble3D& out) const {
    return ReadFrom(Find(name, index), out);
}

bool CAttributeMap::SetText(std::wstring_view name, int index, std::wstring_view value) {
    auto* const record = const_cast<CAttributeRec*>(Find(name, index));
    if (!record) return false;
    record->value = value;
    return true;
}

std::wstring CAttributeMap::TextOf(int value) {
    return IntText(value);
}

std::wstring CAttributeMap::TextOf(double value) {
    return ShortestText(value);
}

std::wstring CAttributeMap::TextOf(const COrvDouble3D& value) {
    return ShortestText(value.X) + L"," + ShortestText(value.Y) + L"," + ShortestText(value.Z);
}

void CAttributeMap::Add(std::wstring_view name, int type, unsigned flags, int index) {
    if (!Find(name, index)) records.emplace_back(IndexedMnemonic(name, index), type, flags, L"");
}

}  // namespace orv
