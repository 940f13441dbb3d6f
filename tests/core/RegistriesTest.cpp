#include <gtest/gtest.h>

#include "core/CToolEditPageList.h"
#include "core/CViewList.h"

namespace orv {
namespace {

struct View : ViewClass {
    void* CreateObject() override { return nullptr; }
};

struct Page : ToolEditPage {};

struct PageCreator : ToolEditPageICreator {
    explicit PageCreator(int& counter) : calls(counter) {}
    ToolEditPage* Create() override { return ++calls, new Page; }
    int& calls;
};

TEST(Registries, TheFirstOfANameStaysAndUnknownNamesGiveNull) {
    CViewList& views = CViewList::GetViewList();
    EXPECT_EQ(views.GetFirst(), nullptr);
    auto *helmsman = new View, *chart = new View;
    views.RegisterView(L"Helmsman", helmsman);
    views.RegisterView(L"Chart", chart);
    views.RegisterView(L"Helmsman", new View);
    EXPECT_TRUE(views.GetView(L"Helmsman") == helmsman && views.GetView(L"helmsman") == nullptr);
    EXPECT_TRUE(views.GetFirst() == chart && views.GetNext() == helmsman && views.GetNext() == nullptr);

    static int first = 0, second = 0;  // the registry keeps its creators to the end
    CToolEditPageList& pages = CToolEditPageList::GetToolEditPageList();
    pages.RegisterToolEditPage(L"Grab", new PageCreator(first));
    pages.RegisterToolEditPage(L"Grab", new PageCreator(second));
    EXPECT_TRUE(pages.Create(L"Grab") && first == 1 && second == 0);
    EXPECT_EQ(pages.Create(L"Cutter"), nullptr);
    std::vector<std::wstring> names;
    pages.GetToolEditPageNames(names);
    EXPECT_EQ(names, std::vector<std::wstring>{L"Grab"});
}

}  // namespace
}  // namespace orv
