// Any bytes as a grid file of one form, read by its model as a host does and asked at places of its own: each eight
// bytes of the file are a coordinate, too, so that bounds and edges come up by themselves. The program's own name ends
// in that of the form: fuzz_grid_byn.

#include <errno.h>
#include <stdlib.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "Fuzz.h"
#include "core/DataSearch.h"
#include "geoid/GeoidModelList.h"
#include "geoid/GridReader.h"
#include "geoid/NodeTable.h"
#include "geoid/TidalBoundary.h"
#include "platform/notify/Notices.h"
#include "platform/text/PathText.h"

namespace {

struct Form {
    std::string_view name;
    unsigned short typeId;
    std::wstring_view file;  // as the model is told
    std::string_view path;   // below the folder of the installation
    std::wstring_view datum = {};
};
constexpr Form kForms[] = {
    {"quasigeoid", 16, L"q.bin", "common/q.bin"},
    {"dsbb", 4, L"", "general/GeoidModels/netherlands/nlgeo04.grd"},
    {"dsbb_shift", 4, L"", "general/GeoidModels/netherlands/x2c.grd"},
    {"byn", 23, L"c.byn", "common/c.byn"},
    {"gravsoft", 14, L"d.01", "general/GeoidModels/Denmark/d.01"},
    {"lat2006", 22, L"", "general/GeoidModels/Noordzee reductionmatrix/LAT2006.01"},
    {"gri", 24, L"o.gri", "general/GeoidModels/United Kingdom/o.gri"},
    {"kilometre", 24, L"k.txt", "general/GeoidModels/United Kingdom/k.txt"},
    {"kilometre_shift", 25, L"k.txt", "general/GeoidModels/United Kingdom/k.txt"},
    {"vorf", 27, L"v.txt", "common/v.txt"},
    {"belgium", 5, L"", "general/GeoidModels/belgium/hBG03.grd"},
    {"ntv2", 29, L"t.gsb", "general/GeoidModels/Netherlands/t.gsb"},
    {"ggf", 26, L"t.ggf", "common/t.ggf"},
    {"egm2008", 18, L"", "common/Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE"},
    {"vdatum_index", 7, L"g", "common/vdatum/core/g.inf", L"MLLW"},
    {"vdatum_grid", 7, L"one", "common/vdatum/grid.gtx", L"MLLW"},
    {"node_table", 2, L"", "general/GeoidModels/geodemin.csv"},
};

const Form& Chosen() {
    const std::string_view program = program_invocation_short_name;
    for (const Form& form : kForms) {
        if (program == "fuzz_grid_" + std::string(form.name)) return form;
    }
    std::abort();
}

/// An installation of two folders, on a disk that is none if the system has such; gone at the end.
class Place {
public:
    Place() {
        const std::filesystem::path memory = "/dev/shm";
        const std::filesystem::path parent =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        std::string name = (parent / "orv-fuzz-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        root = name + "/";
        Write("settings/ORV.ini", "[DataPath]\nGeneral=" + root + "general/\n");
        // The tree around the pieces that come from the fuzzer.
        Write("common/vdatum/core/one.inf", "a.source=grid.gtx\na.minlat=49\na.maxlat=52\na.minlon=3\na.maxlon=8\n");
        Write("common/vdatum/tidal_area.inf", "a.source=Bay\na.minlat=49\na.maxlat=52\na.minlon=3\na.maxlon=8\n");
        Write("common/vdatum/Bay/Bay.bnd", "3 49 1 1\n8 49 1 1\n8 52 1 1\n3 52 1 1\n");
        orv::DataSearch::GetDataSearch().Initialise(orv::PathFromBytes(root + "settings/"), false, L"", false, L"",
                                                    orv::PathFromBytes(root + "common/"));
        orv::RegisterGeoidModels();
        for (const orv::Notice kind : {orv::Notice::Message, orv::Notice::Alert, orv::Notice::Information}) {
            orv::SetNotice(kind, [](std::wstring_view) {});
        }
    }
    ~Place() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    void Write(std::string_view relative, std::string_view content) const {
        const std::filesystem::path path = root + std::string(relative);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    }

private:
    std::string root;
};

void Ask(orv::GeoidModel& model, double y, double x) {
    double value = 0.0, other = 0.0;
    std::wstring text;
    if (model.Calculate(y, x, x, y, value, text)) REQUIRE(std::isfinite(value));
    for (const bool back : {false, true}) {
        if (model.Calculate(x, y, value, other, back)) REQUIRE(std::isfinite(value) && std::isfinite(other));
        if (!model.CalculateLocalEllipsCorrection(y, x, value, other, back)) continue;
        REQUIRE(std::isfinite(value) && std::isfinite(other));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Place place;
    const Form& form = Chosen();
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    place.Write(form.path, content);
    if (form.name == "vdatum_grid") place.Write("common/vdatum/Bay/tss.gtx", content);
    if (form.name == "dsbb_shift") place.Write("general/GeoidModels/netherlands/y2c.grd", content);
    if (form.name == "vdatum_index") {  // the same bytes as an outline
        orv::TidalBoundary boundary;
        boundary.polygons = orv::ReadBoundary(content);
        boundary.Holds(4.5, 50.5);
    }
    const auto model = orv::GeoidModelList::GetGeoidModelList().Create(form.typeId);
    model->Init(nullptr);
    model->SetFileName(std::wstring(form.file));
    model->SetGeoidChartDatum(std::wstring(form.datum));

    for (const auto& [y, x] :
         {std::pair{50.3, 4.6}, {51.0, 6.4}, {89.99, 0.01}, {53.1, 4.3}, {104000.0, 403000.0}, {0.0, 1e300}}) {
        Ask(*model, y, x);
    }
    std::vector<double> places = {50.5};
    for (const std::endian order : {std::endian::little, std::endian::big}) {
        orv::GridReader in(std::as_bytes(std::span(data, std::min<std::size_t>(size, 160))), order);
        while (in.Remaining() >= sizeof(double)) places.push_back(in.Read<double>());
    }
    for (std::size_t n = 1; n < places.size(); ++n) {
        Ask(*model, places[n - 1], places[n]);
        Ask(*model, std::nextafter(places[n], 0.0), places[n - 1]);
    }
    return 0;
}
