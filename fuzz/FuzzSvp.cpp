// Any bytes as a sound velocity profile, thinned, edited, saved and read again.

#include "Fuzz.h"
#include "surveydata/SvpFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orv::FileObject text;
    if (!text.FileOpen(orv::memfile(data, size, orv::textencoding::utf8), L"fuzz.svp")) return 0;
    orv::SvpFile file;
    file.FileOpen(text);
    const int count = file.GetNumPoints();
    for (int index = 0; index <= count; ++index) {
        int moved = index;
        const orv::Point point = file.GetPoint(count - 1 - index, true);
        REQUIRE(file.ModifyPoint(moved, point, false) == (count > 0));
        REQUIRE(moved <= count && (count == 0 || moved < file.GetNumPoints()));
    }
    orv::Page page;
    file.GetExtents(page);
    REQUIRE(file.ReduceProfile() == (count > 0));
    REQUIRE(file.GetNumPoints() <= count + 1);  // an edit behind the end may have added one
    if (file.FileSave(text)) {
        orv::SvpFile again;
        again.FileOpen(text);
        REQUIRE(again.GetNumPoints() == file.GetNumPoints());
    }
    return 0;
}
