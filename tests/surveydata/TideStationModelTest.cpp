// A station beside a plain sorted vector, over random operations; and one of five years.

#include <algorithm>
#include <cmath>
#include <random>

#include "platform/os/Clock.h"
#include "support/TestInstallation.h"
#include "surveydata/TideStation.h"

namespace orv {
namespace {

constexpr double kMinute = 60000.0;

struct Value {
    double time, value;  ///< as it is in the file
    bool operator<(const Value& other) const { return time < other.time; }
};

/// What a station means, told as slowly and plainly as it can be.
struct Model {
    std::vector<Value> values;
    double offset = 0, gap = kTideLimit, span = kTideLimit;
    bool limitGaps = true, extrapolate = true;

    std::ptrdiff_t FirstNotBefore(double time) const {
        return std::count_if(values.begin(), values.end(), [&](const Value& v) { return v.time < time; });
    }
    std::ptrdiff_t Find(double time) const {
        const auto place = FirstNotBefore(time);
        return place < std::ssize(values) && At(place).time == time ? place : -1;
    }
    const Value& At(std::ptrdiff_t place) const { return values[static_cast<std::size_t>(place)]; }
    /// The place that a search finds; outside the vector for none.
    std::ptrdiff_t Search(int mode, double time) const {
        const auto from = FirstNotBefore(time);
        const bool on = Find(time) >= 0;
        switch (mode) {
            case TideStation::kFirst:
                return values.empty() ? -1 : 0;
            case TideStation::kLast:
                return std::ssize(values) - 1;
            case TideStation::kFirstAfterOrEqual:
                return from;
            case TideStation::kFirstAfter:
                return from + on;
            case TideStation::kLastBeforeOrEqual:
                return from + on - 1;
            case TideStation::kLastBefore:
                return from - 1;
            case TideStation::kExact:
                return Find(time);
            default:
                return -1;
        }
    }
    double Interpolated(double time) const {
        if (values.empty()) return NAN;
        const auto after = FirstNotBefore(time);
        const Value &first = values.front(), &last = values.back();
        const auto held = [&](const Value& end) {
            return extrapolate && span >= std::fabs(time - end.time) ? end.value + offset : NAN;
        };
        if (values.size() == 1) return held(first);
        if (after == std::ssize(values)) return held(last);
        if (after == 0) return time == first.time ? NAN : held(first);  // on the first value nothing lies before it
        const Value &a = At(after - 1), &b = At(after);
        if (limitGaps && b.time - a.time > gap) return NAN;
        return a.value + offset + (b.value - a.value) * ((time - a.time) / (b.time - a.time));
    }
};

class TideModelTest : public testing::Test {
protected:
    TideModelTest() {
        EXPECT_TRUE(installation.Start());
        test::WriteBytes(path, "");
        EXPECT_TRUE(station.FileOpen(path));
    }
    unsigned Pick(std::size_t below) { return static_cast<unsigned>(random() % below); }
    /// Some minutes around the starts of five months, of which one is left out, so that times meet again and again.
    double SomeTime() {
        const int months[] = {1, 2, 3, 5};
        const CalendarTime month{2020, months[Pick(4)], 1, 0, 0, 0};
        return static_cast<double>(CalendarToUtc(month)) * 1000.0 + (Pick(41) - 20.0) * kMinute;
    }

    /// One of the twelve modes, and then some steps from what it found.
    void Read() {
        const int mode = static_cast<int>(Pick(14));
        if (mode == TideStation::kCurrent || mode == TideStation::kNext || mode == TideStation::kPrevious) return;
        double time = SomeTime() + (Pick(2) ? 0.5 * kMinute : 0), value = NAN;
        const double asked = time;
        const bool found = station.GetTideValue(mode, time, value);
        if (mode == TideStation::kInterpolate) {
            const double wanted = model.Interpolated(asked);
            ASSERT_EQ(found, !std::isnan(wanted)) << asked;
            ASSERT_TRUE(!found || std::fabs(value - wanted) < 1e-9) << asked;
            ASSERT_EQ(time, asked);
            return;
        }
        auto place = model.Search(mode, asked);
        const bool has = place >= 0 && place < std::ssize(model.values);
        ASSERT_EQ(found, has) << mode;
        if (!has) return;
        for (int step = 0; step < 4; ++step) {
            ASSERT_EQ(time, model.At(place).time) << mode;
            ASSERT_EQ(value, model.At(place).value + model.offset) << mode;
            const int move = static_cast<int>(Pick(3)) - 1;
            const int moves[] = {TideStation::kPrevious, TideStation::kCurrent, TideStation::kNext};
            const bool inside = place + move >= 0 && place + move < std::ssize(model.values);
            ASSERT_EQ(station.GetTideValue(moves[move + 1], time, value), inside);
            if (inside) place += move;
        }
    }

    void Change(int step) {
        const double time = SomeTime(), value = step * 0.25;
        const auto place = model.Find(time);
        switch (Pick(8)) {
            case 0:
                if (place < 0) break;
                ASSERT_TRUE(station.DeleteTideValue(time));
                model.values.erase(model.values.begin() + place);
                break;
            case 1:
                ASSERT_TRUE(station.UpdateTideValue(time, value) || place < 0);
                if (place >= 0) model.values[static_cast<std::size_t>(place)].value = value - model.offset;
                break;
            case 2:
                ASSERT_EQ(station.AddTideValue(time, value), place < 0);
                if (place < 0) model.values.insert(model.values.begin() + model.FirstNotBefore(time), {time, value});
                break;
            case 3:
                model.offset = Pick(5) * 0.25;
                station.SetStationOffset(model.offset);
                break;
            case 4:
                station.SetInterpolAttribs(model.limitGaps = Pick(3) > 0, model.gap = Pick(20) * kMinute);
                station.SetExtrapolationAttribs(model.extrapolate = Pick(3) > 0, model.span = Pick(20) * kMinute);
                break;
            case 5:
                if (Pick(100) == 0) model.values.clear();  // a rare fresh start, month by month
                while (model.values.empty() && station.GetNumValues() > 0) {
                    double first = 0, last = 0;
                    ASSERT_TRUE(station.GetTimeSpan(first, last) && station.DeleteTideValue(Pick(2) ? first : last));
                }
                break;
            case 6:
                if (Pick(20)) break;
                station.FileClose(true);
                ASSERT_TRUE(station.FileOpen(path));
                break;
            default:
                ASSERT_EQ(station.GetNumValues(), std::ssize(model.values));
        }
    }

    const test::TestInstallation installation;
    const std::wstring path = installation.ProjectFolder() + L"Harbour.tdg";
    std::mt19937 random{20210302};
    TideStation station;
    Model model;
};

TEST_F(TideModelTest, AgreesWithASortedVector) {
    for (int step = 0; step < 20000 && !HasFatalFailure(); ++step) {
        Change(step);
        if (!HasFatalFailure()) Read();
    }
}

// A value a minute for five years: everything at the ends, in the middle and across a month that goes.
TEST_F(TideModelTest, FiveYears) {
    constexpr int count = 5 * 365 * 1440;
    const double start = static_cast<double>(CalendarToUtc({2016, 1, 1, 0, 0, 0})) * 1000.0;
    const auto at = [&](int i) { return start + i * kMinute; };
    for (int i = 0; i < count; ++i) ASSERT_TRUE(station.AddTideValue(at(i), i));
    station.FileClose(true);
    ASSERT_TRUE(station.FileOpen(path));
    ASSERT_EQ(station.GetNumValues(), count);
    const auto check = [&](int i, double wanted) {
        double time = at(i) + 0.25 * kMinute, value = NAN;
        ASSERT_TRUE(station.InterpolateTide(time, value)) << i;
        ASSERT_NEAR(value, wanted, 1e-6) << i;
    };
    for (int i = 0; i < 20000; ++i) {
        const int place = static_cast<int>(Pick(count - 1));
        check(place, place + 0.25);
        check(i, i + 0.25);
    }
    EXPECT_TRUE(station.AddTideValue(at(-1), -1) && station.AddTideValue(at(count), count));
    EXPECT_TRUE(station.UpdateTideValue(at(count / 2), 0));
    check(-1, -0.75);
    check(count - 1, count - 0.75);
    check(count / 2, (count / 2 + 1) * 0.25);
    const int january = 31 * 1440, february = 29 * 1440;
    for (int i = january; i < january + february; ++i) ASSERT_TRUE(station.DeleteTideValue(at(i)));
    EXPECT_FALSE(test::Exists(installation.ProjectFolder() + L"harbour_20162.tid"));
    station.FileClose(true);
    ASSERT_TRUE(station.FileOpen(path));
    EXPECT_EQ(station.GetNumValues(), count + 2 - february);
    double time = at(january - 1), value = 0;
    EXPECT_TRUE(station.GetTideValue(TideStation::kFirstAfter, time, value));
    EXPECT_EQ(time, at(january + february));
}

}  // namespace
}  // namespace orv
