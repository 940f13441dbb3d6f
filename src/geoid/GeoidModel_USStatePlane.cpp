#include "geoid/GeoidModel_USStatePlane.h"

#include <cmath>

#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/values/Angles.h"

namespace orv {

namespace {

constexpr double kNoTide = -80.0;  // tidal values below mark no data
constexpr double kAreaKeptMilliseconds = 15000.0;
constexpr std::wstring_view kLmsl = L"LMSL";

bool Contains(const std::wstring& text, std::wstring_view part) {
    return text.find(part) != text.npos;
}

bool Replace(std::wstring& text, std::wstring_view from, std::wstring_view to) {
    bool any = false;
    for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
        text.replace(at, from.size(), to);
        any = true;
    }
    return any;
}

// fmod(longitude + 360, 360), to the bit: the sum is what rounds, and right west of an edge it decides.
double FullCircle(double longitude) {
    const double turned = longitude + 360.0;
    if (turned >= 360.0 && turned < 720.0) return turned - 360.0;
    return turned >= 0.0 && turned < 360.0 ? turned : std::fmod(turned, 360.0);
}

}  // namespace

bool GeoidModel_USStatePlane::Init(OrvGeoCoordSysBase* coordSys) {
    GeoidModel::Init(coordSys);
    return true;
}

bool GeoidModel_USStatePlane::SetFileName(std::wstring name) {
    fileName = std::move(name);
    geoids.clear();
    indexFile.clear();
    std::wstring key = ToLower(fileName);
    if (key.empty() || Contains(key, L"none")) return Answer(kGeoidOk);
    // The geoid of 2006 has no index of its own: it covers the areas of that of 2003.
    if (key == L"geoid06") key = L"geoid03";

    const std::wstring folder = VdatumFolder();
    if (folder.empty()) return Answer(GeoidReason::NoFile);
    indexFile = folder + L"core" + kPathSeparator + ToNativePath(key) + L".inf";
    if (!ReadInfFile(folder, indexFile, geoids)) {
        Notify(Notice::Message, VdatumMessage(indexFile, folder));
        return Answer(GeoidReason::NoFile);
    }
    // Only the name in capitals, as the setup writes it, means the grids of 2006; projects that wrote it otherwise have
    // always had those of 2003.
    if (fileName == L"GEOID06") {
        for (VdatumGrid& grid : geoids) {
            if (!Replace(grid.source, L"g2003a", L"g2006a")) continue;
            Replace(grid.source, L"geoid03", L"geoid06");
            grid.fileName = folder + ToNativePath(grid.source);
        }
    }
    return Answer(kGeoidOk);
}

void GeoidModel_USStatePlane::SetGeoidChartDatum(std::wstring datum) {
    GeoidModel::SetGeoidChartDatum(std::move(datum));
    areas.clear();
    charts.clear();
    boundaries.clear();
    lastSearch = 0.0;
    lastArea = -1;
    if (chartDatum.empty() || Contains(ToLower(chartDatum), L"none")) return;

    const std::wstring folder = VdatumFolder();
    if (folder.empty()) return;
    const std::wstring index = folder + L"tidal_area.inf";
    if (!ReadInfFile(folder, index, areas)) {
        Notify(Notice::Message, VdatumMessage(index, folder));
        return;
    }
    for (VdatumGrid& area : areas) {
        const std::wstring source = ToNativePath(area.source), start = folder + source + kPathSeparator;
        area.fileName = start + L"tss.gtx";
        if (chartDatum != kLmsl) {
            charts.push_back(area);
            charts.back().fileName = start + chartDatum + L".gtx";
        }
        boundaries.push_back({start + source + L".bnd", 0.0, {}});
    }
}

// Where grids overlap, one in which the position is well inside beats one in which it is near an edge.
int GeoidModel_USStatePlane::PickGeoidGrid(double latitude, double longitude) const {
    int nearOneEdge = -1, nearTwo = -1;
    for (std::size_t i = 0; i < geoids.size(); ++i) {
        const VdatumGrid& grid = geoids[i];
        const int index = static_cast<int>(i);
        if (grid.status != kGeoidOk || !grid.Holds(latitude, longitude)) continue;
        // In this corner, Alaska's panhandle, the first grid wins over later ones.
        if (i > 0 && geoids[0].status == kGeoidOk && latitude >= 49 && latitude <= 58 && longitude >= 230 &&
            longitude <= 234) {
            return 0;
        }
        const double halfRow = grid.latitudeStep / 2, halfColumn = grid.longitudeStep / 2;
        const bool nearNorthOrSouth = grid.north - latitude <= halfRow || latitude - grid.south <= halfRow;
        const bool nearEastOrWest = grid.east - longitude <= halfColumn || longitude - grid.west <= halfColumn;
        if (!nearNorthOrSouth && !nearEastOrWest) return index;
        int& first = nearNorthOrSouth && nearEastOrWest ? nearTwo : nearOneEdge;
        if (first < 0) first = index;
    }
    return nearOneEdge >= 0 ? nearOneEdge : nearTwo;
}

bool GeoidModel_USStatePlane::Calculate(double latitude, double longitude, double, double, double& value,
                                        std::wstring& text) {
    const double lon = FullCircle(longitude);
    std::vector<std::wstring> missing;
    const bool done = CalculateLocked(latitude, lon, value, text, missing);
    for (const std::wstring& path : missing) Alert(path);
    return done;
}

bool GeoidModel_USStatePlane::CalculateLocked(double latitude, double lon, double& value, std::wstring& text,
                                              std::vector<std::wstring>& missing) {
    const std::lock_guard lock(mutex);
    const double now = CExTime::GetCoarseTime();
    const int k = PickGeoidGrid(latitude, lon);
    if (k < 0) return Answer(kGeoidOutside);
    VdatumGrid& picked = geoids[static_cast<std::size_t>(k)];
    picked.lastUse = now;
    if (!picked.Load()) {
        missing.push_back(picked.fileName);
        return Answer(GeoidReason::NoFile);
    }
    double height = 0.0;
    if (!VdatumGridValue(*picked.grid, latitude, lon, height)) return Answer(kGeoidOutside);
    if (!std::isfinite(height)) return Answer(kGeoidNoData);

    const auto figure = [&](std::wstring_view name, double metres) {
        text.append(name) += L':';
        AppendFixed(text, unitFactor == 1.0 ? metres : metres / unitFactor, 4);
        text += unitLabel;
    };
    figure(picked.source, height);
    const Tidal tidal = LookUpTides(latitude, lon, now, missing);
    if (tidal.area < 0 || !tidal.hasLmsl) {
        text += std::wstring_view(L" No Tidal Vertical Datum info !");
    } else {
        text.append(L" ").append(areas[static_cast<std::size_t>(tidal.area)].source);
        if (tidal.lmsl < kNoTide) {
            text += L" LMSL:No Data";
        } else {
            figure(L" LMSL", -tidal.lmsl);
            height -= tidal.lmsl;
        }
        if (tidal.hasChart) text.append(L" ");
        if (tidal.hasChart && tidal.chart < kNoTide) {
            text.append(chartDatum).append(L":No Data");
        } else if (tidal.hasChart) {
            figure(chartDatum, tidal.chart);
            height += tidal.chart;
        }
    }
    Sweep(now);
    value = unitFactor == 1.0 ? height : height / unitFactor;
    return true;
}

// The area whose outline holds the position. A vessel doesn't leave one in a quarter of a minute: the last answer
// stands that long, "none" too.
int GeoidModel_USStatePlane::FindArea(double latitude, double longitude, double now,
                                      std::vector<std::wstring>& missing) {
    const double elapsed = now - lastSearch;
    if (elapsed >= 0.0 && elapsed < kAreaKeptMilliseconds) return lastArea;
    lastSearch = now;
    lastArea = -1;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        VdatumGrid& area = areas[i];
        if (!area.Holds(latitude, longitude)) continue;
        TidalBoundary& boundary = boundaries[i];
        boundary.lastUse = now;
        if (boundary.polygons.empty()) {
            std::string outline;
            if (ReadWholeFile(boundary.fileName, outline) != FsResult::Ok) {
                missing.push_back(boundary.fileName);
                continue;
            }
            boundary.polygons = ReadBoundary(outline);
        }
        area.lastUse = now;
        if (!area.Load()) {
            missing.push_back(area.fileName);
            continue;
        }
        if (boundary.Holds(modgeo(longitude), latitude)) {
            lastArea = static_cast<int>(i);
            break;
        }
    }
    return lastArea;
}

GeoidModel_USStatePlane::Tidal GeoidModel_USStatePlane::LookUpTides(double latitude, double longitude, double now,
                                                                    std::vector<std::wstring>& missing) {
    Tidal found;
    found.area = FindArea(latitude, longitude, now, missing);
    if (found.area < 0) return found;
    const auto has = [&](VdatumGrid& from, double& value) {
        from.lastUse = now;
        return from.grid && VdatumGridValue(*from.grid, latitude, longitude, value) && std::isfinite(value);
    };
    const auto i = static_cast<std::size_t>(found.area);
    found.hasLmsl = has(areas[i], found.lmsl);
    if (chartDatum != kLmsl && i < charts.size()) {
        // An area needn't have every datum, so a missing grid is told only if the area itself is amiss.
        if (!charts[i].Load() && areas[i].status != kGeoidOk) missing.push_back(charts[i].fileName);
        found.hasChart = has(charts[i], found.chart);
    }
    return found;
}

void GeoidModel_USStatePlane::Sweep(double now) {
    if (IsRecent(lastSweep, now)) return;
    lastSweep = now;
    DropUnused(geoids, now);
    DropUnused(areas, now);
    DropUnused(charts, now);
    for (TidalBoundary& boundary : boundaries) {
        if (!IsRecent(boundary.lastUse, now)) boundary.polygons.clear();
    }
}

void GeoidModel_USStatePlane::Alert(const std::wstring& path) const {
    ReportAlert(VdatumMessage(path, GeoidFolder(kLocationCommon)));
}

void GeoidModel_USStatePlane::DumpGeoidXml(std::wostream& stream, const wchar_t* indent) {
    DumpOpening(stream, indent, 7);
    DumpLine(stream, indent, L"<fileinfolist>");
    for (const VdatumGrid& grid : geoids) DumpFileLine(stream, indent, grid.fileName);
    DumpLine(stream, indent, L"</fileinfolist>");
    DumpClosing(stream, indent);
}

}  // namespace orv
