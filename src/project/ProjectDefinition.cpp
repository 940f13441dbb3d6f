#include "project/ProjectDefinition.h"

#include "core/CFileTypeList.h"
#include "core/COrvString.h"
#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/os/FileTools.h"
#include "platform/service/Translator.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefaults.h"

namespace orv {

namespace {

enum UnitKind : int { kSystemUnits = 1, kSpeed = 2, kDistance = 3, kDepth = 4, kDensity = 6, kHeight = 9 };
enum MoreUnitKinds : int { kPressure = 10, kWeight = 13, kKp = 24 };

constexpr std::array<std::wstring_view, kUnitKinds> kUnitKindNames = {
    L"No Units",           L"System Units",        L"Speed Units",       L"Distance Units",
    L"Depth Units",        L"Volume Units",        L"Density Units",     L"Velocity Units",
    L"Production Units",   L"Height Units",        L"Pressure Units",    L"Power Units",
    L"Revolutions Units",  L"Weight Units",        L"Pitch Units",       L"Roll Units",
    L"Acceleration Units", L"Angular Rate Units",  L"Delivery Units",    L"Angular Units",
    L"Area Units",         L"Temperature Units",   L"Paper Units",       L"Force Units",
    L"KP Units",           L"Fuel Delivery Units", L"Fuel Volume Units", L"Water/Wind Speed Units"};

constexpr std::wstring_view kGeogsText = L"Geogs";

/// One bit for each of three words that occurs in a format text.
struct FlagWord {
    std::wstring_view word;
    unsigned bit;
};
constexpr std::array<FlagWord, 3> kGeogsWords = {{{L"Degrees", 1}, {L"Minutes", 2}, {L"Seconds", 4}}};
constexpr std::array<FlagWord, 3> kFeetWords = {{{L"Feet", 1}, {L"Inch", 2}, {L"Fractions", 4}}};

unsigned FlagsOf(const std::wstring& text, const std::array<FlagWord, 3>& words) {
    unsigned flags = 0;
    for (const FlagWord& entry : words) {
        if (text.find(entry.word) != std::wstring::npos) flags |= entry.bit;
    }
    return flags;
}

/// Whatever happens in the stretch of mandatory items, a later missing item must not throw.
class ThrowingStretch {
public:
    explicit ThrowingStretch(FileObject& over) : file(over) { file.ThrowExceptions(true); }
    ~ThrowingStretch() { file.ThrowExceptions(false); }
    ThrowingStretch(const ThrowingStretch&) = delete;
    ThrowingStretch& operator=(const ThrowingStretch&) = delete;

private:
    FileObject& file;
};

}  // namespace

const std::array<std::wstring_view, kUnitKinds>& UnitKindNames() {
    return kUnitKindNames;
}

std::wstring ProjectDefaultText() {
    const std::wstring translated = Translator::Instance().GetResourceString(kDefaultResource);
    return translated.empty() ? std::wstring(kDefaultResource) : translated;
}

ProjectDefinition::ProjectDefinition() {
    SetKeepOpen(true);
}

ProjectDefinition::~ProjectDefinition() {
    Finalize();
}

// The assignment copies the base, too.
ProjectDefinition::ProjectDefinition(const ProjectDefinition& other)  // NOLINT(bugprone-copy-constructor-init)
    : ProtectedFileObject() {
    *this = other;
}

ProjectDefinition& ProjectDefinition::operator=(const ProjectDefinition& other) {
    if (this == &other) return *this;
    CopyMembers(other);
    ProtectedFileObject::operator=(other);
    coordSys.reset();
    if (other.coordSys) {
        coordSys = OrvGeoCoordSysList::GetCoordSysList().Create(coordSysKey);
        Init(false);  // formats, units and coordinates from the copied content
    }
    return *this;
}

void ProjectDefinition::CopyMembers(const ProjectDefinition& other) {
    multimediaMoved = other.multimediaMoved;
    reduceHeightToGeoid = other.reduceHeightToGeoid;
    geoidManualSeparation = other.geoidManualSeparation;
    postCorrectionX = other.postCorrectionX;
    postCorrectionY = other.postCorrectionY;
    postCorrectionZ = other.postCorrectionZ;
    geoidSeparationMode = other.geoidSeparationMode;
    separationRelatedTo = other.separationRelatedTo;
    geoidFileName = other.geoidFileName;
    coordSysConverted = other.coordSysConverted;
    coordinateFormat = other.coordinateFormat;
    geogsDecimals = other.geogsDecimals;
    gridDecimals = other.gridDecimals;
    speedDecimals = other.speedDecimals;
    distanceDecimals = other.distanceDecimals;
    depthDecimals = other.depthDecimals;
    densityDecimals = other.densityDecimals;
    pressureDecimals = other.pressureDecimals;
    weightDecimals = other.weightDecimals;
    kpDecimals = other.kpDecimals;
    geogsFlags = other.geogsFlags;
    feetFlags = other.feetFlags;
    unitTable = other.unitTable;
    coordSysKey = other.coordSysKey;
    firstGeoidSeen = other.firstGeoidSeen;
    firstCorrectionSeen = other.firstCorrectionSeen;
    deviceTransformationState = other.deviceTransformationState;
    suiMode = other.suiMode;
    lastProblem = other.lastProblem;
}

bool ProjectDefinition::Fail(std::wstring_view problem) {
    lastProblem = problem;
    return false;
}

// ---- opening

bool ProjectDefinition::Init(const std::wstring& path, bool saveCoordSys) {
    lastProblem.clear();
    if (!FileOpen(path, false, kOpenRead)) {
        return Fail(L"The project file " + path + L" can't be opened: " + std::wstring(FsResultText(LastResult())) +
                    L".");
    }
    if (!Init(saveCoordSys)) return false;
    multimediaMoved = false;
    MoveOldProjectFiles(MoveFileType::Images);
    MoveOldProjectFiles(MoveFileType::Reports);
    CopyFilesToProject(MoveFileType::Images);
    return true;
}

bool ProjectDefinition::Init(bool saveCoordSys) {
    coordSysConverted = false;
    if (!CheckCoordSysKey() || !RegisterCoordSys() || !ReadCoordSys(saveCoordSys)) return false;
    if (suiMode) return true;
    if (HasKey(COORDSYSTEM_SECTION, OLD_GEOID_MODE) || coordSysConverted) {
        DeleteItem(COORDSYSTEM_SECTION, OLD_GEOID_MODE, true);
        postCorrectionX = postCorrectionY = postCorrectionZ = 0.0;
        firstGeoidSeen = firstCorrectionSeen = true;
        deviceTransformationState = -1;
        if (!CheckVesselPosCompGeoidModelCfg()) return false;
    }
    const bool formats = ReadFormats();
    return ReadUnits() && formats;
}

bool ProjectDefinition::InitSUI(const std::wstring& path) {
    lastProblem.clear();
    if (!FileOpen(path, false, kOpenRead)) return Fail(L"The file " + path + L" can't be opened.");
    suiMode = true;
    coordSysConverted = false;
    coordSysKey = COORDSYS_MODULE_KEY;
    if (RegisterCoordSys() && !ReadCoordSys(false)) coordSys.reset();
    suiMode = false;
    return true;
}

void ProjectDefinition::Finalize() {
    coordSys.reset();
}

bool ProjectDefinition::ReOpenFile(const std::wstring& path) {
    return FileOpen(path, false, kOpenRead);
}

bool ProjectDefinition::ReInitUnits() {
    return ReadUnits();
}

// ---- formats

bool ProjectDefinition::ReadFormats() {
    if (!HasSection(FORMATS_SECTION))
        return Fail(L"The project has no section [" + std::wstring(FORMATS_SECTION) + L"].");
    std::wstring text;
    GetItem(FORMATS_SECTION, formatParamKeys[kFormatCoordinate], text);
    coordinateFormat = text == kGeogsText ? kGeographicFormat : kGridFormat;
    std::wstring geographicFormat;
    try {
        const ThrowingStretch mandatory(*this);
        GetItem(FORMATS_SECTION, formatParamKeys[kFormatGeographicDecimals], geogsDecimals);
        GetItem(FORMATS_SECTION, formatParamKeys[kFormatGridDecimals], gridDecimals);
        GetItem(FORMATS_SECTION, formatParamKeys[kFormatSpeedDecimals], speedDecimals);
        GetItem(FORMATS_SECTION, formatParamKeys[kFormatDistanceDecimals], distanceDecimals);
        GetItem(FORMATS_SECTION, formatParamKeys[kFormatDepthDecimals], depthDecimals);
        GetItem(FORMATS_SECTION, formatParamKeys[kFormatGeographic], geographicFormat);
    } catch (std::wstring& missing) {
        return Fail(missing);
    }
    geogsFlags = FlagsOf(geographicFormat, kGeogsWords);
    // These came later: a project from before keeps what stands here.
    GetItem(FORMATS_SECTION, formatParamKeys[kFormatDensityDecimals], densityDecimals);
    GetItem(FORMATS_SECTION, formatParamKeys[kFormatPressureDecimals], pressureDecimals);
    GetItem(FORMATS_SECTION, formatParamKeys[kFormatWeightDecimals], weightDecimals);
    GetItem(FORMATS_SECTION, formatParamKeys[kFormatKPDecimals], kpDecimals);
    std::wstring feetFormat;
    GetItem(FORMATS_SECTION, formatParamKeys[kFormatFeet], feetFormat);
    feetFlags = FlagsOf(feetFormat, kFeetWords);
    if (feetFlags == 0) feetFlags = 1;
    return true;
}

// ---- units

bool ProjectDefinition::ReadUnits() {
    if (!HasSection(UNITS_SECTION)) return Fail(L"The project has no section [" + std::wstring(UNITS_SECTION) + L"].");
    std::wstring unitsPath;
    FileObject unitsFile;
    if (!DataSearch::GetDataSearch().GetFullPath(kFileTypeUnits, unitsPath) ||
        !unitsFile.FileOpen(unitsPath, kOpenRead)) {
        return Fail(L"The units file " + unitsPath + L" can't be opened.");
    }
    std::wstring unitName;
    if (!GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysUnit], unitName))
        return Fail(L"The project names no system unit.");
    if (!HasProjectUnitExisted(unitsFile, unitName) && !AddSystemUnit(unitsFile, unitName)) {
        return Fail(L"The system unit \"" + unitName + L"\" is in neither the units file nor the coordinate database.");
    }
    for (int kind = 1; kind < kUnitKinds; ++kind) {
        if (!LoadUnit(unitsFile, kind)) {
            return Fail(L"There is no unit for " + std::wstring(kUnitKindNames[static_cast<std::size_t>(kind)]) +
                        L" in " + unitsPath + L".");
        }
    }
    return true;
}

bool ProjectDefinition::HasProjectUnitExisted(const FileObject& unitsFile, const std::wstring& unitName) const {
    FobjSection cursor;
    std::wstring key, value;
    for (bool more = unitsFile.GetFirstMapEntry(cursor, kUnitKindNames[kSystemUnits], key, value); more;
         more = unitsFile.GetNextMapEntry(cursor, key, value)) {
        if (EqualNoCase(key, unitName)) return true;
    }
    return false;
}

// A coordinate system may bring a unit of its own; the units file, which all projects share, learns it.
bool ProjectDefinition::AddSystemUnit(FileObject& unitsFile, const std::wstring& unitName) {
    OrvGeoDatabaseBase* database = GetGeoDatabase();
    if (!database) return false;
    std::wstring text, mnemonic;
    double factor = 1.0;
    int number = 0;
    if (!database->UnitDefinition(unitName, text, mnemonic, factor, number)) return false;
    unitsFile.SetItem(kUnitKindNames[kSystemUnits], unitName, FixedText(factor, 6) + L"," + mnemonic, true);
    // Into the units file of today, whatever day of the history was read. What follows reads from memory if it can't be
    // changed; the next start tries again.
    std::wstring path;
    if (!DataSearch::GetDataSearch().GetFullPathForWriting(kFileTypeUnits, path)) return true;
    ReadOnlyLift lift(path);
    if (unitsFile.FileSave(path, kSave)) unitsFile.FileOpen(path, kOpenRead);
    return true;
}

bool ProjectDefinition::LoadUnit(const FileObject& unitsFile, int kind) {
    const std::wstring_view kindName = kUnitKindNames[static_cast<std::size_t>(kind)];
    std::wstring unitName, definition;
    const bool own = GetItem(UNITS_SECTION, kindName, unitName) && unitsFile.GetItem(kindName, unitName, definition);
    // A project from before a kind existed gets that kind's default; the project file isn't touched.
    if (!own && !(unitsFile.GetItem(UNITS_DEFAULT_SECTION, kindName, unitName) &&
                  unitsFile.GetItem(kindName, unitName, definition))) {
        return false;
    }
    const COrvString items(definition, L',', true);
    double factor = 1.0, offset = 0.0;
    std::wstring mnemonic, keyText;
    items.GetItem(0, factor);
    items.GetItem(1, mnemonic);
    items.GetItem(2, keyText);
    items.GetItem(3, offset);
    if (keyText.empty()) keyText = unitName;
    unitTable.SetUnit(kind, factor, offset, mnemonic, unitName, keyText);
    return true;
}

// ---- making files

void ProjectDefinition::WriteDefaultFormats(bool onlyMissing) {
    const auto put = [&](std::size_t row, const auto& value) {
        if (!onlyMissing || !HasKey(FORMATS_SECTION, formatParamKeys[row])) {
            SetItem(FORMATS_SECTION, formatParamKeys[row], value, true);
        }
    };
    put(0, L"Degrees Minutes Seconds");
    put(1, geogsDecimals);
    put(2, gridDecimals);
    put(3, speedDecimals);
    put(4, distanceDecimals);
    put(5, depthDecimals);
    put(6, L"Grid");
    put(7, densityDecimals);
    put(8, pressureDecimals);
    put(9, weightDecimals);
    put(10, kpDecimals);
    put(11, L"Feet");
}

void ProjectDefinition::WriteDefaultUnits(bool onlyMissing) {
    std::wstring unitsPath;
    FileObject unitsFile;
    if (!DataSearch::GetDataSearch().GetFullPath(kFileTypeUnits, unitsPath) ||
        !unitsFile.FileOpen(unitsPath, kOpenRead)) {
        return;
    }
    for (const std::wstring_view kind : kUnitKindNames) {
        std::wstring unitName;
        if (onlyMissing && HasKey(UNITS_SECTION, kind)) continue;
        if (unitsFile.GetItem(UNITS_DEFAULT_SECTION, kind, unitName)) SetItem(UNITS_SECTION, kind, unitName, true);
    }
}

bool ProjectDefinition::CreateDefaultFile(std::wstring folder, bool toDisk) {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring extension, location, defaultName;
    DataSearchStatus::Set(kSearchOk);
    const CFileType* type = GetFileTypeList().GetFileType(GetFileKeyForType(kFileTypeProject));
    if (!type) {
        DataSearchStatus::Set(kSearchUnknownFileType);
    } else {
        search.GetFileExtension(type, extension);
        search.GetDataPathInfo(type->GetLocation(), location);
        search.GetDefaultFileName(type, defaultName);
    }
    const std::wstring path = WithSeparator(folder) + defaultName + extension;
    if (toDisk && !FileOpen(path, false, kOpenCreateRead)) return false;

    if (CreateSection(HEADER_SECTION, true)) {
        for (const std::wstring_view key : projDescKeys) SetItem(HEADER_SECTION, key, ProjectDefaultText(), true);
    }
    if (CreateSection(DATA_PATH_SECTION, true))
        SetItem(DATA_PATH_SECTION, pathKeys[kLocationLogData], kLogDataFolder, true);
    if (CreateSection(APPLICATION_SECTION, true)) {
        for (const std::wstring_view key : appParamKeys) SetItem(APPLICATION_SECTION, key, L"", true);
    }
    if (CreateSection(FORMATS_SECTION, true)) WriteDefaultFormats(false);
    if (CreateSection(UNITS_SECTION, true)) WriteDefaultUnits(false);
    if (CreateSection(GPS_TIME_PARAMETERS, true))
        SetItem(GPS_TIME_PARAMETERS, GPS_TIME_PARAMETERS, kGpsTimeParameters, true);
    if (CreateSection(SONAR_TARGET_PARAMETERS, true)) {
        SetItem(SONAR_TARGET_PARAMETERS, SONAR_TARGET_FILE_NAME, L"", true);
        SetItem(SONAR_TARGET_PARAMETERS, PIPELINE_WIDTH, kPipelineWidth, true);
    }
    if (toDisk) {
        FileSave(path, 0, kSave);
        FileClose();
    }
    return true;
}

bool ProjectDefinition::CreateDefaultSUIFile(std::wstring path) {
    if (!FileOpen(path, false, kOpenCreateRead)) return false;
    SetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGroupName], DEFAULT_COORDSYS_GROUP, true);
    SetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysSystemName], DEFAULT_COORDSYS_NAME, true);
    SetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysModuleKey], COORDSYS_MODULE_KEY, true);
    for (std::size_t row = kCoordsysGeoidName; row <= kCoordsysPostFile; ++row)
        SetItem(COORDSYSTEM_SECTION, coordsystemKeys[row], L"", true);
    SetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysUnit], UNIT_METERS, true);
    SetItem(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, GEODESY_VERSION, true);
    SetItem(OPTIONS_SECTION, SHOW_NO_DETECTION_BEAMS, L"0", true);
    SetItem(OPTIONS_SECTION, LATLONG_ON_SAT, L"1", true);
    SetItem(OPTIONS_SECTION, AUTO_SHOW_ALERTS, L"0", true);
    SetItem(FORMATS_SECTION, formatParamKeys[kFormatGeographicDecimals], geogsDecimals, true);
    FileSave(path, 0, kSave);
    return true;
}

// ---- getters and setters

namespace {

template <class T>
bool Give(T value, T& out) {
    out = value;
    return true;
}

}  // namespace

bool ProjectDefinition::GetCoordinateFormat(coord_format& out) const {
    return Give(coordinateFormat, out);
}
bool ProjectDefinition::GetGeogsDecimals(int& out) const {
    return Give(geogsDecimals, out);
}
bool ProjectDefinition::GetGridDecimals(int& out) const {
    return Give(gridDecimals, out);
}
bool ProjectDefinition::GetSpeedDecimals(int& out) const {
    return Give(speedDecimals, out);
}
bool ProjectDefinition::GetDistanceDecimals(int& out) const {
    return Give(distanceDecimals, out);
}
bool ProjectDefinition::GetDepthDecimals(int& out) const {
    return Give(depthDecimals, out);
}
bool ProjectDefinition::GetDensityDecimals(int& out) const {
    return Give(densityDecimals, out);
}
bool ProjectDefinition::GetPressureDecimals(int& out) const {
    return Give(pressureDecimals, out);
}
bool ProjectDefinition::GetWeightDecimals(int& out) const {
    return Give(weightDecimals, out);
}
bool ProjectDefinition::GetKpDecimals(int& out) const {
    return Give(kpDecimals, out);
}
bool ProjectDefinition::GetGeogsFlags(unsigned& out) const {
    return Give(geogsFlags, out);
}
bool ProjectDefinition::GetFeetsFlags(unsigned& out) const {
    return Give(feetFlags, out);
}

bool ProjectDefinition::GetUnitDecimals(int kind, int& out) const {
    switch (kind) {
        case kSystemUnits:
            return GetGridDecimals(out);
        case kSpeed:
            return GetSpeedDecimals(out);
        case kDistance:
            return GetDistanceDecimals(out);
        case kDepth:
        case kHeight:
            return GetDepthDecimals(out);
        case kDensity:
            return GetDensityDecimals(out);
        case kPressure:
            return GetPressureDecimals(out);
        case kWeight:
            return GetWeightDecimals(out);
        case kKp:
            return GetKpDecimals(out);
        default:
            return false;
    }
}

bool ProjectDefinition::GetProjectTitle(std::wstring& out) const {
    return GetItem(HEADER_SECTION, PROJECT_NAME, out);
}
bool ProjectDefinition::GetProjectNumber(std::wstring& out) const {
    return GetItem(HEADER_SECTION, PROJECT_NUMBER, out);
}
bool ProjectDefinition::GetProjectTask(std::wstring& out) const {
    return GetItem(HEADER_SECTION, PROJECT_TASK, out);
}
bool ProjectDefinition::GetClientName(std::wstring& out) const {
    return GetItem(HEADER_SECTION, CLIENT_NAME, out);
}
bool ProjectDefinition::ContractorName(std::wstring& out) const {
    return GetItem(HEADER_SECTION, CONTRACTOR_NAME, out);
}

bool ProjectDefinition::GetLogDataPath(std::wstring& out) const {
    return GetItem(DATA_PATH_SECTION, pathKeys[kLocationLogData], out);
}
bool ProjectDefinition::SetLogDataPath(const std::wstring& path) {
    return SetItem(DATA_PATH_SECTION, pathKeys[kLocationLogData], path, true);
}
bool ProjectDefinition::GetLogDataBackupPath(std::wstring& out) const {
    return GetItem(DATA_PATH_SECTION, BACKUP_LOG_FOLDER, out);
}
bool ProjectDefinition::GetUseLogDataBackup(bool& out) const {
    out = false;
    return GetItem(DATA_PATH_SECTION, USE_BACKUP_LOG_FOLDER, out);
}
bool ProjectDefinition::GetMultiMediaFilePath(std::wstring& out) const {
    return GetItem(DATA_PATH_SECTION, pathKeys[kLocationMultimedia], out);
}
bool ProjectDefinition::SetMultiMediaFilePath(const std::wstring& path) {
    return SetItem(DATA_PATH_SECTION, pathKeys[kLocationMultimedia], path, true);
}
bool ProjectDefinition::GetAppDefinition(std::wstring& out) const {
    return GetItem(APPLICATION_SECTION, APP_DEFINITION, out);
}
bool ProjectDefinition::SetAppDefinition(const std::wstring& name) {
    return SetItem(APPLICATION_SECTION, APP_DEFINITION, name, true);
}
bool ProjectDefinition::GetAppDefDescription(std::wstring& out) const {
    return GetItem(APPLICATION_SECTION, appParamKeys[kAppDefinitionDescription], out);
}
bool ProjectDefinition::SetAppDefDescription(const std::wstring& text) {
    return SetItem(APPLICATION_SECTION, appParamKeys[kAppDefinitionDescription], text, true);
}
bool ProjectDefinition::GetAppConfiguration(std::wstring& out) const {
    return GetItem(APPLICATION_SECTION, APP_CONFIGURATION, out);
}
bool ProjectDefinition::SetAppConfiguration(const std::wstring& name) {
    return SetItem(APPLICATION_SECTION, APP_CONFIGURATION, name, true);
}

}  // namespace orv
