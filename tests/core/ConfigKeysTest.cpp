#include "core/ConfigKeys.h"

#include <set>
#include <span>

#include "platform/text/CaseFold.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

const struct Table {
    const char* name;
    std::span<const std::wstring_view> keys;
} kTables[] = {
    {"pathKeys", pathKeys},
    {"checksumKeys", checksumKeys},
    {"fileTypeKeys", fileTypeKeys},
    {"fileTypeSubKeys", fileTypeSubKeys},
    {"viewTypeKeys", viewTypeKeys},
    {"programKeys", programKeys},
    {"vesselKeys", vesselKeys},
    {"networkKeys", networkKeys},
    {"loggingKeys", loggingKeys},
    {"exportKeys", exportKeys},
    {"guidanceKeys", guidanceKeys},
    {"projDescKeys", projDescKeys},
    {"coordsystemKeys", coordsystemKeys},
    {"appParamKeys", appParamKeys},
    {"formatParamKeys", formatParamKeys},
    {"GeoidmodelTypeKeys", GeoidmodelTypeKeys},
};

// A row that is forgotten at the end of a table is an empty text.
TEST(ConfigKeys, TablesHaveNoGapsAndNoDoubles) {
    for (const Table& table : kTables) {
        std::set<std::wstring> seen;  // some are looked up ignoring case
        for (const std::wstring_view key : table.keys) {
            EXPECT_FALSE(key.empty()) << table.name;
            EXPECT_EQ(key.find_first_of(L"=[];\r\n"), key.npos) << table.name;
            EXPECT_TRUE(seen.insert(ToLower(key)).second) << table.name << ": " << seen.size();
        }
    }
}

// Items of different meaning that share a section.
TEST(ConfigKeys, NeighboursDontClash) {
    std::set<std::wstring_view> header(projDescKeys.begin(), projDescKeys.end());
    for (const std::wstring_view key : appParamKeys) EXPECT_FALSE(header.contains(key));
    std::set<std::wstring_view> coords(coordsystemKeys.begin(), coordsystemKeys.end());
    EXPECT_FALSE(coords.contains(GEODESY_VERSION_KEY) || coords.contains(OLD_GEOID_MODE));
    EXPECT_NE(LANGUAGE_SECTION, USER_LANGUAGE);
}

TEST(ConfigKeys, FindsFileTypes) {
    for (unsigned id = 0; id < fileTypeKeys.size(); ++id) EXPECT_EQ(GetFileTypeForKey(GetFileKeyForType(id)), id);
    EXPECT_EQ(GetFileKeyForType(147), L"");
    EXPECT_EQ(GetFileTypeForKey(L"appdef"), static_cast<unsigned>(-1));
}

}  // namespace
}  // namespace orv
