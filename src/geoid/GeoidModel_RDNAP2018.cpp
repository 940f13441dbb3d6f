#include "geoid/GeoidModel_RDNAP2018.h"

#include "core/ConfigKeys.h"

namespace orv {

bool GeoidModel_RDNAP2018::SetFileName(std::wstring name) {
    fileName = std::move(name);
    ReadGtx(kLocationGeoidModels, L"Netherlands\\" + fileName, info, grid);
    return Answer(info.Reason());
}

bool GeoidModel_RDNAP2018::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (info.status != kGeoidOk) return Answer(info.Reason());
    double height = 0.0;
    const bool ok = BilinearGtx(grid, latitude, longitude, height);
    value = unitFactor == 1.0 ? height : height / unitFactor;  // most projects are in metres: no division there
    return ok || Answer(kGeoidOutside);
}

// The dump has named this grid by the key of row 22 from the beginning; whoever reads dumps looks for that.
void GeoidModel_RDNAP2018::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 22, &info.fileName);
}

}  // namespace orv
