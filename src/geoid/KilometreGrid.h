#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "geoid/TextScan.h"
#include "platform/values/TruncToInt.h"

namespace orv {

/// A line of the comma-separated form: point number, easting, northing, three reals and a flag.
struct KilometreLine {
    int fields = 0;  ///< how many of the seven the line gave
    std::int32_t easting = 0, northing = 0;
    std::array<double, 3> reals{};
};
inline KilometreLine ScanKilometreLine(std::string_view text) {
    KilometreLine line;
    TextScan in(text);
    std::int32_t unused = 0;
    const auto comma = [&] { return in.Literal(','); };
    const auto take = [&line](bool taken) {
        if (taken) ++line.fields;
        return taken;
    };
    // clang-format off
    (void)(take(in.Int(unused)) && comma() && take(in.Int(line.easting)) && comma() && take(in.Int(line.northing)) &&
           comma() && take(in.Real(line.reals[0])) && comma() && take(in.Real(line.reals[1])) &&
           comma() && take(in.Real(line.reals[2])) && comma() && take(in.Int(unused)));
    // clang-format on
    return line;
}

/// The 1 km grid of Great Britain and Ireland: `N` reals a node. Rows from the south, columns from the west; places are
/// metres from the first node.
template <std::size_t N>
struct KilometreGrid {
    using Node = std::array<double, N>;

    std::vector<Node> nodes;
    std::int32_t columns = 0, rows = 0;
    double firstEasting = 0.0, firstNorthing = 0.0;

    /// Puts a file in the place of the grid. `take(line, node)` is false for lines that don't count. The shape follows
    /// from how many nodes share the northing, and the easting, of the first.
    template <class Take>
    void Read(std::string_view text, Take take) {
        *this = {};
        std::string_view line;
        while (NextLine(text, line)) {
            const KilometreLine fields = ScanKilometreLine(line);
            Node node{};
            if (!take(fields, node)) continue;
            if (nodes.empty()) {
                firstEasting = fields.easting;
                firstNorthing = fields.northing;
            }
            if (fields.northing == firstNorthing) ++columns;
            if (fields.easting == firstEasting) ++rows;
            nodes.push_back(node);
        }
        nodes.shrink_to_fit();
    }

    /// False outside and where the file was too short. Truncates toward zero, so the kilometre west and the one south
    /// of the grid go on from its first cells.
    bool Interpolate(double x, double y, Node& result) const {
        std::int32_t i = 0, j = 0;
        if (!TruncToInt(x / 1000, i) || !TruncToInt(y / 1000, j)) return false;
        if (i < 0 || i >= columns - 1 || j < 0 || j >= rows - 1) return false;
        const std::size_t stride = static_cast<std::size_t>(columns);
        const std::size_t k = stride * static_cast<std::size_t>(j) + static_cast<std::size_t>(i);
        if (k + stride + 1 >= nodes.size()) return false;
        const double a = std::fmod(x, 1000) / 1000, b = std::fmod(y, 1000) / 1000;
        for (std::size_t n = 0; n < N; ++n) {
            result[n] = (1 - a) * (1 - b) * nodes[k][n] + a * (1 - b) * nodes[k + 1][n] +
                        (1 - a) * b * nodes[k + stride][n] + a * b * nodes[k + stride + 1][n];
        }
        return true;
    }
};

}  // namespace orv
