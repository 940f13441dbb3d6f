#include "users/UserAccountsFile.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/ConfigKeys.h"
#include "platform/os/FileSystem.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace orv {
namespace {

class UserAccountsFileTest : public testing::Test {
protected:
    UserAccountsFileTest() {
        EXPECT_TRUE(installation.Start());
        installation.Search().GetProjectDefinition().SetAppDefinition(L"navigate");
        test::WriteItems(installation.SystemFolder() + L"navigate.ual",
                         {{USERLEVELS_SECTION, USERLEVELS_KEY, L"Administrator;Surveyor"}});
    }
    ~UserAccountsFileTest() override { SetFileSystem(nullptr); }
    std::wstring Path() const { return installation.SystemFolder() + L"UserAccounts.ini"; }
    static std::wstring Names(const UserAccountsFile& file) {
        std::wstring names;
        for (int i = 0; i < file.UserCount(); ++i) names += file.UserName(i) + L";";
        return names;
    }
    test::TestInstallation installation;
};

TEST_F(UserAccountsFileTest, KeepsWhatItsFormHolds) {
    struct Row {
        std::wstring name, stored;
    };
    const Row rows[] = {{L"Anna", L"Anna"},
                        {std::wstring(40, L'x'), std::wstring(31, L'x')},
                        {L"Ren\u00e9", L"Ren\u00e9"},
                        {L"\u0141ukasz", L"Aukasz"},
                        {L"Q\U0001F6A2", L"Q=\u00a2"},
                        {L"cut\u0100here", L"cut"}};
    UserAccountsFile file;
    EXPECT_EQ(file.UserCount(), 0) << "no file yet";
    for (const Row& row : rows) EXPECT_TRUE(file.AddUser(row.name, row.name, L"Surveyor"));
    EXPECT_TRUE(file.SetUserAsDefault(1, true) && !file.SetUserAsDefault(6, true));
    ASSERT_TRUE(file.FileSave());
    EXPECT_EQ(test::ReadBytes(Path()).size(), 6u * 160);
    const UserAccountsFile again;
    for (int i = 0; i < 6; ++i) {
        const Row& row = rows[i];
        std::wstring level;
        EXPECT_EQ(again.UserName(i), row.stored);
        EXPECT_EQ(again.Password(i), row.stored);
        EXPECT_EQ(again.UserLayout(i), L"[AcqComp]Surveyor");
        EXPECT_EQ(again.GetUserIndex(row.stored), i);
        EXPECT_TRUE(again.ValidateUser(row.stored, row.stored, level));
        EXPECT_EQ(level, L"Surveyor");
        EXPECT_EQ(again.ValidateUser(row.stored, L"wrong", level), i == 1) << "a default account takes any";
        const bool same = row.name == row.stored;
        EXPECT_EQ(again.GetUserIndex(row.name) == i, same) << "another text than the one that is stored";
        EXPECT_EQ(again.ValidateUser(row.stored, row.name, level), same || i == 1);
        EXPECT_EQ(again.ValidateUser(row.stored, row.stored + L"x", level), i == 1);
    }
    EXPECT_EQ(installation.Search().GetDefaultUserName(), rows[1].stored);
}

TEST_F(UserAccountsFileTest, DropsAnIncompleteTail) {
    UserAccountsFile file;
    ASSERT_TRUE(file.AddUser(L"Anna", L"secret", L"Surveyor") && file.AddUser(L"Bo", L"", L"Guest") && file.FileSave());
    const std::string bytes = test::ReadBytes(Path());
    EXPECT_EQ(bytes.substr(8, 8), bytes.substr(16, 8)) << "blocks are enciphered one by one";
    EXPECT_EQ(bytes.find("Anna"), std::string::npos);
    test::WriteBytes(Path(), bytes + bytes.substr(0, 159));
    EXPECT_EQ(Names(UserAccountsFile()), L"Anna;Bo;");
    test::WriteBytes(Path(), bytes.substr(0, 319));
    EXPECT_EQ(Names(UserAccountsFile()), L"Anna;");
    std::wstring level = L"before";
    EXPECT_FALSE(UserAccountsFile().GetUserLevel(L"Bo", level));
    EXPECT_EQ(level, L"before");
}

TEST_F(UserAccountsFileTest, RulesOfChanging) {
    UserAccountsFile file;
    EXPECT_FALSE(file.AddUser(L"", L"p", L"Surveyor") || file.AddUser(L"n", L"p", L""));
    EXPECT_FALSE(file.AddUser(L"n", L"\u0100secret", L"Surveyor")) << "would have no password";
    ASSERT_TRUE(file.AddUser(L"Administrator", L"a", L"Administrator") && file.AddUser(L"Bo", L"b", L"Nowhere") &&
                file.AddUser(L"Bo", L"c", L"Surveyor"));
    EXPECT_EQ(file.UserLayout(1), L"");
    EXPECT_EQ(file.GetUserIndex(L"Bo"), 1);
    EXPECT_EQ(file.GetUserIndex(L"bo"), -1);
    EXPECT_FALSE(file.RemoveUser(0) || file.RemoveUser(3) || file.RemoveUser(-1));
    EXPECT_FALSE(file.ModifyUser(0, L"Root", L"a", L"Administrator") || file.ModifyUser(3, L"x", L"x", L"Surveyor"));
    EXPECT_TRUE(file.ModifyUser(0, L"Administrator", L"new", L"Surveyor"));
    EXPECT_EQ(file.Password(0) + file.UserLayout(0), L"new[AcqComp]Surveyor");
    EXPECT_TRUE(file.ModifyUser(1, L"", L"b", L"") && file.ModifyUser(1, L"Bo", L"b", L"Nowhere"));
    EXPECT_TRUE(file.RemoveUser(1));
    EXPECT_EQ(Names(file) + file.Password(1), L"Administrator;Bo;c");
    EXPECT_EQ(file.UserName(7) + file.LevelName(2) + file.LevelName(-1), L"");
    ASSERT_EQ(std::remove(PathToBytes(installation.SystemFolder() + L"navigate.ual").c_str()), 0);
    UserAccountsFile without;
    ASSERT_TRUE(without.AddUser(L"Bo", L"b", L"Surveyor"));
    EXPECT_FALSE(without.ModifyUser(0, L"Bo", L"c", L"Surveyor") || without.RemoveUser(0));
}

TEST_F(UserAccountsFileTest, SaveThatIsKilledLeavesOldOrNew) {
    {
        UserAccountsFile first;
        ASSERT_TRUE(first.AddUser(L"Old", L"o", L"Surveyor") && first.FileSave());
    }
    ASSERT_EQ(chmod(PathToBytes(Path()).c_str(), 0644), 0);
    const std::string old = test::ReadBytes(Path());
    UserAccountsFile file;
    ASSERT_TRUE(file.AddUser(L"New", L"n", L"Surveyor"));
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        test::WriteBytes(Path(), old);
        const pid_t child = fork();
        if (child == 0) {
            FailingFileSystem killed(n, [] { _exit(77); });
            SetFileSystem(&killed);
            _exit(file.FileSave() ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const std::wstring names = Names(UserAccountsFile());
        EXPECT_TRUE(names == L"Old;" || names == L"Old;New;");
        if (WEXITSTATUS(status) == 77) continue;
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_EQ(names, L"Old;New;");
        EXPECT_GT(n, 5);
        break;
    }
    struct stat status {};
    ASSERT_EQ(stat(PathToBytes(Path()).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(UserAccountsFileTest, AccountsThatCannotBeReadAreNotOverwritten) {
    UserAccountsFile file;
    ASSERT_TRUE(file.AddUser(L"Anna", L"a", L"Surveyor") && file.FileSave());
    // Fails the file's own calls only: those before them read the levels.
    for (int n = 1, refused = 0; refused < 3 && n < 100; ++n) {
        FailingFileSystem failing(n);
        SetFileSystem(&failing);
        const UserAccountsFile broken;
        SetFileSystem(nullptr);
        if (broken.UserCount() == 1) continue;
        EXPECT_FALSE(broken.FileSave());
        ++refused;
    }
    EXPECT_EQ(Names(UserAccountsFile()), L"Anna;");
    test::WriteBytes(Path(), std::string((4 << 20) + 1, 'x'));
    const UserAccountsFile huge;
    EXPECT_TRUE(huge.UserCount() == 0 && !huge.FileSave());
}

}  // namespace
}  // namespace orv
