// Heights and shifts through the base class, beside PROJ on the same file, GeographicLib with everything cached, and
// the bare reads of a tile. Grids are made up, of the sizes of real ones; positions are the same for both of a pair.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <proj.h>
#include <unistd.h>

#include <GeographicLib/Geoid.hpp>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "geoid/GridBytes.h"
#include "geoid/GridReader.h"
#include "platform/text/PathText.h"
#include "support/TestInstallation.h"

namespace {

using orv::GeoidModel;
using orv::test::GridBytes;

struct Position {
    double latitude, longitude;
};

constexpr double kSouth = 50.525, kWest = 3.2, kRowStep = 0.0125, kColumnStep = 0.02;
constexpr int kRows = 481, kColumns = 301;

float Surface(int row, int column) {
    return static_cast<float>(43 + std::sin(row * 0.01) + column * 0.01);
}

/// Anywhere in the grid, or along a vessel's track.
std::vector<Position> Positions(bool track) {
    std::vector<Position> positions;
    unsigned state = 1;
    const auto next = [&state] {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) / 16777216.0;
    };
    for (int i = 0; i < 65536; ++i) {
        positions.push_back(track ? Position{52.0 + i * 1e-6, 4.0 + i * 2e-6}
                                  : Position{51 + next() * 5, 3.5 + next() * 5});
    }
    return positions;
}

std::string Gtx() {
    GridBytes out(std::endian::big);
    out.F64(kSouth).F64(kWest).F64(kRowStep).F64(kColumnStep).I32(kRows).I32(kColumns);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c) out.F32(Surface(r, c));
    return out.bytes;
}

std::string Dsbb() {
    GridBytes out;
    out.bytes = "DSBB";
    out.I16(kColumns).I16(kRows).F64(kWest).F64(kWest + (kColumns - 1) * kColumnStep);
    out.F64(kSouth).F64(kSouth + (kRows - 1) * kRowStep).F64(30).F64(60);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c) out.F32(Surface(r, c));
    return out.bytes;
}

std::string Ggf() {
    GridBytes out;
    out.Blank(48).F64(kSouth).F64(kSouth + (kRows - 1) * kRowStep).F64(kWest).F64(kWest + (kColumns - 1) * kColumnStep);
    out.F64(kRowStep).F64(kColumnStep).I32(kRows).I32(kColumns).Blank(16).F64(9999).F64(1).Blank(2);
    for (const int code : {4, 0, 1, 8, 1, 1}) out.Add(static_cast<std::uint8_t>(code));
    out.Blank(2);
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c) out.F32(Surface(r, c));
    return out.bytes;
}

/// Two grids of seconds as large as those of the Dutch transformation.
std::string Shifts() {
    GridBytes out;
    const auto record = [&out](std::string label, auto value) {
        label.resize(8, ' ');
        out.bytes += label;
        out.Add(value);
        out.Blank(8 - sizeof(value));
    };
    const auto name = [&out](std::string label, std::string value) {
        label.resize(8, ' ');
        value.resize(8, ' ');
        out.bytes += label + value;
    };
    record("NUM_OREC", std::int32_t{11});
    record("NUM_SREC", std::int32_t{11});
    record("NUM_FILE", std::int32_t{2});
    name("GS_TYPE", "SECONDS");
    name("VERSION", "NTv2.0");
    name("SYSTEM_F", "HERE");
    name("SYSTEM_T", "THERE");
    for (const char* axis : {"MAJOR_F", "MINOR_F", "MAJOR_T", "MINOR_T"}) record(axis, 6378137.0);
    const auto grid = [&](const char* own, const char* parent, double south, double east, double dy, double dx,
                          int rows, int columns) {
        name("SUB_NAME", own);
        name("PARENT", parent);
        name("CREATED", "");
        name("UPDATED", "");
        record("S_LAT", south);
        record("N_LAT", south + (rows - 1) * dy);
        record("E_LONG", east);
        record("W_LONG", east + (columns - 1) * dx);
        record("LAT_INC", dy);
        record("LONG_INC", dx);
        record("GS_COUNT", std::int32_t{rows * columns});
        for (int r = 0; r < rows; ++r) {
            for (int c = 0; c < columns; ++c) {
                out.F32(static_cast<float>(-3.5 + 0.001 * r + 0.1 * std::sin(c * 0.05)));
                out.F32(static_cast<float>(1.0 + 0.002 * c + 0.1 * std::cos(r * 0.05))).F32(0).F32(0);
            }
        }
    };
    grid("OUTER", "NONE", 180000, -32400, 360, 360, 71, 71);
    grid("INNER", "OUTER", 181800, -31500, 45, 72, 441, 301);
    record("END", 0.0);
    return out.bytes;
}

constexpr std::uint64_t kGlobalRow = 86408;
constexpr std::wstring_view kGlobalName = L"Und_min1x1_egm2008_isw=82_WGS84_TideFree_SE";

struct Fixture {
    orv::test::TestInstallation installation;
    PJ_CONTEXT* context = proj_context_create();
    std::wstring models, dutch, common;
    std::unique_ptr<GeographicLib::Geoid> linear, cubic;

    Fixture() {
        if (!installation.Start()) std::abort();
        models = installation.GeneralFolder(orv::kLocationGeoidModels);
        dutch = models + L"Netherlands/";
        common = installation.CommonFolder();
        for (const std::wstring& folder : {dutch, models + L"netherlands/", common, common + L"vdatum/core/"}) {
            orv::test::MakeFolders(folder);
        }
        orv::test::WriteBytes(dutch + L"bench.gtx", Gtx());
        orv::test::WriteBytes(dutch + L"bench.gsb", Shifts());
        orv::test::WriteBytes(models + L"netherlands/nlgeo04.grd", Dsbb());
        orv::test::WriteBytes(dutch + L"nlgeo04.grd", Dsbb());
        for (const wchar_t* shift : {L"netherlands/x2c.grd", L"netherlands/y2c.grd"}) {
            orv::test::WriteBytes(models + shift, Dsbb().substr(0, 72));  // there, so that nothing is searched for
        }
        orv::test::WriteBytes(common + L"bench.ggf", Ggf());
        orv::test::WriteBytes(common + L"vdatum/core/bench.inf",
                              "a.source=bench.gtx\na.minlat=50\na.maxlat=57\na.minlon=3\na.maxlon=10\n");
        orv::test::WriteBytes(common + L"vdatum/bench.gtx", Gtx());
        // The global file at its own size, with nothing in it but holes.
        orv::test::WriteBytes(common + std::wstring(kGlobalName), "");
        std::filesystem::resize_file(orv::PathToBytes(common + std::wstring(kGlobalName)), 10801 * kGlobalRow);
        WritePeer();
        orv::RegisterGeoidModels();
    }

    /// A grid of the world at 2 minutes in the peer's form, all of one height.
    void WritePeer() {
        const std::string folder = orv::PathToBytes(common);
        std::ofstream out(folder + "bench.pgm", std::ios::binary);
        out << "P5\n# Description bench\n# Offset -108\n# Scale 0.003\n# Origin 90N 0E\n"
               "# MaxBilinearError 1\n# RMSBilinearError 1\n# MaxCubicError 1\n# RMSCubicError 1\n10800 5401\n65535\n";
        std::string row(2 * 10800, '\0');
        for (std::size_t n = 0; n < row.size(); ++n) row[n] = static_cast<char>(n % 7 + 100);
        for (int r = 0; r < 5401; ++r) out << row;
        out.close();
        linear = std::make_unique<GeographicLib::Geoid>("bench", folder, false);
        cubic = std::make_unique<GeographicLib::Geoid>("bench", folder, true);
        linear->CacheArea(50, 3, 57, 10);
        cubic->CacheArea(50, 3, 57, 10);
    }

    std::unique_ptr<GeoidModel> Model(unsigned short typeId, const wchar_t* file) const {
        std::unique_ptr<GeoidModel> model = orv::GeoidModelList::GetGeoidModelList().Create(typeId);
        model->Init(nullptr);
        model->SetFileName(file);
        double value = 0;
        double other = 0;
        std::wstring text;
        if (!model->Calculate(52, 4, 0, 0, value, text) &&
            !model->CalculateLocalEllipsCorrection(52, 4, value, other, true)) {
            std::abort();
        }
        return model;
    }
    PJ* Transformation(const std::string& what, const wchar_t* file) const {
        PJ* made = proj_create(context, ("+proj=" + what + " +grids=" + orv::PathToBytes(dutch + file)).c_str());
        if (!made) std::abort();
        return made;
    }
};

Fixture& Shared() {
    static Fixture fixture;
    return fixture;
}

template <class Each>
void OverPositions(benchmark::State& state, bool track, Each each) {
    const std::vector<Position> positions = Positions(track);
    double sum = 0;
    for (auto _ : state) {
        for (const Position& at : positions) sum += each(at);
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(positions.size()));
}

using Run = std::function<void(benchmark::State&)>;

Run Heights(unsigned short typeId, const wchar_t* file, bool track) {
    return [=](benchmark::State& state) {
        static std::map<std::pair<unsigned short, std::wstring>, std::unique_ptr<GeoidModel>> made;
        static std::mutex mutex;
        GeoidModel* model = nullptr;
        {
            const std::lock_guard lock(mutex);  // threads of one benchmark share the model
            auto& slot = made[{typeId, file}];
            if (!slot) slot = Shared().Model(typeId, file);
            model = slot.get();
        }
        std::wstring text;
        double value = 0;
        OverPositions(state, track, [&](const Position& at) {
            text.clear();
            return model->Calculate(at.latitude, at.longitude, 0, 0, value, text) ? value : 0.0;
        });
    };
}

Run Moved(bool direct) {
    return [=](benchmark::State& state) {
        const auto model = Shared().Model(29, L"bench.gsb");
        double dLatitude = 0, dLongitude = 0;
        OverPositions(state, false, [&](const Position& at) {
            return model->CalculateLocalEllipsCorrection(at.latitude, at.longitude, dLatitude, dLongitude, direct)
                       ? dLatitude
                       : 0.0;
        });
    };
}

Run Peer(const char* what, const wchar_t* file, PJ_DIRECTION way, bool track) {
    return [=](benchmark::State& state) {
        PJ* transformation = Shared().Transformation(what, file);
        OverPositions(state, track, [&](const Position& at) {
            return proj_trans(transformation, way, proj_coord(proj_torad(at.longitude), proj_torad(at.latitude), 0, 0))
                .lpz.z;
        });
        proj_destroy(transformation);
    };
}

Run Geographic(bool cubic, bool track) {
    return [=](benchmark::State& state) {
        const GeographicLib::Geoid& geoid = cubic ? *Shared().cubic : *Shared().linear;
        OverPositions(state, track, [&](const Position& at) { return geoid(at.latitude, at.longitude); });
    };
}

/// Tiles far apart, so that each position reads one.
void ReadTiles(benchmark::State& state) {
    const auto model = Shared().Model(18, L"");
    int n = 0;
    std::wstring text;
    double value = 0, sum = 0;
    for (auto _ : state) {
        n = (n + 1) % 1000;
        if (model->Calculate(80.0 - n / 100 * 2, n % 100 * 3.5 + 1, 0, 0, value, text)) sum += value;
    }
    benchmark::DoNotOptimize(sum);
}

void ReadRowsBare(benchmark::State& state) {
    const int file = open(orv::PathToBytes(Shared().common + std::wstring(kGlobalName)).c_str(), O_RDONLY);
    int n = 0;
    float row[100];
    double sum = 0;
    for (auto _ : state) {
        n = (n + 1) % 1000;
        const std::uint64_t first = static_cast<std::uint64_t>(n / 100) * 120 + 550;
        for (std::uint64_t r = first; r < first + 100; ++r) {
            const auto at = static_cast<off_t>(r * kGlobalRow + 4 + static_cast<std::uint64_t>(n % 100) * 840);
            if (pread(file, row, sizeof(row), at) == sizeof(row)) sum += row[0];
        }
    }
    benchmark::DoNotOptimize(sum);
    close(file);
}

Run Load(unsigned short typeId, const wchar_t* name) {
    return [=](benchmark::State& state) {
        Shared();
        for (auto _ : state) {
            const auto model = orv::GeoidModelList::GetGeoidModelList().Create(typeId);
            benchmark::DoNotOptimize(model->SetFileName(name));
        }
    };
}

/// The bytes of a file and each four of them as a float.
Run LoadBare(const wchar_t* name, std::endian order) {
    return [=](benchmark::State& state) {
        const std::string path = orv::PathToBytes(Shared().dutch + name);
        for (auto _ : state) {
            std::ifstream in(path, std::ios::binary);
            std::string bytes(std::filesystem::file_size(path), '\0');
            in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            std::vector<float> nodes(bytes.size() / sizeof(float));
            for (std::size_t n = 0; n < nodes.size(); ++n) {
                std::uint32_t bits = 0;
                std::memcpy(&bits, bytes.data() + n * sizeof(bits), sizeof(bits));
                nodes[n] = std::bit_cast<float>(order == std::endian::native ? bits : __builtin_bswap32(bits));
            }
            benchmark::DoNotOptimize(nodes.data());
        }
    };
}

const int registered = [] {
    const auto pair = [](const std::string& name, const Run& ours, const Run& peer) {
        benchmark::RegisterBenchmark((name + "/ours").c_str(), ours);
        benchmark::RegisterBenchmark((name + "/peer").c_str(), peer);
    };
    const wchar_t *gtx = L"bench.gtx", *gsb = L"bench.gsb", *ggf = L"bench.ggf";
    const char* vertical = "vgridshift +multiplier=1";
    pair("bilinear_random_vgridshift", Heights(28, gtx, false), Peer(vertical, gtx, PJ_FWD, false));
    pair("bilinear_track_vgridshift", Heights(28, gtx, true), Peer(vertical, gtx, PJ_FWD, true));
    pair("bilinear_random_geographic", Heights(28, gtx, false), Geographic(false, false));
    pair("bilinear_track_geographic", Heights(28, gtx, true), Geographic(false, true));
    pair("kernel_random_geographic", Heights(4, L"", false), Geographic(true, false));
    pair("spline_random_geographic", Heights(7, L"bench", false), Geographic(true, false));
    pair("egm2008_track_geographic", Heights(18, L"", true), Geographic(false, true));
    pair("ggf_track_geographic", Heights(26, ggf, true), Geographic(false, true));
    pair("ntv2_forward_hgridshift", Moved(true), Peer("hgridshift", gsb, PJ_FWD, false));
    pair("ntv2_inverse_hgridshift", Moved(false), Peer("hgridshift", gsb, PJ_INV, false));
    pair("egm2008_tile_preads", ReadTiles, ReadRowsBare);
    pair("load_gtx_bytes", Load(28, gtx), LoadBare(gtx, std::endian::big));
    pair("load_dsbb_bytes", Load(4, L""), LoadBare(L"nlgeo04.grd", std::endian::little));
    for (const auto& [name, type, file] :
         {std::tuple{"bilinear_threads", 28, gtx}, {"egm2008_threads", 18, L""}, {"ggf_threads", 26, ggf}}) {
        benchmark::RegisterBenchmark(name, Heights(static_cast<unsigned short>(type), file, true))
            ->ThreadRange(1, 2)
            ->UseRealTime();
    }
    return 0;
}();

}  // namespace
