// Any bytes as a file set: short names made full, cut again and made full come to the same path.

#include "Fuzz.h"
#include "core/FileObject.h"
#include "surveydata/FileSet.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orv::FileObject text;
    if (!text.FileOpen(orv::memfile(data, size, orv::textencoding::utf8), L"fuzz.sub")) return 0;
    orv::FileSet set, again;
    REQUIRE(set.FileOpen(text));
    orv::FileObject saved;
    REQUIRE(set.FileSave(saved));
    again.FileOpen(saved);
    REQUIRE(again.NumFiles() == set.NumFiles());
    std::vector<std::wstring> names;
    set.GetFileNamesShort(names);
    REQUIRE(static_cast<int>(names.size()) <= set.NumFiles());
    while (set.NumFiles() > 0) set.DeleteFileName(set[0]);
    return 0;
}
