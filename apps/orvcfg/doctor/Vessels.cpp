#include <algorithm>
#include <initializer_list>
#include <set>

#include "../VesselSurvey.h"
#include "Check.h"
#include "Vessels.h"
#include "core/ConfigKeys.h"
#include "definitions/InterfaceDef.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

void TellVessels(Examination& examination, std::initializer_list<VesselFinding::Kind> kinds,
                 const std::function<void(VesselSurvey&)>& check) {
    for (const std::wstring& path : examination.FilesOf(kFileTypeVesselConfig)) {
        VesselConfig vessel;
        if (!vessel.FileOpen(path, kOpenRead)) {
            const std::string name = PathToBytes(path);
            if (examination.WasTold(name)) continue;
            examination.Tell(name, "The vessel can't be read: " + ToUtf8(FsResultText(vessel.LastResult())),
                             "Check the rights to the file, or bring it back from a copy.");
            continue;
        }
        VesselSurvey survey(examination.session, vessel);
        check(survey);
        for (const VesselFinding& finding : survey.Findings()) {
            if (std::find(kinds.begin(), kinds.end(), finding.kind) == kinds.end()) continue;
            examination.Tell(PathToBytes(path), finding.Text(), finding.remedy);
        }
    }
}

void LookAtPorts(Examination& examination) {
    const std::wstring path = SystemFolder(examination.session) + std::wstring(INTERFACE_DEF_FILENAME);
    const std::string file = PathToBytes(path);
    InterfaceDef ports;
    // Not as a host opens it, who puts an end to the replays of the last session.
    const bool known = ports.FileObject::FileOpen(path, kOpenRead);
    std::size_t devices = 0;
    std::set<std::wstring> used;
    TellVessels(examination, {VesselFinding::Port}, [&](VesselSurvey& survey) {
        survey.CheckPorts(known ? &ports : nullptr);
        devices += survey.Devices();
        for (const VesselDevice& device : survey.AllDevices()) used.insert(device.port);
    });
    if (!known && devices > 0) {
        examination.Tell(file,
                         (FileExists(path) ? "The ports of this computer can't be read"
                                           : "The ports of this computer aren't defined") +
                             std::string(", and ") + std::to_string(devices) + " devices talk through them",
                         "\"orvcfg port new\" makes the file with its first port.");
    }
    for (const std::wstring& port : used) {
        PortSettings settings;
        if (!known || !ports.HasSection(port) || ports.GetPortSettings(port, settings)) continue;
        examination.Tell(file, "Port " + ToUtf8(port) + " can't be used: its handler or keys of it are missing",
                         "\"orvcfg port show " + ToUtf8(port) + "\" shows its keys.");
    }
}

void LookAtReferences(Examination& examination) {
    TellVessels(examination, {VesselFinding::Reference, VesselFinding::Group}, [](VesselSurvey& survey) {
        survey.CheckGroups();
        survey.CheckReferences();
    });
}

void LookAtNumbers(Examination& examination) {
    TellVessels(examination, {VesselFinding::Number}, [](VesselSurvey& survey) { survey.CheckNumbers(); });
}

}  // namespace orv::cfg
