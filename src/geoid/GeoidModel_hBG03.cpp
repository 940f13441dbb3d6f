#include "geoid/GeoidModel_hBG03.h"

#include "core/ConfigKeys.h"
#include "geoid/GridReader.h"
#include "geoid/TextScan.h"

namespace orv {

namespace {

// The files were made for a line buffer of this size: a longer line goes on as the next node.
constexpr std::size_t kLongestLine = 49;

struct Layout {
    std::wstring_view file;
    std::size_t column, width;  // where a line holds its value
    std::int16_t nx, ny;
    double xlo, xhi, ylo, yhi;
};
constexpr Layout kHeights = {L"belgium\\hBG03.grd", 20, 8, 361, 241, 1.0, 7.0, 48.5, 52.5};
constexpr Layout kX = {L"belgium\\xyGridLb72.grd", 25, 10, 141, 116, 20000.0, 300000.0, 20000.0, 250000.0};
constexpr Layout kY = {L"belgium\\xyGridLb72.grd", 35, 10, 141, 116, 20000.0, 300000.0, 20000.0, 250000.0};

BoundedGrid ReadGrid(const Layout& layout) {
    BoundedGrid grid;
    grid.headerStatus = kGeoidOk;
    grid.nx = layout.nx;
    grid.ny = layout.ny;
    grid.xlo = layout.xlo;
    grid.xhi = layout.xhi;
    grid.ylo = layout.ylo;
    grid.yhi = layout.yhi;
    grid.SetSteps();
    grid.zlo = -7e38;
    grid.zhi = 7e38;

    GridFileInfo file;
    std::string text;
    grid.opened = ReadGridFile(kLocationGeoidModels, layout.file, file, text);
    grid.fileName = file.fileName;
    if (grid.opened) {
        grid.values = GeoidModel_hBG03::ReadBody(text, layout.column, layout.width);
        grid.Examine();
        grid.bodyStatus = grid.values.empty() ? file.NoDataInFile() : kGeoidOk;
    }
    grid.error = file.error;
    return grid;
}

}  // namespace

GeoidModel_hBG03::GeoidModel_hBG03() : heightGrid(ReadGrid(kHeights)), xGrid(ReadGrid(kX)), yGrid(ReadGrid(kY)) {}

std::vector<float> GeoidModel_hBG03::ReadBody(std::string_view text, std::size_t column, std::size_t width) {
    std::vector<float> values;
    values.reserve(text.size() / kLongestLine + 1);
    const bool endsInLine = !text.empty() && text.back() == '\n';
    bool scanned = false;
    float value = 0.0f;
    std::string_view line;
    while (NextLine(text, line)) {
        do {
            const std::string_view part = line.substr(0, kLongestLine);
            line.remove_prefix(part.size());
            // A line without a value repeats the one before.
            if (part.size() > column && TextScan(part.substr(column)).Float(value, width)) scanned = true;
            values.push_back(value);
        } while (!line.empty());
    }
    if (!scanned) return {};
    // The end of the file behind the last line counts as one more line.
    if (endsInLine) values.push_back(value);
    return values;
}

int GeoidModel_hBG03::Grid_interpolation(const FileInfo& grid, double x, double y, double& result) {
    GridCell cell;
    std::int64_t k = 0;
    if (!grid.Pick(x, y, cell, k)) return kGeoidOutside;
    std::array<float, 4> q{};
    const int code = grid.Take(NodeBlock<2>{k, grid.nx}, q);
    if (code == kGeoidOk) result = BilinearSingleDifferences(q, cell.u, cell.v);
    return code;
}

bool GeoidModel_hBG03::Calculate(double x, double y, double& dx, double& dy, bool) {
    x *= unitFactor;
    y *= unitFactor;
    double xCorrection = 0.0, yCorrection = 0.0;
    int code = Grid_interpolation(xGrid, x, y, xCorrection);
    if (code == kGeoidOk) code = Grid_interpolation(yGrid, x, y, yCorrection);
    if (code != kGeoidOk) return xGrid.Usable() ? Answer(code) : Answer(xGrid.Reason());
    return DeliverShift(xCorrection / unitFactor, yCorrection / unitFactor, dx, dy);
}

bool GeoidModel_hBG03::Calculate(double latitude, double longitude, double, double, double& value, std::wstring&) {
    if (!heightGrid.Usable()) return Answer(heightGrid.Reason());
    double height = 0.0;
    const int code = Grid_interpolation(heightGrid, longitude, latitude, height);
    return Deliver(code, height, value);
}

// The y grid comes from the same file as the x grid and has no block of its own.
void GeoidModel_hBG03::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOpening(stream, indent, 5);
    DumpFileBlock(stream, indent, L"fileinfogrid", heightGrid.fileName);
    DumpFileBlock(stream, indent, L"fileinfodx", xGrid.fileName);
    DumpClosing(stream, indent);
}

}  // namespace orv
