#include "geoid/GeoidModel_Sweden.h"

namespace orv {

namespace {

constexpr GravsoftGrid::Rules kRules = {.checksMarker = false, .added = 1.0, .northFirst = true, .zeroIsNoData = false};

}  // namespace

bool GeoidModel_Sweden::Load(std::wstring_view folder, std::wstring_view extension) {
    grid.Read(std::wstring(folder) + fileName + std::wstring(extension), kRules);
    return Answer(grid.info.Reason());
}

bool GeoidModel_Sweden::SetFileName(std::wstring name) {
    fileName = name.empty() ? L"Swen01l" : std::move(name);
    return Load(L"Sweden\\", L".grd");
}

bool GeoidModel_Sweden::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (grid.info.status != kGeoidOk) return Answer(grid.info.Reason());
    double height = 0.0;
    const int code = grid.Grid_interpolation(longitude, latitude, kRules, height);
    return Deliver(code, height, value);
}

void GeoidModel_Sweden::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 6, &grid.info.fileName);
}

bool GeoidModel_Norway::SetFileName(std::wstring name) {
    fileName = std::move(name);
    return Load(L"Norway\\", L".bin");
}

void GeoidModel_Norway::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 19, &Info().fileName);
}

}  // namespace orv
