// Messages to ring and file beside spdlog's ring and file sinks, with one and two writers, and to the ring alone. Each
// message carries its time as text; both write a file below a fresh folder.

#include <benchmark/benchmark.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/ringbuffer_sink.h>
#include <spdlog/spdlog.h>

#include <memory>

#include "housekeeping/BaseORVMessage.h"
#include "platform/text/PathText.h"
#include "support/TestInstallation.h"

namespace {

constexpr const char* kPattern = "%Y-%m-%d %H:%M:%S : %v";

/// Both sides, made once for all writers of a run.
struct Sides {
    orv::test::TestInstallation installation;
    orv::test::TempFolder folder;
    std::unique_ptr<orv::BaseORVMessage> ours = std::make_unique<orv::BaseORVMessage>();
    std::shared_ptr<spdlog::logger> peer;

    explicit Sides(bool file) {
        static_cast<void>(installation.Start());
        auto ring = std::make_shared<spdlog::sinks::ringbuffer_sink_mt>(100);
        std::vector<spdlog::sink_ptr> sinks = {ring};
        if (file) {
            ours->SetLogging(true, folder.Path(), L"");
            sinks.push_back(
                std::make_shared<spdlog::sinks::basic_file_sink_mt>(orv::PathToBytes(folder / L"peer.log")));
        }
        peer = std::make_shared<spdlog::logger>("peer", sinks.begin(), sinks.end());
        peer->set_pattern(kPattern);
    }
};

std::unique_ptr<Sides> sides;

template <bool kFile>
void Make(const benchmark::State&) {
    sides = std::make_unique<Sides>(kFile);
}
void Drop(const benchmark::State&) {
    sides.reset();
}

void Ours(benchmark::State& state) {
    const std::wstring text = L"Vessel Volans: position of the second receiver lost";
    for (auto _ : state) sides->ours->AddMessage(orv::kLevelInformation, text, true, L"", true, orv::kNoFilter);
}
void Peer(benchmark::State& state) {
    const std::string text = "Vessel Volans: position of the second receiver lost";
    for (auto _ : state) sides->peer->info(text);
}

/// spdlog's ring keeps a message unformatted; a view that shows it formats it.
void PeerRing(benchmark::State& state) {
    const std::string text = "Vessel Volans: position of the second receiver lost";
    spdlog::pattern_formatter layout(kPattern);
    spdlog::memory_buf_t shown;
    for (auto _ : state) {
        sides->peer->info(text);
        shown.clear();
        layout.format(spdlog::details::log_msg("peer", spdlog::level::info, text), shown);
        benchmark::DoNotOptimize(shown.data());
    }
}

#define PAIR(name, ours, peer, file, writers)                                                                \
    BENCHMARK(ours)->Name(name "/ours")->Setup(Make<file>)->Teardown(Drop)->Threads(writers)->UseRealTime(); \
    BENCHMARK(peer)->Name(name "/peer")->Setup(Make<file>)->Teardown(Drop)->Threads(writers)->UseRealTime()

PAIR("ring_and_file_1", Ours, Peer, true, 1);
PAIR("ring_and_file_2", Ours, Peer, true, 2);
PAIR("ring_1", Ours, PeerRing, false, 1);

}  // namespace
