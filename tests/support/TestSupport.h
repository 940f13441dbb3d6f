#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <vector>

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
