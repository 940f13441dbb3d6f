#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orv {

/// A way from geographic positions to a grid and back, made of two texts that PROJ understands. Immutable; any thread
/// may convert. PROJ's own objects serve one thread each: every thread makes its own on first use, without the network,
/// and they go with the thread.
class ProjTransformation : public std::enable_shared_from_this<ProjTransformation> {
public:
    /// `definition` is either a coordinate reference system ("EPSG:32631", or a text with "+type=crs"), to be reached
    /// from the geographic system `base`; or an operation ("+proj=..."), which takes longitude and latitude as they
    /// come. Null and a `problem` in words if PROJ can't build it; the calling thread's objects are made here.
    static std::shared_ptr<const ProjTransformation> Make(std::wstring_view base, std::wstring_view definition,
                                                          std::wstring& problem);

    /// Degrees and metres above the ellipsoid of the geographic side to grid coordinates in the grid's own unit, and
    /// back. False where there is no value; outputs are left alone then.
    bool Forward(double latitude, double longitude, double height, double& x, double& y) const;
    bool Inverse(double x, double y, double height, double& latitude, double& longitude) const;

    /// What PROJ calls the ellipsoid and the projection of a coordinate reference system; empty for an operation.
    std::wstring EllipsoidName() const;
    std::wstring ProjectionName() const;

private:
    friend struct ThreadProj;
    ProjTransformation(std::string from, std::string text);
    const std::uint64_t serial;  // never used twice, unlike an address
    const std::string base, definition;
};

}  // namespace orv
