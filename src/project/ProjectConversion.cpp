// The geodesy of old vessels. Each positioning computation of each vessel once had settings of its own; a project has
// one geodesy now. So all vessels are read, a project whose devices disagree is refused, and what they agree on goes
// into the coordinate database.

#include <algorithm>
#include <string>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/attributes/CAttributeMap.h"
#include "platform/notify/Notices.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "project/AppConfig.h"
#include "project/ProjectDefinition.h"
#include "project/VesselConfig.h"

namespace orv {

namespace {

constexpr int kReceiverSupplied = 0, kManualInput = 1;  // modes of the separation; models above
constexpr int kOtherTransformation = 0, kProjectTransformation = 1, kDefaultTransformation = 2;

constexpr int kMostComputations = 10000;  // of a device; a count beyond comes from a damaged file

constexpr std::wstring_view kTransformationsDiffer =
    L"Datum transformation conversion failed.\nThe project has two positioning systems which\n"
    L"both use a different datum transformation.\nPlease contact your distributor.";
constexpr std::wstring_view kCorrectionsDiffer =
    L"Post correction conversion failed.\nThe project contains two positioning systems which\n"
    L"both use a different XYZ correction.\nPlease contact your distributor.";
constexpr std::wstring_view kManualNotWgs84 =
    L"Geoid model conversion failed.\nThe geoid model setting\n"
    L"\"Use manual input with separation related to none WGS84\"\n"
    L"is not supported in the new version.\nPlease contact support.";
constexpr std::wstring_view kReceiverWithGps =
    L"Geoid model conversion failed.\nThe geoid model setting\n"
    L"\"Use receiver supplied with height source from GPS\"\n"
    L"is not supported in the new version.\nPlease contact support.";
constexpr std::wstring_view kGeoidsDiffer =  // the blank ahead of the line break is what people search for
    L"Geoid model conversion failed. \nThe project contains two positioning systems which\n"
    L"use both a different geoid model setting.\nPlease contact your distributor.";

std::wstring Numbered(const wchar_t* word, unsigned number) {
    return word + (L"(" + IntText(static_cast<int>(number)) + L")");
}

CAttributeMap Attributes(const FileObject& vessel, const std::wstring& section, std::wstring_view group) {
    CAttributeMap map;
    map.SetGroup(group);
    map.LoadFromFObj(vessel, section, false, false, false);
    return map;
}

bool IsConverted(const VesselConfig& vessel) {
    std::wstring version;
    return vessel.GetItem(GEODESY_SECTION, GEODESY_VERSION_KEY, version) && version == GEODESY_VERSION;
}

void MarkConverted(VesselConfig& vessel) {
    vessel.CreateSection(GEODESY_SECTION, false);
    vessel.SetItem(GEODESY_SECTION, GEODESY_VERSION_KEY, GEODESY_VERSION, true);
}

/// The key of a separation mode; a mode beyond the table, which only a damaged file holds, has none.
std::wstring ModelKey(int mode) {
    const auto row = static_cast<std::size_t>(mode);
    return mode >= 0 && row < GeoidmodelTypeKeys.size() ? std::wstring(GeoidmodelTypeKeys[row]) : std::wstring();
}

}  // namespace

bool ProjectDefinition::Refuse(std::wstring_view text) {
    if (!planning) Notify(Notice::Message, text);
    return Fail(text);
}

/// Calls `visit(id, path, vessel)` for the vessels of the project's application configuration, ascending, until it
/// returns false. `vessel` is null for a file that can't be opened.
template <class Visit>
void ProjectDefinition::ForEachVessel(Visit visit) const {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring definition, configuration, folder, extension, vesselFolder, vesselExtension;
    GetItem(APPLICATION_SECTION, appParamKeys[kAppDefinition], definition);
    GetItem(APPLICATION_SECTION, appParamKeys[kAppConfiguration], configuration);
    search.GetFilePath(kFileTypeAppConfig, folder);
    search.GetFileExtension(kFileTypeAppConfig, extension);
    search.GetFilePath(kFileTypeVesselConfig, vesselFolder);
    search.GetFileExtension(kFileTypeVesselConfig, vesselExtension);
    AppConfig config;
    if (!config.FileOpen(folder + configuration + L"[" + definition + L"]" + extension, kOpenRead)) return;
    config.ScanForVessels();
    for (unsigned id = 0; config.GetNextVesselId(id);) {
        std::wstring name;
        config.GetVesselConfig(id, name);
        const std::wstring path = vesselFolder + name + vesselExtension;
        VesselConfig vessel;
        const bool opened = vessel.FileOpen(path, kOpenRead);
        if (!visit(id, path, opened ? &vessel : nullptr)) return;
    }
}

bool ProjectDefinition::CheckVesselPosCompGeoidModelCfg() {
    bool good = true;
    ForEachVessel([&](unsigned, const std::wstring& path, VesselConfig* vessel) {
        if (!vessel) return true;
        reduceHeightToGeoid = false;
        if (IsConverted(*vessel)) {
            // Half of a conversion that stopped: nobody can tell any more what this vessel's devices agreed on.
            return good = Fail(L"The project is marked for conversion, but its vessel " + path + L" is converted.");
        }
        firstGeoidSeen = true;
        if (!CheckLinkedCompCfg(*vessel, true)) return good = false;
        MarkConverted(*vessel);
        if (!CheckUserCompCfg(*vessel) || !SaveGeoidInfoToDB()) return good = false;
        // Its geodesy is in the coordinate system by now, so a vessel that can't be written doesn't hold the project
        // up.
        if (!vessel->FileSave(path, kSave)) {
            Notify(Notice::Information, L"The converted vessel " + path + L" can't be saved: " +
                                            std::wstring(FsResultText(vessel->LastResult())) + L".");
        }
        return true;
    });
    return good;
}

bool ProjectDefinition::FixOldVesselCfg(VesselConfig& vessel, bool checkComputations) {
    reduceHeightToGeoid = false;
    if (!checkComputations) deviceTransformationState = -1;
    if (IsConverted(vessel)) return false;
    firstGeoidSeen = true;
    if (!CheckLinkedCompCfg(vessel, checkComputations)) return false;
    MarkConverted(vessel);
    return true;
}

bool ProjectDefinition::AddGeoidInfoToDB(VesselConfig& vessel) {
    return CheckUserCompCfg(vessel) && SaveGeoidInfoToDB();
}

bool ProjectDefinition::CheckLinkedCompCfg(VesselConfig& vessel, bool checkComputations) {
    const unsigned devices = vessel.GetNumDevices();
    for (unsigned no = 1; no <= devices; ++no) {
        const std::wstring section = Numbered(L"DEVICE", no);
        bool enabled = true;
        if (!vessel.HasSection(section)) continue;
        vessel.GetItem(section, L"DeviceEnable", enabled);
        if (!enabled) continue;  // two receivers that are switched off may disagree
        if (!CheckDeviceDtf(vessel, section)) return false;
        int computations = 0;
        if (!checkComputations || !vessel.GetItem(section, L"NumComps", computations)) continue;
        computations = std::min(computations, kMostComputations);
        for (int index = 1; index <= computations; ++index) {
            if (!CheckOldCompCfg(Numbered(L"Comp", static_cast<unsigned>(index)), vessel, section)) return false;
        }
    }
    return true;
}

bool ProjectDefinition::CheckUserCompCfg(const VesselConfig& vessel) {
    const unsigned computations = vessel.GetNumComputations();
    for (unsigned no = 1; no <= computations; ++no) {
        const std::wstring section = Numbered(L"COMPUTATION", no);
        if (!vessel.HasSection(section)) continue;
        if (!CheckOldCompCfg(std::wstring(kComputationAttributes), vessel, section)) return false;
    }
    return true;
}

bool ProjectDefinition::CheckDeviceDtf(VesselConfig& vessel, const std::wstring& section) {
    std::wstring projectName;
    if (coordSys) coordSys->TransformationName(projectName);
    CAttributeMap attributes = Attributes(vessel, section, kDeviceAttributes);
    if (attributes.Has(ATTR_SELECT_DTF) || !attributes.Has(ATTR_APPLYDTF)) return true;
    bool apply = false;
    std::wstring name;
    attributes.GetAttribValue(ATTR_APPLYDTF, apply);
    attributes.GetAttribValue(ATTR_DTFNAME, name);
    const int state = !apply || name == L"default" ? kDefaultTransformation
                      : name == projectName        ? kProjectTransformation
                                                   : kOtherTransformation;
    if (deviceTransformationState != -1 && deviceTransformationState != state) return Refuse(kTransformationsDiffer);
    deviceTransformationState = state;
    attributes.Add(ATTR_SELECT_DTF, kAttribInt);
    if (attributes.SetAttribValue(ATTR_SELECT_DTF, state)) attributes.SaveToFObj(vessel, section);
    return true;
}

bool ProjectDefinition::CheckOldCompCfg(const std::wstring& group, const VesselConfig& vessel,
                                        const std::wstring& section) {
    const CAttributeMap attributes = Attributes(vessel, section, group);
    if (attributes.Has(ATTR_XCOR) && attributes.Has(ATTR_YCOR) && attributes.Has(ATTR_ZCOR)) {
        double x = 0, y = 0, z = 0;
        attributes.GetAttribValue(ATTR_XCOR, x);
        attributes.GetAttribValue(ATTR_YCOR, y);
        attributes.GetAttribValue(ATTR_ZCOR, z);
        if (firstCorrectionSeen) {
            postCorrectionX = x;
            postCorrectionY = y;
            postCorrectionZ = z;
            firstCorrectionSeen = false;
        } else if (x != postCorrectionX || y != postCorrectionY || z != postCorrectionZ) {
            return Refuse(kCorrectionsDiffer);
        }
    }
    bool reduce = false;
    if (!attributes.GetAttribValue(ATTR_REDUCE_HGT_GEOID, reduce) || !reduce) return true;
    int mode = kReceiverSupplied, relatedTo = 0;
    double separation = 0;
    const std::wstring file;  // the old form had the name in an attribute that never was in use
    attributes.GetAttribValue(ATTR_GEOID_SEP, mode);
    attributes.GetAttribValue(ATTR_SEP_MAN_INPUT, separation);
    attributes.GetAttribValue(ATTR_GEOID_SEP_REL_TO, relatedTo);
    if (mode == kManualInput && relatedTo != 0) return Refuse(kManualNotWgs84);
    if (mode == kReceiverSupplied) {
        bool apply = true;
        int source = 0;
        if (Attributes(vessel, section, kDeviceAttributes).GetAttribValue(ATTR_APPLYDTF, apply) && !apply &&
            Attributes(vessel, section, L"Comp(2)").GetAttribValue(ATTR_HGT_SOURCE_GPS, source) && source == 1) {
            return Refuse(kReceiverWithGps);
        }
    }
    if (firstGeoidSeen) {
        reduceHeightToGeoid = reduce;
        geoidManualSeparation = separation;
        separationRelatedTo = relatedTo;
        geoidSeparationMode = mode;
        geoidFileName = file;
        firstGeoidSeen = false;
        return true;
    }
    const bool same = reduceHeightToGeoid == reduce && geoidManualSeparation == separation &&
                      separationRelatedTo == relatedTo && geoidSeparationMode == mode &&
                      EqualNoCase(geoidFileName, file);
    return same || Refuse(kGeoidsDiffer);
}

bool ProjectDefinition::SaveGeoidInfoToDB() {
    OrvGeoDatabaseBase* const database = GetGeoDatabase();
    if (!database) return Fail(L"There is no coordinate system to store the geodesy of the vessels in.");
    std::wstring group, system;
    coordSys->GroupName(group);
    coordSys->SystemName(system);
    const std::wstring key = ModelKey(geoidSeparationMode);
    bool changed = false;
    if (reduceHeightToGeoid && geoidSeparationMode != kReceiverSupplied) {
        if (geoidSeparationMode == kManualInput) {
            changed = database->AddManualSeparation(group, system, key, geoidManualSeparation, true);
        } else if (geoidSeparationMode > kManualInput) {
            const std::wstring file = EqualNoCase(geoidFileName, L"Default") ? std::wstring() : geoidFileName;
            changed = database->AddGeoidModel(group, system, key, file, true);
        }
    }
    // The correction is registered whatever the geoid is.
    changed =
        database->AddPostCorrection(group, system, postCorrectionX, postCorrectionY, postCorrectionZ, key, L"", true) ||
        changed;
    if (!changed) return true;
    ReadCoordSys(false);
    return _BackupCoordSysInfo() || Fail(L"The coordinate system can't be saved into the project.");
}

bool ProjectDefinition::PlanUpgrade(const std::wstring& path, bool& marked, std::vector<VesselUpgrade>& plan) {
    lastProblem.clear();
    coordSysConverted = false;
    // Not verified, so never signed again on the way.
    if (!FileObject::FileOpen(path, kOpenRead)) {
        return Fail(L"The project file " + path + L" can't be read: " + std::wstring(FsResultText(LastResult())) +
                    L".");
    }
    if (!CheckCoordSysKey() || !RegisterCoordSys() || !ReadCoordSys(false)) return false;
    marked = HasKey(COORDSYSTEM_SECTION, OLD_GEOID_MODE) || coordSysConverted;
    if (!marked) return true;
    postCorrectionX = postCorrectionY = postCorrectionZ = 0.0;
    firstCorrectionSeen = planning = true;
    deviceTransformationState = -1;
    ForEachVessel([&](unsigned id, const std::wstring& file, VesselConfig* vessel) {
        VesselUpgrade& row = plan.emplace_back();
        row.id = id;
        row.path = file;
        if (!vessel) return true;
        lastProblem.clear();
        reduceHeightToGeoid = false;
        firstGeoidSeen = true;
        if (IsConverted(*vessel)) {
            row.outcome = VesselUpgrade::Outcome::AlreadyConverted;
        } else if (CheckLinkedCompCfg(*vessel, true) && CheckUserCompCfg(*vessel)) {
            row.outcome = VesselUpgrade::Outcome::Converts;
            row.reducesHeights = reduceHeightToGeoid;
            row.model = reduceHeightToGeoid ? ModelKey(geoidSeparationMode) : std::wstring();
            row.manualSeparation = geoidManualSeparation;
            row.postCorrection = {postCorrectionX, postCorrectionY, postCorrectionZ};
        } else {
            row.outcome = VesselUpgrade::Outcome::Refused;
            row.problem = lastProblem;
        }
        return true;
    });
    planning = false;
    lastProblem.clear();
    return true;
}

}  // namespace orv
