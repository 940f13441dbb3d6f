#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/ProtectedFileObject.h"
#include "platform/coord/OrvGeoCoordSysBase.h"
#include "platform/values/COrvDouble3D.h"
#include "platform/values/COrvUnitCnv.h"

namespace orv {

class VesselConfig;

enum coord_format : std::int32_t { kGridFormat = 1, kGeographicFormat = 2 };

/// Names of the 28 unit kinds: keys of a project's unit section and sections of the units file.
ORV_EXPORT const std::array<std::wstring_view, kUnitKinds>& UnitKindNames();

enum class MoveFileType { Images = 0, Reports = 1 };

/// What the conversion of an old project makes of one of its vessels.
struct VesselUpgrade {
    enum class Outcome { NotOpened, AlreadyConverted, Converts, Refused };
    unsigned id = 0;
    std::wstring path;
    Outcome outcome = Outcome::NotOpened;
    std::wstring problem;  ///< why it is refused, in the words that opening the project shows
    bool reducesHeights = false;
    std::wstring model;             ///< row of GeoidmodelTypeKeys, where heights are reduced
    double manualSeparation = 0.0;  ///< metres
    COrvDouble3D postCorrection;    ///< metres
};

/// The project: one protected file and what is derived from it when it opens: display formats, units, the live
/// coordinate system. `DataSearch` owns one. Setters change memory; the caller saves. Main thread.
///
/// Two forms of the file: the full one of a survey project (Project.prj in the project's folder), and the small one
/// (ProjectSUI.prj beside the system files) for tools that need a coordinate system and have no project.
class ORV_EXPORT ProjectDefinition : public ProtectedFileObject {
public:
    ProjectDefinition();
    ~ProjectDefinition() override;
    /// A copy never shares the coordinate system: it makes its own from its copied content.
    ProjectDefinition(const ProjectDefinition& other);
    ProjectDefinition& operator=(const ProjectDefinition& other);

    // Opening and making: ProjectDefinition.cpp

    /// Opens and derives. Beside reading, an open signs a project again that doesn't verify, adds a system unit that
    /// the units file lacks, moves pictures and reports that older versions left in the project folder to their own
    /// folders, and copies map images back beside the project. `saveCoordSys`: the coordinate module stores the
    /// project's settings in its database. On false `LastProblem` tells why.
    virtual bool Init(const std::wstring& path, bool saveCoordSys);
    bool Init(const wchar_t* path, bool saveCoordSys) { return Init(std::wstring(path), saveCoordSys); }
    /// A small file that opens is a success even if its coordinate system fails to load; formats and units aren't read.
    bool InitSUI(const std::wstring& path);
    /// Default file in `folder`, or only in memory.
    bool CreateDefaultFile(std::wstring folder, bool toDisk);
    bool CreateDefaultSUIFile(std::wstring path);
    /// Adds what is missing in a full file and saves it. True, also when the file can't be opened.
    bool RepairFile(const std::wstring& path);
    void Finalize();                            ///< destroys the coordinate system; the file stays open
    bool ReOpenFile(const std::wstring& path);  ///< the file only; formats, units and coordinates aren't refreshed
    bool ReInitUnits();

    // Getters: false when the item is missing, always true for what `Init` derived.

    bool GetCoordinateFormat(coord_format& out) const;
    bool GetGeogsDecimals(int& out) const;
    bool GetGridDecimals(int& out) const;
    bool GetSpeedDecimals(int& out) const;
    bool GetDistanceDecimals(int& out) const;
    bool GetDepthDecimals(int& out) const;
    bool GetDensityDecimals(int& out) const;
    bool GetPressureDecimals(int& out) const;
    bool GetWeightDecimals(int& out) const;
    bool GetKpDecimals(int& out) const;
    bool GetGeogsFlags(unsigned& out) const;         ///< bit 1 degrees, 2 minutes, 4 seconds
    bool GetFeetsFlags(unsigned& out) const;         ///< bit 1 feet, 2 inch, 4 fractions
    bool GetUnitDecimals(int kind, int& out) const;  ///< false for a kind without decimals of its own
    COrvUnitCnv* GetUnitCnv() { return &unitTable; }
    const COrvUnitCnv* GetUnitCnv() const { return &unitTable; }
    bool GetProjectTitle(std::wstring& out) const;
    bool GetProjectNumber(std::wstring& out) const;
    bool GetProjectTask(std::wstring& out) const;
    bool GetClientName(std::wstring& out) const;
    bool ContractorName(std::wstring& out) const;
    bool GetLogDataPath(std::wstring& out) const;
    bool SetLogDataPath(const std::wstring& path);
    bool GetLogDataBackupPath(std::wstring& out) const;
    bool GetUseLogDataBackup(bool& out) const;  ///< clears the output first
    bool GetMultiMediaFilePath(std::wstring& out) const;
    bool SetMultiMediaFilePath(const std::wstring& path);
    bool GetAppDefinition(std::wstring& out) const;
    bool SetAppDefinition(const std::wstring& name);
    bool GetAppDefDescription(std::wstring& out) const;
    bool SetAppDefDescription(const std::wstring& text);
    bool GetAppConfiguration(std::wstring& out) const;
    bool SetAppConfiguration(const std::wstring& name);
    bool HasMultimediaReportFileMoved() const { return multimediaMoved; }

    // Coordinate system: ProjectCoordSys.cpp

    OrvGeoCoordSysBase* GetGeoCoordSys() const { return coordSys.get(); }  ///< null if none
    std::wstring GetGeoCoordSysKey() const { return coordSysKey; }
    OrvGeoDatabaseBase* GetGeoDatabase() const;  ///< null if none
    /// `out` gets the name asked for and `name` the group name. Only with a coordinate system; false without one.
    bool GetTransformationName(std::wstring& name, std::wstring& out) const;
    bool GetProjectionName(std::wstring& name, std::wstring& out) const;
    bool GetEllipsoidName(std::wstring& name, std::wstring& out) const;
    bool UpdateGeoCoordSys();
    bool SaveCoordinateSystemParams();
    bool _BackupCoordSysInfo();  // NOLINT(bugprone-reserved-identifier): hosts call it by this name
    /// A new object of the project's module; null if the module or its `Configure` fails.
    std::unique_ptr<OrvGeoCoordSysBase> CreateNewCoordSys(const std::wstring& group, const std::wstring& system,
                                                          const std::wstring& geoidModelName,
                                                          const std::wstring& geoidModelFile,
                                                          const std::wstring& geoidChartDatum,
                                                          const std::wstring& postModelName,
                                                          const std::wstring& postModelFile) const;

    // Old vessels: ProjectConversion.cpp

    /// Converts the geodesy of a vessel that comes from another project, in memory; the caller saves it. True if it was
    /// of the old form and its devices agree; a disagreement is shown. Without `checkComputations` only the datum
    /// transformation of the devices is looked at.
    bool FixOldVesselCfg(VesselConfig& vessel, bool checkComputations);
    /// Stores what the vessel's computations agree on in the module's database and in this project (memory).
    bool AddGeoidInfoToDB(VesselConfig& vessel);
    /// What opening the project at `path` would do to its vessels, of the open installation's current project, without
    /// writing or showing anything. `marked` tells whether the project is to be converted at all; the plan is empty if
    /// not. False with `LastProblem` if the project or its coordinate system can't be read.
    bool PlanUpgrade(const std::wstring& path, bool& marked, std::vector<VesselUpgrade>& plan);

    /// Why the last `Init` failed, in words, for tools; empty if it didn't.
    const std::wstring& LastProblem() const { return lastProblem; }

protected:
    bool Init(bool saveCoordSys);
    // Repair and move of images and reports: ProjectUpgrade.cpp
    void MoveOldProjectFiles(MoveFileType type);
    void CopyFilesToProject(MoveFileType type);

private:
    bool CheckCoordSysKey();
    bool RegisterCoordSys();
    bool ReadCoordSys(bool save);
    // Conversion of old vessels: ProjectConversion.cpp
    bool CheckVesselPosCompGeoidModelCfg();
    template <class Visit>
    void ForEachVessel(Visit visit) const;
    bool CheckLinkedCompCfg(VesselConfig& vessel, bool checkComputations);
    bool CheckUserCompCfg(const VesselConfig& vessel);
    bool CheckDeviceDtf(VesselConfig& vessel, const std::wstring& section);
    bool CheckOldCompCfg(const std::wstring& group, const VesselConfig& vessel, const std::wstring& section);
    bool SaveGeoidInfoToDB();
    bool Refuse(std::wstring_view text);
    bool ReadFormats();
    bool ReadUnits();
    bool HasProjectUnitExisted(const FileObject& unitsFile, const std::wstring& unitName) const;
    bool AddSystemUnit(FileObject& unitsFile, const std::wstring& unitName);
    bool LoadUnit(const FileObject& unitsFile, int kind);
    CoordSysNames ReadCoordSysNames() const;
    void WriteDefaultFormats(bool onlyMissing);
    void WriteDefaultUnits(bool onlyMissing);
    void CopyMembers(const ProjectDefinition& other);
    bool Fail(std::wstring_view problem);

    bool multimediaMoved = false;
    // Gathered by the conversion of old vessels.
    bool reduceHeightToGeoid = false;
    double geoidManualSeparation = 0.0;
    double postCorrectionX = 0.0, postCorrectionY = 0.0, postCorrectionZ = 0.0;
    std::int32_t geoidSeparationMode = 0, separationRelatedTo = 0;
    std::wstring geoidFileName;
    bool coordSysConverted = false;
    // Display formats.
    coord_format coordinateFormat = kGridFormat;
    std::int32_t geogsDecimals = 2, gridDecimals = 2, speedDecimals = 2, distanceDecimals = 2, depthDecimals = 2;
    std::int32_t densityDecimals = 3, pressureDecimals = 3, weightDecimals = 2, kpDecimals = 5;
    std::uint32_t geogsFlags = 7, feetFlags = 7;
    COrvUnitCnv unitTable;
    std::unique_ptr<OrvGeoCoordSysBase> coordSys;
    std::wstring coordSysKey;
    bool firstGeoidSeen = false, firstCorrectionSeen = false;
    bool planning = false;  // nothing is shown: the refusals are told one by one
    std::int32_t deviceTransformationState = -1;
    bool suiMode = false;
    std::wstring lastProblem;
};

/// Coordinate system section of any project file; a null file does nothing. Group and system of the module BMCoordSys
/// stand between brackets in the file and bare in the arguments.
ORV_EXPORT void GetCoordSysData(const ProtectedFileObject* file, std::wstring& group, std::wstring& system,
                                std::wstring& key, std::wstring& unit, std::wstring& geoidName, std::wstring& geoidFile,
                                std::wstring& chartDatum, std::wstring& postName, std::wstring& postFile);
/// A changed system unit takes the units that depend on it along.
ORV_EXPORT void SetCoordSysData(ProtectedFileObject* file, std::wstring group, std::wstring system, std::wstring key,
                                std::wstring unit, std::wstring geoidName, std::wstring geoidFile,
                                std::wstring chartDatum, std::wstring postName, std::wstring postFile);

}  // namespace orv
