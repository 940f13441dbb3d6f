#include "geoid/GeoidModel_TrimbleGridFile.h"

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

constexpr std::int32_t kMostTileNodes = 100;

constexpr std::wstring_view kMissing =
    L"Failed to find selected Trimble Geoid Grid File:\n%s\n"
    L"Download the file from the publisher's site\n"
    L"and copy to folder:\n%s";

// Place of a position in a tile, counted in the order of its nodes.
[[gnu::always_inline]] inline bool PickCell(const GgfTile& from, double x, double y, GridCell& cell) {
    const GgfHeader& tile = from.header;
    const bool fromWest = tile.columnOrder & kGgfFromWest, fromNorth = tile.rowOrder & kGgfTileFromNorth;
    const double along = fromWest ? x - tile.minimumLongitude : tile.maximumLongitude - x;
    const double up = fromNorth ? tile.maximumLatitude - y : y - tile.minimumLatitude;
    if (!FloorQuotient(along, tile.longitudeStep, from.columnsPerUnit, cell.i) ||
        !FloorQuotient(up, tile.latitudeStep, from.rowsPerUnit, cell.j)) {
        return false;
    }
    cell.u = (along - cell.i * tile.longitudeStep) * from.columnsPerUnit;
    cell.v = (up - cell.j * tile.latitudeStep) * from.rowsPerUnit;
    return true;
}

// For a position that lies a cell or more within the tile.
[[gnu::always_inline]] inline bool BilinearInside(const GgfTile& tile, double x, double y, double& value) {
    GridCell cell;
    if (!PickCell(tile, x, y, cell)) return false;
    if (tile.HasPlain<2>(cell.i, cell.j)) [[likely]] {
        const double* const lower = tile.At(cell.i, cell.j);
        const double* const upper = lower + tile.header.columns;
        value = Bilinear(std::array{lower[0], lower[1], upper[0], upper[1]}, cell.u, cell.v);
        return true;
    }
    std::array<double, 4> q{};
    if (!tile.TakeBlock<2>(cell.i, cell.j, q)) return false;
    value = Bilinear(q, cell.u, cell.v);
    return true;
}

}  // namespace

std::atomic<bool> GeoidModel_TrimbleGridFile::m_bNoFileReported = false;

bool GeoidModel_TrimbleGridFile::SetFileName(std::wstring name) {
    fileName = std::move(name);
    tiles.Clear();
    header = {};
    error.clear();
    hasFolder = GeoidPath(kLocationCommon, fileName, path);

    std::unique_ptr<File> file;
    if (!hasFolder || Files().Open(path, OpenMode{}, file) != FsResult::Ok) {
        if (!(hasFolder && FileExists(path)) && !m_bNoFileReported.exchange(true)) {
            Notify(Notice::Message, FormatTexts(kMissing, {fileName, GeoidFolder(kLocationCommon)}));
        }
        error = L"Failed to open file " + path;
        return Answer(GeoidReason::NoFile);
    }
    std::array<std::byte, kGgfHeaderBytes> raw{};
    const std::size_t got = ReadAt(*file, 0, raw);
    header.Read(std::span<const std::byte>(raw).first(got));
    return Answer(kGeoidOk);
}

bool GeoidModel_TrimbleGridFile::Calculate(double latitude, double longitude, double easting, double northing,
                                           double& value, std::wstring&) {
    if (header.columns <= 0 || header.rows <= 0) {
        return Answer(error.empty() ? GeoidReason::BadHeader : GeoidReason::NoFile);
    }
    double x = modgeo(longitude), y = modgeo(latitude);
    if (header.flags & kGgfProjected) {
        x = easting;
        y = northing;
    }
    if (!std::isfinite(x) || !std::isfinite(y)) return Answer(kGeoidOutside);

    const FileInfo* const tile = tiles.Find([&](const FileInfo& held) { return held.InBounds(x, y); });
    if (tile) [[likely]] {
        double height = 0.0;
        // The first two codes answer from tiles within just the margin that a bilinear height needs.
        const bool plain =
            (header.interpolation == 1 || header.interpolation == 2) && BilinearInside(*tile, x, y, height);
        const bool given = plain ? Deliver(kGeoidOk, height, value) : HeightFrom(*tile, x, y, value);
        tiles.Use(*tile);
        return given;
    }
    return FromNewTile(x, y, value);
}

bool GeoidModel_TrimbleGridFile::FromNewTile(double x, double y, double& value) {
    const FileInfo* const made = tiles.Add([&] { return MakeTile(x, y); });
    return made ? HeightFrom(*made, x, y, value) : Answer(kGeoidOutside);
}

bool GeoidModel_TrimbleGridFile::HeightFrom(const FileInfo& tile, double x, double y, double& value) const {
    int code = kGeoidOutside;
    double height = 0.0;
    switch (header.interpolation) {
        case 1:
        case 2:
        case 32:
            code = Grid_interpolation_bilinear(tile, x, y, height);
            break;
        case 4:
        case 8:
        case 16:
            code = Grid_interpolation_bicubic(tile, x, y, height);
            break;
        default:
            return Answer(GeoidReason::NotSupported);
    }
    if (code != kGeoidOk && !tile.error.empty()) {
        return Answer(header.NodeSize() == 0 ? GeoidReason::BadHeader : GeoidReason::NoFile);
    }
    return Deliver(code, height, value);
}

std::wstring GeoidModel_TrimbleGridFile::ErrorText() const {
    if (!error.empty()) return error;
    for (const auto& tile : tiles.List()) {
        if (!tile->error.empty()) return tile->error;
    }
    return {};
}

TileCache<GeoidModel_TrimbleGridFile::FileInfo>::Pointer GeoidModel_TrimbleGridFile::MakeTile(double& x,
                                                                                              double y) const {
    // Projected coordinates come through here too, so a projected grid answers between -180 and 180 only.
    x = modgeo(x);
    if (header.minimumLongitude > x) x += 360.0;
    const bool inside = x >= header.minimumLongitude && x <= header.maximumLongitude &&  //
                        y >= header.minimumLatitude && y <= header.maximumLatitude;
    if (!inside) return nullptr;

    auto made = std::make_shared<FileInfo>();
    Header& tile = made->header;
    tile = header;
    tile.columns = std::min(header.columns, kMostTileNodes);
    tile.rows = std::min(header.rows, kMostTileNodes);
    const int westwards = tile.columns / 2, southwards = tile.rows / 2;
    const double width = (tile.columns - 1) * header.longitudeStep, height = (tile.rows - 1) * header.latitudeStep;
    tile.minimumLongitude = std::floor((x - header.minimumLongitude) / header.longitudeStep) * header.longitudeStep +
                            header.minimumLongitude - header.longitudeStep * westwards;
    tile.minimumLatitude = std::floor((y - header.minimumLatitude) / header.latitudeStep) * header.latitudeStep +
                           header.minimumLatitude - header.latitudeStep * southwards;
    tile.maximumLongitude = width + tile.minimumLongitude;
    tile.maximumLatitude = height + tile.minimumLatitude;
    if (tile.maximumLatitude > header.maximumLatitude) {
        tile.maximumLatitude = header.maximumLatitude;
        tile.minimumLatitude = tile.maximumLatitude - height;
    }
    if (tile.minimumLatitude < header.minimumLatitude) {
        tile.minimumLatitude = header.minimumLatitude;
        tile.maximumLatitude = tile.minimumLatitude + height;
    }
    if (!header.Wraps() && tile.maximumLongitude > header.maximumLongitude) {
        tile.maximumLongitude = header.maximumLongitude;
        tile.minimumLongitude = tile.maximumLongitude - width;
    }
    if (!header.Wraps() && tile.minimumLongitude < header.minimumLongitude) {
        tile.minimumLongitude = header.minimumLongitude;
        tile.maximumLongitude = tile.minimumLongitude + width;
    }
    made->SetReach();
    ReadFile(*made);  // a tile that couldn't be read stays, so that the file isn't tried at every position
    return made;
}

int GeoidModel_TrimbleGridFile::ReadFile(FileInfo& tile) const {
    std::unique_ptr<File> file;
    if (!hasFolder || Files().Open(path, OpenMode{}, file) != FsResult::Ok) {
        tile.error = L"Failed to open file " + path;
        return kGeoidNoData;
    }
    if (tile.header.NodeSize() == 0) {
        tile.error = L"Invalid data type " + path;
        return kGeoidNoData;
    }
    return tile.Read(*file, header) ? kGeoidOk : kGeoidNoData;
}

int GeoidModel_TrimbleGridFile::Grid_interpolation_bilinear(const FileInfo& tile, double x, double y, double& value) {
    const Header& h = tile.header;
    const bool across = h.minimumLongitude + h.longitudeStep <= x && x <= h.maximumLongitude - h.longitudeStep;
    const bool down = h.minimumLatitude + h.latitudeStep <= y && y <= h.maximumLatitude - h.latitudeStep;
    // No data and outside are one code here.
    return (across || h.Wraps()) && down && BilinearInside(tile, x, y, value) ? kGeoidOk : kGeoidOutside;
}

int GeoidModel_TrimbleGridFile::Grid_interpolation_bicubic(const FileInfo& tile, double x, double y, double& value) {
    const Header& h = tile.header;
    const bool across = h.minimumLongitude + 2 * h.longitudeStep < x && x < h.maximumLongitude - 2 * h.longitudeStep;
    const bool down = h.minimumLatitude + 2 * h.latitudeStep < y && y < h.maximumLatitude - 2 * h.latitudeStep;
    GridCell cell;
    if (!(across || h.Wraps()) || !down || !PickCell(tile, x, y, cell)) return kGeoidOutside;
    std::array<double, 16> q{};
    if (!tile.TakeBlock<4>(std::int64_t{cell.i} - 1, std::int64_t{cell.j} - 1, q)) return kGeoidOutside;
    value = KernelSum(q, KernelWeights(cell.v), KernelWeights(cell.u));
    return kGeoidOk;
}

void GeoidModel_TrimbleGridFile::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 26, &path);
}

}  // namespace orv
