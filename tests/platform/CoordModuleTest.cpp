#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "support/TestSupport.h"

namespace orv::test {

class CoordModuleTest : public testing::Test {
protected:
    ~CoordModuleTest() override {
        loader.SetSearchFolder(L"");
        OrvGeoCoordSysList::GetCoordSysList().Register(L"TestModule", {});
    }
    OrvGeoCoordSysLoader& loader = OrvGeoCoordSysLoader::Instance();
};

TEST_F(CoordModuleTest, LoadsOnceAndRegisters) {
    loader.SetSearchFolder(FromUtf8(ORV_TEST_MODULE_FOLDER));
    const auto& list = OrvGeoCoordSysList::GetCoordSysList();
    EXPECT_EQ(list.Create(L"TestModule"), nullptr);
    EXPECT_TRUE(loader.LoadDLL(L"testmodule", nullptr)) << ToUtf8(loader.LastError());
    EXPECT_TRUE(list.Has(L"TESTMODULE"));
    loader.SetSearchFolder(L"/nowhere");
    EXPECT_TRUE(loader.LoadDLL(L"TestModule", nullptr)) << "is loaded already";
}

TEST_F(CoordModuleTest, TellsWhyItFailed) {
    const TempFolder folder;
    WriteBytes(folder / L"Broken.so", "no library");
    loader.SetSearchFolder(folder.Path());
    for (const wchar_t* const key : {L"Broken", L"Missing"}) {
        EXPECT_FALSE(loader.LoadDLL(key, nullptr));
        EXPECT_NE(loader.LastError().find(folder / key), std::wstring::npos) << ToUtf8(loader.LastError());
    }
    loader.SetSearchFolder(FromUtf8(ORV_TEST_MODULE_FOLDER));
    EXPECT_FALSE(loader.LoadDLL(L"../" + GetNameFromPath(FromUtf8(ORV_TEST_MODULE_FOLDER)) + L"/TestModule", nullptr));
    EXPECT_FALSE(loader.LoadDLL(L"", nullptr));
}

}  // namespace orv::test
