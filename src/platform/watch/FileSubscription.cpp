#include "platform/watch/FileSubscription.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/os/FileSystem.h"
#include "platform/os/NameOnDisk.h"
#include "platform/os/PosixFile.h"

namespace orv {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// Files without events are looked at in each turn.
constexpr SteadyClock::duration kTurn = std::chrono::seconds(2);
/// All others too, but seldom: some volumes take a watch and then tell nothing, a writer may keep its file open, and
/// nobody tells that a folder further up was moved or a link led elsewhere.
constexpr SteadyClock::duration kSlowTurn = std::chrono::seconds(10);
/// After these a watch holds on to a folder that isn't the one of that name any more.
constexpr std::uint32_t kFolderGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
// A file counts as written when it is closed, or each block of a long save would be an event.
constexpr std::uint32_t kEvents =
    IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF;

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

/// Where a change of `path` shows: the folder of its name and, if that is a link, the one it leads to, as saves follow
/// links. An empty name stands for a folder without events.
std::vector<std::string> WatchedFolders(const std::wstring& path) {
    std::vector<std::string> folders = {FolderOnDisk(NameOnDisk(path))};
    std::string target = FolderOnDisk(NameOnDisk(Files().RealPath(path)));
    if (target != folders.front()) folders.push_back(std::move(target));
    for (std::string& folder : folders) {
        if (!HasEvents(folder)) folder.clear();
    }
    return folders;
}

}  // namespace

struct FileSubscription::State {
    void Look();
    void SetSubscriber(Subscriber* next, bool own);

    std::mutex mutex;
    // Guarded by mutex.
    bool watching = false;
    std::wstring path;
    Trace trace;
    bool once = false;
    Subscriber* subscriber = nullptr;
    std::unique_ptr<Subscriber> owned;
    // Held while the subscriber is called, and by those who wait for that call. Taken before the mutex.
    std::recursive_mutex calling;
    // Guarded by calling: calls under way, one in another, and subscribers replaced from within their own.
    int calls = 0;
    std::vector<std::unique_ptr<Subscriber>> replaced;
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
    if (!called) return;
    ++calls;
    called->OnNotify();
    if (--calls == 0) replaced.clear();
}

void FileSubscription::State::SetSubscriber(Subscriber* next, bool own) {
    std::unique_ptr<Subscriber> before;  // goes after the locks, for who knows what it does then
    const std::lock_guard waited(calling);
    const std::lock_guard lock(mutex);
    before = std::move(owned);
    if (before.get() == next) {
        (void)before.release();  // stays, whoever owns it from now on
    } else if (before && calls > 0) {
        replaced.push_back(std::move(before));
    }
    subscriber = next;
    owned.reset(own ? next : nullptr);
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
        Entry entry{state, path, {}};
        const std::vector<std::string> folders = WatchedFolders(path);  // unlocked: a network may take its time
        const std::lock_guard lock(mutex);
        Attach(entry, folders);
        entries.push_back(std::move(entry));
        if (!thread.joinable()) thread = std::thread([this] { Run(); });
        Wake();  // its rhythm may have changed
    }

    void Remove(const StatePtr& state) {
        const std::lock_guard lock(mutex);
        const auto gone = Find(state);
        if (gone == entries.end()) return;
        const std::vector<int> watches = std::move(gone->watches);
        entries.erase(gone);
        Release(watches);
    }

private:
    struct Entry {
        StatePtr state;
        std::wstring path;
        std::vector<int> watches;  ///< of its folders; -1: none, so that the file is looked at in turn
        bool IsPolled() const { return std::find(watches.begin(), watches.end(), -1) != watches.end(); }
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
        SteadyClock::time_point turn = SteadyClock::now() + kTurn, slowTurn = SteadyClock::now() + kSlowTurn;
        while (!stopping) {
            std::array<pollfd, 2> waited = {{{events, POLLIN, 0}, {wake, POLLIN, 0}}};
            poll(waited.data(), waited.size(), Milliseconds(turn, slowTurn));
            std::uint64_t ignored = 0;
            if (waited[1].revents) [[maybe_unused]]
                const auto woken = read(wake, &ignored, sizeof ignored);
            const Happened happened = waited[0].revents ? ReadEvents() : Happened();
            // By the clock, and not when nothing has come for a while: another folder may never be quiet.
            const SteadyClock::time_point now = SteadyClock::now();
            const bool isSlow = now >= slowTurn, isTurn = isSlow || now >= turn;
            for (const StatePtr& state : Due(happened, isTurn, isSlow)) state->Look();
            if (isTurn) turn = SteadyClock::now() + kTurn;
            if (isSlow) slowTurn = SteadyClock::now() + kSlowTurn;
        }
    }

    /// Until the next turn that somebody needs; -1 for ever.
    int Milliseconds(SteadyClock::time_point turn, SteadyClock::time_point slowTurn) {
        const std::lock_guard lock(mutex);
        if (entries.empty() && wake >= 0) return -1;
        const bool polled = wake < 0 || std::any_of(entries.begin(), entries.end(), std::mem_fn(&Entry::IsPolled));
        const auto left = std::chrono::ceil<std::chrono::milliseconds>((polled ? std::min(turn, slowTurn) : slowTurn) -
                                                                       SteadyClock::now());
        return std::max(0, static_cast<int>(left.count()));
    }

    struct Happened {
        std::vector<int> folders;  ///< in which something has happened; -1 when events were lost: all are looked at
        std::vector<int> gone;     ///< those that aren't where they were
    };
    Happened ReadEvents() const {
        alignas(inotify_event) std::array<char, 4096> buffer;
        Happened happened;
        for (;;) {
            const ssize_t got = Retry([&] { return read(events, buffer.data(), buffer.size()); });
            if (got <= 0) return happened;
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
                happened.folders.push_back(event->wd);
                if (event->mask & kFolderGone) happened.gone.push_back(event->wd);
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
    }

    std::vector<StatePtr> Due(const Happened& happened, bool turn, bool slowTurn) {
        const auto has = [](const std::vector<int>& list, int watch) {
            return std::find(list.begin(), list.end(), watch) != list.end();
        };
        std::vector<StatePtr> due;
        std::vector<std::pair<StatePtr, std::wstring>> moved;
        {
            const std::lock_guard lock(mutex);
            for (Entry& entry : entries) {
                const auto touched = [&](int watch) { return watch >= 0 && has(happened.folders, watch); };
                if (slowTurn || (turn && entry.IsPolled()) || has(happened.folders, -1) ||
                    std::any_of(entry.watches.begin(), entry.watches.end(), touched)) {
                    due.push_back(entry.state);
                }
                for (int& watch : entry.watches) {
                    if (watch >= 0 && has(happened.gone, watch)) watch = -1;
                }
                const bool polled = (turn || !happened.gone.empty()) && entry.IsPolled();
                if (slowTurn || polled) moved.emplace_back(entry.state, entry.path);
            }
            for (const int watch : happened.gone) inotify_rm_watch(events, watch);  // a folder moved away keeps it
        }
        for (const auto& [state, path] : moved) AttachAgain(state, path);
        return due;  // looked at after that: what happens from here on is an event
    }

    /// Folders come and go, and links are led elsewhere.
    void AttachAgain(const StatePtr& state, const std::wstring& path) {
        const std::vector<std::string> folders = WatchedFolders(path);
        const std::lock_guard lock(mutex);
        const auto entry = Find(state);
        if (entry == entries.end() || entry->path != path) return;
        const std::vector<int> before = entry->watches;
        Attach(*entry, folders);
        Release(before);
    }

    // With the mutex held.
    std::vector<Entry>::iterator Find(const StatePtr& state) {
        return std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.state == state; });
    }
    void Attach(Entry& entry, const std::vector<std::string>& folders) const {
        entry.watches.clear();
        for (const std::string& folder : folders) {
            entry.watches.push_back(events < 0 || folder.empty() ? -1
                                                                 : inotify_add_watch(events, folder.c_str(), kEvents));
        }
    }
    /// Ends those of the watches that no entry has any more.
    void Release(const std::vector<int>& watches) const {
        for (const int watch : watches) {
            const auto has = [&](const Entry& entry) {
                return std::find(entry.watches.begin(), entry.watches.end(), watch) != entry.watches.end();
            };
            if (watch >= 0 && std::none_of(entries.begin(), entries.end(), has)) inotify_rm_watch(events, watch);
        }
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
    state->SetSubscriber(nullptr, false);
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
    state->SetSubscriber(subscriber, owned);
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
