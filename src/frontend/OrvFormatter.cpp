#include "frontend/OrvFormatter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/values/Formatting.h"
#include "platform/values/TruncToInt.h"
#include "project/ProjectDefinition.h"

namespace orv {

namespace {

constexpr int kSystemUnit = 1, kSpeedUnit = 2, kDistanceUnit = 3, kDepthUnit = 4, kKpUnit = 24;
constexpr std::wstring_view kStation = L"Station", kFeetMnemonic = L"ft";

std::wstring Geogs(const ProjectDefinition& project, double degrees, int kind) {
    unsigned flags = 0;
    int decimals = 0;
    project.GetGeogsFlags(flags);
    project.GetGeogsDecimals(decimals);
    return FormatGeogs(degrees, kind, flags, decimals);
}

}  // namespace

OrvFormatter::OrvFormatter() : project(&DataSearch::GetDataSearch().GetProjectDefinition()) {}

int OrvFormatter::GridDecimals() const {
    int decimals = 0;
    project->GetGridDecimals(decimals);
    return decimals;
}

std::wstring OrvFormatter::FormatXCoordinate(double value) const {
    return FormatDouble(value, GridDecimals(), 0);
}

std::wstring OrvFormatter::FormatYCoordinate(double value) const {
    return FormatDouble(value, GridDecimals(), 0);
}

std::wstring OrvFormatter::FormatLatitude(double degrees) const {
    return Geogs(*project, degrees, kLatitude);
}

std::wstring OrvFormatter::FormatLongitude(double degrees) const {
    return Geogs(*project, degrees, kLongitude);
}

std::wstring OrvFormatter::FormatDistance(double value, bool addUnit, bool addSpace) const {
    return FormatValue(kDistanceUnit, value, addUnit, addSpace, -1);
}

std::wstring OrvFormatter::FormatDepth(double value, bool addUnit, bool addSpace) const {
    return FormatValue(kDepthUnit, value, addUnit, addSpace, -1);
}

std::wstring OrvFormatter::FormatSpeed(double value, bool addUnit, bool addSpace) const {
    return FormatValue(kSpeedUnit, value, addUnit, addSpace, -1);
}

std::wstring OrvFormatter::FormatBearing(double degrees) const {
    return FormatDouble(degrees, GridDecimals(), 0) + L'\u00B0';
}

std::wstring OrvFormatter::FormatValue(int kind, double value, bool addUnit, bool addSpace, int decimals) const {
    const COrvUnitCnv& units = *project->GetUnitCnv();
    value = units.ConvertUnit(kind, value);
    if (decimals < 0 && !project->GetUnitDecimals(kind, decimals)) decimals = GetDoublePrecision(value);
    const std::wstring mnemonic = units.GetUnitMnem(kind);
    unsigned flags = 0;
    if (mnemonic == kFeetMnemonic) project->GetFeetsFlags(flags);
    std::wstring text = FormatDouble(value, decimals, flags);
    if (addUnit && flags < kFeetInch) text += (addSpace ? L" " : L"") + mnemonic;
    return text;
}

std::wstring OrvFormatter::FormatKP(double value, bool addUnit, bool addSpace) const {
    int decimals = 0;
    project->GetKpDecimals(decimals);
    return FormatKP(value, decimals, addUnit, addSpace);
}

std::wstring OrvFormatter::FormatKP(double value, int decimals, bool addUnit, bool) const {
    const COrvUnitCnv& units = *project->GetUnitCnv();
    if (addUnit) return units.GetUnitMnem(kSystemUnit);
    if (units.GetUnitKey(kKpUnit) == kStation) return StationText(value, decimals);
    return FormatDouble(units.ConvertUnit(kKpUnit, value), decimals, 0);
}

std::wstring OrvFormatter::StationText(double value, int decimals) const {
    const bool metric = project->GetUnitCnv()->GetUnitKey(kSystemUnit) == UNIT_METERS;
    const double distance = std::fabs(value) * (metric ? 1.0 : 10.0);
    std::int64_t whole = 0;
    if (!TruncToInt(distance, whole)) return FormatDouble(value, decimals, 0);
    std::wstring rest = FormatDouble((distance - static_cast<double>(whole)) * (metric ? 1000.0 : 100.0), decimals, 0);
    const std::size_t digits = std::min(rest.find(L'.'), rest.size()), wanted = metric ? 3 : 2;
    if (digits < wanted) rest.insert(0, wanted - digits, L'0');
    return FormatInt(whole) + (value < 0 ? L'-' : L'+') + rest;
}

}  // namespace orv
