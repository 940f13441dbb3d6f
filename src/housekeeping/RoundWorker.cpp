#include "housekeeping/RoundWorker.h"

namespace orv {

void RoundWorker::Wake() {
    if (!thread.IsThere()) {
        stop = false;
        wake.Reset();
        thread.Start([this] { Run(); });
    }
    wake.Set();
}

void RoundWorker::Run() {
    for (wake.Wait(); !stop; wake.Wait()) round(stop);
}

void RoundWorker::Stop() {
    if (!thread.IsThere()) return;
    stop = true;
    wake.Set();
    thread.Join();
}

}  // namespace orv
