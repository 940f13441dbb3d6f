#pragma once

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "geoid/GridBytes.h"

namespace orv::test {

/// The tiny grid that every format is written with. Bounds and steps are binary fractions and nodes multiples of an
/// eighth, so that edges are exact and single precision rounds nothing; one node in the middle is no data.
struct TestGrid {
    double west = 4, south = 50, dx = 0.25, dy = 0.125;
    int columns = 11, rows = 10;
    int missingRow = 6, missingColumn = 7;  // rows from the south

    double East() const { return west + (columns - 1) * dx; }
    double North() const { return south + (rows - 1) * dy; }
    double Node(int row, int column) const { return 40 + 0.125 * ((row * 37 + column * 23 + row * column) % 41); }
    bool Missing(int row, int column) const { return row == missingRow && column == missingColumn; }

    /// Calls `put(row, column)` for each node in file order.
    template <class Put>
    void FromNorth(Put put) const {
        for (int row = rows - 1; row >= 0; --row)
            for (int column = 0; column < columns; ++column) put(row, column);
    }
    template <class Put>
    void FromSouth(Put put) const {
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column) put(row, column);
    }
};

// Each writer is its format's whole description.

inline std::string Quasigeoid(const TestGrid& g) {
    GridBytes out;
    const auto angle = [&](double degrees) {
        const int whole = static_cast<int>(degrees), minutes = static_cast<int>((degrees - whole) * 60);
        out.I32(whole).I32(minutes).I32(static_cast<int>(((degrees - whole) * 60 - minutes) * 600000));
    };
    for (const double degrees : {g.south, g.North(), g.west, g.East(), g.dy, g.dx}) angle(degrees);
    g.FromNorth([&](int r, int c) { out.I32(g.Missing(r, c) ? 9999999 : static_cast<int>(g.Node(r, c) * 1000)); });
    return out.bytes;
}

inline std::string Dsbb(const TestGrid& g) {
    GridBytes out;
    out.bytes = "DSBB";
    out.I16(static_cast<std::int16_t>(g.columns)).I16(static_cast<std::int16_t>(g.rows));
    for (const double bound : {g.west, g.East(), g.south, g.North(), 40.0, 45.0}) out.F64(bound);
    g.FromSouth([&](int r, int c) { out.F32(g.Missing(r, c) ? 1.70141e38f : static_cast<float>(g.Node(r, c))); });
    return out.bytes;
}

inline std::string Byn(const TestGrid& g, std::int16_t nodeSize) {
    GridBytes out;
    for (const double bound : {g.south, g.North(), g.west, g.East()}) out.I32(static_cast<int>(bound * 3600));
    out.I16(static_cast<std::int16_t>(g.dy * 3600)).I16(static_cast<std::int16_t>(g.dx * 3600));
    out.I16(7).I16(1).F64(512.0).I16(nodeSize).Blank(46);
    g.FromNorth([&](int r, int c) {
        const int node = static_cast<int>(g.Node(r, c) * 512);
        if (nodeSize == 4) {
            out.I32(g.Missing(r, c) ? 9999 * 512 : node);
        } else {
            out.I16(static_cast<std::int16_t>(g.Missing(r, c) ? 32767 : node));
        }
    });
    return out.bytes;
}

inline std::string Gravsoft(const TestGrid& g, int marker, bool northFirst, float missing = 9999.0f) {
    GridBytes out;
    out.I32(marker);
    for (const double field : {g.south, g.North(), g.west, g.East(), g.dy, g.dx}) out.F64(field);
    out.Blank(12);
    const auto put = [&](int r, int c) {
        out.F32(g.Missing(r, c) ? missing : static_cast<float>(g.Node(r, c)));
        if (c == g.columns - 1) out.Blank(static_cast<std::size_t>((16 - g.columns % 16) % 16 * 4));
    };
    northFirst ? g.FromNorth(put) : g.FromSouth(put);
    return out.bytes;
}

inline std::string Gri(const TestGrid& g) {
    std::string text;
    for (const double field : {g.south, g.North(), g.west, g.East(), g.dy, g.dx}) text += " " + std::to_string(field);
    int n = 0;
    g.FromNorth([&](int r, int c) {
        text += (n++ % 8 == 0 ? "\r\n " : "  ") + std::to_string(g.Missing(r, c) ? 9999.0 : g.Node(r, c));
    });
    return text;
}

inline std::string Vorf(const TestGrid& g) {
    std::string text = "lat lon height accuracy\n";
    g.FromNorth([&](int r, int c) {
        if (g.Missing(r, c)) return;
        for (const double field : {g.south + r * g.dy, g.west + c * g.dx, g.Node(r, c)}) {
            text += std::to_string(field) + " ";
        }
        text += "0.1\n";
    });
    return text;
}

// The self-describing grid file.
struct Ggf {
    TestGrid grid = {};
    std::uint8_t flags = 0x04, unit = 0, interpolation = 1, dataType = 8, rowOrder = 1, columnOrder = 1;
    double scale = 1;

    std::string Bytes() const {
        const TestGrid& g = grid;
        GridBytes out;
        out.Blank(48);
        for (const double f : {g.south, g.North(), g.west, g.East(), g.dy, g.dx}) out.F64(f);
        out.I32(g.rows).I32(g.columns).Blank(16).F64(99).F64(scale).Blank(2);
        for (const std::uint8_t code : {flags, unit, interpolation, dataType, rowOrder, columnOrder}) out.Add(code);
        out.Blank(2);
        const auto put = [&](int n, int m) {
            const int row = rowOrder & 1 ? n : g.rows - 1 - n, column = columnOrder & 1 ? m : g.columns - 1 - m;
            const double node = g.Missing(row, column) ? 99 : g.Node(row, column);
            if (dataType == 1) return void(out.Add(static_cast<std::int8_t>(node)));
            if (dataType == 2) return void(out.Add(static_cast<std::int16_t>(node)));
            if (dataType == 4) return void(out.I32(static_cast<int>(node)));
            if (dataType == 8) return void(out.F32(static_cast<float>(node)));
            out.F64(node);
        };
        const bool byColumns = flags & 0x40;
        for (int a = 0; a < (byColumns ? g.columns : g.rows); ++a)
            for (int b = 0; b < (byColumns ? g.rows : g.columns); ++b) byColumns ? put(b, a) : put(a, b);
        return out.bytes;
    }
};

// Shift files: two grids of arc seconds, the second inside the first.
struct Subgrid {
    double south, east, dLat, dLon;  // seconds, east positive west
    int columns, rows;
    bool steep = false;  // the shift grows by as much as the position
    double Node(int row, int column, int which) const {
        if (steep) return which == 0 ? dLat * (row - 6) : dLon * (column - 8);
        return 0.125 * ((row * 5 + column * 3 + which * 4 + row * column) % 19) - 1;
    }
};
inline constexpr Subgrid kOuter = {180000, -21600, 360, 720, 12, 11}, kInner = {180720, -20160, 90, 180, 17, 13};

inline std::string ShiftFile(const std::vector<Subgrid>& grids = {kOuter, kInner}) {
    GridBytes out;
    out.Blank(11 * 16);
    for (const Subgrid& g : grids) {
        out.Blank(4 * 16);
        for (const double value :
             {g.south, g.south + (g.rows - 1) * g.dLat, g.east, g.east + (g.columns - 1) * g.dLon, g.dLat, g.dLon}) {
            out.Blank(8).F64(value);
        }
        out.Blank(8).I32(g.rows * g.columns).Blank(4);
        for (int r = 0; r < g.rows; ++r)
            for (int c = 0; c < g.columns; ++c) {
                for (int which = 0; which < 2; ++which) out.F32(static_cast<float>(g.Node(r, c, which)));
                out.F32(-1).F32(-1);
            }
    }
    return out.bytes;
}

// The 1 km grid of shifts and heights.
inline double KilometreNode(int row, int column, int which) {
    return 50 + 0.25 * ((row * 3 + column * 5 + which * 7) % 23);
}

inline std::string KilometreList() {
    std::string text = "Point,Easting,Northing\n";
    for (int r = 0; r < 7; ++r)
        for (int c = 0; c < 8; ++c) {
            text += "1," + std::to_string(400000 + c * 1000) + "," + std::to_string(100000 + r * 1000);
            for (int which = 0; which < 3; ++which) text += "," + std::to_string(KilometreNode(r, c, which));
            text += ",1\r\n";
        }
    return text;
}

/// Which positions an interpolation accepts, in cells from the south-west corner.
enum class Edge { InnerClosed, InnerOpen, Inner2Open, LastOut };

inline bool Accepts(Edge edge, const TestGrid& g, double x, double y) {
    const double right = g.columns - 1.0, top = g.rows - 1.0;
    switch (edge) {
        case Edge::InnerClosed:
            return x >= 1 && x <= right - 1 && y >= 1 && y <= top - 1;
        case Edge::InnerOpen:
            return x > 1 && x < right - 1 && y > 1 && y < top - 1;
        case Edge::Inner2Open:
            return x > 2 && x < right - 2 && y > 2 && y < top - 2;
        default:
            return x >= 0 && x < right && y >= 0 && y < top;
    }
}

/// What a model should give at a position, worked out node by node. `weights(t)` are those of `count` nodes from
/// `before` nodes south and west of the cell on. The kernel refuses the first node of a
/// file. `whole`: nodes of whole numbers.
template <class Weights>
std::optional<double> Slow(const TestGrid& g, Edge edge, double latitude, double longitude, int count, int before,
                           Weights weights, bool whole = false) {
    const double x = (longitude - g.west) / g.dx, y = (latitude - g.south) / g.dy;
    if (!Accepts(edge, g, x, y)) return std::nullopt;
    // Models that count rows from the north take a position on a row as the north edge of its cell.
    const bool fromNorth = edge == Edge::InnerClosed;
    const int i = static_cast<int>(std::floor(x)), j = static_cast<int>(fromNorth ? std::ceil(y) - 1 : std::floor(y));
    const auto across = weights(x - i), up = weights(y - j);
    double sum = 0;
    for (std::size_t r = 0; r < static_cast<std::size_t>(count); ++r) {
        for (std::size_t c = 0; c < static_cast<std::size_t>(count); ++c) {
            const int row = j - before + static_cast<int>(r), column = i - before + static_cast<int>(c);
            if (g.Missing(row, column) || (count == 4 && row == 0 && column == 0)) return std::nullopt;
            sum += up[r] * across[c] * (whole ? std::trunc(g.Node(row, column)) : g.Node(row, column));
        }
    }
    return sum;
}

inline std::optional<double> SlowBilinear(const TestGrid& g, Edge edge, double latitude, double longitude) {
    return Slow(g, edge, latitude, longitude, 2, 0, [](double t) { return std::array{1 - t, t}; });
}

/// The cubic through four points whose slopes at the middle ones are half the difference of their neighbours.
inline std::optional<double> SlowKernel(const TestGrid& g, Edge edge, double latitude, double longitude) {
    return Slow(g, edge, latitude, longitude, 4, 1, [](double t) {
        const double s = 1 - t;
        const double h01 = t * t * (3 - 2 * t), h00 = 1 - h01, h10 = t * s * s, h11 = -t * t * s;
        return std::array{-h10 / 2, h00 - h11 / 2, h01 + h10 / 2, h11 / 2};
    });
}

}  // namespace orv::test
