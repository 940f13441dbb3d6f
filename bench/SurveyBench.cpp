// Files of a survey day beside their plainest peers: tides of five years beside a sorted vector of pairs under a lock,
// thinning beside sorting the samples; names of logs, opening, memory.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <mutex>
#include <random>
#include <utility>
#include <vector>

#include "support/TestInstallation.h"
#include "surveydata/LogNaming.h"
#include "surveydata/SvpFile.h"
#include "surveydata/TideStation.h"

namespace {

constexpr int kValues = 5 * 365 * 1440;  // one a minute for five years
constexpr double kStart = 1451606400000.0, kMinute = 60000.0;

double TimeOf(int index) {
    return kStart + index * kMinute;
}

std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double Seconds(const std::chrono::steady_clock::time_point& since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

/// A station of five years, whose making is measured on the way.
class Gauge {
public:
    Gauge() {
        installation.Start();
        orv::test::WriteBytes(path, "");
        station.FileOpen(path);
        const std::size_t before = HeapInUse();
        auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < kValues; ++i) station.AddTideValue(TimeOf(i), std::sin(i * 0.01));
        const double appended = Seconds(start);
        const double bytes = static_cast<double>(HeapInUse() - before) / kValues;
        station.FileSave();
        station.FileClose(false);
        start = std::chrono::steady_clock::now();
        station.FileOpen(path);
        const double opened = Seconds(start);
        std::printf("append: %.2f M values/s; memory %.3f x 16 bytes a value; open %.2f ms\n", kValues / appended / 1e6,
                    bytes / 16, opened * 1e3);
        double time = kStart, value = 0;  // every month in memory
        for (bool more = station.GetTideValue(orv::TideStation::kFirst, time, value); more;
             more = station.GetTideValue(orv::TideStation::kNext, time, value)) {
        }
    }
    orv::TideStation station;

private:
    orv::test::TestInstallation installation;
    const std::wstring path = installation.ProjectFolder() + L"Gauge.tdg";
};

Gauge& TheGauge() {
    static Gauge gauge;
    return gauge;
}

/// One sorted vector under a lock.
struct Peer {
    Peer() {
        for (int i = 0; i < kValues; ++i) values.emplace_back(TimeOf(i), std::sin(i * 0.01));
    }
    bool Interpolate(double time, double& value) {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto after = std::lower_bound(values.begin(), values.end(), time,
                                            [](const auto& pair, double at) { return pair.first < at; });
        if (after == values.begin() || after == values.end()) return false;
        const auto before = after - 1;
        value =
            (after->second - before->second) / (after->first - before->first) * (time - before->first) + before->second;
        return true;
    }
    std::mutex mutex;
    std::vector<std::pair<double, double>> values;
};

Peer& ThePeer() {
    static Peer peer;
    return peer;
}

std::vector<double> Times(bool random) {
    std::vector<double> times;
    std::mt19937 generator(1);
    for (int i = 0; i < (1 << 20); ++i) {
        const int index = random ? static_cast<int>(generator() % (kValues - 2)) : kValues / 3 + i;
        times.push_back(TimeOf(index) + 0.4 * kMinute);
    }
    return times;
}

void TideOurs(benchmark::State& state, bool random) {
    orv::TideStation& station = TheGauge().station;
    const std::vector<double> times = Times(random);
    std::size_t i = 0;
    double value = 0;
    for (auto _ : state) {
        double time = times[i++ & (times.size() - 1)];
        benchmark::DoNotOptimize(station.InterpolateTide(time, value));
        benchmark::DoNotOptimize(value);
    }
}
void TidePeer(benchmark::State& state, bool random) {
    Peer& peer = ThePeer();
    const std::vector<double> times = Times(random);
    std::size_t i = 0;
    double value = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(peer.Interpolate(times[i++ & (times.size() - 1)], value));
        benchmark::DoNotOptimize(value);
    }
}

std::vector<orv::SvpPoint> Samples(int count) {
    std::mt19937 generator(2);
    std::vector<orv::SvpPoint> samples;
    double depth = 0;
    for (int i = 0; i < count; ++i) {
        depth -= 600.0 / count * (0.5 + static_cast<double>(generator() % 1000) / 1000);
        samples.emplace_back(depth, 1480 - depth * 0.02 + static_cast<double>(generator() % 100) / 100, 0, 0);
    }
    return samples;
}

void ReduceOurs(benchmark::State& state, int count) {
    orv::SvpFile profile;
    for (const orv::SvpPoint& sample : Samples(count))
        profile.AddElement(orv::Point{sample.soundVelocity, sample.depth, 0});
    for (auto _ : state) {
        orv::SvpFile copy = profile;
        benchmark::DoNotOptimize(copy.ReduceProfile());
    }
}
/// The same samples in another order, sorted by depth.
void ReducePeer(benchmark::State& state, int count) {
    std::vector<orv::SvpPoint> samples = Samples(count);
    std::shuffle(samples.begin(), samples.end(), std::mt19937(3));
    for (auto _ : state) {
        std::vector<orv::SvpPoint> copy = samples;
        std::sort(copy.begin(), copy.end());
        benchmark::DoNotOptimize(copy.data());
    }
}

orv::LogFields Fields() {
    return {L"Waverly", L"Sweep", L"L001", 1614680130, 1614762000, 2};
}
void ComposeName(benchmark::State& state) {
    orv::LogFields fields = Fields();
    for (auto _ : state) {
        fields.logTime += 61;
        benchmark::DoNotOptimize(orv::AutomaticLogName(fields));
    }
}
void ParseName(benchmark::State& state) {
    const std::wstring name = orv::AutomaticLogName(Fields());
    orv::LogFields fields;
    for (auto _ : state) benchmark::DoNotOptimize(orv::ParseLogName(name, fields));
}

const int registered = [] {
    TheGauge();
    for (const bool random : {true, false}) {
        const std::string name = random ? "tide_at_random" : "tide_in_sequence";
        benchmark::RegisterBenchmark((name + "/ours").c_str(), TideOurs, random);
        benchmark::RegisterBenchmark((name + "/peer").c_str(), TidePeer, random);
    }
    for (const int count : {10000, 100000}) {
        const std::string name = "thin_" + std::to_string(count / 1000) + "k_beside_sort";
        benchmark::RegisterBenchmark((name + "/ours").c_str(), ReduceOurs, count);
        benchmark::RegisterBenchmark((name + "/peer").c_str(), ReducePeer, count);
    }
    benchmark::RegisterBenchmark("log_name_compose", ComposeName);
    benchmark::RegisterBenchmark("log_name_parse", ParseName);
    return 0;
}();

}  // namespace
