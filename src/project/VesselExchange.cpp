// What the vessel files of several computers share: push into a common file, pull out of it, apply a difference.

#include <map>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"
#include "platform/values/Guid.h"
#include "project/VesselConfig.h"
#include "project/VesselPairing.h"
#include "surveydata/LogFileName.h"

namespace orv {

namespace {

constexpr std::wstring_view kGeometry = L"GEOMETRY", kGuidSection = L"VesselGuid", kGuid = L"GUID";
constexpr std::wstring_view kDeviceGuid = L"DeviceGuid", kGroupId = L"GroupId", kSubSystem = L"SubSystemId";
constexpr std::wstring_view kEnable = L"DeviceEnable", kNumComps = L"NumComps", kNumAlarms = L"NumAlarms";
constexpr unsigned kPrivateGroup = 4;    // devices of one computer, which attributes never pair
constexpr unsigned kSelfMadeGroup = 94;  // devices that a difference may add over others

std::wstring Text(const FileObject& file, std::wstring_view section, std::wstring_view key) {
    std::wstring text;
    file.GetItem(section, key, text);
    return text;
}

std::wstring DeviceSection(unsigned no) {
    return NumberedSection(kDeviceWord, no);
}

void GiveGuid(FileObject& file, std::wstring_view section, std::wstring_view key) {
    std::wstring guid;
    file.SetItem(section, key, CreateGuid(guid), true);
}

/// One device with what it is recognised by.
struct Device {
    Device(const VesselConfig& vessel, unsigned no) {
        std::wstring copiedGuid;
        unsigned portGroup = 0;
        vessel.GetDeviceAttribs(no, driver, group, port, section, subSystem, allOptionsGuid, portGroup, guid,
                                copiedGuid);
        exists = vessel.HasSection(section);
        portName = Text(vessel, section, L"PortName");
        userName = Text(vessel, section, L"UserName");
    }
    bool SameBut(const Device& other) const {
        return group == other.group && subSystem == other.subSystem && driver == other.driver &&
               userName == other.userName && allOptionsGuid == other.allOptionsGuid;
    }
    /// Equal attributes; the port in its old or its new form.
    bool SameAttributes(const Device& other) const { return SameBut(other) && port == other.port; }
    bool SameGuid(const Device& other) const { return !guid.empty() && guid == other.guid; }
    bool BothHaveGuids(const Device& other) const { return !guid.empty() && !other.guid.empty(); }

    std::wstring section, driver, port, portName, userName, allOptionsGuid, guid;
    unsigned group = 0;
    int subSystem = 0;
    bool exists = false;
};

/// Those of a file up to its count; one beyond the reach of closing gaps isn't among them.
std::vector<Device> DevicesOf(const VesselConfig& vessel, unsigned count) {
    std::vector<Device> devices;
    for (unsigned no = 1; no <= count; ++no) devices.emplace_back(vessel, no);
    return devices;
}

/// The attribute groups of a device that the exchange looks into: its own, and those of the computations and alarms
/// that it says it has.
class ExchangedGroups {
public:
    ExchangedGroups(const FileObject& file, std::wstring_view section) {
        file.GetItem(section, kNumComps, comps);
        file.GetItem(section, kNumAlarms, alarms);
    }
    bool Holds(std::wstring_view group) const {
        unsigned no = 0;
        if (ParseNumberedSection(group, L"Comp", no)) return IsOf(group, L"Comp", no, comps);
        if (ParseNumberedSection(group, L"Alarm", no)) return IsOf(group, L"Alarm", no, alarms);
        return group == kDeviceAttributes;
    }

private:
    static bool IsOf(std::wstring_view group, std::wstring_view word, unsigned no, int count) {
        return no >= 1 && count > 0 && no <= static_cast<unsigned>(count) && group == NumberedSection(word, no);
    }
    int comps = 0, alarms = 0;
};

/// Deletes a device's attributes of the exchanged groups: the local ones, or all others.
void DeleteAttributes(FileObject& file, std::wstring_view section, bool local) {
    const ExchangedGroups groups(file, section);
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        if (!IsAttributeKey(key)) continue;
        const auto group = FieldAt(key, KEY_DIVCHAR, 1);
        if (!group || !groups.Holds(*group) || !BehindFields(key, KEY_DIVCHAR, 2)) continue;
        const unsigned flags = ParseUnsigned(*FieldAt(value, L',', 0)).value_or(0);
        if (((flags & kAttribLocal) != 0) == local) file.DeleteItem(section, key, true);
    }
}

void DeletePlainItems(FileObject& file, std::wstring_view section) {
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = file.GetFirstMapEntry(cursor, section, key, value); more;
         more = file.GetNextMapEntry(cursor, key, value)) {
        if (!key.starts_with(ATTRIB_MARK)) file.DeleteItem(section, key, true);
    }
}

bool Replace(FileObject& file, std::wstring_view section, const FileObject& source) {
    file.DeleteSection(section);
    return file.CopySection(section, section, source);
}

/// What a computer decides for itself about a device that it shares.
struct OwnChoice {
    OwnChoice(const FileObject& file, const Device& device) : subSystem(device.subSystem) {
        bool on = true;  // some files hold a word, which doesn't read as a number
        if (!file.GetItem(device.section, kEnable, enable) && file.GetItem(device.section, kEnable, on)) enable = on;
    }
    void WriteBack(FileObject& file, std::wstring_view section) const {
        file.SetItem(section, kEnable, enable, true);
        file.SetItem(section, kSubSystem, subSystem, true);
    }
    int enable = 1, subSystem;
};

int MostDevices(unsigned group) {
    int maximum = 0;
    DataSearch::GetDataSearch().GetDeviceMax(group, maximum);
    return maximum;
}

unsigned NextFree(const VesselConfig& vessel, unsigned& count) {
    do ++count;
    while (vessel.HaveDevice(count));  // one that was numbered too high to be moved up
    return count;
}

}  // namespace

// ---- push

bool VesselConfig::SaveCommonConfig(const std::wstring& path) {
    VesselConfig common;
    // What is there and can't be read isn't to be written over: it may be all that the other computers have.
    const bool mayWrite = common.FileOpen(path, kOpenRead) || common.LastResult() == FsResult::NotFound;
    if (!HasSection(kGuidSection)) GiveGuid(*this, kGuidSection, kGuid);
    if (!common.HasSection(kGuidSection)) common.CopySection(kGuidSection, kGuidSection, *this);
    const bool geometry = Replace(common, kGeometry, *this);
    Replace(common, GEODESY_SECTION, *this);

    VesselPairing pairing(common, common.CountAndMakeContigiousDevices(), CountAndMakeContigiousDevices());
    SaveDevicesForSameGuid(pairing);
    const bool devices = SaveDevicesForSameAttribs(pairing);
    std::map<unsigned, int> counts;
    CountGroupsInVesselConfig(pairing.ownCount, counts);
    RemoveDevicesForSameAttribs(common, pairing.otherCount, pairing.ownCount, std::move(counts));
    const unsigned left = common.CountAndMakeContigiousDevices();
    for (unsigned no = 1; no <= left; ++no) DeleteAttributes(common, DeviceSection(no), true);
    return mayWrite && common.FileSave(path, kSave) && geometry && devices;
}

void VesselConfig::SaveDevicesForSameGuid(VesselPairing& pairing) const {
    const std::vector<Device> others = DevicesOf(pairing.other, pairing.otherCount);
    for (const Device& own : DevicesOf(*this, pairing.ownCount)) {
        for (const Device& other : others) {
            if (!own.SameGuid(other) || pairing.IsHandled(other.section)) continue;
            if (!pairing.other.CopySection(other.section, own.section, *this)) continue;
            pairing.Handle(other.section);
            break;
        }
    }
}

bool VesselConfig::SaveDevicesForSameAttribs(VesselPairing& pairing) {
    VesselConfig& common = pairing.other;
    const auto giveBoth = [&](const Device& own, const std::wstring& section, const std::wstring& guid) {
        SetItem(own.section, kDeviceGuid, guid, true);
        common.SetItem(section, kDeviceGuid, guid, true);
    };
    std::vector<Device> others = DevicesOf(common, pairing.otherCount);
    const auto pair = [&](const Device& own) {
        for (Device& other : others) {
            // Attributes are only for devices of which one lacks its identity.
            if (own.BothHaveGuids(other)) {
                if (own.guid == other.guid) return true;
                continue;
            }
            if (!other.exists || !own.SameAttributes(other) || pairing.IsHandled(other.section)) continue;
            if (!common.CopySection(other.section, own.section, *this)) continue;
            std::wstring guid = other.guid;
            if (guid.empty() && own.guid.empty()) CreateGuid(guid);
            if (!guid.empty()) giveBoth(own, other.section, guid);
            pairing.Handle(other.section);
            other.guid = guid.empty() ? own.guid : guid;
            return true;
        }
        return false;
    };
    bool good = true;
    for (const Device& own : DevicesOf(*this, pairing.ownCount)) {
        if (own.group == kPrivateGroup || pair(own)) continue;
        if (!own.exists) {  // its number is out of reach, so it can't be shared
            good = false;
            continue;
        }
        const unsigned no = NextFree(common, pairing.otherCount);
        const std::wstring section = DeviceSection(no);
        if (!common.CopySection(section, own.section, *this)) {
            good = false;
            continue;
        }
        std::wstring guid;
        if (own.guid.empty()) giveBoth(own, section, CreateGuid(guid));
        pairing.Handle(section);
        others.emplace_back(common, no);
    }
    return good;
}

void VesselConfig::CountGroupsInVesselConfig(unsigned count, std::map<unsigned, int>& counts) const {
    for (unsigned no = 1; no <= count; ++no) {
        unsigned group = 0;
        if (GetItem(DeviceSection(no), kGroupId, group)) ++counts[group];
    }
}

// The counter comes first: once it is used up, the rest of the common file's devices of that group are taken for
// surplus without a look at them.
void VesselConfig::RemoveDevicesForSameAttribs(VesselConfig& common, unsigned commonCount, unsigned count,
                                               std::map<unsigned, int> counts) const {
    const std::vector<Device> owns = DevicesOf(*this, count);
    const auto isHere = [&](const Device& other) {
        for (const Device& own : owns) {
            if (own.group != other.group || !own.exists) continue;
            if (own.SameGuid(other)) return true;
            if (!own.BothHaveGuids(other) && own.SameBut(other) && own.portName == other.portName) return true;
        }
        return false;
    };
    for (const Device& other : DevicesOf(common, commonCount)) {
        if (!other.exists) continue;
        bool found = false;
        if (const auto counter = counts.find(other.group); counter != counts.end()) {
            if (--counter->second == 0) counts.erase(counter);
            found = isHere(other);
        }
        if (!found && MostDevices(other.group) >= 1) common.DeleteSection(other.section);
    }
}

// ---- pull

bool VesselConfig::OverLoadCommonConfig(const std::wstring& path) {
    const bool wasEmpty = GetNumDevices() == 0;
    VesselConfig common;
    const bool opened = common.FileOpen(path, kOpenRead);
    if (!HasSection(kGuidSection) && !CopySection(kGuidSection, kGuidSection, common)) {
        GiveGuid(*this, kGuidSection, kGuid);
    }
    if (!opened) return false;
    Replace(*this, kGeometry, common);
    Replace(*this, GEODESY_SECTION, common);
    VesselPairing pairing(common, common.CountAndMakeContigiousDevices(), CountAndMakeContigiousDevices());
    OverLoadDevicesForSameGuid(pairing);
    OverLoadDevicesForSameAttribs(pairing);
    return AddMissingCommonDevices(pairing, wasEmpty) && OverLoadAdditionalSections(common);
}

void VesselConfig::OverLoadDevicesForSameGuid(VesselPairing& pairing) {
    const std::vector<Device> others = DevicesOf(pairing.other, pairing.otherCount);
    for (const Device& own : DevicesOf(*this, pairing.ownCount)) {
        for (const Device& other : others) {
            if (other.group == kPrivateGroup || !own.SameGuid(other) || pairing.IsHandled(other.section)) continue;
            const OwnChoice choice(*this, own);
            if (!CopySectionUsingFlags(own.section, pairing.other, other.section)) continue;
            choice.WriteBack(*this, own.section);
            pairing.Handle(other.section, own.section);
            break;
        }
    }
}

// The identity isn't asked: a device that it didn't pair may be another computer's entry of the same thing.
void VesselConfig::OverLoadDevicesForSameAttribs(VesselPairing& pairing) {
    const std::vector<Device> others = DevicesOf(pairing.other, pairing.otherCount);
    for (const Device& own : DevicesOf(*this, pairing.ownCount)) {
        if (!own.exists || pairing.IsOwnHandled(own.section)) continue;
        for (const Device& other : others) {
            if (!other.exists || other.group == kPrivateGroup || !own.SameAttributes(other) ||
                pairing.IsHandled(other.section)) {
                continue;
            }
            const OwnChoice choice(*this, own);
            if (!CopySectionUsingFlags(own.section, pairing.other, other.section)) continue;
            choice.WriteBack(*this, own.section);
            if (!own.guid.empty()) SetItem(own.section, kDeviceGuid, own.guid, true);
            pairing.Handle(other.section, own.section);
            break;
        }
    }
}

// A device that comes to a working vessel waits to be switched on; an empty vessel takes all as they are.
bool VesselConfig::AddMissingCommonDevices(VesselPairing& pairing, bool wasEmpty) {
    bool good = true;
    for (const Device& other : DevicesOf(pairing.other, pairing.otherCount)) {
        if (!other.exists || pairing.IsHandled(other.section) || other.group == kPrivateGroup ||
            MostDevices(other.group) < 1) {
            continue;
        }
        const std::wstring section = DeviceSection(NextFree(*this, pairing.ownCount));
        if (CopySectionUsingFlags(section, pairing.other, other.section)) {
            SetItem(section, kEnable, wasEmpty, true);
            SetItem(section, kSubSystem, other.subSystem, true);
        } else {
            good = false;
        }
    }
    return good;
}

bool VesselConfig::CopySectionUsingFlags(const std::wstring& destination, const VesselConfig& other,
                                         const std::wstring& source) {
    if (!other.HasSection(source) || !CreateSection(destination, true)) return false;
    DeleteAttributes(*this, destination, false);
    DeletePlainItems(*this, destination);
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = other.GetFirstMapEntry(cursor, source, key, value); more;
         more = other.GetNextMapEntry(cursor, key, value)) {
        if (!HasKey(destination, key)) SetItem(destination, key, value, true);
    }
    return true;
}

// ---- difference files

bool VesselConfig::ApplyDifference(const FileObject& difference) {
    if (LogFileName(GetFileName()).GetName() != LogFileName(difference.GetFileName()).GetName()) return false;
    OrderDevices();  // so that the numbers of both sides mean the same
    FobjSection sections, items;
    std::wstring name, key, value;
    for (bool more = difference.GetFirstSectionEntry(sections, name); more;
         more = difference.GetNextSectionEntry(sections, name)) {
        const auto target = BehindFields(name, L'.', 1);
        if (!target || target->find(L'.') != target->npos) continue;
        const std::wstring_view operation = *FieldAt(name, L'.', 0);
        const bool add = operation == L"add", remove = operation == L"remove";
        unsigned here = 0, there = 0;
        const bool isHere = GetItem(*target, kGroupId, here), isThere = difference.GetItem(name, kGroupId, there);
        const bool applies = (isHere && isThere && here == there) || (isHere && remove) || (!isHere && !isThere) ||
                             (isThere && add && there == kSelfMadeGroup);
        if (!applies) continue;
        for (bool item = difference.GetFirstMapEntry(items, name, key, value); item;
             item = difference.GetNextMapEntry(items, key, value)) {
            if ((add || operation == L"change") && !SetItem(*target, key, value, true)) return false;
            if (remove && !DeleteItem(*target, key, true)) return false;
        }
    }
    return true;
}

}  // namespace orv
