// Any bytes as a GTX grid, asked for heights on and around its edges.

#include <cmath>
#include <limits>
#include <span>

#include "Fuzz.h"
#include "geoid/GtxGrid.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orv::GtxGrid grid;
    if (orv::ReadGtx(std::as_bytes(std::span(data, size)), grid) != orv::kGeoidOk) return 0;
    REQUIRE(grid.values.size() <= size);
    const double latitudes[] = {grid.south,        grid.north, (grid.south + grid.north) / 2,
                                grid.north - 1e-9, 1e300,      std::numeric_limits<double>::quiet_NaN()};
    const double longitudes[] = {grid.west,        grid.east, (grid.west + grid.east) / 2,
                                 grid.east - 1e-9, -1e300,    std::numeric_limits<double>::infinity()};
    for (const double latitude : latitudes) {
        for (const double longitude : longitudes) {
            double value = 0;
            orv::BilinearGtx(grid, latitude, longitude, value);
        }
    }
    return 0;
}
