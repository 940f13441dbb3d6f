#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/attributes/CAttribDefMap.h"
#include "platform/values/COrvDouble3D.h"

namespace orv {

class FileObject;

inline constexpr std::wstring_view ATTRIB_MARK = L"@tr";
inline constexpr wchar_t KEY_DIVCHAR = L'.';
inline constexpr std::wstring_view kDeviceAttributes = L"dev", kComputationAttributes = L"cmp";

/// Flags that stand in front of an attribute's value.
enum AttributeFlags : unsigned {
    kAttribFixed = 0x100,  ///< a reference that stays when the vessel gets another id
    kAttribLocal = 512,    ///< stays with this vessel, never goes into a common file
};

/// True for the key of an attribute: its text ahead of the first divider is the mark.
inline bool IsAttributeKey(std::wstring_view key) {
    return key.starts_with(ATTRIB_MARK) && (key.size() == ATTRIB_MARK.size() || key[ATTRIB_MARK.size()] == KEY_DIVCHAR);
}
/// What stands behind the last divider of a key, all of it if there is none.
inline std::wstring_view MnemonicOfKey(std::wstring_view key) {
    return key.substr(key.rfind(KEY_DIVCHAR) + 1);
}
/// "Name" for index 0, else "Name(index)".
ORV_EXPORT std::wstring IndexedMnemonic(std::wstring_view name, int index);

/// One attribute: an item "@tr.group.mnemonic=flags,value" of a device or computation.
class ORV_EXPORT CAttributeRec {
public:
    CAttributeRec() = default;
    CAttributeRec(std::wstring_view name, int valueType, unsigned flagBits, std::wstring_view text)
        : mnemonic(name), value(text), flags(flagBits), type(valueType) {}
    const std::wstring& Mnemonic() const { return mnemonic; }  ///< with its index
    const std::wstring& Value() const { return value; }
    int Type() const { return type; }
    bool IsFlagSet(unsigned flag) const { return (flags & flag) != 0; }

private:
    friend class CAttributeMap;
    std::wstring mnemonic, value;
    unsigned flags = 0;
    int type = kAttribUnknown;
};

/// The attributes of one group of one section, in their order. A copy: what is changed reaches the file by
/// `SaveToFObj`. An index counts the parts of an attribute that is there for each segment of a tool; index 0 is the
/// plain name, and "Name(0)" is read too. A query that fails leaves its output alone. One thread at a time.
class ORV_EXPORT CAttributeMap {
public:
    void SetGroup(std::wstring_view name) { group = name; }  ///< "dev", "cmp", "Comp(1)", "Alarm(2)"
    const std::wstring& Group() const { return group; }
    /// Reads the group's items of the section. `keepExisting`: what is held already stays beside them, else it goes.
    /// `onlyKnown`: skip mnemonics without a definition. `includeDefaults` has no effect: no definition has a default.
    /// False if there is no such section.
    bool LoadFromFObj(const FileObject& file, std::wstring_view section, bool keepExisting, bool onlyKnown,
                      bool includeDefaults);
    bool SaveToFObj(FileObject& file, std::wstring_view section) const;  ///< items of other groups stay

    int Count() const { return static_cast<int>(records.size()); }
    const CAttributeRec& operator[](int index) const;  ///< an empty one beyond the end
    bool Has(std::wstring_view name) const { return Find(name, 0) != nullptr; }

    bool GetAttribValue(std::wstring_view name, int& out) const { return GetAttribValue(name, 0, out); }
    bool GetAttribValue(std::wstring_view name, double& out) const { return GetAttribValue(name, 0, out); }
    bool GetAttribValue(std::wstring_view name, bool& out) const { return GetAttribValue(name, 0, out); }
    bool GetAttribValue(std::wstring_view name, std::wstring& out) const { return GetAttribValue(name, 0, out); }
    bool GetAttribValue(std::wstring_view name, COrvDouble3D& out) const { return GetAttribValue(name, 0, out); }
    bool GetAttribValue(std::wstring_view name, int index, int& out) const;
    bool GetAttribValue(std::wstring_view name, int index, double& out) const;
    bool GetAttribValue(std::wstring_view name, int index, bool& out) const;
    bool GetAttribValue(std::wstring_view name, int index, std::wstring& out) const;
    bool GetAttribValue(std::wstring_view name, int index, COrvDouble3D& out) const;

    /// False if there is no such attribute; `Add` makes one. The flags stay.
    bool SetAttribValue(std::wstring_view name, int value) { return SetText(name, 0, TextOf(value)); }
    bool SetAttribValue(std::wstring_view name, double value) { return SetText(name, 0, TextOf(value)); }
    bool SetAttribValue(std::wstring_view name, bool value) { return SetText(name, 0, value ? L"1" : L"0"); }
    bool SetAttribValue(std::wstring_view name, std::wstring_view value) { return SetText(name, 0, value); }
    bool SetAttribValue(std::wstring_view name, const wchar_t* value) { return SetText(name, 0, value); }
    bool SetAttribValue(std::wstring_view name, const COrvDouble3D& value) { return SetText(name, 0, TextOf(value)); }
    bool SetAttribValue(std::wstring_view name, int index, std::wstring_view value) {
        return SetText(name, index, value);
    }
    bool SetAttribValue(std::wstring_view name, const void* value) = delete;

    /// Adds an attribute without a value; one that is there already stays as it is.
    void Add(std::wstring_view name, int type, unsigned flags = 0, int index = 0);

private:
    const CAttributeRec* Find(std::wstring_view name, int index) const;
    bool SetText(std::wstring_view name, int index, std::wstring_view value);
    static std::wstring TextOf(int value);
    static std::wstring TextOf(double value);
    static std::wstring TextOf(const COrvDouble3D& value);

    std::wstring group;
    std::vector<CAttributeRec> records;
};

}  // namespace orv
