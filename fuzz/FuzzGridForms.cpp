// Any bytes as a grid file of any form, as the command line host recognises them.

#include <span>

#include "../apps/orvcfg/GridForms.h"
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orv::cfg;
    std::string why;
    const auto grid = RecogniseGrid(std::as_bytes(std::span(data, size)), why);
    if (!grid) return 0;
    REQUIRE(!grid->facts.parts.empty() && !grid->facts.parts.front().values.empty());
    for (const GridPart& part : grid->facts.parts) {
        REQUIRE(part.rows >= 2 && part.columns >= 2 && part.north > part.south && part.east > part.west);
        for (const GridValues& values : part.values) REQUIRE(values.smallest <= values.largest);
    }
    HomeOf(*grid, L"x2c.grd");
    return 0;
}
