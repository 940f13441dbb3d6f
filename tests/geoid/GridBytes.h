#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <span>
#include <string>

namespace orv::test {

/// Puts the fields of a tiny grid file one behind the other.
class GridBytes {
public:
    explicit GridBytes(std::endian byteOrder = std::endian::little) : order(byteOrder) {}
    template <class T>
    GridBytes& Add(T value) {
        std::string raw(sizeof(T), '\0');
        std::copy_n(reinterpret_cast<const char*>(&value), sizeof(T), raw.begin());
        if (order != std::endian::native) std::reverse(raw.begin(), raw.end());
        bytes += raw;
        return *this;
    }
    GridBytes& F64(double value) { return Add(value); }
    GridBytes& F32(float value) { return Add(value); }
    GridBytes& I32(std::int32_t value) { return Add(value); }
    GridBytes& I16(std::int16_t value) { return Add(value); }
    GridBytes& Blank(std::size_t count) {
        bytes.append(count, '\0');
        return *this;
    }
    std::string bytes;

private:
    std::endian order;
};

inline std::span<const std::byte> View(const std::string& bytes) {
    return std::as_bytes(std::span(bytes));
}

inline double Between(std::mt19937& random, double low, double high) {
    return std::uniform_real_distribution(low, high)(random);
}

/// Bilinear between the nodes `node(row, column)`, straight from its definition; x and y count in cells. The last row
/// and column, where they are given, belong to the cells before them.
template <class Node>
double BetweenNodes(Node node, double x, double y, int rows = 1 << 30, int columns = 1 << 30) {
    const int c = std::min(static_cast<int>(x), columns - 2), r = std::min(static_cast<int>(y), rows - 2);
    const double lower = std::lerp(double{node(r, c)}, double{node(r, c + 1)}, x - c);
    const double upper = std::lerp(double{node(r + 1, c)}, double{node(r + 1, c + 1)}, x - c);
    return std::lerp(lower, upper, y - r);
}

/// A node of a surface on which neighbours differ everywhere and no interpolation is exact by chance.
inline float Bumpy(int row, int column) {
    return static_cast<float>(40 + 0.7 * row - 0.3 * column + 0.05 * ((row * 7 + column * 13) % 11));
}

/// A GTX file whose node (r, c) is `node(r, c)`; `Node` is float or double.
template <class Node = float, class Function>
std::string GtxFile(double south, double west, double step, int rows, int columns, Function node) {
    GridBytes out(std::endian::big);
    out.F64(south).F64(west).F64(step).F64(step).I32(rows).I32(columns);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) out.Add(static_cast<Node>(node(r, c)));
    return out.bytes;
}

}  // namespace orv::test
