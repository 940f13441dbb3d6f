#pragma once

namespace orv {

/// One sample of a sound velocity profile.
struct SvpPoint {
    double depth = 0;          ///< metres, negative below the surface
    double soundVelocity = 0;  ///< metres per second, without the file's offset
    double auxValue1 = 0;      ///< carried along, never interpreted
    double auxValue2 = 0;

    SvpPoint() = default;
    SvpPoint(double atDepth, double velocity, double aux1, double aux2)
        : depth(atDepth), soundVelocity(velocity), auxValue1(aux1), auxValue2(aux2) {}
    void Set(double atDepth, double velocity, double aux1, double aux2) { *this = {atDepth, velocity, aux1, aux2}; }

    bool operator==(const SvpPoint&) const = default;
    bool operator<(const SvpPoint& other) const { return other.depth > depth; }  ///< by depth only
};

}  // namespace orv
