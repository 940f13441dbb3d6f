#pragma once

#include <string>
#include <vector>

#include "platform/Export.h"

namespace orv {

class ProjectDefinition;
class OrvGeoDatabaseBase;

/// Names that tell a coordinate system and its models, as a project keeps them.
struct CoordSysNames {
    std::wstring group, system;
    std::wstring geoidModelName;  ///< type key of the geoid model, see GeoidmodelTypeKeys; empty for none
    std::wstring geoidModelFile, geoidChartDatum;
    std::wstring postModelName, postModelFile;
};

/// A project's coordinate system, as a coordinate module implements it. Made by `OrvGeoCoordSysList::Create`. The
/// virtual operations stand in a fixed order: new ones go to the end. Main thread, but for
/// `GeoToGrid`, `GridToGeo`, `Unit` and `HeightSeparation`, which any thread may call after `Load` or `Configure`.
class ORV_EXPORT OrvGeoCoordSysBase {
public:
    virtual ~OrvGeoCoordSysBase() = default;
    /// Builds a new system from these names, without a project. `text` is empty and `none` is "none" at all calls.
    virtual bool Configure(const CoordSysNames& names, const std::wstring& text, const std::wstring& none) = 0;
    /// Binds the object to the project's named system. `save`: store the project's settings in the module's database.
    virtual bool Load(const CoordSysNames& names, ProjectDefinition& project, const std::wstring& none, bool save) = 0;
    /// Called behind `Load` when the database has converted an old project.
    virtual void ConvertProject(ProjectDefinition& project) = 0;
    /// Writes what the object knows into the project's coordinate system section (memory only).
    virtual bool SaveToProject(ProjectDefinition& project) = 0;
    /// Belongs to the object.
    virtual OrvGeoDatabaseBase* Database() = 0;
    virtual void GroupName(std::wstring& out) = 0;
    virtual void SystemName(std::wstring& out) = 0;
    virtual void TransformationName(std::wstring& out) = 0;  ///< the datum transformation of the system
    virtual std::wstring EllipsoidName() = 0;
    virtual void ProjectionName(std::wstring& out) = 0;
    virtual void SetLatLongOnSat(int on) = 0;

    /// Degrees and metres above the ellipsoid to grid coordinates in units of the system, and back. False where the
    /// projection has no value; outputs are left alone then.
    virtual bool GeoToGrid(double latitude, double longitude, double height, double& x, double& y) = 0;
    virtual bool GridToGeo(double x, double y, double height, double& latitude, double& longitude) = 0;
    /// Metres per length unit of the system, and what stands behind a figure in that unit.
    virtual void Unit(double& factor, std::wstring& label) = 0;
    /// Height separation (ellipsoid to the project's height reference) in units of the system at a position in degrees;
    /// `reason` says in words why there is none. A system without a geoid gives 0.
    virtual bool HeightSeparation(double latitude, double longitude, double& value, std::wstring& reason) = 0;
};

/// The named systems that a coordinate module knows.
class ORV_EXPORT OrvGeoDatabaseBase {
public:
    virtual ~OrvGeoDatabaseBase() = default;
    /// Definition of a unit by name: its text, its mnemonic, metres per unit and a further number (0 for lengths).
    virtual bool UnitDefinition(const std::wstring& name, std::wstring& text, std::wstring& mnemonic, double& factor,
                                int& number) = 0;
    /// Name of a system's length unit; empty for an unknown system.
    virtual std::wstring UnitOfSystem(const std::wstring& group, const std::wstring& system) = 0;
    /// True if the project held geodesy of an older layout and was converted; group and system may have changed.
    virtual bool ConvertOldLayout(ProjectDefinition& project, std::wstring& group, std::wstring& system) = 0;
    /// True when it changed the database.
    virtual bool AddGeoidModel(const std::wstring& group, const std::wstring& system, const std::wstring& typeKey,
                               const std::wstring& fileName, bool overwrite) = 0;
    virtual bool AddManualSeparation(const std::wstring& group, const std::wstring& system, const std::wstring& typeKey,
                                     double separation, bool overwrite) = 0;
    virtual bool AddPostCorrection(const std::wstring& group, const std::wstring& system, double x, double y, double z,
                                   const std::wstring& typeKey, const std::wstring& text, bool overwrite) = 0;
    /// What a selection list shows for a system.
    virtual std::wstring ListEntry(const std::wstring& group, const std::wstring& system) = 0;

    /// All groups, and the systems of one, in the order of the database.
    virtual std::vector<std::wstring> Groups() = 0;
    virtual std::vector<std::wstring> Systems(const std::wstring& group) = 0;
};

}  // namespace orv
