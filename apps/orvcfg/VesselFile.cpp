#include "VesselFile.h"

#include <algorithm>
#include <map>

#include "ConfigFiles.h"
#include "Installation.h"
#include "Session.h"
#include "core/ConfigKeys.h"
#include "definitions/CDataId.h"
#include "definitions/DataDefinition.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

bool VesselPath(const Session& session, const std::wstring& name, std::wstring& path) {
    std::wstring full = name;
    if (name.find(L'[') == name.npos) full += L"[" + TextArgument(session.options.appDef) + L"]";
    if (!DataSearch::GetDataSearch().GetFullPath(kFileTypeVesselConfig, full)) return false;
    path = std::move(full);
    return true;
}

bool OpenVessel(Session& session, const std::string& which, VesselConfig& vessel) {
    std::wstring path = AbsolutePath(PathArgument(which));
    if (!FileExists(path) && which.find('/') == std::string::npos && !which.ends_with(".vcf")) {
        if (!OpenInstallation(session) || !OpenProject(session)) return false;
        if (std::wstring full; VesselPath(session, TextArgument(which), full)) path = full;
    }
    if (vessel.FileOpen(path, kOpenRead)) {
        session.Detail("vessel " + PathToBytes(path));
        return true;
    }
    session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(vessel.LastResult())),
                    "Name a vessel file (.vcf), or a vessel of the project that --project names.");
    return false;
}

namespace {

bool Saved(Session& session, const VesselConfig& vessel, bool saved, FsResult result) {
    if (saved) return true;
    session.Problem(PathToBytes(vessel.GetFileName()), "Can't be written: " + ToUtf8(FsResultText(result)),
                    "Check the rights to the file and the space on its disk.");
    return false;
}

}  // namespace

bool SaveVessel(Session& session, VesselConfig& vessel) {
    const bool saved = vessel.FileSave(L"", kSave);
    return Saved(session, vessel, saved, vessel.LastResult());
}

bool SaveVessel(Session& session, VesselConfig& vessel, MergeSave& merge) {
    const bool saved = merge.Save();
    return Saved(session, vessel, saved, merge.LastResult());
}

std::vector<unsigned> NumbersOf(const VesselConfig& vessel, std::wstring_view word) {
    std::vector<unsigned> numbers;
    for (const std::wstring& name : SectionsOf(vessel)) {
        unsigned no = 0;
        if (ParseNumberedSection(name, word, no) && name == NumberedSection(word, no)) numbers.push_back(no);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::vector<VesselDevice> DevicesOf(const VesselConfig& vessel) {
    std::vector<VesselDevice> devices;
    VesselConfig copy = vessel;  // asking for a name may write it
    std::map<unsigned, int> counts;
    unsigned id = 0;
    vessel.GetVesselID(id);
    for (const unsigned no : NumbersOf(vessel, kDeviceWord)) {
        VesselDevice device;
        std::wstring allOptionsGuid, guid, copiedGuid;
        unsigned portGroup = 0;
        device.no = no;
        device.complete = vessel.GetDeviceAttribs(no, device.driver, device.group, device.port, device.section,
                                                  device.subSystem, allOptionsGuid, portGroup, guid, copiedGuid);
        vessel.GetItem(device.section, L"DeviceEnable", device.enabled);
        device.numberInGroup = ++counts[device.group];
        device.name = copy.GetDeviceName(no, CDataId(id, device.group, device.numberInGroup, 0));
        devices.push_back(std::move(device));
    }
    return devices;
}

bool OrderDevicesOf(Session& session, VesselConfig& vessel) {
    const unsigned count = vessel.CloseDeviceGaps();
    if (count == 0 || vessel.HaveDevice(count)) {
        vessel.OrderDevices();
        return true;
    }
    for (const std::wstring& name : SectionsOf(vessel)) {
        unsigned no = 0;
        const bool device = ParseNumberedSection(name, kDeviceWord, no) && name == NumberedSection(kDeviceWord, no);
        if (name.find(kDeviceWord) == name.npos || (device && no <= count)) continue;
        session.Problem(PathToBytes(vessel.GetFileName()),
                        "[" + ToUtf8(name) + "] " + (device ? "is too far behind the others" : "isn't a device") +
                            ", so the devices can't be ordered",
                        device ? "Give it the number behind the last one." : "Rename it, without \"DEVICE\" in it.");
    }
    return false;
}

bool HaveDataDefinition(Session& session) {
    static const bool have = DataDefinition::GetDataDefinition().Initialise();
    if (!have) session.Detail("no data definition, so groups have numbers only");
    return have;
}

std::wstring GroupName(Session& session, unsigned group) {
    std::wstring name;
    if (HaveDataDefinition(session)) DataDefinition::GetDataDefinition().GetGroupName(group, name);
    return name;
}

}  // namespace orv::cfg
