#include "geoid/GeoidModel_RDNAP.h"

#include "core/ConfigKeys.h"
#include "geoid/GridReader.h"

namespace orv {

namespace {

using FileInfo = GeoidModel_RDNAP::FileInfo;

FileInfo ReadGrid(std::wstring_view relative) {
    FileInfo info;
    GridFileInfo file;
    std::string bytes;
    info.opened = ReadGridFile(kLocationGeoidModels, relative, file, bytes);
    info.fileName = file.fileName;
    if (info.opened) {
        info.headerStatus = GeoidModel_RDNAP::ReadHeaher(AsBytes(bytes), info);
        info.bodyStatus = GeoidModel_RDNAP::ReadBody(AsBytes(bytes), info);
        info.Examine();
    } else {
        info.error = file.error;  // in the place of the header's "does not exist"
    }
    return info;
}

}  // namespace

GeoidModel_RDNAP::GeoidModel_RDNAP()
    : geoidGrid(ReadGrid(L"netherlands\\nlgeo04.grd")),
      xGrid(ReadGrid(L"netherlands\\x2c.grd")),
      yGrid(ReadGrid(L"netherlands\\y2c.grd")) {}

int GeoidModel_RDNAP::ReadHeaher(std::span<const std::byte> bytes, FileInfo& info) {
    GridReader in(bytes);
    std::string marker;
    for (int i = 0; i < 4; ++i) marker += in.Read<char>();
    if (marker != "DSBB") {
        info.error = info.fileName + L" is not a valid grd file";
        return kGeoidBadHeader;
    }
    info.nx = in.Read<std::int16_t>();
    info.ny = in.Read<std::int16_t>();
    info.xlo = in.Read<double>();
    info.xhi = in.Read<double>();
    info.ylo = in.Read<double>();
    info.yhi = in.Read<double>();
    info.zlo = in.Read<double>();
    info.zhi = in.Read<double>();
    info.SetSteps();
    return kGeoidOk;
}

int GeoidModel_RDNAP::ReadBody(std::span<const std::byte> bytes, FileInfo& info) {
    GridReader in(bytes);
    in.Seek(56);
    info.values.clear();
    info.values.reserve(static_cast<std::size_t>(in.Remaining() / sizeof(float) + 1));
    in.ReadRun(in.Remaining() / sizeof(float), info.values);
    if (info.values.empty()) {
        info.error = L"No data in file " + info.fileName;
        return kGeoidNoData;
    }
    // The last node counts twice: a stencil that reaches just past the grid finds it.
    info.values.push_back(info.values.back());
    return kGeoidOk;
}

int GeoidModel_RDNAP::Grid_interpolation(const FileInfo& grid, double x, double y, double& result) {
    GridCell cell;
    std::int64_t k = 0;
    if (!grid.Pick(x, y, cell, k)) return kGeoidOutside;
    std::array<float, 16> nodes{};
    const int code = grid.Take(NodeBlock<4>{k - grid.nx - 1, grid.nx}, nodes);
    if (code != kGeoidOk) return code;
    // The row weights are those of the distance from the north, in reverse.
    result = KernelSum(nodes, Reversed(KernelWeights(1 - cell.v)), KernelWeights(cell.u));
    return kGeoidOk;
}

bool GeoidModel_RDNAP::Calculate(double x, double y, double& dx, double& dy, bool) {
    x *= unitFactor;
    y *= unitFactor;
    double xCorrection = 0.0, yCorrection = 0.0;
    if (const int code = Grid_interpolation(xGrid, x, y, xCorrection); code != kGeoidOk) {
        return xGrid.Usable() ? Answer(code) : Answer(xGrid.Reason());
    }
    if (const int code = Grid_interpolation(yGrid, x, y, yCorrection); code != kGeoidOk) {
        return yGrid.Usable() ? Answer(code) : Answer(yGrid.Reason());
    }
    return DeliverShift(-xCorrection / unitFactor, -yCorrection / unitFactor, dx, dy);
}

bool GeoidModel_RDNAP::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (!geoidGrid.Usable()) return Answer(geoidGrid.Reason());
    double height = 0.0;
    const int code = Grid_interpolation(geoidGrid, longitude, latitude, height);
    return Deliver(code, height, value);
}

bool GeoidModel_RDNAP2008::Calculate(double latitude, double longitude, double easting, double northing, double& value,
                                     std::wstring& text) {
    if (!GeoidModel_RDNAP::Calculate(latitude, longitude, easting, northing, value, text)) return false;
    // Divided once by the call above and once more here: with any unit but metres the height is scaled twice and the
    // constant once. Projects in feet have lived with these heights.
    value = (value - 0.0088) / unitFactor;
    return true;
}

// All Dutch models of this family are dumped under the key of 2008.
void GeoidModel_RDNAP::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOpening(stream, indent, 13);
    DumpFileBlock(stream, indent, L"fileinfogrid", geoidGrid.fileName);
    DumpFileBlock(stream, indent, L"fileinfodx", xGrid.fileName);
    DumpFileBlock(stream, indent, L"fileinfody", yGrid.fileName);
    DumpClosing(stream, indent);
}

}  // namespace orv
