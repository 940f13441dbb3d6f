#include "geoid/GeoidModel_Null.h"

namespace orv {

bool GeoidModel_Null::Calculate(double, double, double, double, double& value, std::wstring&) {
    value = 0.0;
    return true;
}

void GeoidModel_Null::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 17, nullptr);
}

}  // namespace orv
