#include "geoid/GridMath.h"

namespace orv {

double SplineInterpolate(double x, const double* y, int n) {
    double d[6] = {}, w[6] = {};  // second derivatives; those at the ends stay 0
    for (int i = 1; i <= n - 2; ++i) {
        const double p = w[i - 1] / 2 + 2;
        w[i] = -0.5 / p;
        d[i] = (3 * (y[i + 1] - 2 * y[i] + y[i - 1]) - d[i - 1] / 2) / p;
    }
    for (int i = n - 2; i >= 1; --i) d[i] += d[i + 1] * w[i];

    if (x < 0) return (y[1] - y[0] - d[1] / 6) * (x - 2) + y[0];
    if (x >= n) return (y[n - 1] - y[n - 2] + d[n - 2] / 6) * (x - n - 1) + y[n - 1];
    int k = 1;  // what lies before the first value belongs to the first piece
    if (!TruncToInt(x, k) || k < 1) k = 1;
    const double t = x - k;
    return ((y[k] - y[k - 1] - d[k - 1] / 3 - d[k] / 6) + ((d[k] - d[k - 1]) * t / 6 + d[k - 1] / 2) * t) * t +
           y[k - 1];
}

}  // namespace orv
