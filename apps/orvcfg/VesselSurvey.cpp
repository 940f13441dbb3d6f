#include "VesselSurvey.h"

#include "ConfigFiles.h"
#include "Installation.h"
#include "Session.h"
#include "core/ConfigKeys.h"
#include "definitions/CCompOffset.h"
#include "definitions/DataDefinition.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/text/Fields.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

/// Items that refer to data without being attributes.
struct ListKey {
    std::wstring_view section, key;
    bool named = false;  ///< a name stands ahead of the reference
};
constexpr ListKey kListKeys[] = {{L"Aliases", L"Alias", true},
                                 {L"LOGGING", L"DataCondition"},
                                 {L"LOGGING", L"DtmDevice"},
                                 {L"LOGGING", L"ProductionUpdateDtmDevice"},
                                 {L"LOGGING", L"AutoNextLineCondition"},
                                 {L"GUIDANCE", L"AutoNextLineCondition"}};

std::string Named(const VesselDevice& device) {
    return "\"" + ToUtf8(device.name) + "\"";
}

}  // namespace

VesselSurvey::VesselSurvey(Session& run, const VesselConfig& file)
    : session(run), vessel(file), devices(DevicesOf(file)) {
    hasId = vessel.GetVesselID(id);
    for (const VesselDevice& device : devices) ++devicesOfGroup[device.group];
    for (unsigned no = 1, count = vessel.GetNumOffsets(); no <= count; ++no) {
        std::wstring name;
        double x, y, z;
        if (vessel.GetOffset(no, name, x, y, z)) {
            offsets.insert(name);
        } else {
            Tell(VesselFinding::Reference, L"GEOMETRY", "Offset(" + std::to_string(no) + ") doesn't read",
                 "Write name,X,Y,Z; a name has no comma.");
        }
    }
}

void VesselSurvey::CheckNumbers() {
    CheckGaps(kDeviceWord, "\"orvcfg vessel renumber\" closes gaps.");
    CheckGaps(kComputationWord, "Give the last one the number that is missing.");
    const unsigned count = vessel.GetNumOffsets();
    for (const std::wstring& key : KeysOf(vessel, L"GEOMETRY")) {
        unsigned no = 0;
        if (ParseNumberedSection(key, L"Offset", no) && no > count) {
            Tell(VesselFinding::Number, L"GEOMETRY",
                 ToUtf8(key) + " isn't found: there is no Offset(" + std::to_string(count + 1) + ")",
                 "Offsets are numbered from 1 without gaps.");
        }
    }
}

void VesselSurvey::CheckPorts(const FileObject* ports) {
    std::map<std::wstring, const VesselDevice*> taken;
    for (const VesselDevice& device : devices) {
        if (!device.complete) {
            Tell(VesselFinding::Port, device.section, "Driver, group or port is missing",
                 "Choose them again in the vessel's set-up.");
            continue;
        }
        if (ports && !ports->HasSection(device.port)) {
            Tell(VesselFinding::Port, device.section,
                 Named(device) + " is on port " + ToUtf8(device.port) + ", which doesn't exist",
                 "\"orvcfg port list\" shows the ports, \"orvcfg port new\" makes one.");
        }
        if (!device.enabled) continue;
        const auto [first, isFirst] = taken.emplace(device.port, &device);
        if (isFirst) continue;
        Tell(VesselFinding::Port, device.section,
             Named(device) + " is on port " + ToUtf8(device.port) + ", as is " + Named(*first->second) + " [" +
                 ToUtf8(first->second->section) + "]",
             "Give one of them another port, or disable it.");
    }
}

void VesselSurvey::CheckReferences() {
    for (const std::wstring& section : SectionsOf(vessel)) {
        for (const std::wstring& key : KeysOf(vessel, section)) {
            std::wstring value;
            vessel.GetItem(section, key, value);
            CheckItem(section, key, value);
        }
    }
}

void VesselSurvey::CheckGroups() {
    if (!HaveDataDefinition(session)) return;
    for (const VesselDevice& device : devices) CheckGroup(device.section, device.group, "The device's");
    for (const unsigned no : NumbersOf(vessel, kComputationWord)) {
        CheckGroup(NumberedSection(kComputationWord, no), GroupOfComputation(no), "The computation's");
    }
}

void VesselSurvey::CheckMaxima() {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::map<unsigned, int> computations;
    for (const unsigned no : NumbersOf(vessel, kComputationWord)) ++computations[GroupOfComputation(no)];
    const auto check = [&](const std::map<unsigned, int>& counts, const char* what, auto query) {
        for (const auto& [group, count] : counts) {
            int maximum = kNoLimit;
            if (!(search.*query)(group, maximum) || count <= maximum) continue;
            Tell(VesselFinding::Maximum, L"",
                 std::to_string(count) + " " + what + " of group " + std::to_string(group) + " " +
                     ToUtf8(GroupName(session, group)) + ", and " + session.options.appDef + " permits " +
                     std::to_string(maximum),
                 "Remove some, or use another application definition.");
        }
    };
    check(devicesOfGroup, "devices", &DataSearch::GetDeviceMax);
    check(computations, "computations", &DataSearch::GetComputationMax);
}

void VesselSurvey::Tell(VesselFinding::Kind kind, const std::wstring& section, const std::string& what,
                        const std::string& remedy) {
    findings.push_back({kind, ToUtf8(section), what, remedy});
}

unsigned VesselSurvey::GroupOfComputation(unsigned no) const {
    std::wstring name, section;
    unsigned group = 0;
    vessel.GetComputation(no, name, group, section);
    return group;
}

void VesselSurvey::CheckGaps(std::wstring_view word, const char* remedy) {
    unsigned expected = 1;
    for (const unsigned no : NumbersOf(vessel, word)) {
        if (no != expected) {
            const std::string first = std::to_string(expected), last = std::to_string(no - 1);
            Tell(VesselFinding::Number, NumberedSection(word, no),
                 "Numbers are missing ahead of it: " + first + (no - 1 > expected ? " to " + last : ""), remedy);
        }
        expected = no + 1;
    }
}

void VesselSurvey::CheckGroup(const std::wstring& section, unsigned group, const std::string& whose) {
    std::wstring name;
    if (!HaveDataDefinition(session) || DataDefinition::GetDataDefinition().GetGroupName(group, name)) return;
    Tell(VesselFinding::Group, section, whose + " group " + std::to_string(group) + " isn't in the data definition",
         "\"orvcfg datadef groups\" shows those there are.");
}

void VesselSurvey::CheckData(const std::wstring& section, const std::wstring& key, const CDataId& data) {
    if (data == CDataId()) return;  // nothing chosen
    CheckGroup(section, data.GroupId(), ToUtf8(key) + ": the");
    // What another vessel sends can't be seen from here; what is computed needs no section of its own.
    if (!hasId || data.VesselId() != id || data.GroupId() >= 1000) return;
    const auto have = devicesOfGroup.find(data.GroupId());
    const int count = have == devicesOfGroup.end() ? 0 : have->second;
    if (data.Number() >= 1 && data.Number() <= count) return;
    Tell(VesselFinding::Reference, section,
         ToUtf8(key) + " refers to device " + std::to_string(data.Number()) + " of group " +
             std::to_string(data.GroupId()) + " " + ToUtf8(GroupName(session, data.GroupId())) + ", and there " +
             (count == 0   ? "is none"
              : count == 1 ? "is one"
                           : "are " + std::to_string(count)),
         "Choose another source, or put the device back.");
}

template <class Reference>
bool VesselSurvey::Read(const std::wstring& section, const std::wstring& key, std::wstring_view text,
                        Reference& reference) {
    if (reference.SetFromString(text)) return true;
    Tell(VesselFinding::Reference, section, ToUtf8(key) + " doesn't read as a reference",
         "Choose it again in the vessel's set-up.");
    return false;
}

void VesselSurvey::CheckOffset(const std::wstring& section, const std::wstring& key, std::wstring_view text) {
    CCompOffset offset;
    if (!Read(section, key, text, offset)) return;
    if (!offset.Name().empty() && offsets.count(offset.Name()) == 0) {
        Tell(VesselFinding::Reference, section,
             ToUtf8(key) + " refers to offset \"" + ToUtf8(offset.Name()) + "\", which doesn't exist",
             "\"orvcfg vessel offsets\" shows those there are.");
    }
    CheckData(section, key, offset.DataId());
}

/// A list of an application's own. Only its vessel is known to stand second; most start as a reference does.
void VesselSurvey::CheckList(const std::wstring& section, const std::wstring& key, std::wstring_view list,
                             wchar_t separator) {
    std::wstring start;
    for (int field = 0; field < 5; ++field) {
        start += (field == 0 ? L"" : L",") + std::wstring(FieldAt(list, separator, field).value_or(L""));
    }
    CDataInfo info;
    if (info.SetFromString(start)) return CheckData(section, key, info.DataId());
    if (!ParseUnsigned(FieldAt(list, separator, 1).value_or(L""))) Read(section, key, start, info);
}

void VesselSurvey::CheckItem(const std::wstring& section, const std::wstring& key, const std::wstring& value) {
    CDataInfo info;
    if (section == L"GENERAL" && key == L"TrackingOffset") return CheckOffset(section, key, value);
    if (key.starts_with(L"DataOutItem(") || key.starts_with(L"DataId(")) {
        if (Read(section, key, value, info)) CheckData(section, key, info.DataId());
        return;
    }
    const std::wstring_view behindFlags = BehindFields(value, L',', 1).value_or(L"");
    for (const ListKey& known : kListKeys) {
        if (section != known.section || key.substr(0, key.find(L'(')) != known.key) continue;
        if (!known.named) return CheckList(section, key, value, L',');
        if (Read(section, key, behindFlags, info)) CheckData(section, key, info.DataId());
        return;
    }
    if (!IsAttributeKey(key)) return;
    const std::wstring_view mnemonic = StripAttributeIndex(MnemonicOfKey(key));
    if (mnemonic == L"IntervalLogItem") {
        return CheckList(section, key, FieldAt(value, L',', 1).value_or(L""), L';');
    }
    switch (CAttribDefMap::GetAttribType(mnemonic)) {
        case kAttribDataInfo:
            if (Read(section, key, behindFlags, info)) CheckData(section, key, info.DataId());
            break;
        case kAttribCompOffset:
            CheckOffset(section, key, behindFlags);
            break;
        default:
            break;
    }
}

}  // namespace orv::cfg
