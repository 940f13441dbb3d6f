#include "ProjCoordSys.h"

#include <limits>

#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

// Type keys that stand for no grid: see GeoidmodelTypeKeys.
constexpr int kReceiverSupplied = 0;
constexpr int kManualInput = 1;

void DropNone(std::wstring& name, const std::wstring& none) {
    if (!none.empty() && EqualNoCase(name, none)) name.clear();
}

}  // namespace

bool ProjCoordSys::Configure(const CoordSysNames& wanted, const std::wstring&, const std::wstring& none) {
    return Bind(wanted, none);
}

bool ProjCoordSys::Load(const CoordSysNames& wanted, ProjectDefinition&, const std::wstring& none, bool save) {
    if (!Bind(wanted, none)) return false;
    if (save) database.AddModels(names);
    return true;
}

bool ProjCoordSys::Bind(const CoordSysNames& wanted, const std::wstring& none) {
    names = wanted;
    for (std::wstring* name : {&names.geoidModelName, &names.geoidModelFile, &names.geoidChartDatum,
                               &names.postModelName, &names.postModelFile}) {
        DropNone(*name, none);
    }
    system = GeoSystem();
    transformation = nullptr;
    unitFactor = 1.0;
    unitLabel = L"m";
    geoidType = -1;
    geoid = nullptr;
    gridShift = nullptr;
    problem.clear();

    std::optional<GeoSystem> found = database.Find(names.group, names.system);
    if (!found) {
        problem = L"The coordinate database has no system \"" + names.system + L"\" in group \"" + names.group + L"\"";
        return false;
    }
    std::wstring text, mnemonic;
    double factor = 0.0;
    int number = 0;
    if (!database.UnitDefinition(found->unit, text, mnemonic, factor, number)) {
        problem = L"The coordinate database has no unit \"" + found->unit + L"\"";
        return false;
    }
    std::shared_ptr<const ProjTransformation> made = ProjTransformation::Make(found->base, found->definition, problem);
    if (!made) return false;
    system = std::move(*found);
    transformation = std::move(made);
    unitFactor = factor;
    unitLabel = mnemonic;
    ChooseModels();
    return true;
}

/// What the project names wins; where it names nothing, what the database has registered for the system.
void ProjCoordSys::ChooseModels() {
    if (names.geoidModelName.empty()) {
        names.geoidModelName = system.geoidModel;
        names.geoidModelFile = system.geoidFile;
        names.geoidChartDatum = system.chartDatum;
    }
    if (names.postModelName.empty()) {
        names.postModelName = system.postModel;
        names.postModelFile = system.postFile;
    }
    geoidType = GeoidTypeForKey(names.geoidModelName);
    if (geoidType > kManualInput) {
        geoid = MakeModel(names.geoidModelName, names.geoidModelFile, names.geoidChartDatum);
    }
    if (!names.postModelName.empty()) gridShift = MakeModel(names.postModelName, names.postModelFile, {});
}

std::unique_ptr<GeoidModel> ProjCoordSys::MakeModel(const std::wstring& typeKey, const std::wstring& file,
                                                    const std::wstring& datum) {
    const int type = GeoidTypeForKey(typeKey);
    if (type < 0) return nullptr;
    std::unique_ptr<GeoidModel> model = GeoidModelList::GetGeoidModelList().Create(static_cast<unsigned short>(type));
    if (!model) return nullptr;
    model->Init(this);
    // Models with fixed files answer false here; whether one can be used is known when it is asked for a value.
    model->SetFileName(file);
    model->SetGeoidChartDatum(datum);
    return model;
}

void ProjCoordSys::ConvertProject(ProjectDefinition& project) {
    SaveToProject(project);
}

bool ProjCoordSys::SaveToProject(ProjectDefinition& project) {
    std::wstring moduleKey = project.GetGeoCoordSysKey();  // keeps the spelling that the project was opened with
    if (moduleKey.empty()) moduleKey = COORDSYS_MODULE_KEY;
    bool saved = true;
    const auto write = [&](std::wstring_view key, std::wstring_view value) {
        saved = project.SetItem(COORDSYSTEM_SECTION, key, value, true) && saved;
    };
    write(coordsystemKeys[kCoordsysGroupName], names.group);
    write(coordsystemKeys[kCoordsysSystemName], names.system);
    write(coordsystemKeys[kCoordsysModuleKey], moduleKey);
    write(coordsystemKeys[kCoordsysGeoidName], names.geoidModelName);
    write(coordsystemKeys[kCoordsysGeoidFile], names.geoidModelFile);
    write(coordsystemKeys[kCoordsysChartDatum], names.geoidChartDatum);
    write(coordsystemKeys[kCoordsysPostName], names.postModelName);
    write(coordsystemKeys[kCoordsysPostFile], names.postModelFile);
    if (transformation) {
        // Of a system that isn't known neither is: the project keeps its unit and the chance to be converted.
        write(coordsystemKeys[kCoordsysUnit], system.unit);
        write(GEODESY_VERSION_KEY, GEODESY_VERSION);
    }
    return saved;
}

std::wstring ProjCoordSys::EllipsoidName() {
    if (!system.ellipsoid.empty() || !transformation) return system.ellipsoid;
    return transformation->EllipsoidName();
}

void ProjCoordSys::ProjectionName(std::wstring& out) {
    out = system.projection.empty() && transformation ? transformation->ProjectionName() : system.projection;
}

void ProjCoordSys::SetLatLongOnSat(int) {
    // A choice for the host's status display; positions come out the same.
}

bool ProjCoordSys::GridShift(double x, double y, bool inverse, double& dx, double& dy) const {
    dx = system.postX / unitFactor;
    dy = system.postY / unitFactor;
    if (names.postModelName.empty()) return true;
    double modelX = 0.0, modelY = 0.0;
    if (!gridShift || !gridShift->Calculate(x, y, modelX, modelY, inverse)) return false;
    dx += modelX;
    dy += modelY;
    return true;
}

bool ProjCoordSys::GeoToGrid(double latitude, double longitude, double height, double& x, double& y) {
    double gridX = 0.0, gridY = 0.0, dx = 0.0, dy = 0.0;
    if (!transformation || !transformation->Forward(latitude, longitude, height, gridX, gridY)) return false;
    if (!GridShift(gridX, gridY, false, dx, dy)) return false;
    x = gridX + dx;
    y = gridY + dy;
    return true;
}

bool ProjCoordSys::GridToGeo(double x, double y, double height, double& latitude, double& longitude) {
    double dx = 0.0, dy = 0.0;
    if (!transformation) return false;
    // The model's inverse is asked where it stands in the way back: after the constant correction has come off.
    const double shiftedX = x - system.postX / unitFactor, shiftedY = y - system.postY / unitFactor;
    if (!GridShift(shiftedX, shiftedY, true, dx, dy)) return false;
    return transformation->Inverse(x - dx, y - dy, height, latitude, longitude);
}

void ProjCoordSys::Unit(double& factor, std::wstring& label) {
    factor = unitFactor;
    label = unitLabel;
}

bool ProjCoordSys::HeightSeparation(double latitude, double longitude, double& value, std::wstring& reason) {
    double separation = 0.0;
    if (!transformation) {
        reason = problem;
        return false;
    }
    if (geoidType == kReceiverSupplied) {
        reason = L"The height separation comes from the receiver, with each position";
        return false;
    }
    if (geoidType == kManualInput) {
        separation = system.manualSeparation / unitFactor;
    } else if (!names.geoidModelName.empty() && !ModelSeparation(latitude, longitude, separation, reason)) {
        return false;
    }
    // The correction is added to a reduced height, so it comes off what is to be subtracted.
    value = separation - system.postZ / unitFactor;
    reason.clear();
    return true;
}

bool ProjCoordSys::ModelSeparation(double latitude, double longitude, double& value, std::wstring& reason) {
    const auto model = [&] { return L"Geoid model " + names.geoidModelName; };
    if (!geoid) {
        reason = model() + L" isn't part of this installation";
        return false;
    }
    // Few models read grid coordinates; where the projection has none, they must refuse rather than take 0, 0.
    double easting = std::numeric_limits<double>::quiet_NaN(), northing = easting, found = 0.0;
    GeoToGrid(latitude, longitude, 0.0, easting, northing);
    std::wstring text;
    if (geoid->Calculate(latitude, longitude, easting, northing, found, text)) {
        value = found;
        return true;
    }
    const GeoidReason why = geoid->LastReason();
    const std::wstring path = geoid->DataFile();
    std::wstring file = GetNameFromPath(path);
    if (file.empty()) file = names.geoidModelFile;
    reason = model() + L": " + std::wstring(GeoidReasonText(why));
    if (!file.empty()) reason += L", file " + file;
    if (const std::wstring folder = GetFolderFromPath(path); !folder.empty()) reason += L" in folder " + folder;
    return false;
}

}  // namespace orv
