// A batch of ellipsoidal heights reduced to the geoid on all cores. Third argument: a grid of model 28.
#include <geoid/GeoidModelList.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "Start.h"

struct Sounding {
    double latitude = 0, longitude = 0, height = 0;  // degrees, metres above the ellipsoid
    bool reduced = false;                            // the height is above the geoid now
};

// quote: batch
// A model is made once and asked by any number of threads.
void Reduce(orv::GeoidModel& model, Sounding* first, Sounding* last) {
    std::wstring remark;  // some models have something to add
    for (; first != last; ++first) {
        double separation = 0;
        first->reduced = model.Calculate(first->latitude, first->longitude, 0, 0, separation, remark);
        if (first->reduced) first->height -= separation;
    }
}

void ReduceOnAllCores(orv::GeoidModel& model, std::vector<Sounding>& soundings) {
    const std::size_t threads = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t share = soundings.size() / threads + 1;
    std::vector<std::jthread> workers;  // joined at the end of the block
    for (std::size_t begin = 0; begin < soundings.size(); begin += share) {
        const std::size_t end = std::min(begin + share, soundings.size());
        workers.emplace_back(Reduce, std::ref(model), soundings.data() + begin, soundings.data() + end);
    }
}
// quote end

int main(int argc, char** argv) {
    if (argc != 4 || !Start(argc, argv)) return 1;
    const auto model = orv::GeoidModelList::GetGeoidModelList().Create(28);
    model->Init(nullptr);  // metres
    if (!model->SetFileName(orv::FromUtf8(argv[3]))) {
        std::printf("%s\n", orv::ToUtf8(GeoidReasonText(model->LastReason())).c_str());
        return 1;
    }
    std::vector<Sounding> soundings;
    for (int i = 0; i < 100000; ++i) soundings.push_back({52.95 + i * 0.0000005, 4.79, 50.0});
    ReduceOnAllCores(*model, soundings);
    const auto reduced = std::count_if(soundings.begin(), soundings.end(), [](const Sounding& s) { return s.reduced; });
    std::printf("%zu soundings, %td reduced, the first lies at %.3f m\n", soundings.size(), reduced,
                soundings.front().height);
    return 0;
}
