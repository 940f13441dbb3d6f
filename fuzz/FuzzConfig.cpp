// Any bytes: what is read is walked, changed, saved and read again, and must come back the same.

#include <string>
#include <vector>

#include "Fuzz.h"
#include "core/FileObject.h"

namespace {

using Items = std::vector<std::wstring>;

Items Walk(const orv::FileObject& file) {
    Items items;
    orv::FobjSection cursor;
    std::wstring section, key, value, again;
    for (bool more = file.GetFirstSectionEntry(cursor, section); more;
         more = file.GetNextSectionEntry(cursor, section)) {
        items.push_back(L"[" + section);
        for (bool item = file.GetFirstMapEntry(cursor, section, key, value); item;
             item = file.GetNextMapEntry(cursor, key, value)) {
            REQUIRE(file.GetItem(section, key, again) && again == value);
            items.push_back(key + L"=" + value);
        }
    }
    return items;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orv::FileObject file;
    if (!file.FileOpen(orv::memfile(data, size, orv::textencoding::utf8), L"fuzz.ini")) return 0;
    Items items = Walk(file);
    orv::memfile saved;
    REQUIRE(file.FileSave(saved));
    orv::FileObject again;
    REQUIRE(again.FileOpen(saved, L"fuzz.ini"));
    REQUIRE(Walk(again) == items);
    REQUIRE(again.GetExtraInfo() == file.GetExtraInfo());

    if (file.HasSection(L"Encrypted")) return 0;  // cipher text isn't edited
    file.SetItem(L"Fuzz", L"key", L" value ", true);
    file.DeleteItem(L"Fuzz", L"other", true);
    items = Walk(file);
    REQUIRE(file.FileSave(saved));
    REQUIRE(again.FileOpen(saved, L"fuzz.ini"));
    REQUIRE(Walk(again) == items);
    return 0;
}
