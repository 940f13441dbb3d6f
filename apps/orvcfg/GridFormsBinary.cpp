#include <array>
#include <bit>
#include <cstring>
#include <limits>

#include "GridFormReaders.h"
#include "PositionText.h"
#include "geoid/GgfTile.h"
#include "geoid/GridReader.h"

namespace orv::cfg {

namespace {

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();  // what GridValues counts as missing

// Grids of this form have -88.8888 where they have nothing; no separation on earth goes below -80.
constexpr double kGtxNoDataBelow = -80.0;
constexpr double kLargestSeparation = 200.0;

bool IsBetween(double value, double low, double high) {
    return value >= low && value <= high;  // false for NaN
}

GridValues Heights() {
    return {.what = "height", .unit = "m"};
}

/// Nodes along an extent, as its publisher meant them; 0 for what can't be one.
std::int64_t NodesAlong(double extent, double step) {
    const double nodes = std::round(extent / step) + 1.0;
    return IsBetween(nodes, 2.0, 1e9) ? static_cast<std::int64_t>(nodes) : 0;
}

void CountNodes(GridPart& part) {
    part.rows = NodesAlong(part.north - part.south, part.latitudeStep);
    part.columns = NodesAlong(part.east - part.west, part.longitudeStep);
}

template <class Node, class Height>
void TakeNodes(GridReader& in, std::int64_t nodes, GridValues& values, Height height) {
    for (std::uint64_t left = in.NodesLeft(nodes, sizeof(Node)); left > 0; --left) values.Take(height(in.Read<Node>()));
}

GridFacts OnePart(GridPart part, std::string nodeType) {
    GridFacts facts;
    facts.nodeType = std::move(nodeType);
    facts.parts.push_back(std::move(part));
    return facts;
}

FormFacts Refuse(std::string& why, std::string reason) {
    why = std::move(reason);
    return std::nullopt;
}

}  // namespace

bool OnEarth(const GridPart& part, std::string& why) {
    if (!IsBetween(part.south, -90.0, 90.0) || !IsBetween(part.west, -360.0, 360.0)) {
        why = "its first node lies nowhere on earth";
    } else if (!IsBetween(part.latitudeStep, 1e-6, 90.0) || !IsBetween(part.longitudeStep, 1e-6, 180.0)) {
        why = "its steps are no angles above 0";
    } else if (part.rows < 2 || part.columns < 2) {
        why = "it has less than 2 rows or columns";
    } else if (!(part.north <= 90.0 + 1e-6) || !(part.east - part.west <= 360.0 + part.longitudeStep)) {
        why = "its rows or columns reach beyond the earth";
    } else {
        return true;
    }
    return false;
}

std::string LengthFault(std::int64_t nodes, std::uint64_t needs, std::uint64_t has) {
    if (needs == has) return {};
    return "its header tells of " + std::to_string(nodes) + " nodes, which take " + std::to_string(needs) +
           " bytes, and the file has " + std::to_string(has);
}

void RemarkLostNodes(const GridPart& part, double added, std::string_view models, GridFacts& facts) {
    const auto lost = [added](double extent, double step, std::int64_t nodes) {
        return static_cast<std::int64_t>(extent / step + added) < nodes;
    };
    if (!lost(part.east - part.west, part.longitudeStep, part.columns) &&
        !lost(part.north - part.south, part.latitudeStep, part.rows)) {
        return;
    }
    facts.remarks.push_back("extent and step divide to just below a whole number: " + std::string(models) +
                            " will count a row or column too few, and the grid stands askew");
}

/// A table of numbers has no marker: only a header that fits the file's length tells this form from any other.
FormFacts ReadGtxFacts(Content bytes, std::string& why) {
    constexpr std::uint64_t header = 40;
    if (bytes.size() < header) return Refuse(why, "shorter than its header of 40 bytes");
    GridReader in(bytes, std::endian::big);
    GridPart part;
    part.south = in.Read<double>();
    part.west = in.Read<double>();
    part.latitudeStep = in.Read<double>();
    part.longitudeStep = in.Read<double>();
    part.rows = in.Read<std::int32_t>();
    part.columns = in.Read<std::int32_t>();
    part.north = part.south + static_cast<double>(part.rows - 1) * part.latitudeStep;
    part.east = part.west + static_cast<double>(part.columns - 1) * part.longitudeStep;
    if (!OnEarth(part, why)) return std::nullopt;

    const auto nodes = static_cast<std::uint64_t>(part.Nodes());
    const std::uint64_t body = bytes.size() - header;
    if (nodes > std::numeric_limits<std::uint64_t>::max() / 16) return Refuse(why, "it has too many nodes");
    // The model takes the width of the nodes from the file's length, header included.
    const bool wide = bytes.size() > nodes * sizeof(double);
    if (wide && body == nodes * sizeof(float)) {
        return Refuse(why, "a grid of 32-bit nodes needs 10 of them or more to be told from one of 64-bit nodes");
    }
    part.values.push_back(Heights());
    GridValues& values = part.values.front();
    const auto height = [](double node) { return node < kGtxNoDataBelow ? kNothing : node; };
    if (wide) {
        TakeNodes<double>(in, part.Nodes(), values, height);
    } else {
        TakeNodes<float>(in, part.Nodes(), values, height);
    }
    if (values.held == 0) return Refuse(why, "all its nodes are without a height");
    if (values.largest > kLargestSeparation) {
        std::string largest;
        AppendFixed(largest, values.largest, 1);
        return Refuse(why, "it holds " + largest + " m, which is no separation");
    }
    const std::int64_t count = part.Nodes();
    GridFacts facts = OnePart(std::move(part), wide ? "64-bit reals" : "32-bit reals");
    facts.fault = LengthFault(count, header + nodes * (wide ? sizeof(double) : sizeof(float)), bytes.size());
    return facts;
}

FormFacts ReadShiftFacts(Content bytes, std::string& why) {
    constexpr std::size_t record = 16, overview = 11 * record, subHeader = 11 * record;
    const auto text = [&](std::size_t at) {
        std::string label(reinterpret_cast<const char*>(bytes.data()) + at, 8);
        return label.substr(0, label.find_last_not_of(std::string_view(" \0", 2)) + 1);
    };
    if (bytes.size() < overview || text(0) != "NUM_OREC") return std::nullopt;
    GridReader in(bytes);
    const auto whole = [&](std::size_t at) {
        in.Seek(at + 8);
        return in.Read<std::int32_t>();
    };
    if (whole(0) != 11) return Refuse(why, "its numbers aren't little-endian, as the model reads them");
    GridFacts facts;
    facts.nodeType = "records of four 32-bit reals";
    const std::int32_t promised = whole(2 * record);
    std::size_t at = overview;
    for (int n = 0; n < promised && bytes.size() - at >= subHeader; ++n) {
        const auto seconds = [&](std::size_t which) {
            in.Seek(at + which * record + 8);
            return in.Read<double>() / 3600.0;
        };
        GridPart part;
        part.name = text(at + 8);
        part.south = seconds(4);
        part.north = seconds(5);
        part.east = -seconds(6);  // the form counts west
        part.west = -seconds(7);
        part.latitudeStep = seconds(8);
        part.longitudeStep = seconds(9);
        CountNodes(part);
        const std::int32_t count = whole(at + 10 * record);
        if (!OnEarth(part, why)) return std::nullopt;
        part.values = {{.what = "latitude shift", .unit = "\""}, {.what = "longitude shift", .unit = "\""}};
        in.Seek(at + subHeader);
        std::uint64_t left = in.NodesLeft(count, record);
        if (left < static_cast<std::uint64_t>(std::max(count, 0))) facts.fault = "it ends within grid " + part.name;
        if (count != part.Nodes()) {
            facts.fault = "grid " + part.name + " tells of " + std::to_string(count) + " records, and its bounds of " +
                          std::to_string(part.Nodes());
        }
        at += subHeader + left * record;
        for (; left > 0; --left) {
            for (GridValues& values : part.values) values.Take(in.Read<float>());
            in.Skip(8);
        }
        facts.parts.push_back(std::move(part));
    }
    if (facts.parts.empty()) return Refuse(why, "it holds no grid");
    if (facts.parts.size() < 2 || promised != 2) {
        facts.fault = "it tells of " + std::to_string(promised) + " grids and has " +
                      std::to_string(facts.parts.size()) + ", and the model reads two";
    }
    return facts;
}

FormFacts ReadDsbbFacts(Content bytes, std::string& why) {
    constexpr std::uint64_t header = 56;
    if (bytes.size() < 4) return std::nullopt;
    const std::string marker(reinterpret_cast<const char*>(bytes.data()), 4);
    if (marker == "DSAA" || marker == "DSRB")
        return Refuse(why, "begins with " + marker + "; the model reads DSBB only");
    if (marker != "DSBB") return std::nullopt;
    GridReader in(bytes);
    in.Skip(4);
    GridPart part;
    part.columns = in.Read<std::int16_t>();
    part.rows = in.Read<std::int16_t>();
    part.west = in.Read<double>();
    part.east = in.Read<double>();
    part.south = in.Read<double>();
    part.north = in.Read<double>();
    const double low = in.Read<double>(), high = in.Read<double>();
    if (bytes.size() < header || part.rows < 2 || part.columns < 2 || !(part.east > part.west) ||
        !(part.north > part.south) || !std::isfinite(part.east - part.west) ||
        !std::isfinite(part.north - part.south)) {
        return Refuse(why, "its header holds no grid");
    }
    part.latitudeStep = (part.north - part.south) / static_cast<double>(part.rows - 1);
    part.longitudeStep = (part.east - part.west) / static_cast<double>(part.columns - 1);
    part.degrees = OnEarth(part, why);
    why.clear();
    part.values.push_back(part.degrees ? Heights() : GridValues{.what = "correction", .unit = "m"});
    TakeNodes<float>(in, part.Nodes(), part.values.front(),
                     [&](double node) { return IsBetween(node, low - 0.0001, high + 0.0001) ? node : kNothing; });
    const auto needs = header + static_cast<std::uint64_t>(part.Nodes()) * sizeof(float);
    const std::int64_t nodes = part.Nodes();
    GridFacts facts = OnePart(std::move(part), "32-bit reals");
    facts.fault = LengthFault(nodes, needs, bytes.size());
    return facts;
}

FormFacts ReadQuasigeoidFacts(Content bytes, std::string& why) {
    constexpr std::uint64_t header = 72;
    if (bytes.size() < header) return std::nullopt;
    GridReader in(bytes);
    bool angles = true;
    const auto angle = [&] {
        const std::int32_t degrees = in.Read<std::int32_t>(), minutes = in.Read<std::int32_t>();
        const std::int32_t rest = in.Read<std::int32_t>();
        angles = angles && std::abs(std::int64_t{minutes}) < 60 && std::abs(std::int64_t{rest}) < 600000;
        return minutes / 60.0 + degrees + rest / 36000000.0;
    };
    GridPart part;
    part.south = angle();
    part.north = angle();
    part.west = angle();
    part.east = angle();
    part.latitudeStep = angle();
    part.longitudeStep = angle();
    CountNodes(part);
    std::string unused;
    if (!angles || !OnEarth(part, unused)) return std::nullopt;
    part.values.push_back(Heights());
    TakeNodes<std::int32_t>(in, part.Nodes(), part.values.front(), [](double millimetres) {
        const double metres = millimetres / 1000.0;
        return metres >= 9999.0 && metres < 10000.0 ? kNothing : metres;
    });
    if (part.values.front().held == 0) return Refuse(why, "all its nodes are without a height");
    if (part.values.front().largest > kLargestSeparation) return std::nullopt;
    const auto needs = header + static_cast<std::uint64_t>(part.Nodes()) * sizeof(std::int32_t);
    const std::int64_t nodes = part.Nodes();
    GridFacts facts = OnePart(std::move(part), "32-bit whole millimetres");
    facts.fault = LengthFault(nodes, needs, bytes.size());
    return facts;
}

// Two words that the model passes over: the byte order, and what bounds and steps are scaled by.
constexpr std::uint64_t kBynByteOrder = 48;

FormFacts ReadBynFacts(Content bytes, std::string& why) {
    constexpr std::uint64_t header = 80;
    if (bytes.size() < header) return std::nullopt;
    GridReader in(bytes);
    GridPart part;
    part.south = in.Read<std::int32_t>() / 3600.0;
    part.north = in.Read<std::int32_t>() / 3600.0;
    part.west = in.Read<std::int32_t>() / 3600.0;
    part.east = in.Read<std::int32_t>() / 3600.0;
    part.latitudeStep = in.Read<std::int16_t>() / 3600.0;
    part.longitudeStep = in.Read<std::int16_t>() / 3600.0;
    in.Skip(2);
    const auto type = in.Read<std::int16_t>();
    const auto factor = in.Read<double>();
    const auto nodeSize = in.Read<std::int16_t>();
    in.Seek(kBynByteOrder);
    const bool hasByteOrder = in.Read<std::int16_t>() != 0, hasScale = in.Read<std::int16_t>() != 0;
    CountNodes(part);
    std::string unused;
    const bool wide = nodeSize == 4;
    if (!OnEarth(part, unused) || !(wide || nodeSize == 2) || !std::isfinite(factor)) return std::nullopt;
    if (type != 1)
        return Refuse(why, "it is of type " + std::to_string(type) + "; the model reads type 1, undulations");
    if (factor == 0.0) return Refuse(why, "its factor is 0");
    part.values.push_back(Heights());
    in.Seek(header);
    const auto height = [&](std::int32_t node) {
        const double metres = static_cast<float>(node / factor);
        return (!wide && node == 32767) || metres == 9999.0 ? kNothing : metres;
    };
    if (wide) {
        TakeNodes<std::int32_t>(in, part.Nodes(), part.values.front(), height);
    } else {
        TakeNodes<std::int16_t>(in, part.Nodes(), part.values.front(), height);
    }
    // Some programs write nodes big-endian, behind a header that isn't.
    if (part.values.front().largest > kLargestSeparation || part.values.front().smallest < -kLargestSeparation) {
        return Refuse(why, "it holds what are no separations; its nodes may be big-endian, which the model can't read");
    }
    GridFacts facts = OnePart(std::move(part), wide ? "32-bit whole numbers" : "16-bit whole numbers");
    const GridPart& grid = facts.parts.front();
    facts.fault =
        LengthFault(grid.Nodes(), header + static_cast<std::uint64_t>(grid.Nodes()) * (wide ? 4u : 2u), bytes.size());
    if (hasByteOrder) facts.remarks.emplace_back("its word on byte order is set: the model doesn't look at it");
    if (hasScale)
        facts.remarks.emplace_back("its word on the scale of the bounds is set: the model takes whole seconds");
    RemarkLostNodes(grid, 1.0, "the model", facts);
    return facts;
}

FormFacts ReadGravsoftFacts(Content bytes, std::string& why) {
    constexpr std::uint64_t header = 64, rowUnit = 16;
    constexpr std::int32_t marker = 777;
    if (bytes.size() < header) return std::nullopt;
    GridReader in(bytes);
    const bool marked = in.Read<std::int32_t>() == marker;
    GridPart part;
    part.south = in.Read<double>();
    part.north = in.Read<double>();
    part.west = in.Read<double>();
    part.east = in.Read<double>();
    part.latitudeStep = in.Read<double>();
    part.longitudeStep = in.Read<double>();
    CountNodes(part);
    std::string reason;
    if (!OnEarth(part, reason)) {
        if (marked) why = reason;
        return std::nullopt;
    }
    const auto columns = static_cast<std::uint64_t>(part.columns);
    const std::uint64_t padded = (columns + rowUnit - 1) / rowUnit * rowUnit;
    part.values.push_back(Heights());
    in.Seek(header);
    for (std::int64_t row = 0; row < part.rows && in.Remaining() > 0; ++row) {
        TakeNodes<float>(in, part.columns, part.values.front(),
                         [](double node) { return node == 9999.0 ? kNothing : node; });
        in.Skip((padded - columns) * sizeof(float));
    }
    GridFacts facts = OnePart(std::move(part), "32-bit reals");
    const GridPart& grid = facts.parts.front();
    facts.fault = LengthFault(grid.Nodes(), header + static_cast<std::uint64_t>(grid.rows) * padded * sizeof(float),
                              bytes.size());
    if (!marked) {
        if (!facts.fault.empty()) return std::nullopt;
        facts.remarks.emplace_back("it doesn't begin with 777: the models of Denmark and of LAT refuse it");
    }
    RemarkLostNodes(grid, 1.0, "the models of Sweden and Norway", facts);
    return facts;
}

FormFacts ReadGgfFacts(Content bytes, std::string&) {
    if (bytes.size() < kGgfHeaderBytes) return std::nullopt;
    GgfHeader h;
    h.Read(bytes.first(kGgfHeaderBytes));
    GridPart part;
    part.degrees = !(h.flags & kGgfProjected);
    part.south = h.minimumLatitude;
    part.north = h.maximumLatitude;
    part.west = h.minimumLongitude;
    part.east = h.maximumLongitude;
    part.latitudeStep = h.latitudeStep;
    part.longitudeStep = h.longitudeStep;
    part.rows = h.rows;
    part.columns = h.columns;
    const auto fits = [](double extent, double step, std::int64_t nodes) {
        return step > 0.0 && nodes >= 2 && std::fabs(extent / step + 1.0 - static_cast<double>(nodes)) < 0.5;
    };
    std::string unused;
    const std::size_t size = h.NodeSize();
    if (size == 0 || !fits(part.north - part.south, part.latitudeStep, part.rows) ||
        !fits(part.east - part.west, part.longitudeStep, part.columns) || (part.degrees && !OnEarth(part, unused))) {
        return std::nullopt;
    }
    const auto nodes = static_cast<std::uint64_t>(part.Nodes());
    const Content body = bytes.subspan(kGgfHeaderBytes);
    part.values.push_back(Heights());
    for (std::uint64_t n = 0; n < nodes && body.size() >= size; ++n) {
        const bool there = n < body.size() / size;
        part.values.front().Take(there ? h.NodeValue(body.subspan(static_cast<std::size_t>(n) * size, size))
                                       : kNothing);
    }
    static constexpr std::array<const char*, 6> types = {"8-bit whole numbers",  "16-bit whole numbers",
                                                         "32-bit whole numbers", "32-bit reals",
                                                         "64-bit reals",         "64-bit reals"};
    GridFacts facts = OnePart(std::move(part), types[static_cast<std::size_t>(std::countr_zero(h.dataType))]);
    facts.fault = LengthFault(static_cast<std::int64_t>(nodes), kGgfHeaderBytes + nodes * size, bytes.size());
    const bool fileFromSouth = h.rowOrder & kGgfFileFromSouth, tileFromNorth = h.rowOrder & kGgfTileFromNorth;
    if (fileFromSouth == tileFromNorth) {
        facts.remarks.emplace_back("its two row order bits don't agree: the model takes north for south");
    }
    if (!std::has_single_bit(h.interpolation) || h.interpolation > 32) {
        facts.remarks.emplace_back("its interpolation code is none that the model knows: no position has a value");
    } else if (h.interpolation == 32) {
        facts.remarks.emplace_back("its interpolation code 32 makes the tile of the first position answer for all");
    }
    if (h.Wraps() && !(h.flags & kGgfByColumns)) {
        facts.remarks.emplace_back(
            "it wraps: across its seam the model joins parts of rows that needn't belong together");
    } else if (h.Wraps()) {
        facts.remarks.emplace_back("it wraps and is stored by columns: across its seam the model reads 0");
    }
    return facts;
}

FormFacts ReadGlobalFacts(Content bytes, std::string&) {
    constexpr std::int64_t rows = 10801, columns = 21600;
    constexpr std::int32_t rowContent = columns * sizeof(float);
    constexpr std::uint64_t rowBytes = rowContent + 8, needs = rows * rowBytes;
    GridReader in(bytes);
    if (in.Read<std::int32_t>() != rowContent) return std::nullopt;
    in.Skip(rowContent);
    if (in.Read<std::int32_t>() != rowContent) return std::nullopt;
    GridPart part;
    part.south = -90.0;
    part.north = 90.0;
    part.latitudeStep = part.longitudeStep = 1.0 / 60.0;
    part.east = 360.0 - part.longitudeStep;
    part.rows = rows;
    part.columns = columns;
    part.values.push_back(Heights());
    bool markers = true;
    in.Seek(0);
    for (std::int64_t row = 0; row < rows && in.Remaining() >= rowBytes; ++row) {
        markers = in.Read<std::int32_t>() == rowContent && markers;
        TakeNodes<float>(in, columns, part.values.front(),
                         [](double node) { return node >= 9999.0 && node < 10000.0 ? kNothing : node; });
        in.Skip(sizeof(std::int32_t));
    }
    GridFacts facts = OnePart(std::move(part), "32-bit reals");
    facts.fault = LengthFault(rows * columns, needs, bytes.size());
    if (!markers && facts.fault.empty()) facts.fault = "a record marker isn't where its row begins";
    return facts;
}

}  // namespace orv::cfg
