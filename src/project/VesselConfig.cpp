#include "project/VesselConfig.h"

#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "definitions/CCompOffset.h"
#include "platform/os/Clock.h"
#include "platform/text/NumberText.h"
#include "project/FileDependencies.h"
#include "surveydata/ShapeSelection.h"

namespace orv {

namespace {

constexpr std::wstring_view kGeneral = L"GENERAL", kGeometry = L"GEOMETRY", kGuidance = L"GUIDANCE";
constexpr std::wstring_view kLogging = L"LOGGING", kAlarms = L"Alarms", kWorkAreas = L"WORKAREAS";
constexpr std::wstring_view kPlacement = L"OBJECTPLACEMENT";
constexpr std::wstring_view kContour = L"VesselContour", kShape = L"ShapeSelection";
constexpr std::wstring_view kCenterOfGravity = L"CenterOfGravityOffset";
constexpr std::wstring_view kUpdateDtm = L"UpdateDtm", kDtmPerSurvey = L"DtmGeneratedPerSurvey";
constexpr std::wstring_view kDesignType = L"DesignModelType", kDesignName = L"DesignModelName";

constexpr int kFormatDecimals = 6;  // of %f

bool GetSwitched(const FileObject& file, std::wstring_view section, std::wstring_view valueKey,
                 std::wstring_view switchKey, double& value, bool& enabled) {
    double readValue = 0;
    bool readSwitch = false;
    if (!file.GetItem(section, valueKey, readValue) || !file.GetItem(section, switchKey, readSwitch)) return false;
    value = readValue;
    enabled = readSwitch;
    return true;
}

}  // namespace

// NOLINTBEGIN(bugprone-macro-parentheses): a type can't stand in them.
// The items of the file that are nothing but an access each. A name leads from here to its section and key.
#define ORV_GET(Type, Getter, section, key)      \
    bool VesselConfig::Getter(Type& out) const { \
        return GetItem(section, key, out);       \
    }
#define ORV_SET(Type, Setter, section, key)        \
    bool VesselConfig::Setter(Type value) {        \
        return SetItem(section, key, value, true); \
    }
#define ORV_ITEM(Type, Getter, Setter, section, key) \
    ORV_GET(Type, Getter, section, key) ORV_SET(Type, Setter, section, key)
#define ORV_TEXT(Getter, Setter, section, key) \
    ORV_GET(std::wstring, Getter, section, key) ORV_SET(const std::wstring&, Setter, section, key)
#define ORV_VOID_GET(Type, Getter, section, key) \
    void VesselConfig::Getter(Type& out) const { \
        GetItem(section, key, out);              \
    }
#define ORV_VOID_SET(Type, Setter, section, key) \
    void VesselConfig::Setter(Type value) {      \
        SetItem(section, key, value, true);      \
    }
#define ORV_SWITCHED(Getter, Setter, section, key)                                                   \
    bool VesselConfig::Getter(double& value, bool& enabled) const {                                  \
        return GetSwitched(*this, section, key, key L"Enable", value, enabled);                      \
    }                                                                                                \
    bool VesselConfig::Setter(double value, bool enabled) {                                          \
        return SetItem(section, key, value, true) && SetItem(section, key L"Enable", enabled, true); \
    }
// NOLINTEND(bugprone-macro-parentheses)

// clang-format off
ORV_ITEM(double, GetSealevel, SetSealevel, kGeometry, L"Sealevel")
ORV_ITEM(double, GetVesselDraft, SetVesselDraft, kGeometry, L"Draft")
ORV_GET(bool, IsVesselDraftValid, kGeometry, L"DraftValid")
ORV_ITEM(double, GetVesselTurnRadius, SetVesselTurnRadius, kGeometry, L"TurnRadius")
ORV_ITEM(double, GetVesselLength, SetVesselLength, kGeometry, L"VesselLength")
ORV_ITEM(double, GetVesselWidth, SetVesselWidth, kGeometry, L"VesselWidth")
ORV_ITEM(double, GetVesselHeight, SetVesselHeight, kGeometry, L"VesselHeight")
ORV_ITEM(bool, GetSubsurfaceVessel, SetSubsurfaceVessel, kGeometry, L"Subsurface")
ORV_SET(const std::wstring&, SetVesselContour, kGeometry, kContour)

ORV_TEXT(GetVesselRoute, SetVesselRoute, kGuidance, L"VesselRoute")
ORV_TEXT(GetVesselRunlines, SetVesselRunlines, kGuidance, L"VesselRunlines")
ORV_TEXT(GetVesselWaypoints, SetVesselWaypoints, kGuidance, L"VesselWaypoints")
ORV_TEXT(GetRestrictedAreas, SetRestrictedAreas, kGuidance, L"RestrictedAreas")
ORV_TEXT(GetVesselPlacement, SetVesselPlacement, kGuidance, L"VesselPlacement")
ORV_TEXT(GetVesselDredgeInstruction, SetVesselDredgeInstruction, kGuidance, L"DredgeInstruction")
ORV_TEXT(GetWorkAreas, SetWorkareas, kWorkAreas, L"Workareas")
ORV_TEXT(GetObjectPlacements, SetObjectPlacements, kPlacement, L"Objectplacement")
ORV_GET(std::wstring, GetActiveRunline, kGuidance, L"ActiveRunline")
ORV_VOID_SET(const std::wstring&, SetActiveRunline, kGuidance, L"ActiveRunline")
ORV_SWITCHED(GetDesignModelOffset, SetDesignModelOffset, kGuidance, L"DesignModelOffset")
ORV_SWITCHED(GetDesignModelZShift, SetDesignModelZShift, kGuidance, L"DesignModelZShift")
ORV_SWITCHED(GetDesignModelMaxZ, SetDesignModelMaxZ, kGuidance, L"DesignModelMaxZ")
ORV_ITEM(double, GetDesignModelUnderDredgeTol, SetDesignModelUnderDredgeTol, kGuidance, L"DesignModelUnderDredgeTol")
ORV_ITEM(double, GetDesignModelOverDredgeTol, SetDesignModelOverDredgeTol, kGuidance, L"DesignModelOverDredgeTol")
ORV_ITEM(int, GetRLRetrieval, SetRLRetrieval, kGuidance, L"Retrieval")
ORV_VOID_GET(bool, GetShowLeadInLines, kGuidance, L"ShowLeadIn")
ORV_VOID_SET(bool, SetShowLeadInLines, kGuidance, L"ShowLeadIn")
ORV_VOID_GET(bool, GetUseLeadInLines, kGuidance, L"UseLeadIn")
ORV_VOID_SET(bool, SetUseLeadInLines, kGuidance, L"UseLeadIn")
ORV_VOID_GET(double, GetLeadInLength, kGuidance, L"LeadInLength")
ORV_VOID_SET(double, SetLeadInLength, kGuidance, L"LeadInLength")
ORV_ITEM(bool, GetAutoNextLineMode, SetAutoNextLineMode, kGuidance, L"AutoNextLine")
ORV_ITEM(int, GetSkipNLines, SetSkipNLines, kGuidance, L"SkipNLines")
ORV_ITEM(bool, GetUseOfftrackCondition, SetUseOfftrackCondition, kGuidance, L"UseOfftrackLimit")
ORV_ITEM(double, GetOfftrackLimit, SetOfftrackLimit, kGuidance, L"OfftrackLimit")
ORV_TEXT(GetVesselAlarms, SetVesselAlarms, kAlarms, L"VesselAlarms")

ORV_SET(const std::wstring&, SetUpdateDtm, kLogging, kUpdateDtm)
ORV_SET(const std::wstring&, SetBscatUpdateDtm, kLogging, BSCATTER_UPDATEDTM)
ORV_TEXT(GetProdUpdateDtm, SetProdUpdateDtm, kLogging, PRODUCTION_UPDATEDTM)
ORV_TEXT(GetHeavyOilUpdateDtm, SetHeavyOilUpdateDtm, kLogging, HEAVYOIL_UPDATEDTM)
ORV_TEXT(GetUpdateDxf, SetUpdateDxf, kLogging, L"UpdateDxf")
ORV_TEXT(GetUpdateRlncov, SetUpdateRlncov, kLogging, L"UpdateRlncov")
ORV_GET(int, GetMaxSizePerFile, kLogging, L"MaxSizePerFile")
ORV_VOID_SET(int, SetMaxSizePerFile, kLogging, L"MaxSizePerFile")
ORV_GET(bool, IsMaxSizePerFileEnabled, kLogging, L"EnableMaxSizePerFile")
ORV_VOID_SET(bool, EnableMaxSizePerFile, kLogging, L"EnableMaxSizePerFile")
ORV_GET(int, GetMaxLogtimePerFile, kLogging, L"MaxLogtimePerFile")
ORV_VOID_SET(int, SetMaxLogtimePerFile, kLogging, L"MaxLogtimePerFile")
ORV_GET(bool, IsMaxLogtimePerFileEnabled, kLogging, L"EnableMaxLogtimePerFile")
ORV_VOID_SET(bool, EnableMaxLogtimePerFile, kLogging, L"EnableMaxLogtimePerFile")
// clang-format on

#undef ORV_GET
#undef ORV_SET
#undef ORV_ITEM
#undef ORV_TEXT
#undef ORV_VOID_GET
#undef ORV_VOID_SET
#undef ORV_SWITCHED

std::wstring VesselConfig::GetVesselName() const {
    return GetFileTitle().substr(0, GetFileTitle().find(L'['));
}

bool VesselConfig::GetTrackingOffset(CCompOffset& out) const {
    std::wstring text;
    return GetItem(kGeneral, L"TrackingOffset", text) && out.SetFromString(text);
}

bool VesselConfig::GetVesselShape(ShapeSelection& out) const {
    return out.Load(this, kGeometry);
}

bool VesselConfig::SetVesselShape(const ShapeSelection& shape) {
    std::wstring text;
    return shape.Save(text) && SetItem(kGeometry, kShape, text, true);
}

bool VesselConfig::GetCenterOfGravityOffset(COrvDouble3D& out) const {
    out = COrvDouble3D();
    std::wstring text;
    if (!GetItem(kGeometry, kCenterOfGravity, text)) return false;
    const COrvString parts(text, L',', false);
    parts.GetItem(0, out.X);
    parts.GetItem(1, out.Y);
    parts.GetItem(2, out.Z);
    return true;
}

bool VesselConfig::SetCenterOfGravityOffset(const COrvDouble3D& value) {
    const std::wstring text = FixedText(value.X, kFormatDecimals) + L"," + FixedText(value.Y, kFormatDecimals) + L"," +
                              FixedText(value.Z, kFormatDecimals);
    return SetItem(kGeometry, kCenterOfGravity, text, true);
}

// A selection of 7 items or more rules; item 0 is the mode, 1 the 2D type, 5 the 2D shape.
bool VesselConfig::GetVesselContour(std::wstring& out) const {
    std::wstring text;
    if (GetItem(kGeometry, kShape, text) && !text.empty()) {
        const COrvString items(text, L',', true);
        int type = 0;
        if (items.Size() >= 7) {
            items.GetItem(1, type);
            return type != 0 || items.GetItem(5, out);
        }
    }
    return GetItem(kGeometry, kContour, out);
}

bool VesselConfig::GetDesignModel(unsigned& type, std::wstring& name) const {
    std::wstring key, file;
    if (!GetItem(kGuidance, kDesignType, key) || !GetItem(kGuidance, kDesignName, file)) return false;
    type = GetFileTypeForKey(key);
    name = std::move(file);
    return true;
}

bool VesselConfig::SetDesignModel(unsigned type, const std::wstring& name) {
    return SetItem(kGuidance, kDesignType, GetFileKeyForType(type), true) &&
           SetItem(kGuidance, kDesignName, name, true);
}

// A model of its own for each day is named by the day and not stored: the next day's name would be wrong.
bool VesselConfig::UpdateModelName(std::wstring_view key, std::wstring_view ending, std::wstring& out) const {
    bool perSurvey = false;
    GetItem(kLogging, kDtmPerSurvey, perSurvey);
    if (!perSurvey) return GetItem(kLogging, key, out);
    const CalendarTime now = LocalCalendar(TheClock().UtcMilliseconds() / 1000);
    const auto two = [](int number) { return (number < 10 ? L"0" : L"") + IntText(number); };
    out = L"survey" + IntText(now.year) + two(now.month) + two(now.day) + std::wstring(ending);
    return true;
}

bool VesselConfig::GetUpdateDtm(std::wstring& out) const {
    return UpdateModelName(kUpdateDtm, L"", out);
}

bool VesselConfig::GetBscatUpdateDtm(std::wstring& out) const {
    return UpdateModelName(BSCATTER_UPDATEDTM, L"[Backscatter-Model]", out);
}

void VesselConfig::GetDependencies(const std::wstring& path, FileDependencies& dependencies) {
    VesselConfig vessel;
    if (!vessel.FileOpen(path, kOpenRead)) return;
    std::wstring contour, alarms;
    vessel.GetVesselContour(contour);
    dependencies.Add(kFileTypeVesselContour, contour);
    vessel.GetVesselAlarms(alarms);
    dependencies.Add(kFileTypeAlarmMap, alarms);
}

bool VesselConfig::OverLoadAdditionalSections(const VesselConfig& /*other*/) {
    return true;
}

std::wstring NumberedSection(std::wstring_view word, unsigned no) {
    std::wstring name(word);
    name += L'(';
    name += IntText(no);
    name += L')';
    return name;
}

bool ParseNumberedSection(std::wstring_view name, std::wstring_view word, unsigned& no) {
    if (!name.starts_with(word) || !name.ends_with(L')')) return false;
    name.remove_prefix(word.size());
    if (name.size() < 3 || name.front() != L'(') return false;
    const std::wstring_view digits = name.substr(1, name.size() - 2);
    if (digits.find_first_not_of(L"0123456789") != digits.npos) return false;
    const std::optional<unsigned> parsed = ParseUnsigned(digits);
    if (!parsed) return false;
    no = *parsed;
    return true;
}

}  // namespace orv
