#pragma once

namespace orv {

/// Three numbers along the axes of a vessel: X to starboard, Y to the bow, Z up. Metres unless told otherwise.
struct COrvDouble3D {
    double X = 0, Y = 0, Z = 0;
    bool operator==(const COrvDouble3D&) const = default;
};

}  // namespace orv
