#pragma once

#include "platform/Export.h"

namespace orv {

ORV_EXPORT double TurnToFullCircle(double degrees);   ///< what TrimAngle does with an angle beyond it
ORV_EXPORT double TurnToHalfCircles(double degrees);  ///< what modgeo does with one

// Nearly all angles are in range, and a call would cost as much as the height that it is for.

/// Degrees brought into 0 up to, not including, 360. Not finite stays as it is.
inline double TrimAngle(double degrees) {
    return degrees >= 0.0 && degrees < 360.0 ? degrees + 0.0 : TurnToFullCircle(degrees);
}
/// Degrees brought into -180 to 180, both included; a value in that range comes back unchanged. Not finite stays.
inline double modgeo(double degrees) {
    return degrees >= -180.0 && degrees <= 180.0 ? degrees : TurnToHalfCircles(degrees);
}

}  // namespace orv
