#include "housekeeping/RoundWorker.h"

namespace orv {

bool RoundWorker::Wake() {
    if (!thread.IsThere()) {
        stop = false;
        wake.Reset();
        if (!thread.Start([this] { Run(); })) return false;
    }
    wake.Set();
    return true;
}

void RoundWorker::Run() {
    for (wake.Wait(); !stop; wake.Wait()) {
        try {
            round(stop);
        } catch (const std::exception& failure) {
            // Out of memory, that is: there may be enough at the next request.
            WorkerThread::Tell(L"a round in the background has failed", failure);
        }
    }
}

void RoundWorker::Stop() {
    stop = true;
    wake.Set();
    thread.Join();
}

}  // namespace orv
