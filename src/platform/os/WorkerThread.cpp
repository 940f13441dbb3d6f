#include "platform/os/WorkerThread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <exception>
#include <utility>

#include "platform/notify/Notices.h"
#include "platform/text/Utf.h"

namespace orv {

namespace {

constexpr int kLowestPriority = 19;

void Run(const std::function<void()>& work) {
    // On Linux this is a matter of the thread, not the process. At normal priority the work is done all the same.
    static_cast<void>(setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kLowestPriority));
    try {
        work();
    } catch (const std::exception& failure) {
        // Out of memory, that is: a background job is no reason to end an acquisition.
        Notify(Notice::Information, L"a background job has ended: " + FromUtf8(failure.what()));
    }
}

}  // namespace

void WorkerThread::Start(std::function<void()> work) {
    thread = std::thread([work = std::move(work)] { Run(work); });
}

void WorkerThread::Join() {
    if (thread.joinable()) thread.join();
}

}  // namespace orv
