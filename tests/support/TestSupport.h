#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <vector>

#include "platform/os/FileSystem.h"

namespace orv::test {

/// A folder of its own for one test, gone when it ends. Its path ends in a separator.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::wstring& Path() const { return path; }
    std::wstring operator/(std::wstring_view name) const { return path + std::wstring(name); }

private:
    std::wstring path;
};

/// Raw bytes on disk, past the library: what another program would write and read.
void WriteBytes(std::wstring_view path, std::string_view bytes);
std::string ReadBytes(std::wstring_view path);
void SetMode(std::wstring_view path, unsigned mode);
void MakeFolders(std::wstring_view path);
bool Exists(std::wstring_view path);

/// Does something to files with the n-th call failing for each n; `check` looks at what it left behind.
template <class Prepare, class Act, class Check>
void FailEachCall(Prepare prepare, Act act, Check check) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        prepare();
        FailingFileSystem failing(n);
        SetFileSystem(&failing);
        const auto result = act();  // a result of a file call, or whether all went well
        SetFileSystem(nullptr);
        check(result);
        if (!failing.HasFailed()) {
            EXPECT_EQ(result, decltype(result)(std::is_same_v<decltype(result), const bool>));
            EXPECT_GT(n, 5) << "the calls aren't counted";
            return;
        }
    }
}

/// Runs `work(number)` in eight threads at once.
template <class Work>
void InEightThreads(Work work) {
    std::vector<std::jthread> threads;
    for (unsigned number = 0; number < 8; ++number) threads.emplace_back([&work, number] { work(number); });
}

/// Sets the time zone for one test, and puts the old one back.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone);  ///< as in TZ, for instance "Europe/Amsterdam"
    ~ScopedZone();
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;

private:
    std::string old;
    bool had;
};

/// A host's global locale with a decimal comma, made by the test itself (no system locale is needed for the C++
/// streams; the C locale is switched too where de_DE.UTF-8 is installed).
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    struct State;
    State* state;
};

}  // namespace orv::test
