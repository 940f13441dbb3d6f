#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/Export.h"

/// The texts that name something in the suite's configuration files: sections, keys, file names; all tables, and what
/// more than one class or a host uses. What only one class knows may stand with it. Files in the field hold them, so
/// none may change; a new row goes to the end of its table.
namespace orv {

// Sections of more than one kind of file, or of files that other programs read.

inline constexpr std::wstring_view HEADER_SECTION = L"Header";
inline constexpr std::wstring_view DATA_PATH_SECTION = L"DataPath";
inline constexpr std::wstring_view APPLICATION_SECTION = L"Application";
inline constexpr std::wstring_view COORDSYSTEM_SECTION = L"CoordSystem";
inline constexpr std::wstring_view FORMATS_SECTION = L"Formats";
inline constexpr std::wstring_view UNITS_SECTION = L"Units";

// ORV.ini

inline constexpr std::wstring_view USER_PROFILE_SECTION = L"UserProfile";  ///< also its key
inline constexpr std::wstring_view LANGUAGE_SECTION = L"SystemLanguage";   ///< also its key
inline constexpr std::wstring_view STARTUP_SECTION = L"Startup";
inline constexpr std::wstring_view LITEVIEW_SECTION = L"LiteView";
inline constexpr std::wstring_view EXPLORER_VIEW_SECTION = L"ExplorerView";
inline constexpr std::wstring_view MOLBY_SECTION = L"Molby";

// Program definitions

inline constexpr std::wstring_view FILES_SECTION = L"Files";
inline constexpr std::wstring_view VIEWS_SECTION = L"Views";
inline constexpr std::wstring_view VESSEL_SECTION = L"Vessel";
inline constexpr std::wstring_view DEVICES_SECTION = L"Devices";
inline constexpr std::wstring_view COMPUTATIONS_SECTION = L"Computations";
inline constexpr std::wstring_view PROGRAMS_SECTION = L"Programs";
inline constexpr std::wstring_view NETWORK_SECTION = L"Network";
inline constexpr std::wstring_view LOGGING_SECTION = L"Logging";
inline constexpr std::wstring_view EXPORT_SECTION = L"Export";
inline constexpr std::wstring_view GUIDANCE_SECTION = L"Guidance";
inline constexpr std::wstring_view TOOL_SECTION = L"Tools";
inline constexpr std::wstring_view ADF_AUTHORIZATION_SECTION = L"Authorization";
inline constexpr std::wstring_view LAYERS_SECTION = L"Layers";
inline constexpr std::wstring_view DATASOURCES_SECTION = L"Datasources";
inline constexpr std::wstring_view USER_ACCESS_LEVELS_SECTION = L"UserAccessLevels";
inline constexpr std::wstring_view USER_ACCESS_LEVELS_SUPPORT = L"Support";         ///< key of it
inline constexpr std::wstring_view APPDEF_DESCRIPTION = L"IDS_AppDef_Description";  ///< in APPLICATION_SECTION

// File names

inline constexpr std::wstring_view ORV_DEF_FILENAME = L"ORV.ini";
inline constexpr std::wstring_view FILETYPES_DEF_FILENAME = L"FileTypes.ini";
inline constexpr std::wstring_view CDF_DEF_FILENAME = L"Default.cdf";
inline constexpr std::wstring_view DATA_DEF_FILENAME = L"DataDefinition.ini";
inline constexpr std::wstring_view DATA_DEF_BASE_NAME = L"DataDefinition";
inline constexpr std::wstring_view INTERFACE_DEF_FILENAME = L"InterfaceDefinition.ini";
inline constexpr std::wstring_view USER_ACCESS_LEVELS_INI_FILENAME = L"UserAccessLevels.ini";
inline constexpr std::wstring_view USER_ACCESS_LEVELS_BAK_FILENAME = L"UserAccessLevels.bak";
inline constexpr std::wstring_view USER_ACCESS_LEVELS_EXTENSION = L".ual";
inline constexpr std::wstring_view USER_ACCOUNTS_FILENAME = L"UserAccounts.ini";
inline constexpr std::wstring_view PROJECT_FILENAME = L"Project.prj";
inline constexpr std::wstring_view PROJECT_SUI_FILENAME = L"ProjectSUI.prj";
inline constexpr std::wstring_view PROJECTS_COMMON_FILES = L"Projects Common Files";

// Key tables

// Rows of five, so that an index is found by eye.
// clang-format off

/// By path location. A row is a key of DATA_PATH_SECTION in ORV.ini or in the project, and for the sub-folder locations
/// the name of the folder itself. Row 12 must stay "Reports": that folder is known by it among the log folders.
inline constexpr std::array<std::wstring_view, 35> pathKeys = {{
    /*   0 */ L"System", L"General", L"CurrentProject", L"LogData", L"Projects",
    /*   5 */ L"UserGeneral", L"FileHistory", L"Programs", L"CommonProjectFiles", L"ApplicationDefinitions",
    /*  10 */ L"SystemData", L"GeoidModels", L"Reports", L"BackupLogData", L"Multimedia",
    /*  15 */ L"ReportTypes", L"Symbols", L"SonarTargets", L"Drivers", L"Help",
    /*  20 */ L"CameraImages", L"Palettes", L"Resources", L"BackgroundCharts", L"ChartDatabase",
    /*  25 */ L"S57Charts", L"ExternalData", L"SampleData", L"Manuals", L"ProgramFolder",
    /*  30 */ L"Icons", L"Calibrations", L"Plugins", L"ActiveProjectId", L"WebMaps",
}};

/// Of FileObject::CHECKSUM_SECTION: the old plain sums, and the digests that every file gets.
inline constexpr std::array<std::wstring_view, 2> checksumKeys = {{
    L"Checksum", L"ContentHash"
}};

/// By file type id. Rows 0 and 5 belong to types without an id of their own; reserved rows are named so that every row
/// can be a section of the file type definition file.
inline constexpr std::array<std::wstring_view, 147> fileTypeKeys = {{
    /*   0 */ L"Unknown", L"AppDef", L"DeviceDriver", L"AppConfig", L"VesselContour",
    /*   5 */ L"Profile", L"Reserved6", L"Reserved7", L"Units", L"Formats",
    /*  10 */ L"Reserved10", L"ElectronicChart", L"PresentationDef", L"Project", L"Route",
    /*  15 */ L"RunLine", L"Waypoint", L"VesselConfig", L"EventLogData", L"RawLogData",
    /*  20 */ L"PresentationConfig", L"NumericPages", L"EventDef", L"System", L"DxfDrawing",
    /*  25 */ L"ColorTable", L"DigitalTerrainModel", L"DtmFilter", L"SVProfile", L"ORV2000Raw",
    /*  30 */ L"EM3000Raw", L"PolyClip", L"TinModel", L"Stations", L"TideFile",
    /*  35 */ L"TideStation", L"ProfileTemplate", L"DesignModel", L"VolumeComp", L"XYZClean",
    /*  40 */ L"Reserved40", L"MbeamCal", L"AccessDatabase", L"ReportCSV", L"ReportXML",
    /*  45 */ L"ReportType", L"AsciiText", L"CmapFilter", L"FileSet", L"JpegImage",
    /*  50 */ L"DisplaySupport", L"ContourDefinition", L"DesignModel3D", L"ExportConfig", L"WorkArea",
    /*  55 */ L"RestrictedArea", L"DredgeTrackRaw", L"UserDef", L"PlacementPoints", L"3DStudioModel",
    /*  60 */ L"ColorMap", L"CraneConfiguration", L"XTFRaw", L"DredgeInstruction", L"DredgeStatusConfig",
    /*  65 */ L"BoracietActivityReport", L"AlarmMap", L"ModuleConfig", L"AsciiImportCfg", L"ImportConfig",
    /*  70 */ L"V9KRaw", L"EsriShapes", L"UserMap", L"SDSRaw", L"GeoTiffImage",
    /*  75 */ L"CubeModel", L"Coordinatesystem", L"SZRaw", L"UserInterfaceProfile", L"ExcludedAreas",
    /*  80 */ L"DraughtTable", L"HopperTable", L"VesselSetup", L"WireframeDrawing", L"Bitmap",
    /*  85 */ L"PlotDxfExport", L"Reports", L"FAURaw", L"GSFRaw", L"WaveSound",
    /*  90 */ L"Video", L"Text", L"ProjectBitmap", L"PDFFiles", L"Reserved94",
    /*  95 */ L"ORVSystem", L"BSBChart", L"Reserved97", L"CMapDatabase", L"OpenGIS_KML",
    /* 100 */ L"OpenGIS_KMZ", L"SonarTargets", L"STGeoTiffImage", L"ImageFile", L"CamJpegImage",
    /* 105 */ L"CamBitmap", L"Objects3D", L"ObjectsPlacement", L"SketchUpModel", L"StandardShape",
    /* 110 */ L"UKOOAP190", L"GPX", L"Pipe5Point", L"DgnDrawing", L"S57File",
    /* 115 */ L"TPEReport", L"FjordEyeSon", L"DtmUpdateZip", L"DxfDredgeTrack", L"UserDeviceDriver",
    /* 120 */ L"MultibeamAreaFilter", L"ProjectFile", L"Reserved122", L"GeoSwath", L"EdgeTech",
    /* 125 */ L"Klein", L"MarineSonicMST", L"MarineSonicSDS", L"StarFish", L"Imagenex",
    /* 130 */ L"DSO", L"NRCanBYN", L"GrabDesignPattern", L"FixedLevelDesign", L"UserCoordinatesystem",
    /* 135 */ L"StatisticsConfig", L"Table", L"QGCWaypoints", L"WebMapService", L"IntervalConfig",
    /* 140 */ L"EventPositionLog", L"Settings", L"TrimbleTinModel", L"RunlineCoverageRaw", L"Reserved144",
    /* 145 */ L"Reserved145", L"Reserved146",
}};

/// Names of subtypes; the index is stored in vessel files, so the order is frozen. 0 to 31 are the
/// standard shape groups.
inline constexpr std::array<std::wstring_view, 69> fileTypeSubKeys = {{
    /*   0 */ L"Vessel", L"Barge", L"Tug", L"Launch", L"CutterHead",
    /*   5 */ L"DragHead", L"SuctionPipe", L"Ladder", L"Spud", L"Boom",
    /*  10 */ L"Stick", L"Bucket", L"BucketWheel", L"Grab", L"Crane",
    /*  15 */ L"Plough", L"InjectionBar", L"FallPipe", L"Pontoon", L"Hopper",
    /*  20 */ L"Gantry", L"Winch", L"Rov", L"TowFish", L"Sledge",
    /*  25 */ L"Trencher", L"Buoy", L"Anchor", L"Pipeline", L"Cable",
    /*  30 */ L"Platform", L"Quay", L"DailyReport", L"TripReport", L"LineReport",
    /*  35 */ L"EventReport", L"VolumeReport", L"CalibrationReport", L"TideReport", L"TargetReport",
    /*  40 */ L"Channel", L"Basin", L"Trench", L"Berth", L"Slope",
    /*  45 */ L"Platform3D", L"SurveyArea", L"DredgeArea", L"DisposalArea", L"BorrowArea",
    /*  50 */ L"SafetyArea", L"ExclusionArea", L"RunLines", L"CrossLines", L"CenterLine",
    /*  55 */ L"RouteLine", L"Waypoints", L"PlacementPoints", L"Targets", L"SurveyModel",
    /*  60 */ L"ProductionModel", L"BackscatterModel", L"DifferenceModel", L"CoverageModel", L"DesignModel",
    /*  65 */ L"PositionDriver", L"AttitudeDriver", L"EchosounderDriver", L"OutputDriver",
}};

/// By view type.
inline constexpr std::array<std::wstring_view, 56> viewTypeKeys = {{
    /*   0 */ L"PlanView", L"ProfileView", L"CrossProfileView", L"LongitudinalProfileView", L"View3D",
    /*   5 */ L"NumericView", L"HelmsmanView", L"LeftRightView", L"TimeSeriesView", L"StatusView",
    /*  10 */ L"AlarmView", L"MessageView", L"EventView", L"QualityView", L"SkyPlotView",
    /*  15 */ L"ScatterView", L"CompassView", L"MultibeamView", L"WaterfallView", L"WaterColumnView",
    /*  20 */ L"BackscatterView", L"SidescanView", L"SonarTargetView", L"SingleBeamView", L"EchogramView",
    /*  25 */ L"SubBottomView", L"MagnetometerView", L"VideoView", L"CameraView", L"ChartView",
    /*  30 */ L"DredgePlanView", L"DredgeProfileView", L"CutterView", L"DragHeadView", L"ExcavatorView",
    /*  35 */ L"GrabView", L"CraneView", L"PlacementView", L"ProductionView", L"LoadDraughtView",
    /*  40 */ L"HopperView", L"PipeLayView", L"TideView", L"SoundVelocityView", L"DeviceView",
    /*  45 */ L"DataSourceView", L"LoggingView", L"DiskView", L"NetworkView", L"RemoteView",
    /*  50 */ L"ReplayView", L"ValidationView", L"CalibrationView", L"CoverageView", L"RunlineView",
    /*  55 */ L"PortEntranceView",
}};

/// By program of the suite.
inline constexpr std::array<std::wstring_view, 47> programKeys = {{
    /*   0 */ L"MASTER", L"REMOTE", L"ACQCOMP", L"PRESENTATION", L"CONFIGURATION",
    /*   5 */ L"PROJECTSEL", L"REPLAY", L"EXPLORER", L"VALIDATION", L"GRID_MODELLING",
    /*  10 */ L"D3_MODELLING", L"DTMEDITOR", L"MODEL_CREATE", L"DEVICE_TEST", L"ENDAREA_VOLUMES",
    /*  15 */ L"D3_VIEWER", L"PLOT", L"TIDEMODULE", L"DATAFILECONV", L"POSEDITOR",
    /*  20 */ L"LOGSYS_IMPORT", L"EXPORT_UTILITY", L"PRINT_ACF", L"QUICK_PROFILE_PLOT", L"BATCH_PLOT",
    /*  25 */ L"GEOCALCULATOR", L"FILEEXCHANGE", L"UPDATEMODEL", L"Q9KDISTRIBUTION", L"IMPORT_UTILITY",
    /*  30 */ L"SONARSWATH_UTILITY", L"CLIENT_CONTROL_CENTER", L"USBLCALIBRATION", L"MODEL_BC_CREATE", L"USERACCOUNTS",
    /*  35 */ L"ACCESSLEVELS", L"REPORTER", L"LITEVIEW_APP", L"CONVERTS57TOCMAP", L"CALIBRATION",
    /*  40 */ L"SIMULATOR", L"GUIDANCE_EDITOR", L"MACHINEINSTALLATIONTOOL", L"PESCOMP", L"GAPFILL_UTILITY",
    /*  45 */ L"VESSEL_CONTOUR_EDITOR", L"E_ORV",
}};

inline constexpr std::array<std::wstring_view, 8> vesselKeys = {{
    /*   0 */ L"MultiObject", L"MultiObjectMax", L"RelativeObject", L"RelativeObjectMax", L"DynamicObject",
    /*   5 */ L"Reserved5", L"Simulation", L"DisableLogging",
}};

inline constexpr std::array<std::wstring_view, 3> networkKeys = {{
    L"NetworkSupport", L"RemoteMax", L"PresentationMax"
}};

/// By kind of log, after the logged file types.
inline constexpr std::array<std::wstring_view, 23> loggingKeys = {{
    /*   0 */ L"Orv", L"Raw", L"EventLog", L"EventPosition", L"EM3000",
    /*   5 */ L"Xyz", L"DredgeTrack", L"Xtf", L"ActivityReport", L"V9K",
    /*  10 */ L"Sds", L"Sz", L"Report", L"Fau", L"Gsf",
    /*  15 */ L"P190", L"Pipe5Point", L"FjordEye", L"DxfDredgeTrack", L"RunlineCoverage",
    /*  20 */ L"UpdateDtm", L"UpdateDxf", L"Video",
}};

inline constexpr std::array<std::wstring_view, 1> exportKeys = {{
    L"Export"
}};

/// By kind of guidance.
inline constexpr std::array<std::wstring_view, 11> guidanceKeys = {{
    /*   0 */ L"Route", L"Runlines", L"Waypoints", L"WorkAreas", L"RestrictedAreas",
    /*   5 */ L"Placement", L"ObjectPlacement", L"DredgeInstruction", L"DesignModel", L"LeadIn",
    /*  10 */ L"AutoNextLine",
}};

/// Description of a project, in HEADER_SECTION. None of them may equal a row of appParamKeys.
inline constexpr std::array<std::wstring_view, 7> projDescKeys = {{
    /*   0 */ L"ProjectName", L"ProjectNumber", L"ProjectTask", L"ClientName", L"ContractorName",
    /*   5 */ L"Remarks", L"CreationDate",
}};

/// Of COORDSYSTEM_SECTION; rows 7, 8, 10 and 12 to 17 are in use, the others stay for old files.
inline constexpr std::array<std::wstring_view, 18> coordsystemKeys = {{
    /*   0 */ L"Ellipsoid", L"DatumTransformation", L"Projection", L"Zone", L"CentralMeridian",
    /*   5 */ L"FalseEasting", L"FalseNorthing", L"GroupName", L"SystemName", L"Description",
    /*  10 */ L"SystemUnit", L"HeightUnit", L"CoordSysKey", L"GeoidModelName", L"GeoidModelFileName",
    /*  15 */ L"GeoidChartDatum", L"PostModelName", L"PostModelFileName",
}};
/// Rows of coordsystemKeys by name.
enum CoordsystemKeyRow : std::size_t {
    kCoordsysGroupName = 7, kCoordsysSystemName = 8, kCoordsysUnit = 10, kCoordsysModuleKey = 12,
    kCoordsysGeoidName = 13, kCoordsysGeoidFile = 14, kCoordsysChartDatum = 15, kCoordsysPostName = 16,
    kCoordsysPostFile = 17,
};
static_assert(coordsystemKeys[kCoordsysUnit] == L"SystemUnit");
static_assert(coordsystemKeys[kCoordsysPostFile] == L"PostModelFileName");

/// Of APPLICATION_SECTION.
inline constexpr std::array<std::wstring_view, 3> appParamKeys = {{
    L"Definition", L"DefinitionDescription", L"Configuration"
}};
/// Rows of appParamKeys by name.
enum AppParamKeyRow : std::size_t { kAppDefinition = 0, kAppDefinitionDescription = 1, kAppConfiguration = 2 };

/// Of FORMATS_SECTION.
inline constexpr std::array<std::wstring_view, 12> formatParamKeys = {{
    /*   0 */ L"GeographicFormat", L"GeographicDecimals", L"GridDecimals", L"SpeedDecimals", L"DistanceDecimals",
    /*   5 */ L"DepthDecimals", L"CoordinateFormat", L"DensityDecimals", L"PressureDecimals", L"WeightDecimals",
    /*  10 */ L"KPDecimals", L"FeetFormat",
}};
/// Rows of formatParamKeys by name.
enum FormatParamKeyRow : std::size_t {
    kFormatGeographic = 0, kFormatGeographicDecimals = 1, kFormatGridDecimals = 2, kFormatSpeedDecimals = 3,
    kFormatDistanceDecimals = 4, kFormatDepthDecimals = 5, kFormatCoordinate = 6, kFormatDensityDecimals = 7,
    kFormatPressureDecimals = 8, kFormatWeightDecimals = 9, kFormatKPDecimals = 10, kFormatFeet = 11,
};

/// By geoid model type id. Rows 21 and 22 differ from the name that their models are registered under:
/// the texts go to the coordinate database, where each must mean one model.
inline constexpr std::array<std::wstring_view, 30> GeoidmodelTypeKeys = {{
    /*   0 */ L"ReceiverSupplied", L"ManualInput", L"GeoidModelDeMin", L"GeoidModelReserved3", L"GeoidModelRDNAP",
    /*   5 */ L"GeoidModelhBG03", L"GeoidModelSwen01", L"GeoidModelStatePlane",
              L"GeoidModelHARN", L"GeoidModelReserved9",
    /*  10 */ L"GeoidModelReserved10", L"GeoidModelReserved11", L"GeoidModelReserved12",
              L"GeoidModelRDNAP2008", L"GeoidModelDVR90",
    /*  15 */ L"GeoidModelReserved15", L"GeoidModel_QuasigeoidEGG97", L"GeoidModelNull",
              L"GeoidModel_EGM2008", L"GeoidModelNorway",
    /*  20 */ L"GeoidModel_Quasigeoid_GCG", L"GeoidModelGeoNZ97", L"GeoidModelGeoNZ97LAT2006",
              L"GeoidModel_byn_format", L"GeoidModelOSGM",
    /*  25 */ L"GeoidModelOSTN", L"GeoidModel_TrimbleGridFile", L"GeoidModel_VORF",
              L"GeoidModelRDNAP2018", L"GeoidModelRDNAP2018Hor",
}};

// clang-format on

// ORV.ini, keys

inline constexpr std::wstring_view USE_DEFAULT_COMMON_PATH = L"UseDefaultCommonPath";
inline constexpr std::wstring_view USER_LANGUAGE = L"Language";
inline constexpr std::wstring_view PM_CHECK = L"PMCheck";
inline constexpr std::wstring_view OPENGL_CHECK = L"OpenGLCheck";
inline constexpr std::wstring_view ADVANCED_CHECK = L"AdvancedCheck";
inline constexpr std::wstring_view ADVANCED_VESSEL_CFG_CHECK = L"AdvancedVesselCfgCheck";
inline constexpr std::wstring_view SHOW_TOOL_TIP = L"ShowToolTip";
inline constexpr std::wstring_view STATIC_GLOBE = L"StaticGlobe";
inline constexpr std::wstring_view AUTO_HIDE_BOTTOM_PANE = L"AutoHideBottomPane";

// File type definitions

inline constexpr std::wstring_view FILE_TYPE_LIST_SECTION = L"FileTypeList";

// Access levels

inline constexpr std::wstring_view USERLEVELS_SECTION = L"USERLEVELS";
inline constexpr std::wstring_view USERLEVELS_KEY = L"userlevels";
inline constexpr std::wstring_view UAL_ITEM_PREFIX = L"ID";
inline constexpr std::wstring_view UAL_OPTION_PREFIX = L"OP";

// Project

inline constexpr std::wstring_view OPTIONS_SECTION = L"Options";
inline constexpr std::wstring_view SHOW_NO_DETECTION_BEAMS = L"ShowNoDetectionBeams";
inline constexpr std::wstring_view LATLONG_ON_SAT = L"LatLongOnSAT";
inline constexpr std::wstring_view AUTO_SHOW_ALERTS = L"AutoShowAlerts";
inline constexpr std::wstring_view GPS_TIME_PARAMETERS = L"GpsTimeParameters";  ///< section and key
inline constexpr std::wstring_view SONAR_TARGET_PARAMETERS = L"SonarTargetParameters";
inline constexpr std::wstring_view SONAR_TARGET_FILE_NAME = L"SonarTargetFileName";
inline constexpr std::wstring_view PIPELINE_WIDTH = L"PipelineWidth";
inline constexpr std::wstring_view BACKUP_LOG_FOLDER = L"BackupLogFolder";
inline constexpr std::wstring_view USE_BACKUP_LOG_FOLDER = L"UseBackupLogFolder";
inline constexpr std::wstring_view PROJECT_NAME = L"ProjectName";
inline constexpr std::wstring_view PROJECT_NUMBER = L"ProjectNumber";
inline constexpr std::wstring_view PROJECT_TASK = L"ProjectTask";
inline constexpr std::wstring_view CLIENT_NAME = L"ClientName";
inline constexpr std::wstring_view CONTRACTOR_NAME = L"ContractorName";
inline constexpr std::wstring_view APP_DEFINITION = L"Definition";
inline constexpr std::wstring_view APP_CONFIGURATION = L"Configuration";
inline constexpr std::wstring_view GEODESY_SECTION = L"GeodesySection";  ///< of a vessel file
inline constexpr std::wstring_view GEODESY_VERSION_KEY = L"GeodesyVersion";
inline constexpr std::wstring_view GEODESY_VERSION = L"1.0.1";  ///< value of the present layout
inline constexpr std::wstring_view OLD_GEOID_MODE = L"OldGeoidMode";
inline constexpr std::wstring_view UNITS_DEFAULT_SECTION = L"Default";  ///< of the units file

// Project, housekeeping

inline constexpr std::wstring_view FILE_HISTORY_SECTION = L"FileHistory";
inline constexpr std::wstring_view FILE_HISTORY_ENABLED = L"Enabled";
inline constexpr std::wstring_view DISK_SPACE_SECTION = L"DiskSpace";
inline constexpr std::wstring_view MAX_DAYS = L"MaxDays";  ///< of both
inline constexpr std::wstring_view MAX_DAYS_ENABLED = L"MaxDaysEnabled";
inline constexpr std::wstring_view MIN_FREE = L"MinFree";
inline constexpr std::wstring_view MIN_FREE_ENABLED = L"MinFreeEnabled";

// Coordinate modules and what a new project gets

inline constexpr std::wstring_view COORDSYS_MODULE_KEY = L"ORVCoordSys";
inline constexpr std::wstring_view COORDSYS_SECOND_MODULE_KEY = L"BMCoordSys";
inline constexpr std::wstring_view DEFAULT_COORDSYS_GROUP = L"Mercator";
inline constexpr std::wstring_view DEFAULT_COORDSYS_NAME = L"WGS 84 - Mercator";
inline constexpr std::wstring_view UNIT_METERS = L"Meters";
inline constexpr std::wstring_view UNIT_INTERNATIONAL_FEET = L"International Feet";
inline constexpr std::wstring_view UNIT_US_SURVEY_FEET = L"U.S. Survey Feet";

// Attributes of devices and computations

inline constexpr std::wstring_view ATTR_XCOR = L"XCor";
inline constexpr std::wstring_view ATTR_YCOR = L"YCor";
inline constexpr std::wstring_view ATTR_ZCOR = L"ZCor";
inline constexpr std::wstring_view ATTR_APPLYDTF = L"ApplyDtf";
inline constexpr std::wstring_view ATTR_DTFNAME = L"DtfName";
inline constexpr std::wstring_view ATTR_REDUCE_HGT_GEOID = L"ReduceHgtGeoid";
inline constexpr std::wstring_view ATTR_GEOID_SEP = L"GeoidSep";
inline constexpr std::wstring_view ATTR_SEP_MAN_INPUT = L"SepManInput";
inline constexpr std::wstring_view ATTR_GEOID_SEP_REL_TO = L"GeoidSepRelTo";
inline constexpr std::wstring_view ATTR_HGT_SOURCE_GPS = L"HgtSourceGps";
inline constexpr std::wstring_view ATTR_SELECT_DTF = L"SelectDTF";
inline constexpr std::wstring_view ATTR_GEOID_DTM_FILE_NAME = L"GeoidDtmFileName";

/// What stands for "<default>" in a file type's default name.
inline constexpr std::wstring_view DEFAULT_NAME = L"Default";

// File type ids that code asks for by number.

enum FileTypeId : unsigned {
    kFileTypeAppDef = 1,
    kFileTypeAppConfig = 3,
    kFileTypeVesselContour = 4,
    kFileTypeUnits = 8,
    kFileTypeProject = 13,
    kFileTypeVesselConfig = 17,
    kFileTypeEventLogData = 18,
    kFileTypeSystem = 23,
    kFileTypeDigitalTerrainModel = 26,
    kFileTypeSVProfile = 28,
    kFileTypeORV2000Raw = 29,
    kFileTypePolyClip = 31,
    kFileTypeTideFile = 34,
    kFileTypeTideStation = 35,
    kFileTypeFileSet = 48,
    kFileTypeDesignModel3D = 52,
    kFileTypeDredgeTrackRaw = 56,
    kFileType3DStudioModel = 59,
    kFileTypeDredgeInstruction = 63,
    kFileTypeAlarmMap = 66,
    kFileTypeVesselSetup = 82,
    kFileTypeWireframeDrawing = 83,
    kFileTypeSketchUpModel = 108,
    kFileTypeProjectFile = 121,
};

/// Path locations that code asks for by number: rows of pathKeys.
enum PathLocation : int {
    kLocationSystem = 0,
    kLocationGeneral = 1,
    kLocationProject = 2,
    kLocationLogData = 3,
    kLocationProjects = 4,
    kLocationUserGeneral = 5,
    kLocationFileHistory = 6,
    kLocationCommon = 8,
    kLocationAppDefs = 9,
    kLocationSystemData = 10,
    kLocationGeoidModels = 11,
    kLocationReports = 12,
    kLocationBackupLogData = 13,
    kLocationMultimedia = 14,
    kLocationSonarTargets = 17,
    kLocationCameraImages = 20,
    kLocationResources = 22,
    kLocationBackgroundCharts = 23,
    kLocationProgram = 29,
    kLocationActiveProjectId = 33,
};

/// Key of a file type id; empty from 147 up.
ORV_EXPORT std::wstring GetFileKeyForType(unsigned id);
/// Row of a file type key, matched exactly; all ones if unknown.
ORV_EXPORT unsigned GetFileTypeForKey(std::wstring_view key);

}  // namespace orv
