#include "platform/values/CoordinateSystem.h"

#include <cmath>

#include "platform/values/TruncToInt.h"

namespace orv {

namespace {

double Scale(int first, int last, double low, double high) {
    const double scale = (static_cast<double>(last) - first) / (high - low);
    return std::isfinite(scale) && scale > 0 ? scale : 0.0;
}

}  // namespace

double CoordinateSystem::ScaleX() const {
    return Scale(pixels.left, pixels.right, world.Low().x, world.High().x);
}

double CoordinateSystem::ScaleY() const {
    return Scale(pixels.top, pixels.bottom, world.Low().y, world.High().y);
}

bool CoordinateSystem::WorldToPixel(double x, double y, double, CPoint& pixel) const {
    const double scaleX = ScaleX(), scaleY = ScaleY();
    CPoint found;
    if (scaleX == 0 || scaleY == 0 ||
        !TruncToInt(std::floor(pixels.left + (x - world.Low().x) * scaleX + 0.5), found.x) ||
        !TruncToInt(std::floor(pixels.top + (world.High().y - y) * scaleY + 0.5), found.y)) {
        return false;
    }
    pixel = found;
    return true;
}

bool CoordinateSystem::PixelToWorld(const CPoint& pixel, double& x, double& y, double) const {
    const double scaleX = ScaleX(), scaleY = ScaleY();
    if (scaleX == 0 || scaleY == 0) return false;
    x = world.Low().x + (static_cast<double>(pixel.x) - pixels.left) / scaleX;
    y = world.High().y - (static_cast<double>(pixel.y) - pixels.top) / scaleY;
    return true;
}

}  // namespace orv
