#include "surveydata/TideFile.h"

#include <cmath>
#include <cstring>
#include <map>
#include <random>

#include "platform/os/FileSystem.h"
#include "support/TestSupport.h"

namespace orv {
namespace {

using Model = std::map<double, double>;

std::string Bytes(const std::vector<TideFile::Record>& records) {
    return {reinterpret_cast<const char*>(records.data()), records.size() * sizeof(TideFile::Record)};
}

Model Content(TideFile& file) {
    Model model;
    double time = NAN, value = NAN;
    for (bool more = file.GetFirstTideValue(time, value); more; more = file.GetNextTideValue(time, value)) {
        EXPECT_TRUE(model.empty() || model.rbegin()->first < time);
        model[time] = value;
    }
    return model;
}

/// The value at a place of the model as a search of the file gives it, NaN for none.
double At(const Model& model, Model::const_iterator place) {
    return place == model.end() ? NAN : place->first;
}

// Against a sorted map, with saving and reading again at any moment.
TEST(TideFile, RandomChangesAndSearches) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"gauge_20213.tid";
    std::mt19937 random(7);
    const auto pick = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    TideFile file;
    EXPECT_FALSE(file.FileOpen(path, false));
    ASSERT_TRUE(file.FileOpen(path, true));
    Model model;
    for (int step = 0; step < 20000; ++step) {
        const double time = pick(300), value = step;
        const bool has = model.count(time) > 0;
        switch (pick(20)) {
            case 0:
                EXPECT_EQ(file.DeleteTideValue(time), model.erase(time) > 0);
                break;
            case 1:
                EXPECT_EQ(file.UpdateTideValue(time, value), has);
                if (has) model[time] = value;
                break;
            case 2:
                EXPECT_EQ(file.AddTideValue(time, value), model.emplace(time, value).second);
                break;
            case 3:
                if (pick(20)) break;
                EXPECT_TRUE(file.FileClose(true) && file.FileOpen(path, false));
                ASSERT_EQ(Content(file), model);
                break;
            default: {
                const auto from = model.lower_bound(time), behind = model.upper_bound(time);
                const auto before = [&](auto place) { return place == model.begin() ? model.end() : std::prev(place); };
                const std::pair<bool (TideFile::*)(double&, double&), double> searches[] = {
                    {&TideFile::GetValueOnOrAfter, At(model, from)},
                    {&TideFile::GetValueAfter, At(model, behind)},
                    {&TideFile::GetValueBefore, At(model, before(from))},
                    {&TideFile::GetValueOnOrBefore, At(model, before(behind))}};
                const auto& [search, wanted] = searches[pick(4)];
                double found = time, foundValue = NAN;
                ASSERT_EQ((file.*search)(found, foundValue), !std::isnan(wanted));
                if (std::isnan(wanted)) break;
                ASSERT_EQ(found, wanted);
                ASSERT_EQ(foundValue, model[wanted]);
            }
        }
    }
    EXPECT_FALSE(file.AddTideValue(NAN, 1) || file.AddTideValue(INFINITY, 1));
}

TEST(TideFile, ReadsDamagedFilesAndMendsThemWhenSaved) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"gauge_20213.tid";
    struct Row {
        const char* what;
        std::string bytes;
        Model content;
    };
    for (const Row& row : {Row{"cut", Bytes({{1, 10}, {2, 20}}) + "piece", {{1, 10}, {2, 20}}},
                           {"no order", Bytes({{2, 20}, {1, 10}}), {{1, 10}, {2, 20}}},
                           {"twice", Bytes({{1, 10}, {1, 11}}), {{1, 10}}},
                           {"no times", Bytes({{NAN, 1}, {1, 10}, {INFINITY, 2}}), {{1, 10}}},
                           {"nothing", "", {}}}) {
        test::WriteBytes(path, row.bytes);
        TideFile file;
        ASSERT_TRUE(file.FileOpen(path, false));
        EXPECT_EQ(Content(file), row.content) << row.what;
        EXPECT_TRUE(file.FileSave());
        EXPECT_EQ(test::ReadBytes(path), row.bytes) << row.what << ": not written unasked";
        Model content = row.content;
        for (double time = 8; time < 12; ++time) {
            EXPECT_TRUE(file.AddTideValue(time, time) && file.FileSave());
            content[time] = time;
        }
        EXPECT_EQ(test::ReadBytes(path).size(), content.size() * 16) << row.what;
        EXPECT_TRUE(file.FileOpen(path, false));
        EXPECT_EQ(Content(file), content) << row.what;
    }
}

// Whatever call fails, the file then holds the old values, or the new ones; a second try puts it right.
TEST(TideFile, SavesWholeOrNotAtAll) {
    const test::TempFolder folder;
    const std::wstring path = folder / L"gauge_20213.tid";
    for (const double added : {9.0, 1.5}) {  // behind the others, and between them
        for (int failAt = 1, failed = 1; failed; ++failAt) {
            test::WriteBytes(path, Bytes({{1, 10}, {2, 20}}));
            TideFile file, onDisk;
            ASSERT_TRUE(file.FileOpen(path, false) && file.AddTideValue(added, 90));
            FailingFileSystem files(failAt);
            SetFileSystem(&files);
            const bool saved = file.FileSave();
            SetFileSystem(nullptr);
            failed = files.HasFailed();
            ASSERT_TRUE(onDisk.FileOpen(path, false));
            const Model content = Content(onDisk), before = {{1, 10}, {2, 20}};
            EXPECT_TRUE(content == Content(file) || (!saved && content == before)) << failAt;
            EXPECT_TRUE(file.FileSave() && onDisk.FileOpen(path, false));
            EXPECT_EQ(Content(onDisk), Content(file)) << failAt;
        }
    }
}

}  // namespace
}  // namespace orv
