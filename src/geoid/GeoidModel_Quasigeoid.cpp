#include "geoid/GeoidModel_Quasigeoid.h"

#include "core/ConfigKeys.h"
#include "geoid/GridMath.h"

namespace orv {

namespace {

// Degrees, minutes and ten-thousandths of a second.
double ReadAngle(GridReader& in) {
    const double degrees = in.Read<std::int32_t>();
    const double minutes = in.Read<std::int32_t>();
    const double tenThousandths = in.Read<std::int32_t>();
    return minutes / 60.0 + degrees + tenThousandths / 36000000.0;
}

float Metres(std::int32_t millimetres) {
    return static_cast<float>(millimetres) / 1000.0f;
}

// Values from 9999.0 to just below 10000.0 metres mark no data.
int TestNode(std::int32_t node) {
    int whole = 0;
    if (!TruncToInt(Metres(node), whole)) return kGeoidOutside;
    return whole == 9999 ? kGeoidNoData : kGeoidOk;
}

template <std::size_t Side>
int TakeMetres(const QuasigeoidGrid& grid, std::int64_t lowest, const NodeBlock<Side>& at,
               std::array<float, Side * Side>& metres) {
    std::array<std::int32_t, Side * Side> nodes{};
    const int code = TakeNodes(grid.values, lowest, at, TestNode, nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) metres[i] = Metres(nodes[i]);
    return code;
}

bool PickCell(const QuasigeoidGrid& grid, double longitude, double latitude, GridCell& cell) {
    if (!FloorIndex((longitude - grid.minimumLongitude) / grid.longitudeStep, cell.i)) return false;
    if (!FloorIndex((grid.maximumLatitude - latitude) / grid.latitudeStep, cell.j)) return false;
    cell.u = (longitude - cell.i * grid.longitudeStep - grid.minimumLongitude) / grid.longitudeStep;
    cell.v = (grid.maximumLatitude - latitude - cell.j * grid.latitudeStep) / grid.latitudeStep;
    return true;
}

}  // namespace

int QuasigeoidGrid::ReadFile(std::span<const std::byte> bytes) {
    *this = {};
    GridReader in(bytes);
    minimumLatitude = ReadAngle(in);
    maximumLatitude = ReadAngle(in);
    minimumLongitude = ReadAngle(in);
    maximumLongitude = ReadAngle(in);
    latitudeStep = ReadAngle(in);
    longitudeStep = ReadAngle(in);
    if (latitudeStep == 0.0 || longitudeStep == 0.0) return kGeoidBadHeader;
    if (!TruncToInt((maximumLongitude - minimumLongitude) / longitudeStep + 1.5, columns) ||
        !TruncToInt((maximumLatitude - minimumLatitude) / latitudeStep + 1.5, rows)) {
        return kGeoidBadHeader;
    }
    in.ReadRun(static_cast<std::uint64_t>(NodeCount(rows, columns)), values);
    return values.empty() ? kGeoidNoData : kGeoidOk;
}

int QuasigeoidGrid::Grid_interpolation_bilinear(double longitude, double latitude, double& value) const {
    const bool inside = longitude >= minimumLongitude + longitudeStep &&
                        longitude <= maximumLongitude - longitudeStep && latitude >= minimumLatitude + latitudeStep &&
                        latitude <= maximumLatitude - latitudeStep;
    GridCell cell;
    if (!inside || !PickCell(*this, longitude, latitude, cell)) return kGeoidOutside;
    const std::int64_t k = std::int64_t{cell.j} * columns + cell.i;
    std::array<float, 4> q{};
    const int code = TakeMetres(*this, 0, NodeBlock<2>{k, columns}, q);
    if (code == kGeoidOk) value = BilinearSingleDifferences(q, cell.u, cell.v);
    return code;
}

int QuasigeoidGrid::Grid_interpolation_bicubic(double longitude, double latitude, double& value) const {
    const bool inside = minimumLongitude + 2 * longitudeStep < longitude &&
                        longitude < maximumLongitude - 2 * longitudeStep &&
                        minimumLatitude + 2 * latitudeStep < latitude && latitude < maximumLatitude - 2 * latitudeStep;
    GridCell cell;
    if (!inside || !PickCell(*this, longitude, latitude, cell)) return kGeoidOutside;
    // The stencil sits one row north of the cell while v counts from the cell: heights in the field have come that way.
    const std::int64_t first = (std::int64_t{cell.j} - 2) * columns + cell.i - 1;
    std::array<float, 16> q{};
    const int code = TakeMetres(*this, 1, NodeBlock<4>{first, columns}, q);
    if (code == kGeoidOk) value = BicubicSingle(q, static_cast<float>(cell.u), static_cast<float>(cell.v));
    return code;
}

template <int KeyIndex>
bool GeoidModel_Quasigeoid<KeyIndex>::SetFileName(std::wstring name) {
    fileName = std::move(name);
    grid = {};
    std::string bytes;
    if (ReadGridFile(kLocationCommon, fileName, info, bytes)) {
        info.status = grid.ReadFile(AsBytes(bytes));
        if (info.status == kGeoidNoData) info.NoDataInFile();
    }
    return Answer(info.Reason());
}

template <int KeyIndex>
bool GeoidModel_Quasigeoid<KeyIndex>::Calculate(double latitude, double longitude, double, double, double& value,
                                                std::wstring&) {
    if (info.status != kGeoidOk) return Answer(info.Reason());
    int code = kGeoidOk;
    double height = value;  // stays the caller's own where the method is none
    if (interpolationMethod == 0) code = grid.Grid_interpolation_bilinear(longitude, latitude, height);
    if (interpolationMethod == 1) code = grid.Grid_interpolation_bicubic(longitude, latitude, height);
    return Deliver(code, height, value);
}

template <int KeyIndex>
void GeoidModel_Quasigeoid<KeyIndex>::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOneFile(stream, indent, KeyIndex, &info.fileName);
}

template class GeoidModel_Quasigeoid<16>;
template class GeoidModel_Quasigeoid<20>;

}  // namespace orv
