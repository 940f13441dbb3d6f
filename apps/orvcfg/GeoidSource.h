#pragma once

#include <string>

#include "GeoidChoice.h"

namespace CLI {
class App;
}

namespace orv {
class OrvGeoCoordSysBase;
}

namespace orv::cfg {

/// The geoid of a command line: a model with its file, or the open project's own.
struct GeoidArguments {
    std::string model, file, chartDatum;
};
void AddGeoidOptions(CLI::App& command, GeoidArguments& arguments);
/// The choice that names a model; none after a problem has been told.
std::optional<GeoidChoice> ChoiceOf(Session& session, const GeoidArguments& arguments);

/// What gives separations: one model, in metres, or all that the open project's coordinate system applies, in its unit.
class GeoidSource {
public:
    /// Opens the model once, so that a missing grid is told before the first position and not at each. False after a
    /// problem has been told.
    bool Open(Session& session, const GeoidArguments& arguments);

    /// False and a reason where there is no separation.
    bool At(double latitude, double longitude, double& value);
    /// The same by national grid coordinates in metres, for a model alone.
    bool AtGrid(double easting, double northing, double& value);

    const std::string& Reason() const { return reason; }
    const std::wstring& Remark() const { return remark; }  ///< what the model has to say beside its last value
    const std::wstring& Unit() const { return unit; }
    bool OfProject() const { return coordSys != nullptr; }

private:
    bool OpenOfProject(Session& session, const GeoidArguments& arguments);
    bool OpenChoice(Session& session, const GeoidChoice& choice);
    bool AskModel(double latitude, double longitude, double easting, double northing, double& value);

    OpenedGeoid geoid;                       // without a model where a person or a receiver gives the separation
    OrvGeoCoordSysBase* coordSys = nullptr;  // null for a model alone
    std::wstring unit = L"m", words, remark;
    std::string reason;
};

}  // namespace orv::cfg
