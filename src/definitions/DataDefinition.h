#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/COrvString.h"
#include "core/FileObject.h"
#include "platform/Export.h"
#include "platform/os/CriticalSection.h"

namespace orv {

/// What a user may do with a data item: bits of an item's sixth field.
enum EDITABLE_FLAGS : int {
    EDITABLE_VALUE = 1,       ///< the value may be typed over
    EDITABLE_USEAS = 2,       ///< the item may be used as something else
    EDITABLE_OFFSET = 4,      ///< an offset may be applied
    EDITABLE_SIMULATION = 8,  ///< the simulation value may be set
};

/// Types of data items, as numbered in the definition file.
enum DataItemType : unsigned short {
    kTypeInt = 101,
    kTypeUint = 102,
    kTypeDouble = 103,
    kTypeBool = 104,
    kTypeChar = 105,
    kTypeUchar = 106,
    kTypeLong = 107,
    kTypeFloat = 109,
    kTypeShort = 110,
    kTypeUshort = 111,
    kTypeBoolArray = 601,
    kTypeCharArray = 602,
    kTypeIntArray = 603,
    kTypeShortArray = 604,
    kTypeLongArray = 605,
    kTypeFloatArray = 606,
    kTypeDoubleArray = 607,
};

/// The schema of live data: every group that a device (id below 1000), a computation (1000 to 1999) or a composite
/// source (2000 and above, a list of other groups) can produce, and the items of each group. Read once, from the
/// definition file that comes with the programs (docs/formats/data-definition.md), and never changed while running.
///
/// A query returns false, and leaves its output alone unless told otherwise, for a group, item or key that isn't there.
/// An item is addressed by its index or by a use-as code (100 to 59999), which says what the item is whatever its
/// place. Texts are in the user's language where a translation is active.
///
/// Any thread may query once `Initialise` and the first `GetNumDevices` and `GetGroupIdByFileId` are done. Every query
/// holds the one lock; `Lock` and `Unlock` give it to a caller that wants several answers in one piece.
class ORV_EXPORT DataDefinition : public FileObject {
public:
    static DataDefinition& GetDataDefinition();
    ~DataDefinition() override;
    DataDefinition(const DataDefinition&) = delete;
    DataDefinition& operator=(const DataDefinition&) = delete;

    /// Opens the file in the programs' data folder; true at once if one is read already.
    [[nodiscard]] bool Initialise();

    // Groups. Texts are given up to id 2000 only.

    bool GetGroupName(unsigned group, std::wstring& out) const;
    /// `index` below 1 is the first description, 1 and up the further ones.
    bool GetGroupDescription(unsigned group, int index, std::wstring& out) const;
    bool GetGroupDescriptionDoc(unsigned group, std::wstring& out) const;
    bool GetGroupFileId(unsigned group, std::wstring& out) const;
    /// Items of a device or computation; references of a composite, the spare ones too.
    bool GetGroupNumItems(unsigned group, int& outCount) const;
    /// 1 large, 2 compressed, -1 none, 0 anything else; 0 with a false result when it isn't told.
    bool GetGroupDataBlockSize(unsigned group, int& out) const;
    bool GetGroupFileCache(unsigned group, bool& out) const;       ///< false with a false result when it isn't told
    bool GetIgnoreAttribChanges(unsigned group, bool& out) const;  ///< likewise
    bool GetGroupSupportSubSystem(unsigned group, int& out) const;
    bool GetGroupSubSystem(unsigned group, int& out) const;
    bool GetRTAPortOffset(unsigned group, int& out) const;
    /// 10 where it isn't told, even for a group that isn't there; false above id 2000 only.
    bool GetGroupBufferlength(unsigned group, int& out) const;
    bool GetAttachmentPoints(unsigned group, COrvString& out) const;
    /// Image of a device group for tree views.
    bool GetDeviceBmpID(unsigned group, unsigned& out) const;

    // Items. Names, mnemonics and texts of values are given up to id 2000, everything else below 2000 only.

    /// Name (as in the file, never translated), mnemonic, type, length and format in one read; all of them or none.
    bool GetGroupItemDef(unsigned group, unsigned short code, std::wstring& name, std::wstring& mnemonic,
                         unsigned short& type, unsigned short& length, unsigned short& format) const;
    bool GetGroupItemName(unsigned group, unsigned short code, std::wstring& out) const;
    bool GetGroupItemMnem(unsigned group, unsigned short code, std::wstring& out) const;
    bool GetGroupItemType(unsigned group, unsigned short code, unsigned short& out) const;
    bool GetGroupItemLength(unsigned group, unsigned short code, unsigned short& out) const;
    bool GetGroupItemFormat(unsigned group, unsigned short code, unsigned short& out) const;
    bool GetGroupItemUseas(unsigned group, unsigned short code, unsigned short& out) const;
    /// `out`: all bits of `flags` (EDITABLE_FLAGS) are set.
    bool GetGroupItemEditable(unsigned group, unsigned short code, int flags, bool& out) const;
    /// 0 where an item has no simulation value.
    bool GetGroupItemSimValDbl(unsigned group, unsigned short code, double& out) const;
    bool GetGroupItemSimValInt(unsigned group, unsigned short code, int& out) const;
    /// Text of a value of an enumeration or, without a value map, of a bool; `out` is emptied first.
    bool GetGroupItemMapTxt(unsigned group, unsigned short code, int value, std::wstring& out) const;
    /// A value in the item's own format; without one false. `out` is one blank then, up to id 2000.
    bool GetGroupItemDoubleToStr(unsigned group, unsigned short code, double value, std::wstring& out) const;
    /// Index of the item that is used as `code`: the code itself below 100 and above 59999, 65535 if there is none.
    unsigned short UseAsCodeToIndex(unsigned group, unsigned short code) const;

    // Members of composites, for ids of 2000 and above.

    bool GetGroupItemGroup(unsigned group, unsigned n, unsigned& outId) const;
    bool GetSpareItemGroup(unsigned group, unsigned n, unsigned& outId) const;

    // The groups of the file.

    /// Device groups in the file. Fills the index that `GetGroupIdByIndex` answers from.
    int GetNumDevices();
    int GetNumComps() const;
    /// `index` from 1, in file order.
    bool GetGroupIdByIndex(int index, unsigned& outId) const;
    /// By the key that log files hold, with case.
    bool GetGroupIdByFileId(std::wstring_view fileId, unsigned& outId);

    /// "int", "bool array" and so on; false for a number that is no type.
    static bool GetTypeInStringFormat(unsigned type, std::string& outText);

    void Lock() const { lock.lock(); }
    void Unlock() const { lock.unlock(); }

protected:
    DataDefinition();
    bool InitialiseFrom(std::wstring_view fileName);

private:
    // With the lock held.
    bool Find(std::string_view section, std::string_view key, std::string_view& value) const;
    bool FindItem(unsigned group, unsigned short code, std::string_view& list) const;
    bool Text(unsigned group, std::string_view key, bool translated, std::wstring& out) const;
    const std::unordered_map<unsigned short, unsigned short>& UseAsOf(unsigned group) const;

    bool TextQuery(unsigned group, std::string_view key, bool translated, std::wstring& out) const;
    bool FlagQuery(unsigned group, std::string_view key, bool& out) const;
    bool NumberQuery(unsigned group, std::string_view key, int& out) const;
    bool ItemQuery(unsigned group, unsigned short code, int field, unsigned short& out) const;
    bool GetItemGroup(std::string_view keyFormat, unsigned group, unsigned n, unsigned& outId) const;

    mutable CriticalSection lock;
    // Guarded by `lock`, filled on first use and never dropped.
    std::map<int, unsigned> groupOfIndex;
    std::map<std::wstring, unsigned, std::less<>> groupOfFileId;
    mutable std::unordered_map<unsigned, std::unordered_map<unsigned short, unsigned short>> indexOfUseAs;
};

/// The same for the product of the running branding, which brings a definition file of its own.
class ORV_EXPORT DataDefinitionMolby : public DataDefinition {
public:
    static DataDefinitionMolby& GetDataDefinitionMolby();
    [[nodiscard]] bool InitialiseMolby();

protected:
    DataDefinitionMolby() = default;
};

}  // namespace orv
