#pragma once

#include <string>

#include "TideStationAccess.h"

namespace orv::cfg {

struct TidePicture {
    std::string svg;  ///< empty without values
    std::size_t values = 0, gaps = 0;
};

/// The tide of a station, with what it doesn't bridge shaded. An empty title is made of the station's name.
TidePicture DrawTide(TideStation& station, const TideRange& range, const std::string& title, double heightPixels = 560);

}  // namespace orv::cfg
