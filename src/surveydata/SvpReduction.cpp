// Thinning a dense profile.

#include <algorithm>
#include <cmath>
#include <numeric>

#include "surveydata/MedianFit.h"
#include "surveydata/SvpFile.h"

namespace orv {

namespace {

constexpr double kDeepest = 1e15;  // up to here whole metres count exactly in a double

struct Zone {
    double from;  ///< nominal depth from which on
    double step;
};
constexpr Zone kZones[] = {{-10, -5}, {-100, -10}, {-200, -20}, {-500, -50}};

/// The samples of a profile by depth, so that a band needn't look at all of them.
class DepthIndex {
public:
    explicit DepthIndex(const std::vector<SvpPoint>& profile) : points(profile) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (!std::isnan(points[i].depth)) order.push_back(i);
        }
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return points[b] < points[a]; });
    }

    /// Samples with lower <= depth < upper in the order of the profile, each deeper than the one taken before it: a
    /// probe on its way down passes a depth once.
    void Take(double lower, double upper, double limit, std::vector<SvpPoint>& out) {
        places.assign(FirstBelow(upper), FirstBelow(lower));
        std::sort(places.begin(), places.end());
        out.clear();
        for (const std::size_t place : places) {
            if (!(points[place].depth < limit)) continue;
            out.push_back(points[place]);
            limit = points[place].depth;
        }
    }

    /// The greatest depth value below `upper`; false if there is none.
    bool NextBelow(double upper, double& depth) const {
        const auto next = FirstBelow(upper);
        if (next == order.end()) return false;
        depth = points[*next].depth;
        return true;
    }

private:
    std::vector<std::size_t>::const_iterator FirstBelow(double upper) const {
        return std::partition_point(order.begin(), order.end(),
                                    [&](std::size_t i) { return points[i].depth >= upper; });
    }

    const std::vector<SvpPoint>& points;
    std::vector<std::size_t> order;  ///< from the shallowest down
    std::vector<std::size_t> places;
};

double StepAt(double z, double previous) {
    for (const Zone& zone : kZones) {
        if (z <= zone.from) previous = zone.step;
    }
    return previous;
}

/// How many bands of `step` from `z` on surely hold nothing, as the next sample lies at `next`: up to the band before
/// it, and no further than the next change of step.
double EmptyBands(double z, double step, double next) {
    double bands = std::floor((z - next) / -step) - 1;
    for (const Zone& zone : kZones) {
        if (z > zone.from) bands = std::min(bands, std::floor((z - zone.from) / -step));
    }
    return std::max(bands, 1.0);
}

/// The velocity of a band's median line at a depth. False for samples that are too few for a line, or too close
/// together: a probe held still differs in the last digits only, and the slope is no number.
bool FittedVelocity(const std::vector<SvpPoint>& band, double depth, double& velocity) {
    if (band.size() < 4) return false;
    double a = 0, b = 0, deviation = 0;
    MedianFit(band, a, b, deviation);
    velocity = depth * b + a;
    return std::isfinite(velocity);
}

std::vector<SvpPoint> Reduced(const std::vector<SvpPoint>& points) {
    DepthIndex index(points);
    std::vector<SvpPoint> reduced, band;
    const double last = points.back().depth;
    double z = std::ceil(points.front().depth);
    const double start = z + 1.0;
    double step = -1.0, previousStep = -1.0;
    for (bool more = z + 0.5 >= last; more; more = z - step * 0.5 >= last) {
        step = StepAt(z, step);
        const double lower = z + step * 0.5;
        index.Take(lower, z - previousStep * 0.5, start, band);
        double bands = 1;
        // The line isn't drawn on below the last sample, though the band is called by its nominal depth.
        if (double velocity = 0; FittedVelocity(band, std::max(z, last), velocity)) {
            reduced.emplace_back(z, velocity, 0, 0);
        } else if (!band.empty()) {
            reduced.insert(reduced.end(), band.begin(), band.end());
        } else {
            double next = 0;
            if (!index.NextBelow(lower, next)) break;
            bands = EmptyBands(z, step, next);
        }
        previousStep = step;
        z += bands * step;
    }
    return reduced;
}

}  // namespace

bool SvpFile::ReduceProfile() {
    if (points.empty()) return false;
    if (!(std::fabs(points.front().depth) <= kDeepest && std::fabs(points.back().depth) <= kDeepest)) return true;
    std::vector<SvpPoint> reduced = Reduced(points);
    if (reduced != points) modified = true;
    if (modified) points = std::move(reduced);
    return true;
}

}  // namespace orv
