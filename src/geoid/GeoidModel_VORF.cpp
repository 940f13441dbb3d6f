#include "geoid/GeoidModel_VORF.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "geoid/GridReader.h"
#include "geoid/TextScan.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

// The file may have gaps, so its length can't vouch for the size of the grid.
constexpr std::int64_t kMostNodes = 100'000'000;

}  // namespace

bool GeoidModel_VORF::SetFileName(std::wstring name) {
    fileName = relativeName = std::move(name);
    columns = rows = 0;
    values.clear();
    GridFileInfo file;
    std::string text;
    opened = ReadGridFile(kLocationCommon, relativeName, file, text);
    path = file.fileName;
    if (!opened) return Answer(GeoidReason::NoFile);
    return Answer(ReadFile(text) ? GeoidReason::None : GeoidReason::BadHeader);
}

bool GeoidModel_VORF::ReadFile(std::string_view text) {
    std::string_view rest = text;
    ListedHeight first, point;
    if (!NextListedHeight(rest, first)) return false;
    double east = first.longitude, north = first.latitude;
    west = first.longitude;
    south = first.latitude;
    latitudeStep = longitudeStep = 0.0;
    while (NextListedHeight(rest, point)) {
        west = std::min(west, point.longitude);
        east = std::max(east, point.longitude);
        south = std::min(south, point.latitude);
        north = std::max(north, point.latitude);
        if (longitudeStep == 0.0) longitudeStep = point.longitude - first.longitude;
        if (latitudeStep == 0.0) latitudeStep = first.latitude - point.latitude;
    }
    latitudeStep = std::fabs(latitudeStep);
    longitudeStep = std::fabs(longitudeStep);
    std::int32_t nodesUp = 0, nodesAlong = 0;
    if (latitudeStep == 0.0 || longitudeStep == 0.0 || !TruncToInt((north - south) / latitudeStep + 1.5, nodesUp) ||
        !TruncToInt((east - west) / longitudeStep + 1.5, nodesAlong) || NodeCount(nodesUp, nodesAlong) > kMostNodes) {
        return false;
    }
    rows = nodesUp;
    columns = nodesAlong;
    values.assign(static_cast<std::size_t>(NodeCount(rows, columns)), 9999.0);

    rest = text;
    while (NextListedHeight(rest, point)) {
        std::int32_t r = 0, c = 0;
        if (!TruncToInt((point.latitude - south) / latitudeStep + 0.5, r)) continue;
        if (!TruncToInt((point.longitude - west) / longitudeStep + 0.5, c)) continue;
        const auto k = static_cast<std::uint64_t>(std::int64_t{r} * columns + c);
        if (k < values.size()) values[static_cast<std::size_t>(k)] = point.height;
    }
    return true;
}

bool GeoidModel_VORF::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (values.empty()) return Answer(opened ? GeoidReason::BadHeader : GeoidReason::NoFile);
    GridCell cell;
    const double x = (longitude - west) / longitudeStep, y = (latitude - south) / latitudeStep;
    if (!FloorIndex(x, cell.i) || !FloorIndex(y, cell.j)) return Answer(kGeoidOutside);
    if (cell.i < 0 || cell.i >= columns - 1 || cell.j < 0 || cell.j >= rows - 1) return Answer(kGeoidOutside);
    const std::int64_t k = std::int64_t{columns} * cell.j + cell.i;
    std::array<double, 4> q{};
    const int code = TakeNodes(values, 0, NodeBlock<2>{k, columns}, Is9999, q);
    if (code != kGeoidOk) return Answer(code);
    // The one model that doesn't divide by the unit: its heights stay in metres in every project.
    const double height = Bilinear(q, x - cell.i, y - cell.j);
    if (!std::isfinite(height)) return Answer(GeoidReason::NoData);
    value = height;
    return true;
}

void GeoidModel_VORF::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 27, &relativeName);
}

}  // namespace orv
