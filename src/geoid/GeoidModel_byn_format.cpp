#include "geoid/GeoidModel_byn_format.h"

#include "core/ConfigKeys.h"

namespace orv {

bool GeoidModel_byn_format::SetFileName(std::wstring name) {
    fileName = std::move(name);
    frame = {};
    values.clear();
    std::string bytes;
    if (ReadGridFile(kLocationCommon, fileName, info, bytes)) info.status = ReadFile(AsBytes(bytes));
    return Answer(info.Reason());
}

int GeoidModel_byn_format::ReadFile(std::span<const std::byte> bytes) {
    GridReader in(bytes);
    frame.south = in.Read<std::int32_t>() / 3600.0;
    frame.north = in.Read<std::int32_t>() / 3600.0;
    frame.west = in.Read<std::int32_t>() / 3600.0;
    frame.east = in.Read<std::int32_t>() / 3600.0;
    frame.latitudeStep = in.Read<std::int16_t>() / 3600.0;
    frame.longitudeStep = in.Read<std::int16_t>() / 3600.0;
    in.Skip(2);
    const auto type = in.Read<std::int16_t>();
    const auto factor = in.Read<double>();
    nodeSize = in.Read<std::int16_t>();
    if (type != 1 || frame.latitudeStep == 0.0 || frame.longitudeStep == 0.0) return kGeoidBadHeader;
    if (!frame.CountNodes(1.0)) return kGeoidBadHeader;

    in.Seek(80);
    const bool wide = nodeSize == 4;
    const std::uint64_t count = in.NodesLeft(NodeCount(frame.rows, frame.columns), wide ? 4 : 2);
    values.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) {
        // Only the narrow form has a mark for no data; a wide node that comes to 9999.0 is taken for one all the same.
        const std::int32_t node = wide ? in.Read<std::int32_t>() : in.Read<std::int16_t>();
        values.push_back(!wide && node == 32767 ? 9999.0f : static_cast<float>(node / factor));
    }
    return values.empty() ? info.NoDataInFile() : kGeoidOk;
}

int GeoidModel_byn_format::Grid_interpolation(double longitude, double latitude, double& result) const {
    GridCell cell;
    if (!frame.Pick(longitude, latitude, cell)) return kGeoidOutside;
    if (cell.i < 0 || cell.i >= frame.columns - 1 || cell.j < 0 || cell.j >= frame.rows - 1) return kGeoidOutside;
    std::array<float, 4> q{};
    const int code = TakeNodes(values, 0, frame.CornersNorthFirst(cell), Is9999, q);
    if (code == kGeoidOk) result = Bilinear(q, cell.u, cell.v);
    return code;
}

bool GeoidModel_byn_format::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (info.status != kGeoidOk) return Answer(info.Reason());
    double height = 0.0;
    const int code = Grid_interpolation(longitude, latitude, height);
    return Deliver(code, height, value);
}

void GeoidModel_byn_format::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, 23, &info.fileName);
}

}  // namespace orv
