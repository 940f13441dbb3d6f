#include "platform/os/WorkerThread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <string>
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
        WorkerThread::Tell(L"a background job has ended", failure);
    }
}

}  // namespace

void WorkerThread::Tell(std::wstring_view what, const std::exception& failure) noexcept {
    try {
        Notify(Notice::Information, std::wstring(what) + L": " + FromUtf8(failure.what()));
    } catch (const std::exception&) {
        return;  // not even memory for the words
    }
}

bool WorkerThread::Start(std::function<void()> work) {
    Join();
    ended = false;
    try {
        thread = std::thread([this, work = std::move(work)] {
            Run(work);
            ended = true;
        });
    } catch (const std::exception& failure) {
        Tell(L"a background job can't be started", failure);
        return false;
    }
    return true;
}

void WorkerThread::Join() {
    if (thread.joinable()) thread.join();
}

}  // namespace orv
