#include "geoid/GravsoftGrid.h"

#include "core/ConfigKeys.h"

namespace orv {

namespace {

constexpr std::int32_t kMarker = 777;
constexpr std::size_t kRowUnit = 16;  // rows are padded with floats to a multiple of it

}  // namespace

void GravsoftGrid::Read(std::wstring_view relative, const Rules& rules) {
    frame = {};
    values.clear();
    std::string bytes;
    if (ReadGridFile(kLocationGeoidModels, relative, info, bytes)) info.status = ReadFile(AsBytes(bytes), rules);
}

int GravsoftGrid::ReadFile(std::span<const std::byte> bytes, const Rules& rules) {
    frame = {};
    values.clear();
    GridReader in(bytes);
    if (in.Read<std::int32_t>() != kMarker && rules.checksMarker) return kGeoidNoData;
    frame.south = in.Read<double>();
    frame.north = in.Read<double>();
    frame.west = in.Read<double>();
    frame.east = in.Read<double>();
    frame.latitudeStep = in.Read<double>();
    frame.longitudeStep = in.Read<double>();
    if (frame.latitudeStep == 0.0 || frame.longitudeStep == 0.0) return kGeoidBadHeader;
    if (!frame.CountNodes(rules.added)) return kGeoidBadHeader;

    in.Seek(64);
    values.reserve(static_cast<std::size_t>(in.NodesLeft(NodeCount(frame.rows, frame.columns), sizeof(float))));
    for (int row = 0; row < frame.rows && in.Remaining() > 0; ++row) {
        const std::uint64_t count = in.NodesLeft(frame.columns, sizeof(float));
        in.ReadRun(count, values);
        in.Skip((kRowUnit - count % kRowUnit) % kRowUnit * sizeof(float));
    }
    return values.empty() ? info.NoDataInFile() : kGeoidOk;
}

int GravsoftGrid::Grid_interpolation(double longitude, double latitude, const Rules& rules, double& result) const {
    GridCell cell;
    if (!frame.HoldsInner(longitude, latitude) || !frame.Pick(longitude, latitude, cell)) return kGeoidOutside;
    const auto test = [&rules](double node) {
        return node == 9999.0 || (rules.zeroIsNoData && node == 0.0) ? kGeoidNoData : kGeoidOk;
    };
    std::array<float, 4> q{};
    const auto corners = rules.northFirst ? frame.CornersNorthFirst(cell) : frame.CornersSouthFirst(cell);
    const int code = TakeNodes(values, 1, corners, test, q);
    if (code == kGeoidOk) result = Bilinear(q, cell.u, cell.v);
    return code;
}

}  // namespace orv
