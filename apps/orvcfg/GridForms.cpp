#include "GridForms.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "GridFormReaders.h"
#include "platform/os/FileSystem.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

const std::vector<GridForm>& GridForms() {
    static const std::string_view refusedThere = "a position that needs a node that isn't there has no value";
    static const std::vector<GridForm> forms = {
        // Forms with a marker first, then those that only their figures tell.
        {"NTv2", ReadShiftFacts, {}, {{29, "the Netherlands and their sea", {}, 49.0, 57.0, 1.0, 9.0}}},
        {"DSBB",
         ReadDsbbFacts,
         refusedThere,
         {{4, "the Netherlands, heights", {L"nlgeo04.grd"}, 49.0, 57.0, 1.0, 9.0},
          {4, "the Netherlands, grid corrections", {L"x2c.grd", L"y2c.grd"}, -1e7, 1e7, -1e7, 1e7, false},
          {13, "the Netherlands", {L"nlgeo04.grd"}}}},
        {"global 1 x 1 minute",
         ReadGlobalFacts,
         refusedThere,
         {{18, "the world", {L"Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE"}}}},
        {"GGF", ReadGgfFacts, "the model reads 0 where nodes are missing", {{26, "any"}}},
        {"BYN", ReadBynFacts, refusedThere, {{23, "Canada and North America"}}},
        {"GRAVSOFT",
         ReadGravsoftFacts,
         refusedThere,
         {{22, "the Dutch North Sea, reduction to LAT", {L"LAT2006.01"}, 50.0, 57.0, 1.0, 8.0},
          {14, "Denmark", {}, 53.0, 59.0, 6.0, 17.0},
          {6, "Sweden", {L"*.grd"}, 53.0, 70.5, 8.0, 28.0},
          {19, "Norway", {L"*.bin"}, 56.0, 82.0, -12.0, 36.0}}},
        {"quasi-geoid",
         ReadQuasigeoidFacts,
         refusedThere,
         {{20, "Germany", {}, 46.5, 56.0, 5.0, 16.0}, {16, "Europe", {}, 20.0, 85.0, -60.0, 80.0}}},
        {"GTX", ReadGtxFacts, refusedThere, {{28, "the Netherlands and their sea", {}, 49.0, 57.0, 1.0, 9.0}}},
        {"DE-MIN table", ReadDeMinFacts, {}, {{2, "the Netherlands", {L"geodemin.csv"}}}},
        {"NZ97 table", ReadNz97Facts, {}, {{21, "the Dutch North Sea", {L"geonz97.csv"}}}},
        {"text grid (.gri)", ReadGriFacts, {}, {{24, "Great Britain and Ireland", {L"*.gri"}}}},
        // Both models look into the same folder, so one copy serves shifts and heights.
        {"1 km list of shifts and heights",
         ReadKilometreShifts,
         refusedThere,
         {{25, "Great Britain"}, {24, "the same"}}},
        {"1 km list of heights", ReadKilometreHeights, refusedThere, {{24, "Great Britain and Ireland"}}},
        {"VORF list", ReadVorfFacts, refusedThere, {{27, "the seas around the United Kingdom"}}},
        {"Belgian heights", ReadBelgianHeights, refusedThere, {{5, "Belgium", {L"hBG03.grd"}}}},
        {"Belgian grid corrections", ReadBelgianShifts, refusedThere, {{5, "Belgium", {L"xyGridLb72.grd"}}}},
    };
    return forms;
}

std::optional<RecognisedGrid> RecogniseGrid(std::span<const std::byte> bytes, std::string& why) {
    why.clear();
    std::optional<RecognisedGrid> faulty;
    for (const GridForm& form : GridForms()) {
        std::string reason;
        if (std::optional<GridFacts> facts = form.read(bytes, reason)) {
            if (facts->fault.empty()) return RecognisedGrid{&form, std::move(*facts)};
            if (!faulty) faulty = RecognisedGrid{&form, std::move(*facts)};
        } else if (!reason.empty()) {
            why += (why.empty() ? "as " : "; as ") + std::string(form.name) + ": " + reason;
        }
    }
    return faulty;
}

const GridHome* HomeOf(const RecognisedGrid& grid, std::wstring_view name) {
    const std::vector<GridHome>& homes = grid.form->homes;
    for (const GridHome& home : homes) {
        for (const std::wstring_view own : home.names) {
            if (EqualNoCase(own, name)) return &home;
        }
    }
    const GridPart& part = grid.facts.parts.front();
    const auto home = std::find_if(homes.begin(), homes.end(), [&](const GridHome& candidate) {
        if (!part.degrees && !candidate.degrees) return true;
        const bool anywhere = candidate.south == -90.0 && candidate.north == 90.0;
        return anywhere ||
               (part.degrees == candidate.degrees && part.south >= candidate.south && part.north <= candidate.north &&
                part.west >= candidate.west && part.east <= candidate.east);
    });
    return home == homes.end() ? nullptr : &*home;
}

const GridHome* HomeOf(const GridForm& form, unsigned short typeId) {
    const auto home = std::find_if(form.homes.begin(), form.homes.end(),
                                   [&](const GridHome& candidate) { return candidate.typeId == typeId; });
    return home == form.homes.end() ? nullptr : &*home;
}

std::wstring NameIn(const GridHome& home, std::wstring_view name) {
    if (home.names.empty()) return std::wstring(name);
    for (const std::wstring_view own : home.names) {
        if (EqualNoCase(own, name)) return std::wstring(own);
    }
    const std::wstring_view only = home.names.front();
    if (only.starts_with(L'*')) {
        const std::wstring_view extension = only.substr(1);
        if (EndsWithNoCase(name, extension)) return std::wstring(name);
        return std::wstring(name.substr(0, name.rfind(L'.'))) + std::wstring(extension);
    }
    return home.names.size() == 1 ? std::wstring(only) : std::wstring();
}

MappedFile::~MappedFile() {
    if (start) munmap(start, size);
}

bool MappedFile::Open(const std::wstring& path, std::string& why) {
    const int descriptor = open(PathToBytes(Files().RealPath(path)).c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    int error = descriptor < 0 || fstat(descriptor, &status) != 0 ? errno : 0;
    if (error == 0 && !S_ISREG(status.st_mode)) error = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    if (error == 0 && status.st_size > 0) {
        size = static_cast<std::size_t>(status.st_size);
        start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (start == MAP_FAILED) {
            error = errno;
            start = nullptr;
            size = 0;
        }
    }
    if (descriptor >= 0) close(descriptor);
    if (error != 0) why = std::strerror(error);
    return error == 0;
}

}  // namespace orv::cfg
