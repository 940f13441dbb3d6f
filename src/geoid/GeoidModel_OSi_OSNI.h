#pragma once

#include "geoid/GeoidModel.h"

namespace orv {

/// Irish grid: here the local ellipsoid needs no correction. Not in the registry; whoever needs it makes
/// it.
class ORV_EXPORT GeoidModel_OSi_OSNI : public GeoidModel {
public:
    /// True, and the shifts stay as the caller set them.
    bool CalculateLocalEllipsCorrection(double, double, double&, double&, bool) override { return true; }
};

}  // namespace orv
