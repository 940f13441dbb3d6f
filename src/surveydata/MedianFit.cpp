#include "surveydata/MedianFit.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orv {

namespace {

/// Samples of a file may hold no number; sorted last, they leave the order of the others defined.
bool Less(double a, double b) {
    return a < b || (std::isnan(b) && !std::isnan(a));
}

/// A candidate slope, the intercept that suits it best, and how the deviations pull at it.
class SlopeTrial {
public:
    explicit SlopeTrial(std::span<const SvpPoint> samples) : points(samples), residuals(samples.size()) {}

    /// Which way the slope should go, by its sign: the derivative of the sum of deviations.
    double Pull(double slope) {
        intercept = MedianResidual(slope);
        deviations = 0;
        double pull = 0;
        for (const SvpPoint& point : points) {
            const double residual = point.soundVelocity - (slope * point.depth + intercept);
            deviations += std::fabs(residual);
            pull += residual > 0 ? point.depth : -point.depth;
        }
        return pull;
    }
    double Intercept() const { return intercept; }
    double Deviations() const { return deviations; }

private:
    double MedianResidual(double slope) {
        std::transform(points.begin(), points.end(), residuals.begin(),
                       [&](const SvpPoint& point) { return point.soundVelocity - slope * point.depth; });
        const auto low = residuals.begin() + static_cast<std::ptrdiff_t>((residuals.size() - 1) / 2);
        std::nth_element(residuals.begin(), low, residuals.end(), Less);
        // With an even count the middle is between two: the other one is the least of what lies behind.
        const double high = residuals.size() % 2 ? *low : *std::min_element(low + 1, residuals.end(), Less);
        return (high + *low) * 0.5;
    }

    std::span<const SvpPoint> points;
    std::vector<double> residuals;
    double intercept = 0, deviations = 0;
};

struct LeastSquares {
    double slope = 0;
    double slopeError = 0;
};

LeastSquares FitSquares(std::span<const SvpPoint> points) {
    double sx = 0, sy = 0, sxy = 0, sxx = 0;
    for (const SvpPoint& point : points) {
        sx += point.depth;
        sy += point.soundVelocity;
        sxy += point.depth * point.soundVelocity;
        sxx += point.depth * point.depth;
    }
    const double n = static_cast<double>(points.size());
    const double del = n * sxx - sx * sx;
    const double intercept = (sxx * sy - sx * sxy) / del;
    const double slope = (n * sxy - sx * sy) / del;
    double chisq = 0;
    for (const SvpPoint& point : points) {
        const double residual = point.soundVelocity - (intercept + slope * point.depth);
        chisq += residual * residual;
    }
    return {slope, std::sqrt(chisq / del)};
}

}  // namespace

void MedianFit(std::span<const SvpPoint> points, double& a, double& b, double& deviation) {
    if (points.size() < 4) return;
    SlopeTrial trial(points);
    const LeastSquares start = FitSquares(points);
    double slope = start.slope;
    double b1 = start.slope;
    double f1 = trial.Pull(b1);
    double b2 = f1 > 0 ? b1 + 3 * start.slopeError : b1 - 3 * start.slopeError;
    double f2 = trial.Pull(b2);
    while (f1 * f2 > 0 && f1 != f2) {  // widen until the pull changes sign
        slope = 2 * b2 - b1;
        b1 = b2;
        f1 = f2;
        b2 = slope;
        f2 = trial.Pull(b2);
    }
    const double closeEnough = 0.01 * start.slopeError;
    while (std::fabs(b2 - b1) > closeEnough) {
        slope = (b2 + b1) * 0.5;
        if (slope == b1 || slope == b2) break;
        const double f = trial.Pull(slope);
        if (f * f1 >= 0) {
            f1 = f;
            b1 = slope;
        } else {
            b2 = slope;
        }
    }
    // Where neither loop ran, the intercept is that of the bracket's end and the slope that of the least squares. The
    // profiles in the field were thinned this way.
    a = trial.Intercept();
    b = slope;
    deviation = trial.Deviations() / static_cast<double>(points.size() - 1);
}

}  // namespace orv
