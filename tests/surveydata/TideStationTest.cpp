#include "surveydata/TideStation.h"

#include <cmath>

#include "core/ConfigKeys.h"
#include "platform/os/Clock.h"
#include "platform/os/FileSystem.h"
#include "platform/watch/SubscriptionManager.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

constexpr double kMinute = 60000.0;

double Utc(int month, int day, int hour = 0) {
    return static_cast<double>(CalendarToUtc({2021, month, day, hour, 0, 0})) * 1000.0;
}

/// Notes the value files that are opened while it is in force.
struct OpenedMonths : FailingFileSystem {
    OpenedMonths() : FailingFileSystem(0) { SetFileSystem(this); }
    ~OpenedMonths() override { SetFileSystem(nullptr); }
    FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) override {
        if (path.ends_with(L".tid")) names += path.substr(path.rfind(L'_'));
        return FailingFileSystem::Open(path, mode, file);
    }
    std::wstring names;
};

class TideStationTest : public testing::Test {
protected:
    TideStationTest() {
        EXPECT_TRUE(installation.Start());
        test::WriteBytes(path, "");
        EXPECT_TRUE(station.FileOpen(path));
    }
    void Reopen() {
        station.FileClose(true);
        EXPECT_TRUE(station.FileOpen(path));
    }
    /// Value of a mode, NaN if there is none; `time` goes along.
    double Get(int mode, double& time) {
        double value = NAN;
        const bool found = station.GetTideValue(mode, time, value);
        EXPECT_EQ(found, !std::isnan(value));
        return value;
    }
    double Get(int mode, const double& at) {
        double time = at;
        return Get(mode, time);
    }
    const test::ScopedZone zone{"XXX+11"};  // months are those of UTC
    const test::TestInstallation installation;
    const std::wstring folder = installation.ProjectFolder(), path = folder + L"Harbour.tdg";
    TideStation station;
};

TEST_F(TideStationTest, KeepsAMonthAFileAndWalksThemAsOneStream) {
    station.SetStationName(L"Hafen\u00E9");
    station.SetStationOffset(0.5);
    const double times[] = {Utc(1, 31, 23), Utc(3, 1), Utc(3, 31, 23), Utc(12, 31, 23)};
    for (const double time : times) EXPECT_TRUE(station.AddTideValue(time, time / 1e12));
    EXPECT_FALSE(station.AddTideValue(times[1], 9)) << "there is one";
    EXPECT_EQ(station.GetNumValues(), 4);
    station.FileClose(true);
    {
        const OpenedMonths opened;
        EXPECT_TRUE(station.FileOpen(path));
        EXPECT_EQ(station.GetNumValues(), 4);
        EXPECT_EQ(opened.names, L"") << "opening reads no values";
        EXPECT_FALSE(std::isnan(Get(TideStation::kExact, times[1])));
        EXPECT_EQ(opened.names, L"_20213.tid");
    }
    for (const wchar_t* month : {L"harbour_20211.tid", L"harbour_20213.tid", L"harbour_202112.tid"}) {
        EXPECT_TRUE(test::Exists(folder + month));
    }
    EXPECT_EQ(station.GetStationName(), L"Hafen\u00E9");
    EXPECT_EQ(station.GetNumValues(), 4);
    double time = 0, first = 0, last = 0;
    int count = 0;
    for (double value = Get(TideStation::kFirst, time); !std::isnan(value); value = Get(TideStation::kNext, time)) {
        EXPECT_EQ(time, times[count++]);
        EXPECT_EQ(value, time / 1e12 + 0.5);
        EXPECT_EQ(Get(TideStation::kCurrent, 0.0), value);
    }
    for (double value = Get(TideStation::kLast, time); !std::isnan(value); value = Get(TideStation::kPrevious, time)) {
        EXPECT_EQ(time, times[--count]);
    }
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(station.GetTimeSpan(first, last) && first == times[0] && last == times[3]);

    struct Row {
        int mode;
        double time, found;
    };
    for (const Row& row : {Row{TideStation::kFirstAfterOrEqual, times[1], times[1]},
                           {TideStation::kFirstAfter, times[1], times[2]},
                           {TideStation::kFirstAfter, times[2], times[3]},
                           {TideStation::kFirstAfter, times[3], NAN},
                           {TideStation::kFirstAfterOrEqual, Utc(2, 10), times[1]},
                           {TideStation::kFirstAfterOrEqual, 0, times[0]},
                           {TideStation::kLastBeforeOrEqual, times[1], times[1]},
                           {TideStation::kLastBefore, times[1], times[0]},
                           {TideStation::kLastBefore, times[0], NAN},
                           {TideStation::kLastBeforeOrEqual, Utc(8, 1), times[2]},
                           {TideStation::kExact, times[2], times[2]},
                           {TideStation::kExact, times[2] + 1, NAN},
                           {TideStation::kExact, Utc(2, 10), NAN},
                           {0, times[1], NAN},
                           {11, times[1], NAN},
                           {13, times[1], NAN}}) {
        time = row.time;
        const double value = Get(row.mode, time);
        EXPECT_EQ(time, std::isnan(row.found) ? row.time : row.found) << row.mode;
        EXPECT_EQ(std::isnan(value), std::isnan(row.found)) << row.mode;
    }
    EXPECT_TRUE(station.UpdateTideValue(times[3], 7.5));
    EXPECT_EQ(Get(TideStation::kExact, times[3]), 7.5);
    EXPECT_TRUE(station.DeleteTideValue(times[3]));
    EXPECT_FALSE(test::Exists(folder + L"harbour_202112.tid"));
    EXPECT_FALSE(station.DeleteTideValue(times[3]) || station.UpdateTideValue(times[3], 1));
    EXPECT_TRUE(station.UpdateTideValue(times[2] + 1, 1)) << "the month is there, the value isn't";
    EXPECT_EQ(station.GetNumValues(), 3);
    EXPECT_FALSE(station.AddTideValue(1e300, 1) || station.AddTideValue(NAN, 1));
}

TEST_F(TideStationTest, Interpolates) {
    struct Row {
        const char* what;
        std::vector<double> minutes;  // of the values, which are the numbers from 1 on
        bool limitGaps, extrapolate;
        double at, value;
    };
    const Row rows[] = {
        {"none", {}, true, true, 0, NAN},
        {"one, not held", {0}, true, false, 0, NAN},
        {"one, held before", {0}, true, true, -5, 1},
        {"one, held after", {0}, true, true, 5, 1},
        {"one, too far", {0}, true, true, 5.01, NAN},
        {"between", {0, 4}, true, true, 1, 1.25},
        {"gap", {0, 400 / 60.0}, true, true, 1, NAN},
        {"gap bridged", {0, 10}, false, true, 1, 1.1},
        {"on a value", {0, 3, 4}, true, true, 3, 2},
        {"on the first", {0, 4}, true, true, 0, NAN},
        {"before the first", {0, 4}, true, true, -5, 1},
        {"long before", {0, 4}, true, true, -6, NAN},
        {"after the last", {0, 4}, true, true, 9, 2},
        {"long after", {0, 4}, true, true, 9.5, NAN},
        {"not held", {0, 4}, true, false, 5, NAN},
        {"no time", {0, 4}, true, true, NAN, NAN},
    };
    // Within one month, and across a month's end.
    for (const double start : {Utc(3, 10), Utc(4, 1) - 2 * kMinute}) {
        for (const Row& row : rows) {
            double number = 0;
            for (const double minute : row.minutes) station.AddTideValue(start + minute * kMinute, ++number - 0.25);
            station.SetStationOffset(0.25);
            station.SetInterpolAttribs(row.limitGaps, 5 * kMinute);
            station.SetExtrapolationAttribs(row.extrapolate, 5 * kMinute);
            const double value = Get(TideStation::kInterpolate, start + row.at * kMinute);
            if (std::isnan(row.value)) {
                EXPECT_TRUE(std::isnan(value)) << row.what << value;
            } else {
                EXPECT_NEAR(value, row.value, 1e-6) << row.what;
            }
            for (const double minute : row.minutes) EXPECT_TRUE(station.DeleteTideValue(start + minute * kMinute));
        }
    }
}

TEST_F(TideStationTest, MonthsThatCantBeReadLeaveTheIndex) {
    for (const int month : {1, 2, 3}) station.AddTideValue(Utc(month, 5), month);
    Reopen();
    const std::wstring february = folder + L"harbour_20212.tid";
    const std::string bytes = test::ReadBytes(february);
    ASSERT_EQ(Files().Remove(february), FsResult::Ok);
    EXPECT_EQ(Get(TideStation::kFirstAfter, Utc(1, 6)), 3) << "goes on behind it";
    EXPECT_EQ(station.GetNumValues(), 2);
    test::WriteBytes(february, bytes);
    EXPECT_TRUE(station.AddTideValue(Utc(2, 6), 9));
    EXPECT_EQ(Get(TideStation::kExact, Utc(2, 5)), 2) << "what is there is never emptied";
    station.FileClose(true);

    test::MakeFolders(folder + L"harbour_20217.tid");
    for (const wchar_t* odd : {L"harbour_1960.tid", L"harbour_202113.tid", L"other_20218.tid", L"harbour.tid"}) {
        test::WriteBytes(folder + odd, bytes);
    }
    test::WriteBytes(folder + L"HARBOUR_20214x.TID", bytes + bytes + "piece");
    EXPECT_TRUE(station.FileOpen(path));
    EXPECT_EQ(station.GetNumValues(), 6) << "1 + 2 + 1, and April with 2";
}

TEST_F(TideStationTest, OpensOldAndDamagedStations) {
    TideStationData data;
    data.name = L"Pier";
    data.x = 3;
    data.id = L"";
    data.limitGaps = false;
    data.maximumGap = 7;
    const std::string whole = TideStationBytes(data);
    TideStationData read;
    EXPECT_EQ(ParseTideStation(std::as_bytes(std::span(whole)), read), TideStationRead::Complete);
    EXPECT_EQ(TideStationBytes(read), whole);
    read = {};
    const std::string old = whole.substr(26);  // from the length of the name on
    EXPECT_EQ(ParseTideStation(std::as_bytes(std::span(old)), read), TideStationRead::Complete);
    EXPECT_TRUE(read.name == L"Pier" && read.x == 3 && read.maximumGap == kTideLimit && read.limitGaps);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        read = {};
        const TideStationRead result = ParseTideStation(std::as_bytes(std::span(whole).first(cut)), read);
        EXPECT_EQ(result, cut < 4    ? TideStationRead::Empty
                          : cut < 34 ? TideStationRead::NoName
                                     : TideStationRead::Complete)
            << cut;
        EXPECT_EQ(read.id, L"Station 1") << cut;
    }
}

TEST_F(TideStationTest, CountsOpensAndFollowsOtherPrograms) {
    station.SetStationPos({10, 20, 0});
    EXPECT_TRUE(station.FileSave());
    station.SetStationKP(5);
    Page page;
    EXPECT_TRUE(station.GetExtents(page) && page.Low() == (Point{7, 17, 0}) && page.High() == (Point{13, 23, 0}));
    EXPECT_EQ(TideStationBytes({}).size(), test::ReadBytes(path).size()) << "without the KP";
    EXPECT_TRUE(station.FileOpen(L"/nowhere"));
    EXPECT_EQ(station.GetFileName(), path);
    EXPECT_EQ(station.FileClose(false), 1);
    std::wstring told;
    const int number = SubscriptionManager::Instance().Subscribe(
        [&](int code, const std::wstring& which) { told += which + (code == 9 ? L"." : L"?"); });
    station.SetStationID(L"");
    EXPECT_TRUE(station.FileSave());
    TideStationData other;
    other.name = L"Changed elsewhere";
    other.id = L"X";
    test::WriteBytes(path, TideStationBytes(other));
    station.OnTidestationfileUpdate();
    EXPECT_EQ(station.GetStationName(), L"Changed elsewhere");
    station.SetStationOffset(0.25);
    test::WriteBytes(path, TideStationBytes(other).substr(0, 30));  // as a program leaves it that is saving
    station.OnTidestationfileUpdate();
    EXPECT_EQ(station.GetStationName() + std::to_wstring(station.GetStationOffset()), L"Changed elsewhere0.250000");
    SubscriptionManager::Instance().Unsubscribe(number);
    EXPECT_EQ(told.substr(0, 12), L"Station 1.X.");
    EXPECT_EQ(station.FileClose(false), 0);
    EXPECT_FALSE(station.IsOpen() || station.FileSave() || station.FileOpen(folder + L"missing.tdg"));
}

// A value is never seen in part, whoever adds, changes, saves or walks at the same time.
TEST_F(TideStationTest, EightThreadsShareAStation) {
    constexpr int count = 500;
    station.SetExtrapolationAttribs(false, 0);  // a value held behind the last one so far would be another time's
    test::InEightThreads([&](unsigned number) {
        for (int i = 0; i < count; ++i) {
            double time = Utc(3, 10) + (4 * i + static_cast<int>(number % 4)) * kMinute, value = NAN;
            if (number < 4) {
                EXPECT_TRUE(station.AddTideValue(time, time));
                continue;
            }
            const int modes[] = {TideStation::kExact, TideStation::kNext, TideStation::kInterpolate,
                                 TideStation::kLast};
            EXPECT_TRUE(!station.GetTideValue(modes[number % 4], time, value) || std::fabs(value - time) < 1);
            EXPECT_TRUE(i % 100 != 0 || station.FileSave());
            station.SetStationName(L"Pier");
            EXPECT_LE(station.GetNumValues(), 4 * count);
        }
    });
    EXPECT_EQ(station.GetNumValues(), 4 * count);
}

}  // namespace
}  // namespace orv
