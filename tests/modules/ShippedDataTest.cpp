#include "core/CFileTypeList.h"

#include <tuple>
#include "core/COrvString.h"
#include "modules/ModuleFixture.h"
#include "platform/text/Utf.h"
#include "project/ProjectDefinition.h"

namespace orv::test {
namespace {

class ShippedDataTest : public ModuleFixture {};

TEST_F(ShippedDataTest, FilesAreWellFormedAndSigned) {
    for (const std::wstring name :
         {L"ORV.ini", L"FileTypes.ini", L"CoordSystems.geo", L"Default.upd", L"General/Units.uni",
          L"General/ApplicationDefinitions/navigate.adf", L"General/ApplicationDefinitions/presentation.adf"}) {
        SCOPED_TRACE(ToUtf8(name));
        const std::string bytes = ReadBytes(Shipped(name));
        EXPECT_TRUE(IsUtf8(bytes));
        for (std::size_t at = bytes.find('\n'); at != bytes.npos; at = bytes.find('\n', at + 1)) {
            ASSERT_EQ(bytes[at - 1], '\r') << at;
        }
        FileObject file;
        ASSERT_TRUE(file.FileOpen(Shipped(name), kOpenRead));
        EXPECT_TRUE(file.OddLines().empty());
        // An unsigned definition would be signed on first use, in a folder that programs shouldn't write to.
        ProtectedFileObject definition;
        if (!name.ends_with(L".adf") && !name.ends_with(L".upd")) continue;
        ASSERT_TRUE(definition.FileOpen(Shipped(name), true, kOpenRead));
    }
}

TEST_F(ShippedDataTest, EveryFileTypeHasADescription) {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring text;
    for (unsigned id = 1; id < fileTypeKeys.size(); ++id) {
        if (!GetFileTypeList().GetFileTypeID(id)) continue;
        EXPECT_TRUE(search.GetFileDescription(id, text) && !text.empty()) << id;
        std::vector<std::wstring> subTypes;
        search.GetFileSubTypes(id, subTypes);
        for (const std::wstring& subType : subTypes) {
            int index = -1;
            EXPECT_TRUE(search.GetFileSubID(id, subType, index)) << ToUtf8(subType);
            EXPECT_TRUE(search.GetFileDescription(id, subType, text) && text != fileTypeKeys[id]) << ToUtf8(subType);
        }
    }
}

TEST_F(ShippedDataTest, UnitsAreComplete) {
    FileObject units, systems;
    ASSERT_TRUE(units.FileOpen(Shipped(L"General/Units.uni"), kOpenRead));
    ASSERT_TRUE(systems.FileOpen(Shipped(L"CoordSystems.geo"), kOpenRead));
    for (const std::wstring_view kind : UnitKindNames()) {
        SCOPED_TRACE(ToUtf8(kind));
        std::wstring unit, value;
        ASSERT_TRUE(units.GetItem(UNITS_DEFAULT_SECTION, kind, unit));
        EXPECT_TRUE(units.HasKey(kind, unit)) << ToUtf8(unit);
        FobjSection cursor;
        for (bool more = units.GetFirstMapEntry(cursor, kind, unit, value); more;
             more = units.GetNextMapEntry(cursor, unit, value)) {
            const COrvString items(value, L',', true);
            double factor = 0.0;
            EXPECT_TRUE(items.GetItem(0, factor) && factor > 0.0 && items.Size() >= 2) << ToUtf8(unit);
        }
    }
    // A system's unit that isn't there would be added to a file that is shared by all projects.
    FobjSection cursor;
    std::wstring unit, value, known;
    for (bool more = systems.GetFirstMapEntry(cursor, UNITS_SECTION, unit, value); more;
         more = systems.GetNextMapEntry(cursor, unit, value)) {
        EXPECT_TRUE(units.GetItem(UnitKindNames()[1], unit, known) && known == value) << ToUtf8(unit);
    }
}

TEST_F(ShippedDataTest, UnitsConvertAsTheirNamesSay) {
    const std::tuple<int, const wchar_t*, double, double> rows[] = {
        {1, L"U.S. Survey Feet", 3937, 1200},        {2, L"Knots", 3600, 1852},
        {5, L"Cubic U.S. Yards", 1, 0.764559445331}, {21, L"Degrees Fahrenheit", 212, 100},
        {20, L"Square Int. Yards", 1, 0.83612736},   {10, L"Pounds/square inch", 1, 6894.757293168}};
    FileObject units;
    ASSERT_TRUE(units.FileOpen(Shipped(L"General/Units.uni"), kOpenRead));
    for (const auto& [kind, unit, shown, internal] : rows) {
        std::wstring value;
        double factor = 0.0, offset = 0.0;
        units.GetItem(UnitKindNames()[static_cast<std::size_t>(kind)], unit, value);
        const COrvString items(value, L',', true);
        items.GetItem(0, factor);
        items.GetItem(3, offset);
        COrvUnitCnv table;
        table.SetUnit(kind, factor, offset, items[1], unit, L"");
        EXPECT_NEAR(table.ConvertFromUnit(kind, shown), internal, 1e-11 * (1 + std::abs(internal))) << ToUtf8(unit);
    }
}

TEST_F(ShippedDataTest, DefinitionsAllowWhatTheySay) {
    DataSearch& search = DataSearch::GetDataSearch();
    bool supported = false, create = false, select = false, allowed = false;
    int maximum = 0;
    std::wstring name;
    ASSERT_TRUE(search.Initialise(folder / L"system/", true, L"navigate", true, L"", L""));
    for (unsigned id = 1; id < fileTypeKeys.size(); ++id) {
        if (!GetFileTypeList().GetFileTypeID(id)) continue;
        EXPECT_TRUE(search.GetFilePermissions(id, supported, create, select) && supported && create && select) << id;
    }
    for (unsigned id = 0; id < programKeys.size(); ++id) {
        EXPECT_TRUE(search.GetExecutablePermission(id, allowed) && allowed) << id;
        EXPECT_TRUE(search.GetExecutableName(id, name) && !name.empty()) << id;
    }
    EXPECT_TRUE(search.GetCoordSysKey(name) && name == L"ORVCoordSys");
    EXPECT_TRUE(search.GetViewMax(0u, maximum) && maximum == kNoLimit);

    ASSERT_TRUE(search.Initialise(folder / L"system/", true, L"presentation", false, L"", L""));
    EXPECT_TRUE(search.GetFilePermissions(kFileTypeProject, supported, create, select) && supported && !create);
    EXPECT_TRUE(search.GetExecutablePermission(L"MASTER", allowed) && !allowed);
    EXPECT_TRUE(search.GetViewMax(L"DeviceView", maximum) && maximum == 0);
}

/// From settings and a default project to positions and units, as a host goes.
TEST_F(ShippedDataTest, ADefaultProjectOpensWithItsCoordinateSystem) {
    DataSearch& search = DataSearch::GetDataSearch();
    ASSERT_TRUE(search.Initialise(folder / L"system/", true, L"navigate", false, L"", L""));
    MakeFolders(folder / L"Projects/Job.1");
    ProjectDefinition project;
    ASSERT_TRUE(project.CreateDefaultFile(folder / L"Projects/Job.1", false));
    SetCoordSysData(&project, L"US State Plane - survey feet", L"NAD83 - Texas South", L"ORVCoordSys",
                    L"U.S. Survey Feet", L"", L"", L"", L"", L"");
    ASSERT_TRUE(project.FileSave(folder / L"Projects/Job.1/Project.prj", 0, kSave));
    ASSERT_TRUE(search.InitProject(L"Job.1", false)) << ToUtf8(search.GetProjectDefinition().LastProblem());
    ProjectDefinition& open = search.GetProjectDefinition();
    double x = 0, y = 0;
    ASSERT_TRUE(open.GetGeoCoordSys() && open.GetGeoCoordSys()->GeoToGrid(27, -98, 0, x, y));
    for (const auto& [kind, unit] :
         {std::pair{1, L"U.S. Survey Feet"}, {20, L"Square U.S. Yards"}, {7, L"U.S. Survey Feet/second"}}) {
        EXPECT_EQ(open.GetUnitCnv()->GetUnitName(kind), unit);
    }
    EXPECT_TRUE(search.InitProjectSUI() && search.GetProjectDefinition().GetGeoCoordSys());
}

}  // namespace
}  // namespace orv::test
