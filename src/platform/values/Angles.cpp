#include "platform/values/Angles.h"

#include <cmath>

namespace orv {

double TurnToFullCircle(double degrees) {
    if (!std::isfinite(degrees)) return degrees;
    double angle = std::fmod(degrees, 360.0);
    if (angle < 0.0) angle += 360.0;
    // A tiny negative angle has just been rounded up to the full circle.
    return angle < 360.0 ? angle + 0.0 : 0.0;
}

double TurnToHalfCircles(double degrees) {
    if (!std::isfinite(degrees)) return degrees;
    const double angle = std::fmod(degrees, 360.0);
    if (angle > 180.0) return angle - 360.0;
    if (angle < -180.0) return angle + 360.0;
    return angle;
}

}  // namespace orv
