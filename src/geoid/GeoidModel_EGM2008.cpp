#include "geoid/GeoidModel_EGM2008.h"

#include <algorithm>

#include "core/ConfigKeys.h"
#include "geoid/GridMath.h"
#include "geoid/GridReader.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileTools.h"
#include "platform/text/Format.h"
#include "platform/values/Angles.h"

namespace orv {

namespace {

constexpr std::wstring_view kFileName = L"Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE";

constexpr std::wstring_view kMissing =
    L"Failed to find EGM2008 geoid model data file:\n"
    L"\"Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE\"\n"
    L"in folder:\n%s\n\n"
    L"Download the file from:\n\"the publisher's site\"\n"
    L"and select\n\"1 x 1-Minute Geoid Undulation Grid in WGS 84 - SMALL ENDIAN \"\n\n"
    L"Unzip the file and copy to folder:\n%s";

// The file: rows from the north, columns from Greenwich east, each row between two record markers.
constexpr int kFileColumns = 21600;
constexpr std::uint64_t kMarker = 4;
constexpr std::uint64_t kRowBytes = kMarker + kFileColumns * sizeof(float) + kMarker;

constexpr std::int16_t kTileNodes = 100;
constexpr double kStep = 1.0 / 60.0;

constexpr float kMostWhole = 2147483648.0f;  // what can't be cut to a whole number is refused, too

// Values from 9999.0 to just below 10000.0 mark no data.
int TestNode(float node) {
    if (!(node >= -kMostWhole && node < kMostWhole)) return kGeoidOutside;
    return node >= 9999.0f && node < 10000.0f ? kGeoidNoData : kGeoidOk;
}

using Tile = GeoidModel_EGM2008::FileInfo;

// The box of a tile has a step more than its nodes reach in the south and in the east.
bool BoxHolds(const Tile& tile, double longitude, double latitude) {
    return longitude >= tile.minimumLongitude && longitude <= tile.maximumLongitude &&
           latitude >= tile.minimumLatitude && latitude <= tile.maximumLatitude;
}
bool BoxHoldsInner(const Tile& tile, double longitude, double latitude) {
    return longitude >= tile.minimumLongitude + tile.longitudeStep &&
           longitude <= tile.maximumLongitude - tile.longitudeStep &&
           latitude >= tile.minimumLatitude + tile.latitudeStep && latitude <= tile.maximumLatitude - tile.latitudeStep;
}

template <std::size_t Side>
[[gnu::always_inline]] inline int TakeTileNodes(const Tile& tile, std::int64_t first,
                                                std::array<float, Side * Side>& q) {
    const NodeBlock<Side> block{first, tile.columns};
    // The first node of a tile is refused although it is there.
    if (tile.complete) return TakeNodes(tile.values, 1, block, AllHaveData{}, q);
    return TakeNodes(tile.values, 1, block, TestNode, q);
}

// The place in the cell stays in degrees: the two interpolations bring it to cells in their own precision.
[[gnu::always_inline]] inline bool PickCell(const Tile& tile, double longitude, double latitude, GridCell& cell) {
    const double across = longitude - tile.minimumLongitude, down = tile.maximumLatitude - latitude;
    if (!FloorQuotient(across, tile.longitudeStep, tile.stepsPerDegree, cell.i)) return false;
    if (!FloorQuotient(down, tile.latitudeStep, tile.stepsPerDegree, cell.j)) return false;
    cell.u = longitude - cell.i * tile.longitudeStep - tile.minimumLongitude;
    cell.v = tile.maximumLatitude - latitude - cell.j * tile.latitudeStep;
    return true;
}

// For a position that the tile's box holds.
[[gnu::always_inline]] inline int BilinearInBox(const Tile& tile, double longitude, double latitude, double& value) {
    GridCell cell;
    if (!PickCell(tile, longitude, latitude, cell)) return kGeoidOutside;
    std::array<float, 4> q{};
    const int code = TakeTileNodes<2>(tile, std::int64_t{cell.j} * tile.columns + cell.i, q);
    if (code == kGeoidOk)
        value = BilinearSingleDifferences(q, cell.u * tile.stepsPerDegree, cell.v * tile.stepsPerDegree);
    return code;
}

void PlaceBox(Tile& tile, double longitude, double latitude) {
    const double extent = kTileNodes * kStep;
    tile.columns = tile.rows = kTileNodes;
    tile.longitudeStep = tile.latitudeStep = kStep;
    tile.stepsPerDegree = 1.0 / kStep;
    tile.minimumLongitude = std::floor(longitude / kStep) * kStep - 50.0 / 60.0;
    tile.minimumLatitude = std::floor(latitude / kStep) * kStep - 50.0 / 60.0;
    tile.maximumLongitude = tile.minimumLongitude + extent;
    tile.maximumLatitude = tile.minimumLatitude + extent;
    if (tile.maximumLatitude > 90.0) {
        tile.maximumLatitude = 90.0;
        tile.minimumLatitude = 90.0 - extent;
    }
    if (tile.minimumLatitude < -90.0) {
        tile.minimumLatitude = -90.0;
        tile.maximumLatitude = extent - 90.0;
    }
}

// False at the end of the file: what there was is kept, a cut float isn't.
bool ReadFloats(File& file, std::uint64_t offset, int count, std::vector<float>& values) {
    if (count <= 0) return true;
    std::vector<std::byte> raw(static_cast<std::size_t>(count) * sizeof(float));
    const std::size_t got = ReadAt(file, offset, raw);
    GridReader in(std::span<const std::byte>(raw.data(), got));
    for (std::uint64_t left = in.NodesLeft(count, sizeof(float)); left > 0; --left) values.push_back(in.Read<float>());
    return got == raw.size();
}

}  // namespace

std::atomic<bool> GeoidModel_EGM2008::m_bNoFileReported = false;

GeoidModel_EGM2008::GeoidModel_EGM2008() {
    hasFolder = GeoidPath(kLocationCommon, kFileName, path);
    if (hasFolder && FileExists(path)) return;
    if (m_bNoFileReported.exchange(true)) return;
    const std::wstring folder = GeoidFolder(kLocationCommon);
    Notify(Notice::Message, FormatTexts(kMissing, {folder, folder}));
}

bool GeoidModel_EGM2008::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    longitude = TrimAngle(longitude);
    const FileInfo* const tile = tiles.Find([&](const FileInfo& held) {
        return interpolationMethod == 1 ? BoxHoldsInner(held, longitude, latitude)
                                        : BoxHolds(held, longitude, latitude);
    });
    if (tile) [[likely]] {
        double height = 0.0;
        const bool plain = interpolationMethod == 0 && BilinearInBox(*tile, longitude, latitude, height) == kGeoidOk;
        const bool given = plain ? Deliver(kGeoidOk, height, value) : HeightFrom(*tile, longitude, latitude, value);
        tiles.Use(*tile);
        return given;
    }
    // What no tile can hold is told here: none reaches beyond the globe.
    if (!(latitude >= -90.0 && latitude <= 90.0) || !std::isfinite(longitude)) return Answer(kGeoidOutside);
    return HeightFrom(NewTile(longitude, latitude), longitude, latitude, value);
}

const GeoidModel_EGM2008::FileInfo& GeoidModel_EGM2008::NewTile(double longitude, double latitude) {
    return *tiles.Add([&] {
        auto made = std::make_shared<FileInfo>();
        PlaceBox(*made, longitude, latitude);
        ReadFile(*made);  // a tile that couldn't be read stays, so that the file isn't tried at every position
        return made;
    });
}

bool GeoidModel_EGM2008::HeightFrom(const FileInfo& tile, double longitude, double latitude, double& value) const {
    int code = kGeoidOk;
    double height = value;  // stays the caller's own where the method is none
    if (interpolationMethod == 0) code = Grid_interpolation_bilinear(tile, longitude, latitude, height);
    if (interpolationMethod == 1) code = Grid_interpolation_bicubic(tile, longitude, latitude, height);
    if (code != kGeoidOk && tile.values.empty()) {
        return Answer(tile.error.empty() ? GeoidReason::NoData : GeoidReason::NoFile);
    }
    return Deliver(code, height, value);
}

int GeoidModel_EGM2008::ReadFile(FileInfo& tile) const {
    std::unique_ptr<File> file;
    if (!hasFolder || Files().Open(path, OpenMode{}, file) != FsResult::Ok) {
        tile.error = L"Failed to open file " + path;
        return kGeoidNoData;
    }
    int startRow = 0, startColumn = 0;
    if (!FloorIndex((90.0 - tile.maximumLatitude) / tile.latitudeStep + 0.5, startRow)) return kGeoidNoData;
    if (!FloorIndex(tile.minimumLongitude / tile.latitudeStep + 0.5, startColumn)) return kGeoidNoData;
    if (startColumn < 0) startColumn += kFileColumns;
    const int endColumn = startColumn + tile.columns;

    tile.values.reserve(static_cast<std::size_t>(tile.rows) * static_cast<std::size_t>(tile.columns));
    for (int row = startRow; row < startRow + tile.rows; ++row) {
        const std::uint64_t start = static_cast<std::uint64_t>(row) * kRowBytes + kMarker;
        const std::uint64_t first = start + static_cast<std::uint64_t>(startColumn) * sizeof(float);
        if (!ReadFloats(*file, first, std::min(endColumn, kFileColumns) - startColumn, tile.values)) break;
        if (!ReadFloats(*file, start, endColumn - kFileColumns, tile.values)) break;  // across Greenwich
    }
    bool fine = true;
    for (const float node : tile.values) fine &= std::fabs(node) < 9999.0f;  // as all real heights are
    tile.complete = fine;
    return tile.values.empty() ? kGeoidNoData : kGeoidOk;
}

int GeoidModel_EGM2008::Grid_interpolation_bilinear(const FileInfo& tile, double longitude, double latitude,
                                                    double& value) {
    return BoxHolds(tile, longitude, latitude) ? BilinearInBox(tile, longitude, latitude, value) : kGeoidOutside;
}

int GeoidModel_EGM2008::Grid_interpolation_bicubic(const FileInfo& tile, double longitude, double latitude,
                                                   double& value) {
    GridCell cell;
    if (!BoxHoldsInner(tile, longitude, latitude) || !PickCell(tile, longitude, latitude, cell)) return kGeoidOutside;
    // The stencil sits one row north of the cell while v counts from the cell: heights in the field have come that way.
    const std::int64_t first = (std::int64_t{cell.j} - 2) * tile.columns + cell.i - 1;
    std::array<float, 16> q{};
    const int code = TakeTileNodes<4>(tile, first, q);
    if (code != kGeoidOk) return code;
    const double u = cell.u / tile.longitudeStep, v = cell.v / tile.latitudeStep;
    value = BicubicSingle(q, static_cast<float>(u), static_cast<float>(v));
    return code;
}

void GeoidModel_EGM2008::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 18, &path);
}

}  // namespace orv
