#pragma once

#include <string>

#include "project/VesselConfig.h"

namespace orv::cfg {

/// A vessel from above as an SVG file, bow up and to scale: its hull as far as length, width and kind tell it, each
/// offset point with its name and place. Empty for a vessel with neither size nor offsets.
std::string DrawVesselPlan(const VesselConfig& vessel);

}  // namespace orv::cfg
