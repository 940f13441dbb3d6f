#include "surveydata/PESSettingsModel.h"

#include <tuple>
#include <utility>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "core/FileObject.h"

namespace orv {

namespace {

constexpr std::wstring_view kSection = L"PESSettings";

/// Keys and members, in the order of the file.
constexpr auto kFields = std::make_tuple(std::pair{L"MainGridModelName", &PESSettings::mainGridModelName},
                                         std::pair{L"DXFEchartName", &PESSettings::dxfChartName},             //
                                         std::pair{L"VesselName", &PESSettings::vesselName},                  //
                                         std::pair{L"VesselLength", &PESSettings::vesselLength},              //
                                         std::pair{L"VesselWidth", &PESSettings::vesselWidth},                //
                                         std::pair{L"VesselHeight", &PESSettings::vesselHeight},              //
                                         std::pair{L"VesselTurnPoint", &PESSettings::vesselTurnPoint},        //
                                         std::pair{L"LengthMarginRadio", &PESSettings::lengthMarginMode},     //
                                         std::pair{L"LengthMargin", &PESSettings::lengthMargin},              //
                                         std::pair{L"LengthMarginFactor", &PESSettings::lengthMarginFactor},  //
                                         std::pair{L"LengthTotal", &PESSettings::lengthTotal},                //
                                         std::pair{L"WidthMarginRadio", &PESSettings::widthMarginMode},       //
                                         std::pair{L"WidthMargin", &PESSettings::widthMargin},                //
                                         std::pair{L"WidthMarginFactor", &PESSettings::widthMarginFactor},    //
                                         std::pair{L"WidthTotal", &PESSettings::widthTotal},                  //
                                         std::pair{L"Draught", &PESSettings::draught},                        //
                                         std::pair{L"UKCRoute", &PESSettings::ukcRoute},                      //
                                         std::pair{L"UKCBerthing", &PESSettings::ukcBerthing},                //
                                         std::pair{L"BACRadius", &PESSettings::bacRadius},                    //
                                         std::pair{L"Tide", &PESSettings::tide});
constexpr std::wstring_view kRouteKey = L"RouteName", kVideoKey = L"AVIFile";

bool PathOf(const std::wstring& name, std::wstring& path) {
    if (name.empty() || !DataSearch::GetDataSearch().GetDataPathInfo(kLocationProject, path)) return false;
    path += name + L".pes";
    return true;
}

}  // namespace

PESSettingsModel& PESSettingsModel::Instance() {
    static PESSettingsModel instance;
    return instance;
}

bool PESSettingsModel::FileOpen(const std::wstring& name) {
    initialised = routeValid = false;
    settings.vesselLength = settings.vesselWidth = settings.vesselHeight = 0;
    settings.vesselTurnPoint = PESSettings().vesselTurnPoint;
    std::wstring path;
    FileObject file;
    if (!PathOf(name, path) || !file.FileOpen(path, kOpenRead) || !file.HasSection(kSection)) return false;
    std::apply([&](const auto&... field) { (file.GetItem(kSection, field.first, settings.*field.second), ...); },
               kFields);
    settings.designModel3DName = GetPESName();
    settings.workingRadius = settings.bacRadius;
    file.GetItem(kSection, kRouteKey, routeName);
    file.GetItem(kSection, kVideoKey, videoName);
    initialised = true;
    return true;
}

bool PESSettingsModel::FileSave(const std::wstring& name) const {
    std::wstring path;
    FileObject file;
    if (!PathOf(name, path) || !file.CreateSection(kSection, true)) return false;
    const auto set = [&](std::wstring_view key, const auto& value) { return file.SetItem(kSection, key, value, true); };
    const bool filled =
        std::apply([&](const auto&... field) { return (set(field.first, settings.*field.second) && ...); }, kFields);
    return filled && set(kRouteKey, routeName) && set(kVideoKey, videoName) && file.FileSave(path, kSave);
}

}  // namespace orv
