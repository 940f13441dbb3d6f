#include "surveydata/LogHeader.h"

#include "platform/crypto/Crc8.h"
#include "platform/os/FileSystem.h"
#include "support/TestSupport.h"
#include "surveydata/LogFileName.h"

namespace orv {
namespace {

std::string Record(int type, std::string_view payload) {
    const auto low = [](std::size_t value) { return static_cast<char>(value & 0xFF); };
    std::string record{low(static_cast<std::size_t>(type)), 0, low(payload.size()), low(payload.size() >> 8)};
    record += payload;
    return record + static_cast<char>(Compute8BitCRC(std::as_bytes(std::span(payload))));
}

constexpr std::string_view kText =
    "\xEF\xBB\xBF[HEADER]\r\nOrvVersion=5.1\r\nFileVersion=7\r\nVesselName=Waverly\r\nSurveyType=Sweep\r\n"
    "RunlineName=L001\r\nAcquisLogStartTime=20210302-101530\r\n";

class LogHeaderTest : public testing::Test {
protected:
    void Write(std::string_view header, std::size_t first = 5) {
        test::WriteBytes(path, Record(1, std::string(first, 'x')) + Record(2, header) + Record(9, "data"));
    }
    std::wstring Runline() {
        LogHeader header;
        return ReadLogHeader(path, header) ? header.runline : L"<none>";
    }
    const test::ScopedZone zone{"UTC0"};
    test::TempFolder folder;
    const std::wstring path = folder / L"survey.orv";
};

TEST(Crc8, CheckValue) {
    EXPECT_EQ(Compute8BitCRC(std::as_bytes(std::span("123456789", 9))), 0xF4);
}

TEST_F(LogHeaderTest, ReadsBehindFirstRecordsOfAnyLength) {
    for (const std::size_t first : {0, 5, 4000, 4084, 65535}) {
        Write(kText, first);
        LogFileName log;
        EXPECT_TRUE(log.SetName(path)) << "the title doesn't fit, so from the header";
        EXPECT_EQ(log.RunlineName() + log.OrvVersion() + log.FileVersion(), L"L0015.17");
        EXPECT_EQ(log.LogTime(), 1614680130);
        const std::string whole = test::ReadBytes(path);
        for (const std::size_t cut : {std::size_t{0}, std::size_t{3}, first + 8, first + 20}) {
            test::WriteBytes(path, whole.substr(0, cut));
            EXPECT_EQ(Runline(), L"<none>") << first << " cut at " << cut;
        }
    }
    test::WriteBytes(path, Record(1, "") + Record(3, kText));
    EXPECT_EQ(Runline(), L"<none>") << "another record";
    Write("[HEADER]\nRunlineName=A\nAcquisLogStartTime=20210302-101530\nReplayLogStartTime=soon\n");
    EXPECT_EQ(Runline(), L"<none>") << "a time that is none";
    LogFileName spoilt;
    EXPECT_FALSE(spoilt.SetName(path));
    EXPECT_TRUE(spoilt.RunlineName() == L"A" && spoilt.LogTime() == 1614680130) << "told in front of that time";
    const std::wstring half = folder / L"Pier[Sweep]_L7-20210302-101530-again.orv";
    test::WriteBytes(half, Record(1, "") + Record(2, "[HEADER]\nVesselName=Waverly\n"));
    const LogFileName both(half);
    EXPECT_EQ(both.VesselName() + both.RunlineName(), L"WaverlyL7") << "the header over a title that doesn't fit";
    LogFileName headerFirst;
    headerFirst.SetPrimarySearch(kSearchHeaderFirst);
    const std::wstring other = folder / L"Pier[Sweep]_L7-20210302-101530.orv";
    test::WriteBytes(other, Record(1, "") + Record(2, kText));
    EXPECT_TRUE(headerFirst.SetName(other));
    EXPECT_EQ(headerFirst.RunlineName() + LogFileName(other).RunlineName(), L"L001L7");
    test::WriteBytes(other, "");
    EXPECT_TRUE(headerFirst.SetName(other));
    EXPECT_EQ(headerFirst.RunlineName(), L"L7") << "without a header the title must do";
    Write("no header at all");
    EXPECT_EQ(Runline(), L"");
    EXPECT_FALSE(LogFileName(folder / L"missing.orv").IsValid());
}

TEST_F(LogHeaderTest, ChangesTheRunLineInPlace) {
    struct Row {
        const char* what;
        std::string text;
        const wchar_t* runline;
        const wchar_t* kept;
    };
    for (const Row& row : {Row{"as long", std::string(kText), L"R-02", L"R-02"},
                           {"shorter", std::string(kText), L"A", L"A"},
                           {"grown into the room of a shrunk one", std::string(kText) + std::string(9, '\0'),
                            L"L0123456789", L"L0123456789"},
                           {"long, of a long header", std::string(kText) + ";" + std::string(5000, '.'), L"B", L"B"},
                           {"cut at the old length", "[HEADER]\nRunlineName=L001", L"L00123", L"L001"}}) {
        Write(row.text);
        const std::string before = test::ReadBytes(path);
        EXPECT_TRUE(LogFileName::SaveRunlineName(path, row.runline)) << row.what;
        EXPECT_EQ(Runline(), row.kept) << row.what;
        const std::string after = test::ReadBytes(path);
        ASSERT_EQ(after.size(), before.size()) << row.what;
        EXPECT_EQ(after.substr(0, 14), before.substr(0, 14));
        const std::string payload = after.substr(14, row.text.size());
        EXPECT_EQ(after.substr(10), Record(2, payload) + Record(9, "data")) << row.what;
    }
    EXPECT_FALSE(LogFileName::SaveRunlineName(folder / L"missing.orv", L"A"));
    EXPECT_FALSE(test::Exists(folder / L"missing.orv"));
}

TEST_F(LogHeaderTest, IsReadableWhateverCallFails) {
    for (int failAt = 1, failed = 1; failed; ++failAt) {
        Write(kText);
        FailingFileSystem files(failAt);
        SetFileSystem(&files);
        const bool saved = LogFileName::SaveRunlineName(path, L"L002");
        SetFileSystem(nullptr);
        failed = files.HasFailed();
        EXPECT_EQ(saved, !failed) << failAt;
        EXPECT_TRUE(Runline() == L"L002" || (!saved && Runline() == L"L001")) << failAt;
    }
}

}  // namespace
}  // namespace orv
