#include "geoid/GeoidModel_DVR90.h"

namespace orv {

namespace {

constexpr GravsoftGrid::Rules kRules = {.checksMarker = true, .added = 1.1, .northFirst = true, .zeroIsNoData = false};

}  // namespace

bool GeoidModel_DVR90::SetFileName(std::wstring name) {
    fileName = std::move(name);
    grid.Read(L"Denmark\\" + (fileName.empty() ? std::wstring(L"Dvr90g2002.01") : fileName), kRules);
    return Answer(grid.info.Reason());
}

bool GeoidModel_DVR90::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (grid.info.status != kGeoidOk) return Answer(grid.info.Reason());
    double height = 0.0;
    const int code = grid.Grid_interpolation(longitude, latitude, kRules, height);
    return Deliver(code, height, value);
}

void GeoidModel_DVR90::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 14, &grid.info.fileName);
}

}  // namespace orv
