#pragma once

#include "platform/Export.h"
#include "platform/values/CoordinateSystem.h"

namespace orv {

class OrvGeoCoordSysBase;

/// Positions of a map view: geographic (degrees), world (grid coordinates of the project) and pixels. Takes the
/// coordinate system of the project that is open when it is made, doesn't own it and must not outlive it. A copy has a
/// mapping of its own and the same coordinate system. Conversions that fail leave their outputs alone.
class ORV_EXPORT GeoMapper {
public:
    GeoMapper();

    void SetWorldWindow(const Page& page) { mapping.SetWorldWindow(page); }
    const Page& WorldWindow() const { return mapping.WorldWindow(); }
    void SetPixelWindow(const CRect& rect) { mapping.SetPixelWindow(rect); }
    const CRect& PixelWindow() const { return mapping.PixelWindow(); }
    double ScaleX() const { return mapping.ScaleX(); }
    double ScaleY() const { return mapping.ScaleY(); }

    bool WorldToPixel(double x, double y, CPoint& pixel) const;
    bool PixelToWorld(const CPoint& pixel, double& x, double& y) const;
    bool GeoToWorld(double lat, double lon, double& x, double& y) const;
    bool WorldToGeo(double x, double y, double& lat, double& lon) const;
    bool GeoToPixel(double lat, double lon, CPoint& pixel) const;
    bool PixelToGeo(const CPoint& pixel, double& lat, double& lon) const;

private:
    CoordinateSystem mapping;
    OrvGeoCoordSysBase* projection;  ///< null in a project without one
};

}  // namespace orv
