#pragma once

#include "platform/Export.h"
#include "platform/values/Point.h"

namespace orv {

struct CPoint {
    int x = 0, y = 0;
    bool operator==(const CPoint&) const = default;
};

/// Pixels: left and top belong to it, y grows downwards.
struct CRect {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const CRect&) const = default;
};

/// The mapping between a window of the world (y upwards) and one of the screen: the world's low x and high y lie at the
/// left and top. It converts nothing while either window is empty. One thread, or many that don't change it.
class ORV_EXPORT CoordinateSystem {
public:
    void SetWorldWindow(const Page& page) { world = page; }
    const Page& WorldWindow() const { return world; }
    void SetPixelWindow(const CRect& rect) { pixels = rect; }
    const CRect& PixelWindow() const { return pixels; }
    double ScaleX() const;  ///< pixels per world unit; 0 while a window is empty
    double ScaleY() const;

    /// To the nearest pixel, also outside the window. False, and the output left alone, if there is none. The height
    /// has no influence on a plan view.
    bool WorldToPixel(double x, double y, double z, CPoint& pixel) const;
    bool PixelToWorld(const CPoint& pixel, double& x, double& y, double z) const;

private:
    Page world;
    CRect pixels;
};

}  // namespace orv
