#include "geoid/GeoidModel_HARN.h"

#include <algorithm>
#include <cmath>

#include "core/ConfigKeys.h"
#include "geoid/GridMath.h"
#include "platform/notify/Notices.h"
#include "platform/os/Clock.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

// Shift in seconds at a place that both grids share; each has columns of its own. The outer edges belong to a grid:
// there the nodes beyond have no weight, and there are none.
bool ShiftAt(const GtxGrid& grid, const GridCell& cell, double& seconds) {
    // An index may promise more than its grid covers.
    if (cell.i < 0 || cell.i >= grid.columns || cell.j < 0 || cell.j >= grid.rows) return false;
    const double u = cell.i >= grid.columns - 1 ? 0.0 : cell.u, v = cell.j >= grid.rows - 1 ? 0.0 : cell.v;
    const std::int64_t k = std::int64_t{grid.columns} * cell.j + cell.i;
    const std::int64_t right = u == 0.0 ? 0 : 1, up = v == 0.0 ? 0 : grid.columns;
    std::array<float, 4> nodes{};
    const auto any = [](float) { return kGeoidOk; };
    if (TakeNodes(grid.values, 0, std::array{k, k + right, k + up, k + up + right}, any, nodes) != kGeoidOk)
        return false;
    const double q0 = nodes[0], q1 = nodes[1], q2 = nodes[2], q3 = nodes[3];
    seconds = (q1 - q0) * u + q0 + (q2 - q0) * v + (q3 - q1 - q2 + q0) * u * v;
    return true;
}

}  // namespace

bool GeoidModel_HARN::Init(OrvGeoCoordSysBase* coordSys) {
    GeoidModel::Init(coordSys);
    const std::wstring folder = GeoidFolder(kLocationCommon);
    if (folder.empty()) return Answer(GeoidReason::NoFile);
    std::wstring message;
    if (!CheckGeoidModelFiles(folder, message, true)) Notify(Notice::Message, message);
    return true;
}

bool GeoidModel_HARN::CheckGeoidModelFiles(const std::wstring& folder, std::wstring& message, bool withDropHint) {
    const std::wstring tree = WithSeparator(ToNativePath(folder)) + L"vdatum" + kPathSeparator;
    const std::wstring core = tree + L"core" + kPathSeparator;
    const std::wstring longitudeIndex = core + L"hpgnlo.inf", latitudeIndex = core + L"hpgnla.inf";
    const bool hasLongitudes = ReadInfFile(tree, longitudeIndex, longitudes);
    const bool hasLatitudes = ReadInfFile(tree, latitudeIndex, latitudes);
    indexFile = hasLongitudes ? latitudeIndex : longitudeIndex;
    message.clear();
    if (hasLongitudes && hasLatitudes) return Answer(GeoidReason::None);

    std::wstring files = indexFile;
    if (!hasLongitudes && !hasLatitudes) files = longitudeIndex + L"\" and \"" + latitudeIndex;
    message = VdatumMessage(files, folder);
    if (withDropHint) message += L"Or Drag and Drop the zip file on the Geoid Models tab.";
    return Answer(GeoidReason::NoFile);
}

bool GeoidModel_HARN::CalculateLocalEllipsCorrection(double latitude, double longitude, double& dLatitude,
                                                     double& dLongitude, bool) {
    const double lon = std::fmod(longitude + 360.0, 360.0);
    std::shared_ptr<const GtxGrid> g, h;
    std::vector<std::wstring> missing;
    {
        const std::lock_guard lock(mutex);
        const std::size_t count = std::min(longitudes.size(), latitudes.size());
        for (std::size_t i = 0; i < count && !h; ++i) {
            VdatumGrid &lonGrid = longitudes[i], &latGrid = latitudes[i];
            if (!(latitude >= latGrid.south && latitude <= latGrid.north)) continue;
            if (!(lon >= lonGrid.west && lon <= lonGrid.east)) continue;
            if (!lonGrid.Load()) {
                missing.push_back(lonGrid.fileName);
                continue;
            }
            if (!latGrid.Load()) {
                missing.push_back(latGrid.fileName);
                continue;
            }
            lonGrid.lastUse = latGrid.lastUse = CExTime::GetCurTime();
            g = lonGrid.grid;
            h = latGrid.grid;
        }
    }
    for (const std::wstring& path : missing) ReportAlert(VdatumMessage(path, GeoidFolder(kLocationCommon)));
    Sweep();
    if (!h) return Answer(missing.empty() ? GeoidReason::Outside : GeoidReason::NoFile);

    // The place is counted in the longitude grid and used in both.
    GridCell cell;
    const double x = (lon - g->west) / g->longitudeStep, y = (latitude - g->south) / g->latitudeStep;
    if (!FloorIndex(x, cell.i) || !FloorIndex(y, cell.j)) return Answer(kGeoidOutside);
    cell.u = x - cell.i;
    cell.v = y - cell.j;
    double longitudeShift = 0.0, latitudeShift = 0.0;
    if (!ShiftAt(*g, cell, longitudeShift) || !ShiftAt(*h, cell, latitudeShift)) return Answer(kGeoidOutside);
    return DeliverShift(latitudeShift / 3600, -longitudeShift / 3600, dLatitude, dLongitude);  // the grids count west
}

void GeoidModel_HARN::Sweep() {
    const std::lock_guard lock(mutex);
    const double now = CExTime::GetCurTime();
    if (IsRecent(lastSweep, now)) return;
    lastSweep = now;
    DropUnused(longitudes, now);
    DropUnused(latitudes, now);
}

void GeoidModel_HARN::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOpening(stream, indent, 8);
    DumpLine(stream, indent, L"<xfileinfolist>");
    for (const VdatumGrid& grid : longitudes) DumpFileLine(stream, indent, grid.fileName);
    // The tag that doesn't match has been in every dump so far; readers of dumps look for it.
    DumpLine(stream, indent, L"</yfileinfolist>");
    DumpLine(stream, indent, L"<yfileinfolist>");
    for (const VdatumGrid& grid : latitudes) DumpFileLine(stream, indent, grid.fileName);
    DumpLine(stream, indent, L"</yfileinfolist>");
    DumpClosing(stream, indent);
}

}  // namespace orv
