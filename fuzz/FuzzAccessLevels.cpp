// Any bytes as an access levels file whose checksum held: levels, applications, items, and what each level may use.

#include "Fuzz.h"
#include "core/ProtectedFileObject.h"
#include "users/UserAccessLevelsFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const orv::memfile input(data, size, orv::textencoding::utf8);
    orv::ProtectedFileObject file;
    file.FileOpen(input, false);
    orv::UserAccessLevelsFile levels;
    levels.Take(file);
    for (const std::wstring& name : levels.Levels()) {
        const int index = levels.UserAccessLevelIndex(name);
        REQUIRE(index >= 0 && levels.Levels()[static_cast<std::size_t>(index)] == name);
    }
    for (const std::wstring& application : levels.Applications()) {
        for (const std::wstring& text : levels.GetItems(application, L"")) {
            orv::UserAccessItem item;
            if (!item.Parse(text)) continue;
            REQUIRE(item.Allows(-1) && item.Allows(item.levels.Size()));
            for (int level = 0; level < item.levels.Size() && level < 8; ++level) item.Allows(level);
        }
    }
    return 0;
}
