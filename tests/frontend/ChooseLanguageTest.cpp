#include "frontend/ChooseLanguage.h"

#include "platform/os/FileSystem.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

struct FullDisk : FailingFileSystem {
    FullDisk() : FailingFileSystem(0) {}
    FsResult Open(std::wstring_view path, const OpenMode& mode, std::unique_ptr<File>& file) override {
        return mode.write ? FsResult::NoSpace : FailingFileSystem::Open(path, mode, file);
    }
};

TEST(ChooseLanguage, FindsAndStoresLanguages) {
    test::TestInstallation installation;
    ASSERT_TRUE(installation.Start());
    ChooseLanguageDialog dialog;
    EXPECT_FALSE(dialog.Open());
    const std::wstring folder = installation.ProgramFolder() + L"Localizations/";
    test::MakeFolders(folder);
    EXPECT_FALSE(dialog.Open()) << "an empty folder";
    const std::string longFile = "Norsk\n" + std::string(70000, 'x');
    const struct {
        const wchar_t* folder;
        const char* bytes;  // null: no file
        int id;
        std::wstring name;
    } rows[] = {
        {L"0409", "English\r\nsecond line", 0x409, L"English"},
        {L"040c",
         "\xEF\xBB\xBF"
         "Fran\xC3\xA7"
         "ais",
         0x40C, L"Fran\u00e7ais"},
        {L"040A", "Espa\xF1ol", 0x40A, L"Espa\uFFFDol"},
        {L"0816", "Portugu\xEAs\n", 0x816, L"Portugu\u00eas"},
        {L"0419", "\xD0\xA0\xD1\x83\xD1\x81", 0x419, L"\u0420\u0443\u0441"},
        {L"0413", nullptr, 0x413, L""},
        {L"0406", "Dansk \x80\n", 0x406, L"Dansk \u0080"},
        {L"0414", longFile.c_str(), 0x414, L"Norsk"},
        {L"old", "Old", 0, L"Old"},
    };
    std::map<int, std::wstring> expected;
    for (const auto& row : rows) {
        test::MakeFolders(folder + row.folder);
        if (row.bytes) test::WriteBytes(folder + row.folder + L"/showas.txt", row.bytes);
        expected[row.id] = row.name;
    }
    test::WriteBytes(folder + L"0407", "a file");
    EXPECT_TRUE(dialog.Open());
    EXPECT_EQ(dialog.Choices(), expected);
    EXPECT_TRUE(dialog.Ok(0x409));
    FullDisk full;
    SetFileSystem(&full);
    EXPECT_FALSE(dialog.Ok(0x419)) << "can't be stored";
    SetFileSystem(nullptr);
    installation.Restart();
    ASSERT_TRUE(installation.Start());
    std::wstring language;
    EXPECT_TRUE(installation.Search().GetOrvIni().GetUserLanguage(language)) << "in the next run";
    EXPECT_EQ(LanguageSettingText(0x409), L" 409");
    EXPECT_EQ(language.substr(language.find_first_not_of(L' ')), L"409");
    EXPECT_EQ(LanguageSettingText(0x1080A), L"1080A");
}

}  // namespace
}  // namespace orv
