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

// A natural spline is linear in its values, so the one through Size values has a fixed weight for each of them at a
// place between the middle two: what they do themselves, and what each does to the curvature at either end.
template <std::size_t Size>
struct MiddleSpline {
    static constexpr std::size_t kFirst = Size / 2 - 1;  // of the middle two
    using Weights = std::array<double, Size>;
    Weights atFirst{}, atSecond{};  // second derivatives there for a value of 1

    constexpr MiddleSpline() {
        for (std::size_t n = 0; n < Size; ++n) {
            std::array<double, Size> y{}, d{}, w{};
            y[n] = 1.0;
            for (std::size_t i = 1; i + 1 < Size; ++i) {
                const double p = w[i - 1] / 2 + 2;
                w[i] = -0.5 / p;
                d[i] = (3 * (y[i + 1] - 2 * y[i] + y[i - 1]) - d[i - 1] / 2) / p;
            }
            for (std::size_t i = Size - 2; i >= 1; --i) d[i] += d[i + 1] * w[i];
            atFirst[n] = d[kFirst];
            atSecond[n] = d[kFirst + 1];
        }
    }
    Weights At(double t) const {
        const double t2 = t * t, t3 = t2 * t;
        const double first = t2 * 0.5 - t * (1.0 / 3) - t3 * (1.0 / 6), second = (t3 - t) * (1.0 / 6);
        Weights weights{};
        for (std::size_t n = 0; n < Size; ++n) weights[n] = atFirst[n] * first + atSecond[n] * second;
        weights[kFirst] += 1 - t;
        weights[kFirst + 1] += t;
        return weights;
    }
};

// A spline over `Size` x `Size` nodes around a cell. False where the grid lacks one.
template <std::size_t Size>
bool SplineValue(const GtxGrid& grid, std::int32_t row, std::int32_t column, double u, double v, double& value) {
    static constexpr MiddleSpline<Size> spline;
    constexpr auto size = static_cast<std::int64_t>(Size), before = size / 2 - 1;
    const std::int64_t firstRow = std::int64_t{row} - before, firstColumn = std::int64_t{column} - before;
    if (firstRow + size > grid.rows || firstColumn + size > grid.columns) return false;
    const auto columns = static_cast<std::size_t>(grid.columns);
    const std::size_t first = static_cast<std::size_t>(firstRow) * columns + static_cast<std::size_t>(firstColumn);
    if (first + (Size - 1) * columns + Size > grid.values.size()) return false;
    const float* node = &grid.values[first];
    const auto along = spline.At(u), across = spline.At(v);
    // A column each, and the even rows apart from the odd ones, so that no sum waits long for the one before it.
    typename MiddleSpline<Size>::Weights even{}, odd{};
    for (std::size_t r = 0; r < Size; r += 2, node += 2 * columns) {
        for (std::size_t c = 0; c < Size; ++c) {
            even[c] += across[r] * node[c];
            odd[c] += across[r + 1] * node[columns + c];
        }
    }
    double evenSum = 0.0, oddSum = 0.0;
    for (std::size_t c = 0; c < Size; c += 2) {
        evenSum += along[c] * (even[c] + odd[c]);
        oddSum += along[c + 1] * (even[c + 1] + odd[c + 1]);
    }
    const double sum = evenSum + oddSum;
    if (std::isnan(sum)) {  // of a node that isn't a number, or of infinite ones that cancel out
        node = &grid.values[first];
        for (std::size_t r = 0; r < Size; ++r, node += columns) {
            if (std::any_of(node, node + Size, [](float height) { return std::isnan(height); })) return false;
        }
    }
    value = sum;
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
        if (held.grid && !IsRecent(held.lastUse, now)) held.grid.reset();
    }
}

bool VdatumGridValue(const GtxGrid& grid, double latitude, double longitude, double& value) {
    GridCell cell;
    if (!PickGtx(grid, latitude, longitude, cell)) return false;
    const auto [c, r, u, v] = cell;
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
