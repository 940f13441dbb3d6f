// The numbered things of a vessel: devices, computations, offsets, data sources.

#include <algorithm>
#include <tuple>

#include "core/COrvString.h"
#include "definitions/CDataId.h"
#include "definitions/DataDefinition.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"
#include "project/AliasMap.h"
#include "project/VesselConfig.h"

namespace orv {

namespace {

constexpr std::wstring_view kGeometry = L"GEOMETRY", kAliases = L"Aliases", kUserName = L"UserName";
constexpr int kFormatDecimals = 6;          // of %f
constexpr unsigned kMostMissing = 100;      // gap up to which devices are found when gaps are closed
constexpr unsigned kAsideNumbers = 10'000;  // where devices wait while they change places
constexpr int kSerialInterface = 1;

std::wstring DeviceSection(unsigned no) {
    return NumberedSection(kDeviceWord, no);
}
std::wstring ComputationSection(unsigned no) {
    return NumberedSection(kComputationWord, no);
}
std::wstring OffsetKey(unsigned no) {
    return NumberedSection(L"Offset", no);
}

/// "Word(1,2,3)".
std::wstring NumberedKey(std::wstring_view word, std::initializer_list<int> numbers) {
    std::wstring key(word);
    wchar_t before = L'(';
    for (const int number : numbers) {
        key += before;
        key += IntText(number);
        before = L',';
    }
    return key + L')';
}

std::wstring DataOutKey(int output, int item) {
    return NumberedKey(L"DataOutItem", {output, item});
}
std::wstring ItemIdKey(int i, int j, int k) {
    return NumberedKey(L"ItemInfo", {i, j, k}) + L".ItemId";
}
std::wstring TriggerKey(int item) {
    return NumberedKey(L"DataId", {item});
}

std::wstring TextOr(const FileObject& file, std::wstring_view section, std::wstring_view key, std::wstring text) {
    file.GetItem(section, key, text);
    return text;
}

bool HasKeyWith(const FileObject& file, std::wstring_view section, std::wstring_view start) {
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        if (key.starts_with(start)) return true;
    }
    return false;
}

}  // namespace

// ---- numbers and presence

unsigned VesselConfig::FindNumSections(std::wstring_view word) const {
    unsigned count = 0;
    FobjSection cursor;
    std::wstring name;
    for (bool more = GetFirstSectionEntry(cursor, name); more; more = GetNextSectionEntry(cursor, name)) {
        if (name.find(word) != name.npos) ++count;
    }
    return count;
}

unsigned VesselConfig::GetNumDevices() const {
    return FindNumSections(kDeviceWord);
}

unsigned VesselConfig::GetNumComputations() const {
    return FindNumSections(kComputationWord);
}

unsigned VesselConfig::GetNumDataSources() const {
    return FindNumSections(kDataSourceWord);
}

unsigned VesselConfig::GetNumOffsets() const {
    unsigned count = 0;
    while (HasKey(kGeometry, OffsetKey(count + 1))) ++count;
    return count;
}

bool VesselConfig::HaveDevice(unsigned no) const {
    return HasSection(DeviceSection(no));
}

bool VesselConfig::HaveComps(unsigned no) const {
    return HasSection(ComputationSection(no));
}

unsigned VesselConfig::GetFirstFreeDeviceNumber() const {
    unsigned no = 1;
    while (HaveDevice(no)) ++no;
    return no;
}

bool VesselConfig::RemoveAllSections(std::wstring_view word) {
    FobjSection cursor;
    std::wstring name;
    for (bool more = GetFirstSectionEntry(cursor, name); more; more = GetNextSectionEntry(cursor, name)) {
        unsigned no = 0;
        // A section that only holds the word belongs to somebody else.
        if (!ParseNumberedSection(name, word, no)) continue;
        if (!DeleteSection(cursor, name)) return false;
    }
    return true;
}

// ---- devices

bool VesselConfig::GetDeviceAttribs(unsigned no, std::wstring& driver, unsigned& group, std::wstring& port,
                                    std::wstring& section, int& subSystem, std::wstring& allOptionsGuid,
                                    unsigned& portGroup, std::wstring& deviceGuid, std::wstring& copiedGuid) const {
    section = DeviceSection(no);
    const bool hasDriver = GetItem(section, L"Driver", driver);
    const bool hasGroup = GetItem(section, L"GroupId", group);
    subSystem = 0;
    GetItem(section, L"SubSystemId", subSystem);
    allOptionsGuid = TextOr(*this, section, L"AllOptionsGuid", L"");
    deviceGuid = TextOr(*this, section, L"DeviceGuid", L"");
    GetItem(section, L"OrginalDeviceGuid", copiedGuid);
    portGroup = 0;
    GetItem(section, L"PortGroup", portGroup);
    port = L"??";
    if (GetItem(section, L"PortName", port)) return hasDriver && hasGroup;

    long number = -1;
    int type = kSerialInterface;
    const bool hasPort = GetItem(section, L"Port", number);
    GetItem(section, L"InterfaceType", type);
    port = (type == kSerialInterface ? L"COM" : L"NET") + IntText(number);
    return hasDriver && hasGroup && hasPort;
}

bool VesselConfig::GetDeviceCompositeAttribs(unsigned no, std::wstring& allOptionsGuid, unsigned& portGroup) const {
    const std::wstring section = DeviceSection(no);
    allOptionsGuid = TextOr(*this, section, L"AllOptionsGuid", L"");
    portGroup = 0;
    GetItem(section, L"PortGroup", portGroup);
    return true;
}

bool VesselConfig::SetDeviceAttribs(unsigned no, const std::wstring& driver, unsigned group, const std::wstring& port) {
    const std::wstring section = DeviceSection(no);
    const bool hasDriver = SetItem(section, L"Driver", driver, true);
    const bool hasGroup = SetItem(section, L"GroupId", group, true);
    return SetItem(section, L"PortName", port, true) && hasDriver && hasGroup;
}

bool VesselConfig::SetDevicePortAttribs(unsigned no, const std::wstring& port) {
    return SetItem(DeviceSection(no), L"PortName", port, true);
}

bool VesselConfig::SetDeviceEnable(unsigned no, int value) {
    return SetItem(DeviceSection(no), L"DeviceEnable", value, true);
}

std::wstring VesselConfig::GetDeviceName(unsigned no, const CDataId& id) {
    const std::wstring section = DeviceSection(no);
    std::wstring name;
    if (!GetItem(section, kUserName, name) && HasSection(kAliases)) {
        AliasMap aliases;
        aliases.Load(*this);
        name = aliases.GetAlias(id.GenerateString());
        SetItem(section, kUserName, name, true);
    }
    if (!name.empty()) return name;
    DataDefinition::GetDataDefinition().GetGroupName(id.GroupId(), name);
    return name + L"(" + IntText(id.Number()) + L") - " + TextOr(*this, section, L"Driver", L"");
}

bool VesselConfig::RemoveDevice(unsigned no) {
    return DeleteSection(DeviceSection(no));
}

bool VesselConfig::RemoveAllDevices() {
    return RemoveAllSections(kDeviceWord);
}

bool VesselConfig::DeviceHasOutputs(unsigned no) const {
    return HasKeyWith(*this, DeviceSection(no), L"DataOutItem");
}

bool VesselConfig::DeviceHasItemIds(unsigned no) const {
    return HasKeyWith(*this, DeviceSection(no), L"ItemInfo");
}

std::wstring VesselConfig::GetDataOutItem(unsigned no, int output, int item) const {
    return TextOr(*this, DeviceSection(no), DataOutKey(output, item), L"");
}

void VesselConfig::SetDataOutItem(unsigned no, int output, int item, const std::wstring& value) {
    if (HaveDevice(no)) SetItem(DeviceSection(no), DataOutKey(output, item), value, true);
}

std::wstring VesselConfig::GetItemId(unsigned no, int i, int j, int k) const {
    return TextOr(*this, DeviceSection(no), ItemIdKey(i, j, k), L"");
}

void VesselConfig::SetItemId(unsigned no, int i, int j, int k, const std::wstring& value) {
    if (HaveDevice(no)) SetItem(DeviceSection(no), ItemIdKey(i, j, k), value, true);
}

std::wstring VesselConfig::GetTriggerDataItem(unsigned no, int item) const {
    return TextOr(*this, DeviceSection(no), TriggerKey(item), L"");
}

void VesselConfig::SetTriggerDataItem(unsigned no, int item, const std::wstring& value) {
    if (HaveDevice(no)) SetItem(DeviceSection(no), TriggerKey(item), value, true);
}

// ---- the order of devices

unsigned VesselConfig::CountAndMakeContigiousDevices() {
    const unsigned count = GetNumDevices();
    unsigned found = 0;
    for (unsigned no = 1; no < count + kMostMissing && found < count; ++no) {
        if (!HaveDevice(no)) continue;
        ++found;
        if (no != found) RenameSection(DeviceSection(no), DeviceSection(found));
    }
    return count;
}

bool VesselConfig::OrderDevices() {
    const unsigned count = GetNumDevices();
    std::vector<std::tuple<int, unsigned, unsigned>> devices;  // sub-system, group, number
    for (unsigned no = 1; no <= count; ++no) {
        const std::wstring section = DeviceSection(no);
        int subSystem = 0;
        unsigned group = 0;
        GetItem(section, L"SubSystemId", subSystem);
        GetItem(section, L"GroupId", group);
        devices.emplace_back(subSystem, group, no);
    }
    const auto byNumber = [](const auto& a, const auto& b) { return std::get<2>(a) < std::get<2>(b); };
    std::sort(devices.begin(), devices.end());
    if (std::is_sorted(devices.begin(), devices.end(), byNumber)) return false;
    // Two ranges of numbers, so that nothing is renamed onto one that still waits.
    for (unsigned no = 1; no <= count; ++no) RenameSection(DeviceSection(no), DeviceSection(no + kAsideNumbers));
    unsigned place = 0;
    for (const auto& device : devices) {
        RenameSection(DeviceSection(std::get<2>(device) + kAsideNumbers), DeviceSection(++place));
    }
    return true;
}

// ---- computations

bool VesselConfig::GetComputation(unsigned no, std::wstring& name, unsigned& group, std::wstring& section) const {
    section = ComputationSection(no);
    if (!HasSection(section)) return false;
    GetItem(section, L"Name", name);
    GetItem(section, L"GroupId", group);
    return true;
}

bool VesselConfig::SetComputation(unsigned no, const std::wstring& name, unsigned group) {
    const std::wstring section = ComputationSection(no);
    const bool hasName = SetItem(section, L"Name", name, true);
    return SetItem(section, L"GroupId", group, true) && hasName;
}

bool VesselConfig::RemoveComputation(unsigned no) {
    return DeleteSection(ComputationSection(no));
}

bool VesselConfig::RemoveAllComputations() {
    return RemoveAllSections(kComputationWord);
}

bool VesselConfig::RemoveCompAndRename(unsigned no) {
    if (!RemoveComputation(no)) return false;
    const unsigned count = GetNumComputations();  // renaming doesn't change it
    for (; no <= count; ++no) RenameSection(ComputationSection(no + 1), ComputationSection(no));
    return true;
}

bool VesselConfig::RemoveCompByGroupIdAndRename(unsigned group) {
    bool found = false;
    for (unsigned no = 1; no <= GetNumComputations();) {
        unsigned its = 0;
        // After a removal the next one stands under the same number.
        if (GetItem(ComputationSection(no), L"GroupId", its) && its == group && RemoveCompAndRename(no)) {
            found = true;
        } else {
            ++no;
        }
    }
    return found;
}

// ---- offsets

bool VesselConfig::GetOffset(unsigned no, std::wstring& name, double& x, double& y, double& z) const {
    std::wstring text;
    if (!GetItem(kGeometry, OffsetKey(no), text)) return false;
    const COrvString parts(text, L',', false);
    double read[3];
    if (!parts.GetItem(1, read[0]) || !parts.GetItem(2, read[1]) || !parts.GetItem(3, read[2])) return false;
    name = parts[0];
    x = read[0];
    y = read[1];
    z = read[2];
    return true;
}

bool VesselConfig::SetOffset(unsigned no, const std::wstring& name, double x, double y, double z) {
    std::wstring text = name;
    for (const double value : {x, y, z}) text += L"," + FixedText(value, kFormatDecimals);
    return SetItem(kGeometry, OffsetKey(no), text, true);
}

bool VesselConfig::RemoveOffset(unsigned no) {
    return DeleteItem(kGeometry, OffsetKey(no), false);
}

bool VesselConfig::RemoveAllOffsets() {
    bool removed = false;
    for (unsigned no = 1, count = GetNumOffsets(); no <= count; ++no) removed = RemoveOffset(no);
    return removed;
}

bool VesselConfig::FindOffsetUsage(const std::wstring& name, int mode, unsigned& device, std::wstring& key,
                                   std::wstring& value) {
    if (mode != kSearchFirst && mode != kSearchNext) return false;
    const unsigned count = GetNumDevices();
    std::wstring itsKey, itsValue;
    bool more = false, goOn = mode == kSearchNext;
    if (!goOn) searchDevice = 1;
    for (; searchDevice <= count; ++searchDevice, goOn = false) {
        const std::wstring section = DeviceSection(searchDevice);
        if (goOn) {
            more = GetNextMapEntry(searchItem, itsKey, itsValue);
        } else {
            if (!HasSection(section)) return false;
            more = GetFirstMapEntry(searchItem, section, itsKey, itsValue);
        }
        for (; more; more = GetNextMapEntry(searchItem, itsKey, itsValue)) {
            if (!itsKey.starts_with(ATTRIB_MARK)) continue;
            if (CAttribDefMap::GetAttribType(MnemonicOfKey(itsKey)) != kAttribCompOffset) continue;
            if (FieldAt(itsValue, L',', 3) != name) continue;
            device = searchDevice;
            key = itsKey;
            value = itsValue;
            return true;
        }
    }
    return false;
}

// ---- data sources

namespace {

std::wstring SourceSection(unsigned short source) {
    return NumberedSection(kDataSourceWord, source);
}
std::wstring CountKey(unsigned short group, unsigned short item) {
    return NumberedKey(L"NumConditions", {group, item});
}
std::wstring ConditionKey(unsigned short group, unsigned short item, int number) {
    return NumberedKey(L"SwitchCondition", {group, item, number});
}

/// Numbers below `count` of the conditions that are there, ascending. The file is asked for what it holds, for a count
/// that was damaged may be in the billions.
std::vector<int> ConditionNumbers(const FileObject& file, std::wstring_view section, unsigned short group,
                                  unsigned short item, int count) {
    std::vector<int> numbers;
    std::wstring start = NumberedKey(L"SwitchCondition", {group, item});
    start.back() = L',';
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        if (!key.starts_with(start) || !key.ends_with(L')')) continue;
        const auto number = ParseInt(std::wstring_view(key).substr(start.size(), key.size() - start.size() - 1));
        if (number && *number >= 0 && *number < count && key == ConditionKey(group, item, *number)) {
            numbers.push_back(*number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

}  // namespace

bool VesselConfig::GetAutoSwitch(unsigned short source) const {
    bool on = false;
    GetItem(SourceSection(source), L"Autoswitch", on);
    return on;
}

bool VesselConfig::SetAutoSwitch(unsigned short source, bool value) {
    return SetItem(SourceSection(source), L"Autoswitch", value, true);
}

bool VesselConfig::GetDataConditions(unsigned short source, unsigned short group, unsigned short item,
                                     std::vector<std::wstring>& list) const {
    const std::wstring section = SourceSection(source);
    if (!HasSection(section)) return false;
    int count = 0;
    GetItem(section, CountKey(group, item), count);
    for (const int number : ConditionNumbers(*this, section, group, item, count)) {
        list.push_back(TextOr(*this, section, ConditionKey(group, item, number), L""));
    }
    return true;
}

bool VesselConfig::SetDataConditions(unsigned short source, unsigned short group, unsigned short item,
                                     const std::vector<std::wstring>& list) {
    const std::wstring section = SourceSection(source);
    int count = 0;
    GetItem(section, CountKey(group, item), count);
    for (const int number : ConditionNumbers(*this, section, group, item, count)) {
        DeleteItem(section, ConditionKey(group, item, number), true);
    }
    SetItem(section, CountKey(group, item), static_cast<int>(list.size()), true);
    count = 0;
    for (const std::wstring& condition : list) SetItem(section, ConditionKey(group, item, count++), condition, true);
    return true;
}

bool VesselConfig::GetDataConditionsOrder(unsigned short source, std::wstring& out) const {
    return GetItem(SourceSection(source), L"Order", out);
}

bool VesselConfig::SetDataConditionsOrder(unsigned short source, const std::wstring& order) {
    return SetItem(SourceSection(source), L"Order", order, true);
}

}  // namespace orv
