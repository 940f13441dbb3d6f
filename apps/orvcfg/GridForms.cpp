#include "GridForms.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "Document.h"
#include "geoid/GridReader.h"
#include "geoid/GtxGrid.h"

namespace orv::cfg {

namespace {

constexpr std::size_t kGtxHeader = 40;
// Grids of this form have -88.8888 where they have nothing; no separation on earth goes below -80.
constexpr double kGtxNoDataBelow = -80.0;
constexpr double kLargestSeparation = 200.0;

bool IsBetween(double value, double low, double high) {
    return value >= low && value <= high;  // false for NaN
}

/// A table of numbers has no marker: only a header that fits the file's length tells this form from any other.
std::optional<GridFacts> ReadGtxFacts(std::span<const std::byte> bytes, std::string& why) {
    GridReader in(bytes, std::endian::big);
    GridFacts facts;
    facts.form = "GTX";
    facts.south = in.Read<double>();
    facts.west = in.Read<double>();
    facts.latitudeStep = in.Read<double>();
    facts.longitudeStep = in.Read<double>();
    facts.rows = in.Read<std::int32_t>();
    facts.columns = in.Read<std::int32_t>();
    const auto refuse = [&](std::string reason) {
        why = std::move(reason);
        return std::nullopt;
    };
    if (bytes.size() < kGtxHeader) return refuse("shorter than its header of 40 bytes");
    if (!IsBetween(facts.south, -90.0, 90.0) || !IsBetween(facts.west, -360.0, 360.0)) {
        return refuse("its first node lies nowhere on earth");
    }
    if (!IsBetween(facts.latitudeStep, 1e-6, 90.0) || !IsBetween(facts.longitudeStep, 1e-6, 180.0)) {
        return refuse("its steps are no angles above 0");
    }
    if (facts.rows < 2 || facts.columns < 2) return refuse("it has less than 2 rows or columns");
    facts.north = facts.south + static_cast<double>(facts.rows - 1) * facts.latitudeStep;
    facts.east = facts.west + static_cast<double>(facts.columns - 1) * facts.longitudeStep;
    if (facts.north > 90.0 + 1e-6 || facts.east - facts.west > 360.0 + facts.longitudeStep) {
        return refuse("its rows or columns reach beyond the earth");
    }
    const auto nodes = static_cast<std::uint64_t>(facts.Nodes());
    const std::uint64_t body = bytes.size() - kGtxHeader;
    if (body != nodes * sizeof(float) && body != nodes * sizeof(double)) {
        return refuse("its header tells of " + std::to_string(nodes) + " nodes, which take " +
                      std::to_string(kGtxHeader + nodes * sizeof(float)) + " or " +
                      std::to_string(kGtxHeader + nodes * sizeof(double)) + " bytes, and the file has " +
                      std::to_string(bytes.size()));
    }
    // The reader takes the width of the nodes from the file's length, header included.
    if (body == nodes * sizeof(float) && bytes.size() > nodes * sizeof(double)) {
        return refuse("a grid of 32-bit nodes needs 10 of them or more to be told from one of 64-bit nodes");
    }
    facts.nodeType = body == nodes * sizeof(float) ? "32-bit reals" : "64-bit reals";

    GtxGrid grid;
    if (ReadGtx(bytes, grid) != kGeoidOk) return refuse("it holds no nodes");
    bool first = true;
    for (const float node : grid.values) {
        const double height = node;
        if (std::isnan(height) || height < kGtxNoDataBelow) {
            ++facts.noData;
            continue;
        }
        facts.smallest = first ? height : std::min(facts.smallest, height);
        facts.largest = first ? height : std::max(facts.largest, height);
        first = false;
    }
    if (first) return refuse("all its nodes are without a height");
    if (facts.largest > kLargestSeparation) {
        return refuse("it holds " + Fixed(facts.largest, 1) + " m, which is no separation");
    }
    return facts;
}

}  // namespace

const std::vector<GridForm>& GridForms() {
    static const std::vector<GridForm> forms = {
        {"GTX",

         ReadGtxFacts,
         {{28, "the Netherlands and the Dutch sector of the North Sea", 49.0, 57.0, 1.0, 9.0}}},
    };
    return forms;
}

std::optional<RecognisedGrid> RecogniseGrid(std::span<const std::byte> bytes, std::string& why) {
    why.clear();
    for (const GridForm& form : GridForms()) {
        std::string reason;
        if (const std::optional<GridFacts> facts = form.read(bytes, reason)) return RecognisedGrid{&form, *facts};
        why += (why.empty() ? "as " : "; as ") + std::string(form.name) + ": " + reason;
    }
    return std::nullopt;
}

const GridHome* HomeOf(const RecognisedGrid& grid) {
    const GridFacts& facts = grid.facts;
    const auto home = std::find_if(grid.form->homes.begin(), grid.form->homes.end(), [&](const GridHome& candidate) {
        return facts.south >= candidate.south && facts.north <= candidate.north && facts.west >= candidate.west &&
               facts.east <= candidate.east;
    });
    return home == grid.form->homes.end() ? nullptr : &*home;
}

bool Reads(const GridForm& form, unsigned short typeId) {
    return std::any_of(form.homes.begin(), form.homes.end(),
                       [&](const GridHome& home) { return home.typeId == typeId; });
}

}  // namespace orv::cfg
