#include "core/CViewList.h"

#include "core/OrvConfigureInitializer.h"
#include "definitions/CIoHandlerSettingsList.h"
#include "geoid/GeoidModelList.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

struct Views : ViewClass {
    void* CreateObject() override { return this; }
};

TEST(CViewList, WalksByName) {
    CViewList list;
    auto *const plan = new Views, *const alarm = new Views;
    list.RegisterView(L"Plan", plan);
    list.RegisterView(L"Alarm", alarm);
    list.RegisterView(L"Plan", new Views);
    list.RegisterView(L"Plan", plan);
    EXPECT_EQ(list.GetView(L"Plan"), plan);  // the first, and registered twice it is freed once
    EXPECT_FALSE(list.GetView(L"plan"));
    EXPECT_EQ(list.GetFirst(), alarm);
    EXPECT_EQ(list.GetNext(), plan);
    EXPECT_FALSE(list.GetNext());
}

TEST(OrvConfigureInitializer, FillsTheRegistries) {
    OrvConfigureInitializer module;
    module.RegisterComps();
    module.RegisterGeoidModel();
    EXPECT_EQ(module.GetName(), L"OrvConfigure");
    EXPECT_TRUE(GeoidModelList::GetGeoidModelList().Create(18));
    std::wstring handler;
    int served = 0;
    for (; GetIoHandlerSettingsList().GetNextHandler(handler); ++served) {
        EXPECT_TRUE(GetIoHandlerSettingsList().Create(handler, nullptr));
        EXPECT_TRUE(GetIoHandlerSettingsList().CreateNew(handler, nullptr));
    }
    EXPECT_EQ(served, 21);
}

}  // namespace
}  // namespace orv
