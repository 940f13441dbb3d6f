#include "geoid/VdatumGrids.h"

#include <algorithm>
#include <cmath>

#include "core/ConfigKeys.h"
#include "geoid/GridMath.h"
#include "geoid/TextScan.h"
#include "platform/os/FileTools.h"
#include "platform/text/Format.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

// Names are found anywhere behind the point and as long as the member has nothing yet, so the first value stands.
void TakeNumber(std::string_view rest, std::string_view name, std::string_view value, double& member) {
    if (member == 0.0 && rest.find(name) != rest.npos) TextScan(value).Real(member);
}

void TakeText(std::string_view rest, std::string_view name, std::string_view value, std::wstring& member) {
    if (member.empty() && rest.find(name) != rest.npos) member = GridText(value);
}

// A spline over `Size` x `Size` nodes, `before` of them south and west of the cell. False where the grid lacks one.
template <int Size>
bool SplineValue(const GtxGrid& grid, std::int32_t row, std::int32_t column, double u, double v, double& value) {
    constexpr int before = Size / 2 - 1;
    const std::int64_t firstRow = std::int64_t{row} - before, firstColumn = std::int64_t{column} - before;
    if (firstRow + Size > grid.rows || firstColumn + Size > grid.columns) return false;
    double across[Size];
    for (int r = 0; r < Size; ++r) {
        const std::int64_t k = (firstRow + r) * grid.columns + firstColumn;
        std::array<std::int64_t, Size> at{};
        for (int c = 0; c < Size; ++c) at[static_cast<std::size_t>(c)] = k + c;
        std::array<float, Size> nodes{};
        const auto any = [](float) { return kGeoidOk; };
        if (TakeNodes(grid.values, 0, at, any, nodes) != kGeoidOk) return false;
        std::array<double, Size> y{};
        std::copy(nodes.begin(), nodes.end(), y.begin());
        across[r] = SplineInterpolate(u + Size / 2, y.data(), Size);
    }
    value = SplineInterpolate(v + Size / 2, across, Size);
    return true;
}

}  // namespace

std::vector<VdatumGrid> ReadInf(std::wstring_view folder, std::string_view text) {
    std::vector<VdatumGrid> list;
    VdatumGrid record;
    const auto finish = [&] {
        if (!record.source.empty()) {
            record.fileName = std::wstring(folder) + ToNativePath(record.source);
            list.push_back(std::move(record));
        }
        record = {};
    };
    std::string_view line, key;
    while (NextLine(text, line)) {
        const std::size_t point = line.find('.'), equals = line.find('=');
        if (point == line.npos || equals == line.npos) continue;
        if (line.substr(0, point) != key) finish();
        key = line.substr(0, point);
        const std::string_view rest = line.substr(point + 1), value = line.substr(equals + 1);
        TakeNumber(rest, "maxlat", value, record.north);
        TakeNumber(rest, "maxlon", value, record.east);
        TakeNumber(rest, "minlat", value, record.south);
        TakeNumber(rest, "minlon", value, record.west);
        TakeText(rest, "source", value, record.source);
        TakeText(rest, "description", value, record.description);
    }
    finish();
    return list;
}

bool ReadInfFile(std::wstring_view folder, const std::wstring& infPath, std::vector<VdatumGrid>& list) {
    list.clear();
    std::string text;
    if (ReadWholeFile(infPath, text) != FsResult::Ok) return false;
    list = ReadInf(folder, text);
    return true;
}

bool VdatumGrid::Load() {
    if (grid) return true;
    GridFileInfo info;
    auto read = std::make_shared<GtxGrid>();
    status = ReadGtx(fileName, info, *read);
    error = info.error;
    longitudeStep = read->longitudeStep;
    latitudeStep = read->latitudeStep;
    west = read->west;
    east = read->east;
    south = read->south;
    north = read->north;
    if (status == kGeoidOk) grid = std::move(read);
    return status == kGeoidOk;
}

void DropUnused(std::vector<VdatumGrid>& list, double now) {
    for (VdatumGrid& held : list) {
        if (held.grid && now - held.lastUse >= kVdatumKeptMilliseconds) held.grid.reset();
    }
}

bool VdatumGridValue(const GtxGrid& grid, double latitude, double longitude, double& value) {
    const bool inside = latitude >= grid.south && latitude <= grid.north &&  //
                        longitude >= grid.west && longitude <= grid.east;
    std::int32_t c = 0, r = 0;
    const double x = (longitude - grid.west) / grid.longitudeStep, y = (latitude - grid.south) / grid.latitudeStep;
    if (!inside || !FloorIndex(x, c) || !FloorIndex(y, r)) return false;
    const double u = x - c, v = y - r;

    const bool onNode = std::fabs(longitude - (c * grid.longitudeStep + grid.west)) < 0.0001 &&
                        std::fabs(latitude - (r * grid.latitudeStep + grid.south)) < 0.0001;
    if (onNode) {
        std::array<float, 1> node{};
        const auto any = [](float) { return kGeoidOk; };
        if (TakeNodes(grid.values, 0, std::array{std::int64_t{grid.columns} * r + c}, any, node) != kGeoidOk)
            return false;
        value = node[0];
        return true;
    }
    if (r >= 3 && r < grid.rows - 2 && c >= 3 && c < grid.columns - 2 && SplineValue<6>(grid, r, c, u, v, value)) {
        return true;
    }
    if (r >= 2 && r < grid.rows - 1 && c >= 2 && c < grid.columns - 1 && SplineValue<4>(grid, r, c, u, v, value)) {
        return true;
    }
    return BilinearGtx(grid, latitude, longitude, value);
}

std::wstring VdatumFolder() {
    const std::wstring folder = GeoidFolder(kLocationCommon);
    return folder.empty() ? folder : folder + L"vdatum" + kPathSeparator;
}

std::wstring VdatumMessage(std::wstring_view files, std::wstring_view folder) {
    return FormatTexts(
        L"Failed to find file(s):\n\"%s\"\n\n"
        L"Download the NOAA Vertical Datum Transformation model files from: \"the publisher's site\"\n\n"
        L"Unzip the files and copy to folder:\n%s\n\n",
        {files, folder});
}

}  // namespace orv
