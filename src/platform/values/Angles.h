#pragma once

#include "platform/Export.h"

namespace orv {

/// Degrees brought into 0 up to, not including, 360. Not finite stays as it is.
ORV_EXPORT double TrimAngle(double degrees);
/// Degrees brought into -180 to 180, both included; a value in that range comes back unchanged. Not finite stays.
ORV_EXPORT double modgeo(double degrees);

}  // namespace orv
