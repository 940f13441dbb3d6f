#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace orv {

/// The inputs of one simulated port entrance, in which a vessel's route is checked against a depth model. Lengths in
/// metres; the totals are texts as the form shows them, the meaning of the margin modes is the form's too.
struct PESSettings {
    std::wstring mainGridModelName, dxfChartName, vesselName;
    double vesselLength = 0, vesselWidth = 0, vesselHeight = 0;
    double vesselTurnPoint = 50;
    int lengthMarginMode = 0;
    double lengthMargin = 5, lengthMarginFactor = 1;
    std::wstring lengthTotal;
    int widthMarginMode = 1;
    double widthMargin = 5, widthMarginFactor = 1;
    std::wstring widthTotal;
    double draught = 0;
    double ukcRoute = 0, ukcBerthing = 0;  ///< under keel clearance on the route and at the berth
    double bacRadius = 0;
    double tide = 0;
    std::wstring designModel3DName;  ///< set at load: the simulation's own model
    double workingRadius = 0;        ///< set at load: the BAC radius
    bool operator==(const PESSettings&) const = default;
};

/// The simulation that is being worked on, loaded from and saved to NAME.pes in the project folder (see
/// docs/formats/pes.md). One in a process; main thread.
class ORV_EXPORT PESSettingsModel {
public:
    static PESSettingsModel& Instance();
    virtual ~PESSettingsModel() = default;

    /// False for an empty name, without a project, and for a file that can't be read or isn't one. A key that is
    /// missing leaves its member as it was, but for the vessel's figures, which are reset.
    bool FileOpen(const std::wstring& name);
    bool FileSave(const std::wstring& name) const;

    bool IsInit() const { return initialised; }  ///< a file has been loaded
    bool IsModified() const { return modified; }
    void SetModified(bool value) { modified = value; }
    bool PESRouteValid() const { return routeValid; }  ///< not stored
    void SetPESRouteValid(bool valid) { routeValid = valid; }

    const PESSettings& GetPESSettings() const { return settings; }
    void SetPESSettings(const PESSettings& value) { settings = value; }
    const std::wstring& GetMainGridModelName() const { return settings.mainGridModelName; }
    void SetMainGridModelName(const std::wstring& name) { settings.mainGridModelName = name; }
    const std::wstring& GetDXFEchartName() const { return settings.dxfChartName; }
    void SetDXFEchartName(const std::wstring& name) { settings.dxfChartName = name; }
    const std::wstring& GetVesselName() const { return settings.vesselName; }
    void SetVesselName(const std::wstring& name) { settings.vesselName = name; }
    const std::wstring& Get3DDesignModelName() const { return settings.designModel3DName; }
    void Set3DDesignModelName(const std::wstring& name) { settings.designModel3DName = name; }
    const std::wstring& GetRouteName() const { return routeName; }
    void SetRouteName(const std::wstring& name) { routeName = name; }
    const std::wstring& GetAVIFileName() const { return videoName; }
    void SetAVIFileName(const std::wstring& name) { videoName = name; }

    // Names under which views know the simulation's own models.

    static std::wstring GetPESName() { return L"[#PES#]"; }
    static std::wstring GetPESDSMName() { return L"[#PES Dsm#]"; }

private:
    PESSettingsModel() = default;
    bool initialised = false, modified = false, routeValid = false;
    PESSettings settings;
    std::wstring routeName, videoName;
};

}  // namespace orv
