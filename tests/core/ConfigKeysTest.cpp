#include "core/ConfigKeys.h"

#include <set>
#include <span>

#include "platform/text/CaseFold.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

using Table = std::span<const std::wstring_view>;

// A row forgotten at the end of a table is an empty text.
TEST(ConfigKeys, TablesHaveNoGapsAndNoDoubles) {
    const std::pair<const char*, Table> tables[] = {
        {"path", pathKeys},           {"checksum", checksumKeys},  {"file type", fileTypeKeys},
        {"sub", fileTypeSubKeys},     {"view", viewTypeKeys},      {"program", programKeys},
        {"vessel", vesselKeys},       {"network", networkKeys},    {"logging", loggingKeys},
        {"export", exportKeys},       {"guidance", guidanceKeys},  {"project", projDescKeys},
        {"app", appParamKeys},        {"coords", coordsystemKeys}, {"format", formatParamKeys},
        {"geoid", GeoidmodelTypeKeys}};
    for (const auto& [name, keys] : tables) {
        std::set<std::wstring> seen;  // some are looked up ignoring case
        for (const std::wstring_view key : keys) {
            EXPECT_TRUE(!key.empty() && key.find_first_of(L"=[];\r\n") == key.npos) << name << seen.size();
            EXPECT_TRUE(seen.insert(ToLower(key)).second) << name << seen.size();
        }
    }
}

TEST(ConfigKeys, FindsFileTypes) {
    for (unsigned id = 0; id < fileTypeKeys.size(); ++id) EXPECT_EQ(GetFileTypeForKey(GetFileKeyForType(id)), id);
    EXPECT_EQ(GetFileTypeForKey(L"appdef"), static_cast<unsigned>(-1));
}

}  // namespace
}  // namespace orv
