#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace orv {

/// Height in metres and deflections of the vertical in radians at a position, from the table compiled in: DE-MIN, the
/// Dutch geoid, and NZ97, that of the North Sea. 0, or -1 outside (NZ97: and over a node without data); all results are
/// -999.999 then. Any thread.
ORV_EXPORT int geodemin(double latitude, double longitude, double* height, double* deflectionNorth,
                        double* deflectionEast);
ORV_EXPORT int geonz97(double latitude, double longitude, double* height, double* deflectionNorth,
                       double* deflectionEast);

/// The nodes behind a model, row by row from the north. Never change: any thread may read.
struct NodeTable {
    std::vector<double> nodes;
    std::wstring fileName;  ///< of the installation's own table; empty for the one compiled in
};

using SharedNodeTable = std::shared_ptr<const NodeTable>;
/// The installation's own table ("geodemin.csv", "geonz97.csv" among the system's geoid models) if it is there and has
/// the right shape; else the one compiled in.
SharedNodeTable DeMinTable();
SharedNodeTable GeoNZ97Table();

/// The functions above on a table.
int DeMinAt(const NodeTable& table, double latitude, double longitude, double* height, double* deflectionNorth,
            double* deflectionEast);
int GeoNZ97At(const NodeTable& table, double latitude, double longitude, double* height, double* deflectionNorth,
              double* deflectionEast);

/// A table of exactly so many lines of so many numbers; empty for anything else.
ORV_EXPORT std::vector<double> ReadNodeTable(std::string_view text, int rows, int columns);

}  // namespace orv
