#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "Session.h"

namespace orv::cfg {

/// How far a long input has got, on the error output: only where a person looks at it, and results don't go to the same
/// screen. Gone without a trace at its end.
class Progress {
public:
    /// `total` bytes to come, 0 where nobody knows.
    Progress(const Session& session, std::uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void Line(std::size_t bytes) {
        ++lines;
        done += bytes + 1;
        if (shown && lines % 4096 == 0) Show();
    }

private:
    void Show();
    bool shown, drawn = false;
    std::uint64_t total, lines = 0, done = 0;
    std::chrono::steady_clock::time_point next;
};

/// Calls `each` with every line of a descriptor, as long as results can be written; what is finished goes out before
/// the program waits for more. False after a problem with `name` has been told.
bool FilterInput(Session& session, int descriptor, std::string_view name,
                 const std::function<void(std::string_view line)>& each);
/// The same for a file.
bool FilterFile(Session& session, const std::wstring& path, const std::function<void(std::string_view line)>& each);

}  // namespace orv::cfg
