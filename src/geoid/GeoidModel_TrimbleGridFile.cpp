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

constexpr std::size_t kHeaderBytes = 146;
constexpr std::int32_t kMostTileNodes = 100;

// Header bits. The order of rows has two of them: one tells the reader how rows lie in the file, the other tells the
// interpolation whether row 0 of a tile is the north. Writers set them as they please; both are taken at their word.
constexpr std::uint8_t kWraps = 0x01, kScaled = 0x02, kHasNoData = 0x04, kProjected = 0x20, kByColumns = 0x40;
constexpr std::uint8_t kFileFromSouth = 0x01, kTileFromNorth = 0x02;  // rowOrder
constexpr std::uint8_t kFromWest = 0x01;                              // columnOrder

constexpr std::wstring_view kMissing =
    L"Failed to find selected Trimble Geoid Grid File:\n%s\n"
    L"Download the file from the publisher's site\n"
    L"and copy to folder:\n%s";

double UnitFactorOf(std::uint8_t unit) {
    switch (unit) {
        case 1:
            return 0.001;
        case 2:
            return 0.01;
        case 8:
            return 0.024500050833;  // the files' own idea of it, far from an inch
        case 16:
            return 0.30480061;
        case 32:
            return 0.0254;
        case 64:
            return 0.3048;
        default:
            return 1.0;
    }
}

/// Cells that an interpolation needs on every side; none for the codes that no tile is tested by.
int Margin(std::uint8_t interpolation) {
    switch (interpolation) {
        case 1:
        case 2:
            return 1;
        case 4:
        case 8:
        case 16:
            return 2;
        default:
            return 0;
    }
}

// Place of a position in a tile, counted in the order of its nodes.
bool PickCell(const GeoidModel_TrimbleGridFile::Header& tile, double x, double y, GridCell& cell) {
    const bool fromWest = tile.columnOrder & kFromWest, fromNorth = tile.rowOrder & kTileFromNorth;
    const double along = fromWest ? x - tile.minimumLongitude : tile.maximumLongitude - x;
    const double up = fromNorth ? tile.maximumLatitude - y : y - tile.minimumLatitude;
    if (!FloorIndex(along / tile.longitudeStep, cell.i) || !FloorIndex(up / tile.latitudeStep, cell.j)) return false;
    cell.u = (along - cell.i * tile.longitudeStep) / tile.longitudeStep;
    cell.v = (up - cell.j * tile.latitudeStep) / tile.latitudeStep;
    return true;
}

// The nodes of a file that make up a tile: first and last column and row, and the last of the file.
struct Window {
    std::int32_t c0 = 0, c1 = 0, lastColumn = 0;
    std::int32_t r0 = 0, r1 = 0, lastRow = 0;

    [[nodiscard]] bool Place(const GeoidModel_TrimbleGridFile::Header& file,
                             const GeoidModel_TrimbleGridFile::Header& tile) {
        const auto column = [&](double longitude, std::int32_t& index) {
            return FloorIndex((longitude - file.minimumLongitude) / file.longitudeStep + 0.5, index);
        };
        const auto row = [&](double latitude, std::int32_t& index) {
            return FloorIndex((latitude - file.minimumLatitude) / file.latitudeStep + 0.5, index);
        };
        return column(tile.minimumLongitude, c0) && column(tile.maximumLongitude, c1) &&
               column(file.maximumLongitude, lastColumn) && row(tile.minimumLatitude, r0) &&
               row(tile.maximumLatitude, r1) && row(file.maximumLatitude, lastRow);
    }
};

// Copies runs of nodes from the file into a tile; false when the file, or the tile, is at its end.
class RunReader {
public:
    RunReader(File& source, std::size_t size, std::vector<std::byte>& target)
        : file(source), nodeSize(size), nodes(target) {}
    bool ReadFromFile(std::int64_t fileNode, std::int64_t tileNode, std::int64_t count) {
        const auto size = static_cast<std::int64_t>(nodeSize);
        const auto held = static_cast<std::int64_t>(nodes.size()) / size;
        if (fileNode < 0 || tileNode < 0 || count < 0 || count > held - tileNode) return false;
        const auto run =
            std::span(nodes).subspan(static_cast<std::size_t>(tileNode * size), static_cast<std::size_t>(count * size));
        return ReadAt(file, static_cast<std::uint64_t>(fileNode * size) + kHeaderBytes, run) == run.size();
    }

private:
    File& file;
    std::size_t nodeSize;
    std::vector<std::byte>& nodes;
};

void ReadRows(RunReader& in, const GeoidModel_TrimbleGridFile::Header& file,
              const GeoidModel_TrimbleGridFile::Header& tile, const Window& at) {
    const std::int64_t fileColumns = file.columns, tileColumns = tile.columns;
    // A tile across the seam takes its rows in two parts. The parts meet where the field's files were made to fit:
    // lengths and, going up, the row of the second part are those that the tiles have always been built with.
    const bool split = tile.Wraps() && (at.c0 < 0 || at.c1 > at.lastColumn);
    std::int64_t lengthA = tileColumns;
    if (split) lengthA = at.c0 < 0 ? tileColumns + at.c0 : fileColumns - at.c0;
    lengthA = std::clamp<std::int64_t>(lengthA, 0, tileColumns);
    const std::int64_t lengthB = tileColumns - lengthA;
    std::int64_t start = tile.columnOrder & kFromWest ? at.c0 : std::int64_t{at.lastColumn} - at.c1;
    if (split && start < 0) start += fileColumns;

    const std::int64_t rows = std::int64_t{at.r1} - at.r0 + 1;
    for (std::int64_t n = 0; n < rows; ++n) {
        const bool up = tile.rowOrder & kFileFromSouth;
        const std::int64_t p = up ? at.r0 + n : at.r1 - n;
        const std::int64_t mirrored = at.lastRow - p;
        const std::int64_t row = up ? p : mirrored;
        if (!in.ReadFromFile(start + fileColumns * row, n * tileColumns, lengthA)) return;
        if (lengthB > 0 && !in.ReadFromFile(fileColumns * mirrored, n * tileColumns + lengthA, lengthB)) return;
    }
}

void ReadColumns(RunReader& in, const GeoidModel_TrimbleGridFile::Header& file,
                 const GeoidModel_TrimbleGridFile::Header& tile, const Window& at) {
    const bool fromWest = tile.columnOrder & kFromWest;
    const std::int64_t columns = std::int64_t{at.c1} - at.c0 + 1;
    for (std::int64_t n = 0; n < columns; ++n) {
        const std::int64_t column = fromWest ? at.c0 + n : at.lastColumn - (at.c1 - n);
        const std::int64_t first = fromWest ? at.r0 : std::int64_t{at.lastRow} - at.r1;
        if (!in.ReadFromFile(first + column * file.rows, n * tile.rows, tile.rows)) return;
    }
}

}  // namespace

std::atomic<bool> GeoidModel_TrimbleGridFile::m_bNoFileReported = false;

void GeoidModel_TrimbleGridFile::Header::Read(std::span<const std::byte> bytes) {
    GridReader in(bytes);
    in.Skip(48);  // version and texts
    minimumLatitude = in.Read<double>();
    maximumLatitude = in.Read<double>();
    minimumLongitude = in.Read<double>();
    maximumLongitude = in.Read<double>();
    latitudeStep = in.Read<double>();
    longitudeStep = in.Read<double>();
    rows = in.Read<std::int32_t>();
    columns = in.Read<std::int32_t>();
    in.Skip(16);
    noData = in.Read<double>();
    scale = in.Read<double>();
    in.Skip(2);
    flags = in.Read<std::uint8_t>();
    unit = in.Read<std::uint8_t>();
    interpolation = in.Read<std::uint8_t>();
    dataType = in.Read<std::uint8_t>();
    rowOrder = in.Read<std::uint8_t>();
    columnOrder = in.Read<std::uint8_t>();
    // A grid around the globe wraps, whatever its flags say.
    if (TrimAngle(minimumLongitude) == TrimAngle(maximumLongitude)) flags |= kWraps;
}

std::size_t GeoidModel_TrimbleGridFile::Header::NodeSize() const {
    switch (dataType) {
        case 1:
            return 1;
        case 2:
            return 2;
        case 4:
        case 8:
            return 4;
        case 16:
        case 32:
            return 8;
        default:
            return 0;
    }
}

bool GeoidModel_TrimbleGridFile::FileInfo::GetTileValue(std::int32_t column, std::int32_t row, double& value) const {
    if (header.Wraps()) {
        column %= header.columns;
        if (column < 0) column += header.columns;
    }
    if (column < 0 || column >= header.columns || row < 0 || row >= header.rows) return false;
    const std::int64_t index = header.flags & kByColumns ? std::int64_t{header.rows} * column + row
                                                         : std::int64_t{header.columns} * row + column;
    const std::size_t size = header.NodeSize();
    if (size == 0 || static_cast<std::size_t>(index) >= nodes.size() / size) return false;

    GridReader in(std::span<const std::byte>(nodes).subspan(static_cast<std::size_t>(index) * size, size));
    double node = 0.0;
    switch (header.dataType) {
        case 1:
            node = in.Read<std::int8_t>();
            break;
        case 2:
            node = in.Read<std::int16_t>();
            break;
        case 4:
            node = in.Read<std::int32_t>();
            break;
        case 8:
            node = in.Read<float>();
            break;
        default:
            node = in.Read<double>();
    }
    if (std::isnan(node)) return false;
    if (header.flags & kHasNoData && std::fabs(node - header.noData) < 0.0001) return false;
    value = node * UnitFactorOf(header.unit);
    if (header.flags & kScaled) value *= header.scale;
    return true;
}

bool GeoidModel_TrimbleGridFile::FileInfo::InBounds(double& longitude, double latitude) const {
    const int margin = Margin(header.interpolation);
    if (margin == 0) return true;  // so the first tile answers for the whole grid
    const double aside = margin * header.longitudeStep, down = margin * header.latitudeStep;
    double x = longitude;
    if (header.minimumLongitude + aside > x) x = TrimAngle(x + 360.0);
    if (header.minimumLongitude + aside > x || x > header.maximumLongitude - aside) return false;
    if (header.minimumLatitude + down > latitude || latitude > header.maximumLatitude - down) return false;
    longitude = x;
    return true;
}

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
    std::array<std::byte, kHeaderBytes> raw{};
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
    if (header.flags & kProjected) {
        x = easting;
        y = northing;
    }
    if (!std::isfinite(x) || !std::isfinite(y)) return Answer(kGeoidOutside);

    auto tile = tiles.Find([&](const FileInfo& held) { return held.InBounds(x, y); });
    if (!tile) tile = tiles.Add([&] { return MakeTile(x, y); });
    if (!tile) return Answer(kGeoidOutside);

    int code = kGeoidOutside;
    double height = 0.0;
    switch (header.interpolation) {
        case 1:
        case 2:
        case 32:
            code = Grid_interpolation_bilinear(*tile, x, y, height);
            break;
        case 4:
        case 8:
        case 16:
            code = Grid_interpolation_bicubic(*tile, x, y, height);
            break;
        default:
            return Answer(GeoidReason::NotSupported);
    }
    if (code != kGeoidOk) return tile->error.empty() ? Answer(code) : Answer(GeoidReason::NoFile);
    value = height / unitFactor;
    return true;
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
    const double width = (tile.columns - 1) * header.longitudeStep, height = (tile.rows - 1) * header.latitudeStep;
    tile.minimumLongitude = std::floor((x - header.minimumLongitude) / header.longitudeStep) * header.longitudeStep +
                            header.minimumLongitude - header.longitudeStep * (tile.columns / 2);
    tile.minimumLatitude = std::floor((y - header.minimumLatitude) / header.latitudeStep) * header.latitudeStep +
                           header.minimumLatitude - header.latitudeStep * (tile.rows / 2);
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
    ReadFile(*made);  // a tile that couldn't be read stays, so that the file isn't tried at every position
    return made;
}

int GeoidModel_TrimbleGridFile::ReadFile(FileInfo& tile) const {
    std::unique_ptr<File> file;
    if (!hasFolder || Files().Open(path, OpenMode{}, file) != FsResult::Ok) {
        tile.error = L"Failed to open file " + path;
        return kGeoidNoData;
    }
    const std::size_t size = tile.header.NodeSize();
    if (size == 0) {
        tile.error = L"Invalid data type " + path;
        return kGeoidNoData;
    }
    tile.nodes.resize(static_cast<std::size_t>(tile.header.columns) * static_cast<std::size_t>(tile.header.rows) *
                      size);
    Window at;
    if (!at.Place(header, tile.header)) return kGeoidNoData;
    RunReader in(*file, size, tile.nodes);
    if (tile.header.flags & kByColumns) {
        ReadColumns(in, header, tile.header, at);
    } else {
        ReadRows(in, header, tile.header, at);
    }
    return kGeoidOk;
}

int GeoidModel_TrimbleGridFile::Grid_interpolation_bilinear(const FileInfo& tile, double x, double y, double& value) {
    const Header& h = tile.header;
    const bool across = h.minimumLongitude + h.longitudeStep <= x && x <= h.maximumLongitude - h.longitudeStep;
    const bool down = h.minimumLatitude + h.latitudeStep <= y && y <= h.maximumLatitude - h.latitudeStep;
    GridCell cell;
    if (!(across || h.Wraps()) || !down || !PickCell(h, x, y, cell)) return kGeoidOutside;
    std::array<double, 4> q{};
    for (int n = 0; n < 4; ++n) {
        // No data and outside are one code here.
        if (!tile.GetTileValue(cell.i + n % 2, cell.j + n / 2, q[static_cast<std::size_t>(n)])) return kGeoidOutside;
    }
    value = Bilinear(q, cell.u, cell.v);
    return kGeoidOk;
}

int GeoidModel_TrimbleGridFile::Grid_interpolation_bicubic(const FileInfo& tile, double x, double y, double& value) {
    const Header& h = tile.header;
    const bool across = h.minimumLongitude + 2 * h.longitudeStep < x && x < h.maximumLongitude - 2 * h.longitudeStep;
    const bool down = h.minimumLatitude + 2 * h.latitudeStep < y && y < h.maximumLatitude - 2 * h.latitudeStep;
    GridCell cell;
    if (!(across || h.Wraps()) || !down || !PickCell(h, x, y, cell)) return kGeoidOutside;
    std::array<double, 16> q{};
    for (int n = 0; n < 16; ++n) {
        const bool there = tile.GetTileValue(cell.i - 1 + n % 4, cell.j - 1 + n / 4, q[static_cast<std::size_t>(n)]);
        if (!there) return kGeoidOutside;
    }
    value = KernelSum(q, KernelWeights(cell.v), KernelWeights(cell.u));
    return kGeoidOk;
}

void GeoidModel_TrimbleGridFile::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 26, &path);
}

}  // namespace orv
