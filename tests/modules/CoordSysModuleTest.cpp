#include <dlfcn.h>
#include <proj.h>

#include <cmath>
#include <tuple>

#include "core/FileObject.h"
#include "geoid/GeoidModelList.h"
#include "geoid/GridBytes.h"
#include "modules/ModuleFixture.h"
#include "platform/text/NumberText.h"
#include "platform/text/Utf.h"
#include "platform/values/Angles.h"
#include "project/ProjectDefinition.h"

namespace orv::test {
namespace {

using CoordSys = std::unique_ptr<OrvGeoCoordSysBase>;
const std::wstring kRd = L"RD New - NAP 2018", kDutch = L"Netherlands";

class CoordSysModuleTest : public ModuleFixture {};

TEST_F(CoordSysModuleTest, LoadsByKeyAndRefusesWhatItDoesNotKnow) {
    OrvGeoCoordSysLoader& loader = OrvGeoCoordSysLoader::Instance();
    EXPECT_TRUE(OrvGeoCoordSysList::GetCoordSysList().Has(L"ORVCoordSys"));
    EXPECT_FALSE(loader.LoadDLL(L"BMCoordSys", nullptr));
    void* module = dlopen(ORV_BINARY_DIR "/lib/ORVCoordSys.so", RTLD_NOW);
    ASSERT_TRUE(module) << dlerror();
    const auto enter = reinterpret_cast<bool (*)(unsigned)>(dlsym(module, "OrvRegisterCoordSysModule"));
    EXPECT_FALSE(enter(kCoordSysInterfaceVersion + 1));
    EXPECT_TRUE(enter(kCoordSysInterfaceVersion));
    dlclose(module);
}

// ---- the shipped systems against PROJ's register

struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

/// One row of the shipped database, and the register's own way to its grid: its datum shift, if one is named, then its
/// projection.
class Registered {
public:
    std::wstring group, system;
    bool shifted = false;

    Registered(const FileObject& file, const std::wstring& section, int zone)
        : group(section.substr(0, section.find(L'/'))), system(section.substr(group.size() + 1)) {
        const auto item = [&](const wchar_t* key) {
            std::wstring value;
            if (!file.GetItem(section, key, value)) file.GetItem(group, key, value);
            if (const std::size_t at = value.find(L"<zone:2>"); at != value.npos) {
                value.replace(at, 8, (zone < 10 ? L"0" : L"") + IntText(zone));
            }
            return ToUtf8(value);
        };
        if (const std::size_t at = system.find(L"<zone>"); at != system.npos) system.replace(at, 6, IntText(zone));
        const std::string named = item(L"Register"), code = item(L"RegisterShift");
        crs.reset(proj_create(nullptr, (named.empty() ? item(L"Definition") : named).c_str()));
        PjPtr source(proj_create(nullptr, item(L"Base").c_str()));
        if (!code.empty()) {
            source.reset(proj_crs_get_geodetic_crs(nullptr, crs.get()));
            shift.reset(proj_create_from_database(nullptr, "EPSG", code.c_str() + 5, PJ_CATEGORY_COORDINATE_OPERATION,
                                                  0, nullptr));
            shifted = true;
        }
        const PjPtr way(proj_create_crs_to_crs_from_pj(nullptr, source.get(), crs.get(), nullptr, nullptr));
        projection.reset(proj_normalize_for_visualization(nullptr, way.get()));
    }
    PJ_COORD Forward(double latitude, double longitude, double height) const {
        PJ_COORD at = proj_coord(latitude, longitude, height, 0);  // a registered shift has latitude first
        if (shift) at = proj_trans(shift.get(), PJ_INV, at);
        return proj_trans(projection.get(), PJ_FWD, proj_coord(at.v[1], at.v[0], at.v[2], 0));
    }
    /// As systems are called here: "NAD83 / California zone 1 (ftUS)" is "NAD83 - California zone 1".
    std::string Name() const {
        std::string name = proj_get_name(crs.get());
        if (const std::size_t at = name.find(" (ft"); at != name.npos) name.resize(at);
        if (const std::size_t at = name.find(" / "); at != name.npos) name.replace(at, 3, " - ");
        return name;
    }
    double MetresPerUnit() const {
        double factor = 0.0;
        const PjPtr axes(proj_crs_get_coordinate_system(nullptr, crs.get()));
        proj_cs_get_axis_info(nullptr, axes.get(), 0, nullptr, nullptr, nullptr, &factor, nullptr, nullptr, nullptr);
        return factor;
    }
    /// Calls `visit(latitude, longitude)` over the area in which the system is used, its edges included.
    template <class Visit>
    void ForEachPosition(Visit visit) const {
        double west = 0, south = 0, east = 0, north = 0;
        ASSERT_TRUE(proj_get_area_of_use(nullptr, crs.get(), &west, &south, &east, &north, nullptr));
        if (east < west) east += 360.0;
        for (int i = 0; i < 25; ++i) {
            visit(south + i / 5 * 0.25 * (north - south), modgeo(west + i % 5 * 0.25 * (east - west)));
        }
    }

private:
    PjPtr crs, shift, projection;
};

std::vector<Registered> ShippedSystems(const std::wstring& path) {
    FileObject file;
    std::vector<Registered> systems;
    FobjSection cursor;
    std::wstring section, zones;
    if (!file.FileOpen(path, kOpenRead)) return systems;
    for (bool more = file.GetFirstSectionEntry(cursor, section); more;
         more = file.GetNextSectionEntry(cursor, section)) {
        if (section.find(L'/') == section.npos) continue;
        int first = 0, last = 0;
        if (file.GetItem(section, L"Zones", zones)) {
            COrvString(zones, L'-', true).GetItem(0, first);
            COrvString(zones, L'-', true).GetItem(1, last);
        }
        for (int zone = first; zone <= last; ++zone) systems.emplace_back(file, section, zone);
    }
    return systems;
}

TEST_F(CoordSysModuleTest, EveryShippedSystemAgreesWithTheRegister) {
    const std::vector<Registered> rows = ShippedSystems(Shipped(L"CoordSystems.geo"));
    ASSERT_GT(rows.size(), 350u);
    std::size_t listed = 0;
    const auto database = Database();
    for (const std::wstring& group : database->Groups()) listed += database->Systems(group).size();
    EXPECT_EQ(listed, rows.size());
    for (const Registered& row : rows) {
        SCOPED_TRACE(ToUtf8(row.group + L"/" + row.system));
        const CoordSys system = Make(row.group, row.system);
        ASSERT_TRUE(system);
        std::wstring text;
        system->ProjectionName(text);
        EXPECT_FALSE(text.empty() || system->EllipsoidName().empty());
        // A wrong code would agree with itself: systems that are called as in the register must be the one so called.
        if (row.group.find(L"UTM") != row.group.npos || row.group.find(L"Plane") != row.group.npos) {
            EXPECT_EQ(row.Name(), ToUtf8(row.system));
        }
        double factor = 0.0;
        system->Unit(factor, text);
        EXPECT_NEAR(factor, row.MetresPerUnit(), 1e-14);
        const double tolerance = (row.shifted ? 1e-3 : 1e-6) / factor;
        row.ForEachPosition([&](double latitude, double longitude) {
            double x = 0, y = 0, backLatitude = 0, backLongitude = 0;
            ASSERT_TRUE(system->GeoToGrid(latitude, longitude, 47.0, x, y));
            const PJ_COORD want = row.Forward(latitude, longitude, 47.0);
            EXPECT_NEAR(std::hypot(x - want.xy.x, y - want.xy.y), 0.0, tolerance);
            ASSERT_TRUE(system->GridToGeo(x, y, 47.0, backLatitude, backLongitude));
            EXPECT_NEAR(backLatitude, latitude, 1e-9);
            EXPECT_NEAR(std::remainder(backLongitude - longitude, 360.0), 0.0, 1e-9);
        });
    }
}

// ---- systems of an installation's own

TEST_F(CoordSysModuleTest, OwnSystemsGiveThePublishedPoints) {
    struct Point {
        std::wstring group, name;
        double latitude, longitude, height, x, y, tolerance;
    };
    const Point rows[] = {// The examples of the register, and two reference points of the Dutch agency.
                          {L"Points", L"EPSG:28992", 53, 6, 0, 196105.283, 557057.739, 0.001},
                          {L"Points", L"EPSG:32040", 28.5, -96, 0, 2963503.91, 254759.80, 0.01},
                          {kDutch, kRd, 53.160753042, 4.824761912, 42.8614, 117380.12, 575040.34, 0.25},
                          {kDutch, kRd, 50.792584916, 5.773795548, 245.9478, 182260.45, 311480.67, 0.25}};
    WriteBytes(OwnDatabase(),
               "[Points/EPSG:28992]\r\nDefinition=EPSG:28992\r\nBase=EPSG:4289\r\n"
               "[Points/EPSG:32040]\r\nDefinition=EPSG:32040\r\nBase=EPSG:4267\r\n");
    for (const Point& row : rows) {
        const CoordSys system = Make(row.group, row.name);
        double x = 0, y = 0;
        ASSERT_TRUE(system && system->GeoToGrid(row.latitude, row.longitude, row.height, x, y)) << ToUtf8(row.name);
        EXPECT_NEAR(std::hypot(x - row.x, y - row.y), 0, row.tolerance) << ToUtf8(row.name);
    }
}

TEST_F(CoordSysModuleTest, OwnItemsLieOverTheShippedOnes) {
    WriteBytes(OwnDatabase(),
               "[Units]\r\nRods=5.0292,rd\r\n[Mine]\r\nUnit=Rods\r\nBase=EPSG:4326\r\n"
               "[Mine/Zone <zone>]\r\nZones=9-11\r\nDefinition=EPSG:326<zone:2>\r\n"
               "[Mine/No unit]\r\nDefinition=EPSG:3395\r\nUnit=Cubits\r\n"
               "[Mine/No datum]\r\nDefinition=+proj=utm +zone=31 +ellps=bessel +type=crs\r\n"
               "[Mine/Nonsense]\r\nDefinition=EPSG:99999\r\n"
               "[Mercator/WGS 84 - Mercator]\r\nDescription=changed\r\n"
               "[Belgium/Lambert 2008]\r\nDefinition=\r\n");
    const auto database = Database();
    EXPECT_EQ(database->Systems(L"Mine"),
              (std::vector<std::wstring>{L"Zone 9", L"Zone 10", L"Zone 11", L"No unit", L"No datum", L"Nonsense"}));
    EXPECT_EQ(database->ListEntry(L"Mercator", L"WGS 84 - Mercator"), L"WGS 84 - Mercator - changed");
    EXPECT_EQ(database->ListEntry(L"Mine", L"Zone 9"), L"Zone 9 (Rods)");
    for (const wchar_t* name : {L"Zone 8", L"Zone 09", L"Zone ", L"zone 9", L"No unit", L"No datum", L"Nonsense"}) {
        EXPECT_FALSE(Make(L"Mine", name)) << ToUtf8(name);
    }
    EXPECT_FALSE(Make(L"Belgium", L"Lambert 2008")) << "taken out by an empty definition";
    const CoordSys zone = Make(L"Mine", L"Zone 9");
    ASSERT_TRUE(zone);
    std::wstring text;
    double factor = 0.0;
    zone->Unit(factor, text);
    EXPECT_TRUE(factor == 5.0292 && text == L"rd");
    zone->ProjectionName(text);
    EXPECT_EQ(text, L"UTM zone 9N") << "the register's word where the database has none";
}

TEST_F(CoordSysModuleTest, UnitsAreFoundByName) {
    const auto database = Database();
    std::wstring text, mnemonic;
    double factor = 5.0;
    int number = 7;
    EXPECT_FALSE(database->UnitDefinition(L"Feet", text, mnemonic, factor, number));
    EXPECT_TRUE(text.empty() && mnemonic.empty() && factor == 5.0 && number == 7);
    EXPECT_TRUE(database->UnitDefinition(L" u.s. survey FEET ", text, mnemonic, factor, number));
    EXPECT_TRUE(text == UNIT_US_SURVEY_FEET && mnemonic == L"ft" && factor == 1200.0 / 3937.0 && number == 0);
    EXPECT_EQ(database->UnitOfSystem(L"US State Plane - survey feet", L"NAD83 - Texas South"), UNIT_US_SURVEY_FEET);
}

TEST_F(CoordSysModuleTest, AnUnknownSystemFailsAndStaysQueryable) {
    ProjectDefinition project;
    const CoordSysNames names = Names(L"Mercator", L"WGS84");
    const CoordSys system = Make();
    EXPECT_FALSE(system->Load(names, project, L"none", false));
    std::wstring text;
    double x = 1, y = 2, value = 3;
    EXPECT_FALSE(system->GeoToGrid(52, 4, 0, x, y) || system->GridToGeo(0, 0, 0, x, y));
    EXPECT_FALSE(system->HeightSeparation(52, 4, value, text));
    EXPECT_NE(text.find(L"WGS84"), text.npos);
    EXPECT_TRUE(x == 1 && y == 2 && value == 3);
    project.SetItem(COORDSYSTEM_SECTION, coordsystemKeys[10], L"Meters", true);
    EXPECT_TRUE(system->SaveToProject(project));
    EXPECT_TRUE(project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[10], text) && text == L"Meters");
    EXPECT_FALSE(project.HasKey(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY)) << "it may still be converted";
}

TEST_F(CoordSysModuleTest, PositionsWithoutAValueLeaveTheOutputs) {
    const CoordSys system = Make(L"WGS 84 UTM North", L"WGS 84 - UTM zone 31N");
    const double nan = std::nan(""), inf = INFINITY;
    double a = 1, b = 2;
    EXPECT_FALSE(system->GeoToGrid(0, 93, 0, a, b) || system->GeoToGrid(91, 0, 0, a, b));
    EXPECT_FALSE(system->GeoToGrid(nan, 0, 0, a, b) || system->GeoToGrid(0, inf, 0, a, b));
    EXPECT_FALSE(system->GridToGeo(nan, 0, 0, a, b) || system->GridToGeo(0, inf, 0, a, b));
    EXPECT_FALSE(system->GridToGeo(1e300, 1e300, 0, a, b) || system->GridToGeo(0, 0, nan, a, b));
    EXPECT_TRUE(a == 1 && b == 2);
}

// ---- what is registered for a system

TEST_F(CoordSysModuleTest, RegistrationsGoToTheOwnFileAndKeepToTheOverwriteRule) {
    const std::wstring group = L"WGS 84 UTM North", system = L"WGS 84 - UTM zone 31N";
    const std::wstring egm(GeoidmodelTypeKeys[18]), manual(GeoidmodelTypeKeys[1]);
    const auto database = Database(), other = Database();
    EXPECT_FALSE(database->AddGeoidModel(group, L"WGS 84 - UTM zone 61N", egm, L"", true)) << "unknown system";
    EXPECT_FALSE(Exists(OwnDatabase()));
    EXPECT_TRUE(database->AddGeoidModel(group, system, egm, L"a.bin", false));
    EXPECT_FALSE(other->AddGeoidModel(group, system, egm, L"b.bin", false)) << "another object knows it at once";
    EXPECT_FALSE(other->AddGeoidModel(group, system, egm, L"a.bin", true)) << "nothing new";
    EXPECT_TRUE(other->AddManualSeparation(group, system, manual, 43.25, true));
    EXPECT_FALSE(database->AddManualSeparation(group, system, manual, 44.0, false));
    EXPECT_FALSE(database->AddManualSeparation(group, system, manual, std::nan(""), true));
    EXPECT_FALSE(database->AddPostCorrection(group, system, 0, 0, 0, manual, L"", true)) << "no correction is none";
    EXPECT_TRUE(database->AddPostCorrection(group, system, 1.5, -2.5, 0.25, manual, L"", false));

    double plainX = 0, plainY = 0, x = 0, y = 0, value = 0;
    std::wstring reason;
    const CoordSys plain = Make(L"ETRS89 UTM", L"ETRS89 - UTM zone 31N"), corrected = Make(group, system);
    ASSERT_TRUE(plain->GeoToGrid(52, 4, 0, plainX, plainY) && corrected->GeoToGrid(52, 4, 0, x, y));
    EXPECT_NEAR(x - plainX, 1.5, 1e-3);  // the two ellipsoids differ by 0.1 mm
    EXPECT_NEAR(y - plainY, -2.5, 1e-3);
    ASSERT_TRUE(corrected->GridToGeo(x, y, 0, x, y));
    EXPECT_NEAR(std::hypot(x - 52, y - 4), 0, 1e-10);
    EXPECT_TRUE(corrected->HeightSeparation(52, 4, value, reason));
    EXPECT_DOUBLE_EQ(value, 43.0) << "a reduced height grows by the correction";
}

TEST_F(CoordSysModuleTest, AFileThatCannotBeReadIsNotOverwritten) {
    const std::string damaged = "\xFE\xFF\0[\0U";  // text of the other byte order
    WriteBytes(OwnDatabase(), damaged);
    EXPECT_FALSE(Database()->AddGeoidModel(kDutch, kRd, std::wstring(GeoidmodelTypeKeys[18]), L"", true));
    EXPECT_EQ(ReadBytes(OwnDatabase()), damaged);
    EXPECT_TRUE(Make(kDutch, kRd)) << "the shipped ones stay within reach";
}

// ---- heights

TEST_F(CoordSysModuleTest, HeightsComeFromTheModelInUnitsOfTheSystem) {
    RegisterGeoidModels();
    WriteBytes(OwnDatabase(), "[Mine/Feet]\r\nDefinition=EPSG:3395\r\nUnit=International Feet\r\n");
    general = folder / L"General";
    SetUp();
    CoordSysNames names = Names(L"Mine", L"Feet");
    names.geoidModelName = GeoidmodelTypeKeys[28];
    names.geoidModelFile = L"tiny.gtx";
    names.postModelName = L"None";  // how a project writes that it has none
    const CoordSys system = Make();
    double value = 1.0;
    std::wstring reason;
    ASSERT_TRUE(system->Configure(names, L"", L"none")) << "a missing grid is told when a height is asked for";
    EXPECT_FALSE(system->HeightSeparation(52, 4, value, reason));
    EXPECT_NE(reason.find(L"General/GeoidModels/Netherlands/"), reason.npos) << ToUtf8(reason);
    MakeFolders(general + L"/GeoidModels/Netherlands");
    WriteBytes(general + L"/GeoidModels/Netherlands/tiny.gtx",
               GtxFile(51, 3, 0.5, 5, 5, [](int, int) { return 30.48f; }));
    ASSERT_TRUE(system->Configure(names, L"", L"none"));
    EXPECT_TRUE(system->HeightSeparation(52, 4, value, reason));
    EXPECT_NEAR(value, 100.0, 1e-4);
    EXPECT_FALSE(system->HeightSeparation(10, 4, value, reason));
    EXPECT_NE(reason.find(GeoidReasonText(GeoidReason::Outside)), reason.npos) << ToUtf8(reason);

    const std::pair<std::wstring_view, const wchar_t*> rows[] = {{L"", nullptr},
                                                                 {GeoidmodelTypeKeys[17], nullptr},
                                                                 {GeoidmodelTypeKeys[0], L"receiver"},
                                                                 {L"GeoidModelTypo", L"GeoidModelTypo"}};
    for (const auto& [model, word] : rows) {
        names.geoidModelName = model;
        value = 5.0;
        ASSERT_TRUE(system->Configure(names, L"", L"none"));
        EXPECT_EQ(system->HeightSeparation(52, 4, value, reason), word == nullptr) << ToUtf8(model);
        EXPECT_EQ(value, word ? 5.0 : 0.0);
        EXPECT_NE(reason.find(word ? word : L""), reason.npos) << ToUtf8(reason);
    }
}

/// Shifts by a tenth of a per mille of x and says so for the way back too.
class ShiftModel : public GeoidModel {
public:
    using GeoidModel::Calculate;
    bool Calculate(double x, double, double& dx, double& dy, bool inverse) override {
        if (x < 0) return false;
        dx = 1e-4 * (inverse ? x / (1 + 1e-4) : x);
        dy = 7.0 / unitFactor;
        return true;
    }
};

TEST_F(CoordSysModuleTest, AGridShiftAppliesBothWays) {
    const unsigned short type = 25;
    GeoidModelList::GetGeoidModelList().RegisterGeoidModel(L"shift", type, new GeoidModelCreator<ShiftModel>);
    CoordSysNames names = Names(L"Mercator", L"WGS 84 - Mercator");
    const CoordSys plain = Make(names.group, names.system), system = Make();
    names.postModelName = GeoidmodelTypeKeys[type];
    ASSERT_TRUE(system->Configure(names, L"", L"none"));
    double plainX = 0, plainY = 0, x = 0, y = 0;
    ASSERT_TRUE(plain->GeoToGrid(30, 20, 0, plainX, plainY) && system->GeoToGrid(30, 20, 0, x, y));
    EXPECT_NEAR(x, plainX * 1.0001, 1e-6);
    EXPECT_NEAR(y, plainY + 7.0, 1e-6);
    ASSERT_TRUE(system->GridToGeo(x, y, 0, x, y));
    EXPECT_NEAR(std::hypot(x - 30, y - 20), 0, 1e-11);
    EXPECT_FALSE(system->GeoToGrid(30, -20, 0, x, y)) << "no shift, no coordinate";
}

// ---- projects

TEST_F(CoordSysModuleTest, LoadTakesTheProjectsModelsOrTheRegisteredOnes) {
    RegisterGeoidModels();
    ProjectDefinition project;
    CoordSysNames names = Names(kDutch, kRd);
    const auto modelOf = [&](OrvGeoCoordSysBase& system) {
        std::wstring model, file;
        EXPECT_TRUE(system.SaveToProject(project));
        project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[13], model);
        project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[14], file);
        return model + L"," + file;
    };
    const CoordSys first = Make(), second = Make(), third = Make();
    ASSERT_TRUE(first->Load(names, project, L"none", true));
    EXPECT_EQ(modelOf(*first), L"GeoidModelRDNAP2018,nlgeo2018.gtx");
    EXPECT_FALSE(Exists(OwnDatabase())) << "nothing that wasn't registered before";
    names.geoidModelName = GeoidmodelTypeKeys[17];
    names.geoidModelFile = L"mine";
    ASSERT_TRUE(second->Load(names, project, L"none", true));
    EXPECT_EQ(modelOf(*second), L"GeoidModelNull,mine");
    names.geoidModelName = L"none";
    ASSERT_TRUE(third->Load(names, project, L"none", false));
    EXPECT_EQ(modelOf(*third), L"GeoidModelNull,mine") << "saved by the project before";
    std::wstring text;
    for (const auto& [key, value] : {std::pair{coordsystemKeys[8], std::wstring_view(kRd)},
                                     {coordsystemKeys[10], L"Meters"},
                                     {GEODESY_VERSION_KEY, GEODESY_VERSION}}) {
        EXPECT_TRUE(project.GetItem(COORDSYSTEM_SECTION, key, text) && text == value) << ToUtf8(key);
    }
}

TEST_F(CoordSysModuleTest, OldProjectsAreConvertedByName) {
    const std::wstring utm = L"WGS 84 UTM North", zone = L"WGS 84 - UTM zone 5N";
    const std::tuple<std::wstring, std::wstring, std::wstring, std::wstring, bool, bool> rows[] = {
        {utm, zone, utm, zone, false, false},
        {utm, zone, utm, zone, true, true},
        {L" wgs 84 utm NORTH", L"WGS 84 - utm zone 5n ", utm, zone, false, true},
        {kDutch, L"RD New", kDutch, kRd, false, true},
        {L"Mars", L"Crater", L"Mars", L"Crater", false, false}};
    for (const auto& [group, theSystem, newGroup, newSystem, oldMode, converted] : rows) {
        SCOPED_TRACE(ToUtf8(group + L"/" + theSystem));
        ProjectDefinition project;
        if (oldMode) project.SetItem(COORDSYSTEM_SECTION, OLD_GEOID_MODE, L"1", true);
        CoordSysNames names = Names(group, theSystem);
        const CoordSys system = Make();
        EXPECT_EQ(system->Database()->ConvertOldLayout(project, names.group, names.system), converted);
        EXPECT_TRUE(names.group == newGroup && names.system == newSystem);
        if (!converted) continue;
        ASSERT_TRUE(system->Load(names, project, L"none", false));
        system->ConvertProject(project);
        std::wstring version, saved;
        project.GetItem(COORDSYSTEM_SECTION, GEODESY_VERSION_KEY, version);
        project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[8], saved);
        EXPECT_EQ(version, GEODESY_VERSION);
        EXPECT_EQ(saved, newSystem) << "a converted project isn't asked again, so it must carry the new name";
    }
}

TEST_F(CoordSysModuleTest, ThreadsComputeTheSameAtOnce) {
    const CoordSys utm = Make(L"WGS 84 UTM North", L"WGS 84 - UTM zone 31N"), rd = Make(kDutch, kRd);
    const auto sum = [&] {
        double total = 0.0, x = 0, y = 0, latitude = 0, longitude = 0;
        for (int i = 0; i < 4000; ++i) {
            OrvGeoCoordSysBase& system = i % 2 ? *utm : *rd;
            EXPECT_TRUE(system.GeoToGrid(52.0, 4.0 + i * 1e-4, 0, x, y));
            EXPECT_TRUE(system.GridToGeo(x, y, 0, latitude, longitude));
            total += x + y + latitude + longitude;
        }
        return total;
    };
    const double want = sum();
    std::jthread others([&] { InEightThreads([&](unsigned) { EXPECT_EQ(sum(), want); }); });
    // A system made where another has just died must not be taken for it.
    for (int zone = 30; zone < 33; ++zone) {
        double x = 0, y = 0;
        const CoordSys system = Make(L"WGS 84 UTM North", L"WGS 84 - UTM zone " + IntText(zone) + L"N");
        EXPECT_TRUE(system->GeoToGrid(0.0, zone * 6.0 - 183.0, 0, x, y) && std::abs(x - 500000.0) < 1e-6) << zone;
    }
}

}  // namespace
}  // namespace orv::test
