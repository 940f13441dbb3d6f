#include "core/CFileTypeList.h"

#include <set>

#include "core/ConfigKeys.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

class FileTypes : public testing::Test {
protected:
    FileTypes() { list.Initialise(); }
    test::TestInstallation installation;
    CFileTypeList list;
};

TEST_F(FileTypes, TableAgreesWithTheKeys) {
    int rows = 0;
    std::set<unsigned> ids;
    CFileTypeList::Iterator i;
    std::wstring key;
    CFileType* type = nullptr;
    for (bool more = list.GetFirst(i, key, type); more; more = list.GetNext(i, key, type), ++rows) {
        ids.insert(type->GetID());
        EXPECT_TRUE(type->GetID() == kNoFileType || GetFileKeyForType(type->GetID()) == key) << key;
        EXPECT_TRUE(type->GetLocation() >= 0 && type->GetLocation() < kLocationCount) << key;
        EXPECT_FALSE(type->IsSupported() || type->CanCreate() || type->CanSelect()) << key;
    }
    EXPECT_EQ(rows, 137);
    EXPECT_EQ(ids.size(), 136u) << "135 and the one that two share";
    for (unsigned id = 0; id < kFileTypeCount; ++id) {
        const bool reserved = GetFileKeyForType(id).starts_with(L"Reserved") || id == 0 || id == 5;
        EXPECT_EQ(list.GetFileTypeID(id) == nullptr, reserved) << id;
    }
}

TEST_F(FileTypes, Lookups) {
    EXPECT_EQ(list.GetFileKey(kNoFileType), L"Profile") << "of the two types without an id the first in key order";
    EXPECT_EQ(list.GetFileTypeSafe(L"no such")->GetFileID(), L"Unknown");
    const std::pair<const wchar_t*, unsigned> shared[] = {{L"ini", 95}, {L"csv", 43}, {L"jpg", 104}, {L"txt", 115}};
    for (const auto& [extension, id] : shared) EXPECT_EQ(list.GetFileTypeExt(extension)->GetID(), id) << extension;
    EXPECT_EQ(list.GetFileTypeExt(L"p190"), nullptr);
}

TEST_F(FileTypes, FlagsKeepTheirOrder) {
    for (int only = 0; only < 3; ++only) {
        const bool support = only == 0, create = only == 1, select = only == 2;
        CFileType& type = *list.GetFileType(L"Route");
        type.SetPermissions(create, select, support);
        EXPECT_TRUE(type.IsSupported() == support && type.CanCreate() == create && type.CanSelect() == select);
        list.SetFileClientPermissions(L"RunLine", support, select, create);
        bool a = !support, b = !create, c = !select;
        list.GetFilePermissions(L"RunLine", a, b, c);
        EXPECT_TRUE(a == support && b == create && c == select) << only;
    }
}

}  // namespace
}  // namespace orv
