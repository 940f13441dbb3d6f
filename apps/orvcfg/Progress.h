#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace orv::cfg {

/// How far a run has got: a line at the bottom of the terminal, only where a person looks at it and only after a
/// second. A bar where the end is known, a count where there is something to count, else how long it has taken. Gone
/// without a trace before anything else is written, and at the end; and not to be seen while input is waited for, as
/// somebody may be typing it, or a password for the program that sends it.
class Progress {
public:
    Progress() = default;
    ~Progress() { Stop(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Start(std::string_view nameOfRun);
    void Stop();
    /// Input is waited for from here on: nothing is drawn unless more has been counted.
    void Await();

    /// What is counted from now on, "lines", and how much there will be in all: of it, or of the parts that `Step` is
    /// told, such as bytes. 0 where nobody knows.
    void Expect(std::string_view unit, std::uint64_t total = 0);
    void Step(std::uint64_t count = 1) { Step(count, count); }
    void Step(std::uint64_t count, std::uint64_t parts) {
        counted.fetch_add(count, std::memory_order_relaxed);
        done.fetch_add(parts, std::memory_order_relaxed);
    }

    /// Counts one when it goes: an item has been dealt with, whichever way.
    class Item {
    public:
        explicit Item(Progress& with) : progress(with) {}
        ~Item() { progress.Step(); }
        Item(const Item&) = delete;
        Item& operator=(const Item&) = delete;

    private:
        Progress& progress;
    };

    /// Takes the line away and keeps it away for as long as the lock lives. Whatever writes to the terminal holds it.
    [[nodiscard]] std::unique_lock<std::mutex> Clear();

private:
    void Run();
    std::string Text() const;

    std::atomic<std::uint64_t> counted = 0, done = 0;
    std::mutex mutex;  // guards what follows, and the terminal
    std::condition_variable change;
    std::string name, unit;
    std::uint64_t total = 0;
    std::chrono::steady_clock::time_point begin;
    std::uint64_t shown = 0;  // of what was counted, when it was drawn last
    bool stopping = false, awaiting = false, drawn = false;
    std::thread ticker;
};

}  // namespace orv::cfg
