#include "geoid/GeoidModel_GeoNZ97_LAT2006.h"

#include <cmath>

#include "platform/text/NumberText.h"

namespace orv {

namespace {

constexpr GravsoftGrid::Rules kRules = {.checksMarker = true, .added = 1.1, .northFirst = false, .zeroIsNoData = true};

}  // namespace

GeoidModel_GeoNZ97_LAT2006::GeoidModel_GeoNZ97_LAT2006() : table(GeoNZ97Table()) {
    grid.Read(L"Noordzee reductionmatrix\\LAT2006.01", kRules);
}

bool GeoidModel_GeoNZ97_LAT2006::Calculate(double latitude, double longitude, double, double, double& value,
                                           std::wstring& text) {
    double height = 0.0, north = 0.0, east = 0.0;
    if (GeoNZ97At(*table, latitude, longitude, &height, &north, &east) < 0) return Answer(kGeoidOutside);
    if (!std::isfinite(height)) return Answer(GeoidReason::NoData);
    value = height;
    if (grid.info.status != kGeoidOk) return Answer(grid.info.Reason());
    double reduction = 0.0;
    const int code = grid.Grid_interpolation(longitude, latitude, kRules, reduction);
    if (code != kGeoidOk || !std::isfinite(reduction)) return Answer(code != kGeoidOk ? code : kGeoidNoData);
    reduction /= unitFactor;
    text += L" MSL:" + FixedText(reduction, 4) + unitLabel;
    value += reduction;
    return true;
}

void GeoidModel_GeoNZ97_LAT2006::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 22, &grid.info.fileName);
}

}  // namespace orv
