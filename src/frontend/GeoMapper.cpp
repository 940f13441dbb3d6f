#include "frontend/GeoMapper.h"

#include "core/DataSearch.h"
#include "project/ProjectDefinition.h"

namespace orv {

GeoMapper::GeoMapper() : projection(DataSearch::GetDataSearch().GetProjectDefinition().GetGeoCoordSys()) {}

bool GeoMapper::WorldToPixel(double x, double y, CPoint& pixel) const {
    return mapping.WorldToPixel(x, y, 0.0, pixel);
}

bool GeoMapper::PixelToWorld(const CPoint& pixel, double& x, double& y) const {
    return mapping.PixelToWorld(pixel, x, y, 0.0);
}

bool GeoMapper::GeoToWorld(double lat, double lon, double& x, double& y) const {
    return projection && projection->GeoToGrid(lat, lon, 0.0, x, y);
}

bool GeoMapper::WorldToGeo(double x, double y, double& lat, double& lon) const {
    return projection && projection->GridToGeo(x, y, 0.0, lat, lon);
}

bool GeoMapper::GeoToPixel(double lat, double lon, CPoint& pixel) const {
    double x = 0, y = 0;
    return GeoToWorld(lat, lon, x, y) && WorldToPixel(x, y, pixel);
}

bool GeoMapper::PixelToGeo(const CPoint& pixel, double& lat, double& lon) const {
    double x = 0, y = 0;
    return PixelToWorld(pixel, x, y) && WorldToGeo(x, y, lat, lon);
}

}  // namespace orv
