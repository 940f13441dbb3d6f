#include "platform/os/SaveLock.h"

#include <errno.h>
#include <signal.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <map>
#include <mutex>
#include <stop_token>
#include <thread>

#include "platform/os/FileTools.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"

namespace orv {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kLongestLock = 4096;  // bytes; whatever is longer isn't ours
constexpr std::int64_t kTracesKept = 3600;    // seconds
constexpr std::chrono::milliseconds kFirstPause{1}, kLongestPause{25};
constexpr std::size_t kBeatDigits = 8;

std::string FirstLineOf(const char* file) {
    std::string bytes;
    if (ReadWholeFile(PathFromBytes(file), bytes, Share::DenyNone, kLongestLock) != FsResult::Ok) return {};
    return bytes.substr(0, bytes.find('\n'));
}

/// Where a process number means something: this start of this computer, and this space of process numbers, as two
/// containers may bear one host name.
const std::string& ProcessSpace() {
    static const std::string space = [] {
        std::array<char, 64> link{};
        const ssize_t size = readlink("/proc/self/ns/pid", link.data(), link.size());
        return FirstLineOf("/proc/sys/kernel/random/boot_id") + " " +
               std::string(link.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    }();
    return space;
}

std::string HostName() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "unknown";
}

std::wstring NewToken() {
    std::array<unsigned char, 8> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) bytes.fill(0);
    std::wstring token = IntText(getpid());
    token += L'-';
    for (const unsigned char byte : bytes) {
        token += L"0123456789abcdef"[byte >> 4];
        token += L"0123456789abcdef"[byte & 15];
    }
    return token;
}

std::map<std::string, std::string> ItemsOf(const std::string& bytes) {
    std::map<std::string, std::string> items;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
        const std::string line = bytes.substr(at, end - at);
        const std::size_t equals = line.find('=');
        if (equals != line.npos) items[line.substr(0, equals)] = line.substr(equals + 1);
        at = end + 1;
    }
    return items;
}

}  // namespace

/// What a waiting host sees of the lock, and since when it has been like that.
struct SaveLock::Seen {
    std::string bytes;
    std::wstring token, holder;
    bool ended = false;  // its process
    Clock::time_point since;
};

/// Keeps the lock file's beat going. It writes to the file it has opened, so that it can't touch the lock of somebody
/// else who has taken over.
class SaveLock::Beat {
public:
    Beat(std::unique_ptr<File> lockFile, std::uint64_t offset)
        : file(std::move(lockFile)), at(offset), thread([this](const std::stop_token& stop) { Run(stop); }) {}

private:
    void Run(const std::stop_token& stop) {
        std::unique_lock lock(mutex);
        for (std::uint64_t count = 1;; ++count) {
            // Most saves are done before the first.
            if (wake.wait_for(lock, stop, kBeat, [] { return false; }) || stop.stop_requested()) return;
            std::string text = std::to_string(count);
            text.insert(0, kBeatDigits - std::min(kBeatDigits, text.size()), '0');
            if (file->Seek(at) != FsResult::Ok || file->Write(text.data(), text.size()) != FsResult::Ok) return;
        }
    }

    std::unique_ptr<File> file;
    std::uint64_t at;
    std::mutex mutex;
    std::condition_variable_any wake;
    std::jthread thread;  // last: it uses the others
};

SaveLock::SaveLock(std::wstring_view file) : lockPath(Files().RealPath(file) + L".lock") {}

SaveLock::~SaveLock() {
    Release();
}

FsResult SaveLock::Take(std::chrono::milliseconds patience) {
    const Clock::time_point start = Clock::now();
    std::chrono::milliseconds pause = kFirstPause;
    Seen seen;
    int attempt = 0;
    for (;;) {
        const FsResult placed = Place();
        if (placed != FsResult::Exists) return placed;
        const std::wstring before = seen.token;
        Wait(seen);
        if (seen.token != before) attempt = 0;
        const bool still = Clock::now() - seen.since > kStale;
        // Somebody who set out to take it over may himself have ended half-way: each attempt leaves its own trace.
        if (!seen.token.empty() && (still || (seen.ended && attempt == 0))) {
            TakeOver(seen, ++attempt);
            seen.since = Clock::now();
            continue;
        }
        if (Clock::now() - start > patience) {
            holder = seen.holder;
            return FsResult::InUse;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, kLongestPause);
    }
}

/// Puts a lock file of our own in place; Exists while there is another.
FsResult SaveLock::Place() {
    FileStatus status;
    FsResult result = Files().Status(lockPath, status);
    if (result != FsResult::Ok) return result;
    if (status.exists) return FsResult::Exists;
    token = NewToken();
    const std::wstring own = lockPath + L"." + token;
    const std::string& space = ProcessSpace();
    const std::string text = "host=" + HostName() + "\nprocess=" + std::to_string(getpid()) + "\nspace=" + space +
                             "\ntoken=" + PathToBytes(token) + "\nbeat=";
    std::unique_ptr<File> file;
    result = Files().Open(own, {.write = true, .share = Share::DenyNone, .createNew = true}, file);
    if (result != FsResult::Ok) return result;
    const std::string bytes = text + std::string(kBeatDigits, '0') + "\n";
    result = file->Write(bytes.data(), bytes.size());
    if (result == FsResult::Ok) result = Files().Rename(own, lockPath);
    if (result != FsResult::Ok) {
        file.reset();
        static_cast<void>(Files().Remove(own));
        return result;
    }
    taken = Clock::now();
    beat = std::make_unique<Beat>(std::move(file), text.size());
    return FsResult::Ok;
}

void SaveLock::Wait(Seen& seen) {
    std::string bytes;
    if (ReadWholeFile(lockPath, bytes, Share::DenyNone, kLongestLock) == FsResult::NotFound) {
        seen = {};  // just released
        return;
    }
    if (!seen.token.empty() && bytes == seen.bytes) return;
    seen.bytes = bytes;
    seen.since = Clock::now();
    auto items = ItemsOf(bytes);
    seen.token = PathFromBytes(items["token"]);
    // A lock of another make is named by nothing but its being there.
    if (seen.token.empty() || !IsAllowedName(seen.token)) seen.token = L"unknown";
    seen.holder = PathFromBytes(items["host"]) + L", process " + PathFromBytes(items["process"]);
    const auto process = ParseInt(std::string_view(items["process"]));
    seen.ended =
        process && *process > 0 && items["space"] == ProcessSpace() && kill(*process, 0) != 0 && errno == ESRCH;
}

/// Moves a lock that nobody holds any more out of the way. Under a name made of its token, which is left there: of all
/// who judged that lock, one can do so, and none can move the lock of a later holder by an old judgement.
void SaveLock::TakeOver(const Seen& seen, int attempt) const {
    const std::wstring aside = lockPath + L"." + seen.token + L"." + IntText(attempt);
    if (Files().Rename(lockPath, aside) == FsResult::Ok) RemoveOldTraces();
}

void SaveLock::RemoveOldTraces() const {
    FileStatus newest;
    std::vector<FolderEntry> found = FindFiles(GetFolderFromPath(lockPath), GetNameFromPath(lockPath) + L".*");
    std::int64_t now = 0;  // by the clock of the folder's own computer
    for (const FolderEntry& entry : found) {
        if (Files().Status(GetFolderFromPath(lockPath) + entry.name, newest) == FsResult::Ok) {
            now = std::max(now, newest.modified);
        }
    }
    for (const FolderEntry& entry : found) {
        const std::wstring path = GetFolderFromPath(lockPath) + entry.name;
        if (Files().Status(path, newest) != FsResult::Ok || now - newest.modified < kTracesKept) continue;
        static_cast<void>(Files().Remove(path));
    }
}

bool SaveLock::IsHeld() const {
    std::string bytes;
    if (!beat || ReadWholeFile(lockPath, bytes, Share::DenyNone, kLongestLock) != FsResult::Ok) return false;
    return ItemsOf(bytes)["token"] == PathToBytes(token);
}

void SaveLock::Release() {
    if (!beat) return;
    const bool ours = IsHeld();
    beat.reset();
    // The same step as a take-over, so that a lock that has been taken over meanwhile isn't touched.
    const std::wstring aside = lockPath + L"." + token + L".1";
    if (!ours || Files().Rename(lockPath, aside) != FsResult::Ok) return;
    // Held so long that somebody may be about to take it over, the trace stays for him to find.
    if (Clock::now() - taken > kStale / 2) return;
    for (int tries = 0; tries < 5; ++tries) {
        if (Files().Remove(aside) != FsResult::InUse) return;
        std::this_thread::sleep_for(kFirstPause);  // a waiting host is reading it
    }
    RemoveOldTraces();
}

}  // namespace orv
