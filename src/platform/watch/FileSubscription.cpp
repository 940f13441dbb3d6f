#include "platform/watch/FileSubscription.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/os/FileSystem.h"
#include "platform/os/NameOnDisk.h"
#include "platform/os/PosixFile.h"

namespace orv {

namespace {

constexpr int kPollMilliseconds = 2000;
// A file counts as written when it is closed, or each block of a long save would be an event.
constexpr std::uint32_t kEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE | IN_DELETE;

/// What tells one content of a file from the next without reading it.
struct Trace {
    bool exists = false;
    std::uint64_t size = 0, device = 0, inode = 0;
    std::int64_t modified = 0, modifiedNanoseconds = 0;
    bool operator==(const Trace&) const = default;
};

Trace TraceOf(const std::wstring& path) {
    FileStatus status;
    if (Files().Status(path, status) != FsResult::Ok || !status.exists) return {};
    return {true, status.size, status.device, status.inode, status.modified, status.modifiedNanoseconds};
}

/// Volumes on which another computer, or a server of its own, changes files behind the kernel's back.
bool HasEvents(const std::string& folder) {
    constexpr std::array<std::uint32_t, 7> kSilent = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42,
                                                      0x65735546, 0x01021997, 0x5346414F};
    struct statfs volume {};
    if (statfs(folder.c_str(), &volume) != 0) return false;
    return std::find(kSilent.begin(), kSilent.end(), static_cast<std::uint32_t>(volume.f_type)) == kSilent.end();
}

}  // namespace

struct FileSubscription::State {
    void Look();

    std::mutex mutex;
    // Guarded by mutex.
    bool watching = false;
    std::wstring path;
    Trace trace;
    bool once = false;
    Subscriber* subscriber = nullptr;
    std::unique_ptr<Subscriber> owned;
    // Held while the subscriber is called, by whom the destructor waits for.
    std::recursive_mutex calling;
};

void FileSubscription::State::Look() {
    const std::lock_guard inCall(calling);
    Subscriber* called = nullptr;
    {
        const std::lock_guard lock(mutex);
        if (!watching) return;
        const Trace now = TraceOf(path);
        if (now == trace) return;
        trace = now;
        if (once) watching = false;
        called = subscriber;
    }
    if (called) called->OnNotify();
}

namespace {

using StatePtr = std::shared_ptr<FileSubscription::State>;

/// The background thread and what it watches: folders by inotify, all subscriptions of a folder together.
class Watcher {
public:
    static Watcher& Instance() {
        Files();  // made before it, so that it outlives the thread
        static Watcher watcher;
        return watcher;
    }

    void Add(const StatePtr& state, const std::wstring& path) {
        const std::string folder = FolderOnDisk(NameOnDisk(path));
        const std::lock_guard lock(mutex);
        Entry entry{state, -1};
        if (events >= 0 && HasEvents(folder)) entry.watch = inotify_add_watch(events, folder.c_str(), kEvents);
        entries.push_back(entry);
        if (!thread.joinable()) thread = std::thread([this] { Run(); });
        Wake();  // its rhythm may have changed
    }

    void Remove(const StatePtr& state) {
        const std::lock_guard lock(mutex);
        const auto gone =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.state == state; });
        if (gone == entries.end()) return;
        const int watch = gone->watch;
        entries.erase(gone);
        const auto same = [&](const Entry& entry) { return entry.watch == watch; };
        if (watch >= 0 && std::none_of(entries.begin(), entries.end(), same)) inotify_rm_watch(events, watch);
    }

private:
    struct Entry {
        StatePtr state;
        int watch;  ///< of its folder; -1: looked at in turn
    };

    Watcher() : events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), wake(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
    ~Watcher() {
        stopping = true;
        Wake();
        if (thread.joinable()) thread.join();
        if (events >= 0) close(events);
        if (wake >= 0) close(wake);
    }
    void Wake() const {
        const std::uint64_t one = 1;
        if (wake >= 0) [[maybe_unused]]
            const auto written = write(wake, &one, sizeof one);
    }

    void Run() {
        while (!stopping) {
            std::array<pollfd, 2> waited = {{{events, POLLIN, 0}, {wake, POLLIN, 0}}};
            const int ready = poll(waited.data(), waited.size(), wake < 0 || AnyPolled() ? kPollMilliseconds : -1);
            std::uint64_t ignored = 0;
            if (waited[1].revents) [[maybe_unused]]
                const auto woken = read(wake, &ignored, sizeof ignored);
            const std::vector<int> folders = ready > 0 && waited[0].revents ? ReadEvents() : std::vector<int>();
            for (const StatePtr& state : Due(folders, ready == 0)) state->Look();
        }
    }

    /// The folders in which something has happened.
    std::vector<int> ReadEvents() const {
        alignas(inotify_event) std::array<char, 4096> buffer;
        std::vector<int> folders;
        for (;;) {
            const ssize_t got = Retry([&] { return read(events, buffer.data(), buffer.size()); });
            if (got <= 0) return folders;
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
                folders.push_back(event->wd);  // -1 when events were lost: all are looked at
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

    std::vector<StatePtr> Due(const std::vector<int>& folders, bool turn) {
        const auto has = [&](int watch) { return std::find(folders.begin(), folders.end(), watch) != folders.end(); };
        std::vector<StatePtr> due;
        const std::lock_guard lock(mutex);
        for (const Entry& entry : entries) {
            if (entry.watch < 0 ? turn : has(entry.watch) || has(-1)) due.push_back(entry.state);
        }
        return due;
    }

    bool AnyPolled() {
        const std::lock_guard lock(mutex);
        return std::any_of(entries.begin(), entries.end(), [](const Entry& entry) { return entry.watch < 0; });
    }

    const int events, wake;  // descriptors; -1 if the system gives none
    std::atomic<bool> stopping = false;
    std::mutex mutex;
    std::vector<Entry> entries;  // guarded by mutex
    std::thread thread;          // guarded by mutex; runs from the first subscription on
};

}  // namespace

FileSubscription::FileSubscription() : state(std::make_shared<State>()) {
    Watcher::Instance();  // which so outlives a subscription that is itself a static object
}

FileSubscription::~FileSubscription() {
    Unsubscribe();
    const std::lock_guard waited(state->calling);
    const std::lock_guard lock(state->mutex);
    state->subscriber = nullptr;
    state->owned.reset();
}

void FileSubscription::Subscribe(const std::wstring& path) {
    Unsubscribe();
    Watcher& watcher = Watcher::Instance();
    watcher.Add(state, path);  // first, or a change between the two would be missed
    const std::lock_guard lock(state->mutex);
    state->path = path;
    state->trace = TraceOf(path);
    state->watching = true;
}

void FileSubscription::Unsubscribe() {
    {
        const std::lock_guard lock(state->mutex);
        if (state->path.empty()) return;
        state->watching = false;
        state->path.clear();
    }
    Watcher::Instance().Remove(state);
}

void FileSubscription::SetSubscriber(Subscriber* subscriber, bool owned) {
    const std::lock_guard lock(state->mutex);
    state->subscriber = subscriber;
    state->owned.reset(owned ? subscriber : nullptr);
}

Subscriber* FileSubscription::GetSubscriber() const {
    const std::lock_guard lock(state->mutex);
    return state->subscriber;
}

void FileSubscription::SetNoContinuation(bool once) {
    const std::lock_guard lock(state->mutex);
    state->once = once;
}

void FileSubscription::Check() {
    const StatePtr held = state;
    held->Look();
}

}  // namespace orv
