#include "geoid/GeoidModel_DeMin.h"

namespace orv {

GeoidModel_DeMin::GeoidModel_DeMin() : table(DeMinTable()) {}

bool GeoidModel_DeMin::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    double height = 0.0, north = 0.0, east = 0.0;
    const int code = DeMinAt(*table, latitude, longitude, &height, &north, &east);
    return Deliver(code < 0 ? kGeoidOutside : kGeoidOk, height, value);
}

void GeoidModel_DeMin::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 2, nullptr);
}

GeoidModel_GeoNZ97::GeoidModel_GeoNZ97() : table(GeoNZ97Table()) {}

bool GeoidModel_GeoNZ97::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    double height = 0.0, north = 0.0, east = 0.0;
    const int code = GeoNZ97At(*table, latitude, longitude, &height, &north, &east);
    return Deliver(code < 0 ? kGeoidOutside : kGeoidOk, height, value);
}

void GeoidModel_GeoNZ97::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 21, nullptr);
}

}  // namespace orv
