#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "geoid/GeoidModelList.h"
#include "platform/notify/Notices.h"
#include "platform/os/Clock.h"
#include "support/TestSupport.h"

namespace orv::test {

/// An installation of its own for one test: the two folders in which models look for their files.
class GeoidFolders {
public:
    GeoidFolders();
    /// Below the folder of the common project files, or of the system's geoid models.
    std::wstring Common(std::wstring_view relative = L"") const {
        return folder / (L"common/" + std::wstring(relative));
    }
    std::wstring Models(std::wstring_view relative = L"") const {
        return folder / (L"general/GeoidModels/" + std::wstring(relative));
    }
    static void Write(const std::wstring& path, std::string_view bytes);

    NoticeRecorder notices;

private:
    TempFolder folder;
};

inline constexpr double kFoot = 0.3048;
inline constexpr double kUntouched = -12345.0;

/// A clock that moves on by `step` milliseconds whenever it is looked at.
class TestClock : public Clock {
public:
    explicit TestClock(std::int64_t theStep = 0) : step(theStep) { SetClock(this); }
    ~TestClock() override { SetClock(nullptr); }
    std::int64_t UtcMilliseconds() override { return now += step; }
    std::atomic<std::int64_t> now = 1'700'000'000'000;

private:
    const std::int64_t step;
};

/// Tells a model the unit of its coordinates and heights.
void SetUnit(GeoidModel& model, double metresPerUnit);

/// A model of the registry, bound to a unit.
std::unique_ptr<GeoidModel> MakeModel(unsigned short typeId, double metresPerUnit = 1.0);

/// The separation, or kUntouched if there is none.
double HeightAt(GeoidModel& model, double latitude, double longitude, double easting = 0, double northing = 0,
                std::wstring* text = nullptr);

std::wstring Dump(GeoidModel& model, const wchar_t* indent = L"");

}  // namespace orv::test
