#include "platform/service/Multibeam.h"

#include <atomic>

namespace orv {

namespace {
std::atomic<int> showNoDetectionBeams{0};
}  // namespace

void Multibeam::SetShowNoDetectionBeams(int show) {
    showNoDetectionBeams = show;
}

int Multibeam::GetShowNoDetectionBeams() {
    return showNoDetectionBeams;
}

}  // namespace orv
