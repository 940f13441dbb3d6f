// Heights by the RDNAP 2018 grid through the base class, beside PROJ's own vertical grid shift on the same file.
// Argument: the grid, by default a made-up one of the same size.

#include <benchmark/benchmark.h>
#include <proj.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "platform/text/PathText.h"
#include "support/TestInstallation.h"

namespace {

template <class T>
void PutBigEndian(std::string& out, T value) {
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    for (std::size_t i = sizeof(T); i > 0; --i) out += bytes[i - 1];
}

std::string MakeGrid() {
    constexpr int kRows = 481, kColumns = 301;
    std::string bytes;
    PutBigEndian(bytes, 50.525);
    PutBigEndian(bytes, 3.2);
    PutBigEndian(bytes, 0.0125);
    PutBigEndian(bytes, 0.02);
    PutBigEndian(bytes, kRows);
    PutBigEndian(bytes, kColumns);
    for (int r = 0; r < kRows; ++r) {
        for (int c = 0; c < kColumns; ++c) PutBigEndian(bytes, static_cast<float>(43 + std::sin(r * 0.01) + c * 0.01));
    }
    return bytes;
}

struct Position {
    double latitude, longitude;
};

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

struct Fixture {
    orv::test::TestInstallation installation;
    std::unique_ptr<orv::GeoidModel> model;
    PJ_CONTEXT* context = proj_context_create();
    PJ* transformation = nullptr;

    Fixture() {
        if (!installation.Start()) std::abort();
        const std::wstring folder = installation.GeneralFolder(orv::kLocationGeoidModels) + L"Netherlands/";
        orv::test::MakeFolders(folder);
        orv::test::WriteBytes(folder + L"bench.gtx", MakeGrid());
        orv::RegisterGeoidModels();
        model = orv::GeoidModelList::GetGeoidModelList().Create(28);
        if (!model->SetFileName(L"bench.gtx")) std::abort();
        const std::string definition =
            "+proj=vgridshift +multiplier=1 +grids=" + orv::PathToBytes(folder + L"bench.gtx");
        transformation = proj_create(context, definition.c_str());
        if (!transformation) std::abort();
    }
};

Fixture& Shared() {
    static Fixture fixture;
    return fixture;
}

void Ours(benchmark::State& state, bool track) {
    orv::GeoidModel& model = *Shared().model;
    const std::vector<Position> positions = Positions(track);
    std::wstring text;
    double value = 0, sum = 0;
    for (auto _ : state) {
        for (const Position& at : positions) {
            if (model.Calculate(at.latitude, at.longitude, 0, 0, value, text)) sum += value;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(positions.size()));
}

void Peer(benchmark::State& state, bool track) {
    PJ* transformation = Shared().transformation;
    const std::vector<Position> positions = Positions(track);
    double sum = 0;
    for (auto _ : state) {
        for (const Position& at : positions) {
            const PJ_COORD out =
                proj_trans(transformation, PJ_FWD, proj_coord(proj_torad(at.longitude), proj_torad(at.latitude), 0, 0));
            sum += out.lpz.z;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(positions.size()));
}

const int registered = [] {
    benchmark::RegisterBenchmark("rdnap2018_random/ours", Ours, false);
    benchmark::RegisterBenchmark("rdnap2018_random/peer", Peer, false);
    benchmark::RegisterBenchmark("rdnap2018_track/ours", Ours, true);
    benchmark::RegisterBenchmark("rdnap2018_track/peer", Peer, true);
    benchmark::RegisterBenchmark("rdnap2018_random_threads", Ours, false)->Threads(1)->Threads(2)->UseRealTime();
    return 0;
}();

}  // namespace
