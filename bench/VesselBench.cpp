// Vessels: a new id in all references beside a plain walk over all items, and the numbering of devices as they grow.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "project/VesselConfig.h"

namespace {

using orv::VesselConfig;

/// `sections` devices of `items` each, of which one in `share` is a reference: to data, to an offset, or an output.
VesselConfig MakeVessel(unsigned sections, int items, int share) {
    std::string text;
    for (unsigned s = 1; s <= sections; ++s) {
        text += "[DEVICE(" + std::to_string(s) + ")]\nGroupId=" + std::to_string((s * 7919) % 97) +
                "\nSubSystemId=" + std::to_string(s % 3) + "\n";
        for (int k = 2; k < items; ++k) {
            const std::string n = "(" + std::to_string(k) + ")";
            const int kind = k % share == 0 ? k / share % 3 : 3 + k % 2;
            if (kind == 0) text += "@tr.dev.HeaveItem" + n + "=0,0,1,15,1,131\n";
            if (kind == 1) text += "@tr.dev.AntennaOffset" + n + "=0,0,1,Bow antenna,0,1,1,1,110\n";
            if (kind == 2) text += "DataOutItem(1," + std::to_string(k) + ")=0,1,1000,1,110\n";
            if (kind == 3) text += "@tr.dev.Correction" + n + "=0," + std::to_string(s * 1.25 + k) + "\n";
            if (kind == 4) text += "Setting_of_the_driver_" + std::to_string(k) + "=" + std::to_string(s * k) + "\n";
        }
    }
    VesselConfig vessel;
    vessel.FileOpen(orv::memfile(text.data(), text.size(), orv::textencoding::utf8), L"bench.vcf");
    return vessel;
}

std::size_t WalkAll(const VesselConfig& vessel) {
    std::size_t size = 0;
    orv::FobjSection cursor;
    std::wstring section, key, value;
    for (bool more = vessel.GetFirstSectionEntry(cursor, section); more;
         more = vessel.GetNextSectionEntry(cursor, section)) {
        for (bool item = vessel.GetFirstMapEntry(cursor, section, key, value); item;
             item = vessel.GetNextMapEntry(cursor, key, value)) {
            size += value.size();
        }
    }
    return size;
}

template <class Work>
double Milliseconds(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

void NewId(int share) {
    VesselConfig vessel = MakeVessel(400, 60, share);
    std::vector<double> walks, sets;
    std::size_t size = 0;
    for (unsigned round = 0; round < 21; ++round) {
        walks.push_back(Milliseconds([&] { size += WalkAll(vessel); }));
        sets.push_back(Milliseconds([&] { vessel.SetVesselID(round + 2); }));
    }
    std::printf(
        "new id, 400 sections of 60 items, one in %d a reference: walk %.2f ms, SetVesselID %.2f ms, ratio %.2f "
        "(%zu)\n",
        share, Median(walks), Median(sets), Median(sets) / Median(walks), size);
}

/// Growth beside n log n from a quarter of the devices to all: 1 is n log n, less is better.
template <class Work>
void Growth(const char* what, Work work) {
    std::vector<double> medians;
    for (const unsigned count : {1000u, 4000u}) {
        const VesselConfig made = MakeVessel(count, 15, 6);
        std::vector<double> times;
        for (int round = 0; round < 9; ++round) {
            VesselConfig vessel = made;
            vessel.RemoveDevice(1);
            times.push_back(Milliseconds([&] { work(vessel); }));
        }
        medians.push_back(Median(times));
        std::printf("%s, %u devices: %.2f ms\n", what, count, medians.back());
    }
    const double expected = 4.0 * std::log(4000.0) / std::log(1000.0);
    std::printf("%s: growth %.2f of n log n\n", what, medians[1] / medians[0] / expected);
}

}  // namespace

int main() {
    for (const int share : {6, 2}) NewId(share);
    Growth("closing gaps", [](VesselConfig& vessel) { vessel.CloseDeviceGaps(); });
    Growth("closing gaps and ordering", [](VesselConfig& vessel) {
        vessel.CloseDeviceGaps();
        vessel.OrderDevices();
    });
}
