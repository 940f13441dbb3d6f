#include "geoid/NodeTable.h"

#include <numbers>

#include "core/ConfigKeys.h"
#include "geoid/GridMath.h"
#include "geoid/GridReader.h"
#include "geoid/TextScan.h"
#include "platform/notify/Notices.h"

namespace orv {

namespace {

constexpr double kDeMinNodes[] = {
#include "tables/geodemin.inc"
};
constexpr double kGeoNZ97Nodes[] = {
#include "tables/geonz97.inc"
};

constexpr int kDeMinRows = 64, kDeMinColumns = 52;
constexpr int kGeoNZ97Rows = 80, kGeoNZ97Columns = 66;
static_assert(std::size(kDeMinNodes) == kDeMinRows * kDeMinColumns);
static_assert(std::size(kGeoNZ97Nodes) == kGeoNZ97Rows * kGeoNZ97Columns);

constexpr double kLatitudeStep = 0.05;
constexpr double kReference = 44.0;  // metres that every entry is short of
constexpr double kNothing = -999.999;

// Where a position lies in a table: the stencil's first row and column, and the place in the middle cell.
struct Place {
    std::int64_t row, column;
    double t, s;
};

// Right on a node the kernel is asked for a point just beside it.
double Nudged(double fraction) {
    return fraction < 0.1 ? fraction + 0.000000001 : fraction;
}

int Interpolate(const Place& place, double latitude, const std::array<double, 16>& nodes, double* height,
                double* deflectionNorth, double* deflectionEast) {
    const CubicWeights columns = KernelWeights(place.t), rows = Reversed(KernelWeights(place.s));
    *height = KernelSum(nodes, rows, columns);
    const double radians = latitude * std::numbers::pi / 180.0;
    *deflectionEast = -KernelSum(nodes, rows, KernelSlopes(place.t)) * 12 / 111190.0 / std::cos(radians);
    *deflectionNorth = -KernelSum(nodes, Reversed(KernelSlopes(place.s)), columns) / kLatitudeStep / 111190.0;
    return 0;
}

SharedNodeTable CompiledIn(std::span<const double> nodes) {
    return std::make_shared<NodeTable>(NodeTable{{nodes.begin(), nodes.end()}, {}});
}

const SharedNodeTable& BuiltInDeMin() {
    static const SharedNodeTable table = CompiledIn(kDeMinNodes);
    return table;
}

const SharedNodeTable& BuiltInGeoNZ97() {
    static const SharedNodeTable table = CompiledIn(kGeoNZ97Nodes);
    return table;
}

SharedNodeTable Installed(std::wstring_view name, int rows, int columns, const SharedNodeTable& builtIn) {
    GridFileInfo info;
    std::string text;
    if (!ReadGridFile(kLocationGeoidModels, name, info, text)) return builtIn;
    NodeTable table{ReadNodeTable(text, rows, columns), info.fileName};
    if (table.nodes.empty()) {
        Notify(Notice::Information, info.fileName + L" has not the shape of a node table and is not used");
        return builtIn;
    }
    return std::make_shared<NodeTable>(std::move(table));
}

}  // namespace

std::vector<double> ReadNodeTable(std::string_view text, int rows, int columns) {
    std::vector<double> nodes;
    std::string_view line;
    int row = 0;
    for (; NextLine(text, line); ++row) {
        TextScan in(line);
        for (int column = 0; column < columns; ++column) {
            double node = 0.0;
            if ((column > 0 && !in.Literal(',')) || !in.Real(node)) return {};
            nodes.push_back(node);
        }
        if (in.Literal(',') || row >= rows) return {};
    }
    return row == rows ? nodes : std::vector<double>{};
}

SharedNodeTable DeMinTable() {
    return Installed(L"geodemin.csv", kDeMinRows, kDeMinColumns, BuiltInDeMin());
}

SharedNodeTable GeoNZ97Table() {
    return Installed(L"geonz97.csv", kGeoNZ97Rows, kGeoNZ97Columns, BuiltInGeoNZ97());
}

int geodemin(double latitude, double longitude, double* height, double* deflectionNorth, double* deflectionEast) {
    return DeMinAt(*BuiltInDeMin(), latitude, longitude, height, deflectionNorth, deflectionEast);
}

int geonz97(double latitude, double longitude, double* height, double* deflectionNorth, double* deflectionEast) {
    return GeoNZ97At(*BuiltInGeoNZ97(), latitude, longitude, height, deflectionNorth, deflectionEast);
}

int DeMinAt(const NodeTable& table, double latitude, double longitude, double* height, double* deflectionNorth,
            double* deflectionEast) {
    *height = *deflectionNorth = *deflectionEast = kNothing;
    std::int32_t n = 0, m = 0;
    if (!FloorIndex((longitude - 3.208333333333333) / (1.0 / 12.0), n)) return -1;
    if (!FloorIndex((latitude - 50.525) / kLatitudeStep, m)) return -1;
    if (n < 1 || n > 49 || m < 1 || m > 61) return -1;
    ++n;
    const Place place = {61 - m, n - 2, Nudged((longitude - (n / 12.0 + 3.1249999999999996)) * 12),
                         Nudged((latitude - (m * kLatitudeStep + 50.525)) / kLatitudeStep)};

    std::array<double, 16> nodes{};
    const auto any = [](double) { return kGeoidOk; };
    const NodeBlock<4> at{place.row * kDeMinColumns + place.column, kDeMinColumns};
    if (TakeNodes(table.nodes, 0, at, any, nodes) != kGeoidOk) return -1;
    for (int i = 0; i < 16; ++i) {
        const std::int64_t row = place.row + i / 4, column = place.column + i % 4;
        const double nodeLatitude = 50.525 + static_cast<double>(63 - row) * kLatitudeStep;
        const double nodeLongitude = 3.208333333333333 + static_cast<double>(column) / 12;
        double& node = nodes[static_cast<std::size_t>(i)];
        node = node + kReference - 0.5082 - (nodeLatitude - 52.0) * 0.0414 + (nodeLongitude - 5.0) * 0.0529;
    }
    return Interpolate(place, latitude, nodes, height, deflectionNorth, deflectionEast);
}

int GeoNZ97At(const NodeTable& table, double latitude, double longitude, double* height, double* deflectionNorth,
              double* deflectionEast) {
    *height = *deflectionNorth = *deflectionEast = kNothing;
    std::int32_t n = 0, m = 0;
    if (!FloorIndex((longitude - 2.5416666666666665) * 12, n)) return -1;
    if (!FloorIndex((latitude - 51.025) / kLatitudeStep, m)) return -1;
    if (n < 1 || n > 63 || m < 1 || m > 77) return -1;
    ++n;
    const Place place = {77 - m, n - 2, Nudged((longitude - (n / 12.0 + 2.458333333333333)) * 12),
                         Nudged((latitude - (m * kLatitudeStep + 51.025)) / kLatitudeStep)};

    std::array<double, 16> nodes{};
    const auto test = [](double node) { return node < -9998.0 ? kGeoidNoData : kGeoidOk; };
    const NodeBlock<4> at{place.row * kGeoNZ97Columns + place.column, kGeoNZ97Columns};
    if (TakeNodes(table.nodes, 0, at, test, nodes) != kGeoidOk) return -1;
    for (double& node : nodes) node = node / 1000.0 + kReference;
    return Interpolate(place, latitude, nodes, height, deflectionNorth, deflectionEast);
}

}  // namespace orv
