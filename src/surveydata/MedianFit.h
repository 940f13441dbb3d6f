#pragma once

#include <span>

#include "platform/Export.h"
#include "surveydata/SvpPoint.h"

namespace orv {

/// The straight line soundVelocity = a + b * depth through a stretch of a profile that has the least sum of absolute
/// deviations, which a few bad samples can't pull away as they pull a least-squares line. The slope is found to a
/// hundredth of its standard error. `deviation` is the sum of absolute deviations over the number of points less one.
///
/// Four or more points, of which two at least differ in depth; with fewer nothing is written. Any thread may call.
ORV_EXPORT void MedianFit(std::span<const SvpPoint> points, double& a, double& b, double& deviation);

}  // namespace orv
