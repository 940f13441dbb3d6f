#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orv::cfg {

/// One quantity that the nodes of a grid hold, and what there is of it.
struct GridValues {
    std::string what, unit;  ///< for instance "height" and "m"
    std::int64_t missing = 0, held = 0;
    double smallest = 0.0, largest = 0.0;  ///< of those held

    void Take(double value) {
        if (!std::isfinite(value)) return void(++missing);
        smallest = held == 0 ? value : std::min(smallest, value);
        largest = held == 0 ? value : std::max(largest, value);
        ++held;
    }
};

/// A regular grid of a file: bounds and steps in degrees, or in metres of a national grid; longitudes positive east.
struct GridPart {
    std::string name = {};
    bool degrees = true;
    double south = 0.0, north = 0.0, west = 0.0, east = 0.0;
    double latitudeStep = 0.0, longitudeStep = 0.0;
    std::int64_t rows = 0, columns = 0;
    std::vector<GridValues> values = {};

    std::int64_t Nodes() const { return rows * columns; }
};

/// What the content of a grid file tells.
struct GridFacts {
    std::string nodeType;
    std::vector<GridPart> parts;       ///< one at least; the first is the one that places the file
    std::string fault;                 ///< why the content doesn't keep what its header promises; empty if it does
    std::vector<std::string> remarks;  ///< what a user of a sound file should know
};

/// A model that reads grids of a form, and the area whose grids it is meant for. Without an area: any.
struct GridHome {
    unsigned short typeId;
    std::string_view area;
    /// What its files must be called: any of these names; or a form such as "*.bin"; without one: as they please.
    std::vector<std::wstring_view> names = {};
    double south = -90.0, north = 90.0, west = -360.0, east = 360.0;
    bool degrees = true;
};

/// A file form that is known by its content.
struct GridForm {
    std::string_view name;
    /// The facts; or none, and why if the content looks like this form and yet isn't.
    std::optional<GridFacts> (*read)(std::span<const std::byte> bytes, std::string& why);
    /// What the models make of a file that is shorter than its header says; empty for those that refuse it.
    std::string_view ifShort;
    std::vector<GridHome> homes;  ///< tried in their order
};
const std::vector<GridForm>& GridForms();

/// The form and facts of a content, one without a fault if there is any; else none and why, form by form.
struct RecognisedGrid {
    const GridForm* form = nullptr;
    GridFacts facts;
};
std::optional<RecognisedGrid> RecogniseGrid(std::span<const std::byte> bytes, std::string& why);

/// The home whose file is called `name`, else the first whose area holds the whole grid; or null.
const GridHome* HomeOf(const RecognisedGrid& grid, std::wstring_view name);
/// The model's entry among the homes of a form; null if it reads no such grids.
const GridHome* HomeOf(const GridForm& form, unsigned short typeId);
/// What a file has to be called in that home; empty if there is more than one name to choose from.
std::wstring NameIn(const GridHome& home, std::wstring_view name);

/// A file's content, to look at only. Large ones aren't read into memory.
class MappedFile {
public:
    MappedFile() = default;
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    /// False and why in words.
    bool Open(const std::wstring& path, std::string& why);
    std::span<const std::byte> Bytes() const { return {static_cast<const std::byte*>(start), size}; }
    std::string_view Text() const { return {static_cast<const char*>(start), size}; }

private:
    void* start = nullptr;
    std::size_t size = 0;
};

}  // namespace orv::cfg
