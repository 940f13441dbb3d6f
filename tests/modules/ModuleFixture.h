#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/text/PathText.h"
#include "support/TestSupport.h"

namespace orv::test {

/// A computer with the shipped data, settings in a folder of the test's own, and the coordinate module loaded.
class ModuleFixture : public ::testing::Test {
protected:
    void SetUp() override {
        FileObject settings;
        ASSERT_TRUE(settings.FileOpen(Shipped(L"ORV.ini"), kOpenRead));
        settings.SetItem(DATA_PATH_SECTION, pathKeys[kLocationGeneral], general, true);
        settings.SetItem(DATA_PATH_SECTION, pathKeys[kLocationProjects], folder / L"Projects", true);
        MakeFolders(folder / L"system");
        ASSERT_TRUE(settings.FileSave(folder / L"system/ORV.ini", kSave));
        ASSERT_TRUE(DataSearch::GetDataSearch().Initialise(folder / L"system/", false, L"", false, L"", L""));
        OrvGeoCoordSysLoader& loader = OrvGeoCoordSysLoader::Instance();
        loader.SetSearchFolder(PathFromBytes(ORV_BINARY_DIR) + L"/lib/");
        ASSERT_TRUE(loader.LoadDLL(L"orvCOORDsys", nullptr)) << PathToBytes(loader.LastError());
    }

    static std::wstring Shipped(const std::wstring& name) { return PathFromBytes(ORV_SOURCE_DIR) + L"/data/" + name; }
    std::wstring OwnDatabase() const { return folder / L"system/CoordSystems.geo"; }

    static std::unique_ptr<OrvGeoCoordSysBase> Make() {
        return OrvGeoCoordSysList::GetCoordSysList().Create(L"ORVCoordSys");
    }
    static CoordSysNames Names(const std::wstring& group, const std::wstring& system) {
        CoordSysNames names;
        names.group = group;
        names.system = system;
        return names;
    }
    /// Null if the system can't be had.
    static std::unique_ptr<OrvGeoCoordSysBase> Make(const std::wstring& group, const std::wstring& system) {
        auto made = Make();
        return made->Configure(Names(group, system), L"", L"none") ? std::move(made) : nullptr;
    }
    static std::unique_ptr<OrvGeoDatabaseBase> Database() {
        return OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(L"ORVCoordSys");
    }

    TempFolder folder;
    std::wstring general = L"General";  ///< set before SetUp to have general data elsewhere than shipped
};

}  // namespace orv::test
