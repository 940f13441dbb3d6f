// Queries on live data: each kind on one thread, all of them on one and on two threads in turn, and the first look-up
// of a use-as code beside reading the items of its group. Medians over interleaved rounds.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "definitions/DataDefinition.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"

namespace {

using orv::DataDefinition;
using Seconds = std::chrono::duration<double>;

constexpr int kRounds = 15, kQueries = 200'000;
constexpr unsigned kLargeGroup = 900, kLargeItems = 500;  // a group with both stretches of items

class Definition : public DataDefinition {};

struct Place {
    unsigned group;
    unsigned short index, useAs;
};

unsigned Mixed(unsigned& state) {
    state = state * 1664525u + 1013904223u;
    return state >> 8;
}

std::unique_ptr<Definition> Open() {
    auto data = std::make_unique<Definition>();
    if (!data->FileOpen(orv::PathFromBytes(ORV_SOURCE_DIR "/data/DataDefinition.ini"), orv::kOpenRead)) return nullptr;
    for (unsigned n = 0; n < kLargeItems; ++n) {
        const unsigned index = n < 100 ? n : 60000 + n - 100;
        data->SetItem(
            orv::IntText(kLargeGroup), L"Item(" + orv::IntText(index) + L")",
            L"Item " + orv::IntText(n) + L",I" + orv::IntText(n) + L",103,8,2," + orv::IntText(1000 + n) + L",9,12.5",
            true);
    }
    return data;
}

/// Every item of the file, in no order.
std::vector<Place> Places(const DataDefinition& data) {
    std::vector<Place> all;
    for (unsigned group = 0; group < 2000; ++group) {
        for (unsigned short index = 0; index < 100; ++index) {
            unsigned short useAs = 0;
            if (!data.GetGroupItemUseas(group, index, useAs)) break;
            all.push_back({group, index, useAs >= 100 ? useAs : index});
        }
    }
    unsigned state = 7;
    for (std::size_t i = all.size(); i > 1; --i) std::swap(all[i - 1], all[Mixed(state) % i]);
    return all;
}

struct Kind {
    const char* name;
    bool (*query)(const DataDefinition&, const Place&);
};

const Kind kKinds[] = {
    {"type by index",
     [](const DataDefinition& data, const Place& at) {
         unsigned short out = 0;
         return data.GetGroupItemType(at.group, at.index, out);
     }},
    {"format by use",
     [](const DataDefinition& data, const Place& at) {
         unsigned short out = 0;
         return data.GetGroupItemFormat(at.group, at.useAs, out);
     }},
    {"name by use",
     [](const DataDefinition& data, const Place& at) {
         static thread_local std::wstring out;
         return data.GetGroupItemName(at.group, at.useAs, out);
     }},
    {"definition by index",
     [](const DataDefinition& data, const Place& at) {
         static thread_local std::wstring name, mnemonic;
         unsigned short type = 0, length = 0, format = 0;
         return data.GetGroupItemDef(at.group, at.index, name, mnemonic, type, length, format);
     }},
    {"simulation value by use",
     [](const DataDefinition& data, const Place& at) {
         double out = 0;
         return data.GetGroupItemSimValDbl(at.group, at.useAs, out);
     }},
};

/// Queries of all kinds in turn, or of one kind. Returns how many were answered.
std::size_t Ask(const DataDefinition& data, const std::vector<Place>& places, const Kind* only, unsigned from) {
    std::size_t answered = 0;
    for (unsigned n = 0; n < kQueries; ++n) {
        const Kind& kind = only ? *only : kKinds[n % std::size(kKinds)];
        answered += kind.query(data, places[(from + n) % places.size()]) ? 1u : 0u;
    }
    return answered;
}

/// Processor time of this thread: a machine that others use too takes turns away, and no speed.
double ThreadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double PerProcessorSecond(const DataDefinition& data, const std::vector<Place>& places, const Kind& kind) {
    const double start = ThreadSeconds();
    if (Ask(data, places, &kind, 0) != kQueries) std::printf("a query failed\n");
    return kQueries / (ThreadSeconds() - start) / 1e6;
}

double MillionsPerSecond(const DataDefinition& data, const std::vector<Place>& places, const Kind* only, int threads) {
    const auto start = std::chrono::steady_clock::now();
    {
        std::vector<std::jthread> asking;
        for (int thread = 0; thread < threads; ++thread) {
            asking.emplace_back([&, thread] { Ask(data, places, only, static_cast<unsigned>(thread) * 97); });
        }
    }
    return threads * kQueries / Seconds(std::chrono::steady_clock::now() - start).count() / 1e6;
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Seconds of the first look-up of a use, and of reading all items, on a definition that nobody asked before.
void FirstLookUp(std::vector<double>& lookUp, std::vector<double>& reading) {
    const auto data = Open();
    unsigned short type = 0, length = 0, format = 0;
    std::wstring name, mnemonic;
    const auto read = [&] {
        const auto start = std::chrono::steady_clock::now();
        for (unsigned n = 0; n < kLargeItems; ++n) {
            data->GetGroupItemDef(kLargeGroup, static_cast<unsigned short>(n < 100 ? n : 60000 + n - 100), name,
                                  mnemonic, type, length, format);
        }
        return Seconds(std::chrono::steady_clock::now() - start).count();
    };
    read();  // so that both find the text in the cache
    reading.push_back(read());
    const auto start = std::chrono::steady_clock::now();
    if (data->UseAsCodeToIndex(kLargeGroup, 1000) != 0) std::printf("the look-up failed\n");
    lookUp.push_back(Seconds(std::chrono::steady_clock::now() - start).count());
}

}  // namespace

int main() {
    const auto data = Open();
    if (!data) return 1;
    const std::vector<Place> places = Places(*data);
    constexpr std::size_t kKindCount = std::size(kKinds);
    std::vector<double> byKind[kKindCount], one, two, ratio, lookUp, reading;
    MillionsPerSecond(*data, places, nullptr, 1);
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t k = 0; k < kKindCount; ++k) {
            byKind[k].push_back(PerProcessorSecond(*data, places, kKinds[k]));
        }
        one.push_back(MillionsPerSecond(*data, places, nullptr, 1));
        two.push_back(MillionsPerSecond(*data, places, nullptr, 2));
        ratio.push_back(two.back() / one.back());
        FirstLookUp(lookUp, reading);
    }
    std::printf("%zu items\n", places.size());
    for (std::size_t k = 0; k < kKindCount; ++k) {
        std::printf("%-28s %8.2f M/s of processor time\n", kKinds[k].name, Median(byKind[k]));
    }
    std::printf("%-28s %8.2f M/s\n%-28s %8.2f M/s\n%-28s %8.2f (median of rounds)\n", "mixed, one thread", Median(one),
                "mixed, two threads in sum", Median(two), "two / one", Median(ratio));
    std::printf("first look-up of a use, %u items: %.1f us; reading the items: %.1f us; ratio %.2f\n", kLargeItems,
                Median(lookUp) * 1e6, Median(reading) * 1e6, Median(lookUp) / Median(reading));
    return 0;
}
