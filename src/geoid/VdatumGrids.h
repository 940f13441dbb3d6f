#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "geoid/GtxGrid.h"

/// The file tree of the vertical datum transformation: index files that list grids with their bounds, and grids that
/// are read when a position needs them and dropped when none has for a while. See docs/formats/vdatum.md.
namespace orv {

/// A grid of an index. Bounds and steps are those of the index (steps 0) until the grid is read, then the grid's own.
struct VdatumGrid {
    std::wstring fileName;  ///< with its folder
    int status = kGeoidOk;  ///< of the last read
    std::wstring error;
    double longitudeStep = 0.0, latitudeStep = 0.0;
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;  ///< degrees, longitudes 0 to 360
    std::wstring source;                                      ///< file name as the index gives it
    std::wstring description;
    double lastUse = 0.0;                 ///< milliseconds since 1970
    std::shared_ptr<const GtxGrid> grid;  ///< null until read, and again when dropped

    /// The closed bounds as they are now.
    bool Holds(double latitude, double longitude) const {
        return latitude >= south && latitude <= north && longitude >= west && longitude <= east;
    }
    /// Reads the grid unless it is held; true when it is.
    bool Load();
};

/// Height by spline in a grid of the tree; false outside, or where a short grid lacks a node. Exactly on a node (within
/// 0.0001 degree) its own value.
ORV_EXPORT bool VdatumGridValue(const GtxGrid& grid, double latitude, double longitude, double& value);

/// The grids of an index file, in its order, with names below `folder`. The list is empty on failure, which is a file
/// that can't be opened.
bool ReadInfFile(std::wstring_view folder, const std::wstring& infPath, std::vector<VdatumGrid>& list);
/// The same from the file's text.
ORV_EXPORT std::vector<VdatumGrid> ReadInf(std::wstring_view folder, std::string_view text);

/// Values and lists that nobody asked for in this time are dropped; looked at no more often than that.
inline constexpr double kVdatumKeptMilliseconds = 180000.0;
/// A clock that was set back makes everything old, or nothing would be dropped until it has caught up.
inline bool IsRecent(double then, double now) {
    return now >= then && now - then < kVdatumKeptMilliseconds;
}
void DropUnused(std::vector<VdatumGrid>& list, double now);

/// Folder of the tree, ends in a separator; empty when the installation has none.
std::wstring VdatumFolder();
/// What is told when files are missing: their names, and the folder they belong into.
std::wstring VdatumMessage(std::wstring_view files, std::wstring_view folder);

}  // namespace orv
