#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

namespace orv::cfg {

namespace {

// Short runs show nothing; long ones four times a second.
constexpr std::chrono::milliseconds kPatience{1000}, kBetween{250};
constexpr std::uint64_t kBarWidth = 20;

void PutOnTerminal(const std::string& text) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

// A line that is broken in two can't be taken away again.
std::size_t MostColumns() {
    winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col - 1u : 79u;
}

}  // namespace

void Progress::Start(std::string_view nameOfRun) {
    Stop();
    name = nameOfRun;
    begin = std::chrono::steady_clock::now();
    stopping = awaiting = false;
    try {
        ticker = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        // No room for another thread: the run itself needs none.
    }
}

void Progress::Stop() {
    if (!ticker.joinable()) return;
    {
        const auto clear = Clear();
        stopping = true;
    }
    change.notify_all();
    ticker.join();
}

void Progress::Await() {
    const std::lock_guard lock(mutex);
    awaiting = true;
}

void Progress::Expect(std::string_view counts, std::uint64_t inAll) {
    const std::lock_guard lock(mutex);
    unit = counts;
    total = inAll;
    counted = done = shown = 0;
    awaiting = false;
}

std::unique_lock<std::mutex> Progress::Clear() {
    std::unique_lock lock(mutex);
    if (drawn) PutOnTerminal("\r\033[K");
    drawn = false;
    return lock;
}

void Progress::Run() {
    std::unique_lock lock(mutex);
    const auto stop = [this] { return stopping; };
    for (auto pause = kPatience; !change.wait_for(lock, pause, stop); pause = kBetween) {
        if (awaiting && counted == shown) continue;
        shown = counted;
        PutOnTerminal("\r\033[K" + Text().substr(0, MostColumns()));
        drawn = true;
    }
}

std::string Progress::Text() const {
    std::string text = name + ":";
    if (total > 0) {
        const std::uint64_t part = std::min(done.load(), total);
        const auto full = static_cast<std::size_t>(part * kBarWidth / total);
        text += " [" + std::string(full, '#') + std::string(kBarWidth - full, '.') + "] ";
        text += std::to_string(part * 100 / total) + " %";
    }
    if (!unit.empty()) text += (total > 0 ? ", " : " ") + std::to_string(counted) + " " + unit;
    const auto taken = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin);
    return text + (total > 0 || !unit.empty() ? ", " : " ") + std::to_string(taken.count()) + " s";
}

}  // namespace orv::cfg
