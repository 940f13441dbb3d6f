#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orv::cfg {

/// What the content of a grid file tells. Degrees; metres.
struct GridFacts {
    std::string_view form;  ///< for instance "GTX"
    std::string nodeType;
    double south = 0.0, north = 0.0, west = 0.0, east = 0.0;
    double latitudeStep = 0.0, longitudeStep = 0.0;
    std::int64_t rows = 0, columns = 0;
    std::int64_t noData = 0;               ///< nodes without a height
    double smallest = 0.0, largest = 0.0;  ///< of the others

    std::int64_t Nodes() const { return rows * columns; }
};

/// A model that reads grids of a form, and the area whose grids it is meant for. Without an area: any.
struct GridHome {
    unsigned short typeId;
    std::string_view area;
    double south = -90.0, north = 90.0, west = -180.0, east = 360.0;
};

/// A file form that is known by its content. Forms that come later are rows of the same table.
struct GridForm {
    std::string_view name;
    /// The facts, or none and why the content isn't of this form.
    std::optional<GridFacts> (*read)(std::span<const std::byte> bytes, std::string& why);
    std::vector<GridHome> homes;  ///< tried in their order
};
const std::vector<GridForm>& GridForms();

/// The form and facts of a content; none and why, form by form.
struct RecognisedGrid {
    const GridForm* form = nullptr;
    GridFacts facts;
};
std::optional<RecognisedGrid> RecogniseGrid(std::span<const std::byte> bytes, std::string& why);

/// The first home whose area holds the whole grid, or null.
const GridHome* HomeOf(const RecognisedGrid& grid);
/// True if the model reads grids of that form.
bool Reads(const GridForm& form, unsigned short typeId);

}  // namespace orv::cfg
