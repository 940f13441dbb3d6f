#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <tuple>
#include <utility>

#include "apps/RunProgram.h"
#include "platform/os/FileSystem.h"
#include "platform/text/PathText.h"

namespace orv::test {
namespace {

constexpr std::int64_t kDay = 86400;

class OrvcfgHouseTest : public OrvcfgTest {
protected:
    void SetUp() override { Install("Harbour"); }
    void Set(const std::string& section, const std::string& key, const std::string& value) const {
        const RunResult set =
            Run({"config", "set", "--add", Text(L"i/Projects/Harbour/Project.prj"), section, key, value});
        ASSERT_EQ(set.code, 0) << set.err;
    }
    /// A file below the project's folder that was changed so many seconds ago.
    void Put(const std::wstring& name, const std::string& bytes, std::int64_t age = 0) const {
        const std::wstring path = At(L"i/Projects/Harbour/") + name;
        MakeFolders(path.substr(0, path.rfind(L'/')));
        WriteBytes(path, bytes);
        ASSERT_EQ(Files().SetModified(path, std::time(nullptr) - age, 0), FsResult::Ok);
    }
    std::string File(const std::wstring& name) const { return ReadBytes(At(L"i/Projects/Harbour/") + name); }
    void SignLevels(const std::string& content) const {
        WriteBytes(At(L"i/system/navigate.ual"), content);
        ASSERT_EQ(Run({"config", "sign", "i/system/navigate.ual"}).code, 0);
    }
    static std::string Day(std::int64_t age) {
        const std::time_t time = std::time(nullptr) - age;
        char text[20];
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", std::localtime(&time));
        return text;
    }
    /// Starts orvcfg on a terminal of its own, which is read and typed at; with another standard input if one is given.
    /// The process, negative if there are no terminals.
    pid_t OnTerminal(int& terminal, const Arguments& arguments, int input = -1) const {
        const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child != 0) return child;
        alarm(60);
        setenv("TERM", "xterm", 1);
        std::vector<const char*> all = {"orvcfg", "--system", "i/system"};
        for (const std::string& argument : arguments) all.push_back(argument.c_str());
        all.push_back(nullptr);
        if (chdir(Text(L"").c_str()) == 0 && (input < 0 || dup2(input, STDIN_FILENO) >= 0)) {
            execv(ORVCFG_PROGRAM, const_cast<char**>(all.data()));
        }
        _exit(99);
    }
};

TEST_F(OrvcfgHouseTest, CleaningShowsThenAsksThenDeletes) {
    EXPECT_EQ(OnInstallation({"clean", "run"}).code, 0) << "both rules are off";
    Set("DiskSpace", "MaxDaysEnabled", "1");
    const struct {
        const char* what;
        std::vector<int> ages;  ///< days
        const char* maxDays;
        int refused;  ///< code without --yes
        std::size_t stay;
    } rows[] = {{"some are old", {40, 20}, "30", 0, 1},
                {"none is old", {3}, "30", 0, 1},
                {"all would go", {40, 35}, "30", 2, 0},
                {"the newest is of last year", {370, 600}, "500", 2, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Set("DiskSpace", "MaxDays", row.maxDays);
        for (const int age : row.ages) Put(L"LogData/" + std::to_wstring(age) + L".raw", "data", age * kDay);
        const auto planned = OnInstallation({"clean", "plan", "--json"}).Json()["files"];
        EXPECT_EQ(planned.size(), row.ages.size() - row.stay);
        const RunResult run = OnInstallation({"clean", "run"});
        EXPECT_EQ(run.code, row.refused) << run.err;
        for (const auto& file : planned) {
            EXPECT_EQ(access(file["file"].get<std::string>().c_str(), F_OK) == 0, row.refused != 0);
        }
        EXPECT_EQ(OnInstallation({"clean", "run", "--yes"}).code, 0);
        for (const auto& file : planned) EXPECT_NE(access(file["file"].get<std::string>().c_str(), F_OK), 0);
        const RunResult files = OnInstallation({"files", "RawLogData", "--json"});
        EXPECT_EQ(files.Json().size(), row.stay);
        for (const auto& file : files.Json()) std::remove(file["path"].get<std::string>().c_str());
    }
    Put(L"LogData/kept.raw", "data", 900 * kDay);
    ASSERT_EQ(Files().SetReadOnly(At(L"i/Projects/Harbour/LogData/kept.raw"), true), FsResult::Ok);
    const RunResult kept = OnInstallation({"clean", "run", "--yes"});
    EXPECT_EQ(kept.code, 1);
    EXPECT_NE(kept.err.find("kept.raw: It should go, and stays"), std::string::npos) << kept.err;
}

TEST_F(OrvcfgHouseTest, HistoryGoesBackAndForth) {
    EXPECT_EQ(OnInstallation({"history", "run"}).code, 2) << "off";
    Set("FileHistory", "Enabled", "1");
    Set("FileHistory", "AppConfig", "1");
    Put(L"Job.acf", "old", 5 * kDay);
    EXPECT_EQ(OnInstallation({"history", "plan", "--json"}).Json().size(), 1u);
    EXPECT_EQ(OnInstallation({"history", "run"}).code, 0);
    EXPECT_EQ(OnInstallation({"history", "plan", "--json"}).Json().size(), 0u);
    Put(L"Job.acf", "present", 120);
    const RunResult restored = OnInstallation({"history", "restore", Day(2 * kDay), ".acf", "job", "--json"});
    EXPECT_EQ(restored.code, 0) << restored.err;
    EXPECT_EQ(File(L"Job.acf"), "old");
    EXPECT_EQ(ReadBytes(PathFromBytes(restored.Json()["restored"]["kept"].get<std::string>())), "present");
    EXPECT_EQ(OnInstallation({"history", "restore", Day(0), "AppConfig", "Job"}).code, 0);
    EXPECT_EQ(File(L"Job.acf"), "present") << "and back again";
    EXPECT_EQ(OnInstallation({"history", "list", "--json"}).Json().size(), 3u) << "each state has its copy";

    Put(L"Job.acf", "from tomorrow", -kDay);
    const RunResult ahead = OnInstallation({"history", "restore", Day(2 * kDay), "AppConfig", "Job"});
    EXPECT_EQ(ahead.code, 1) << "it would be lost";
    EXPECT_EQ(File(L"Job.acf"), "from tomorrow");
    EXPECT_EQ(OnInstallation({"history", "restore", Day(2 * kDay), "AppConfig", "Job", "--yes"}).code, 0);
    EXPECT_EQ(File(L"Job.acf"), "old");
}

TEST_F(OrvcfgHouseTest, PasswordsComeInAndNeverOut) {
    SignLevels("[USERLEVELS]\nuserlevels=Administrator;Surveyor\n");
    const std::tuple<Arguments, const char*, int, const char*> rows[] = {
        {{"add", "Anna", "--level", "Surveyor"}, "hush7\nrest", 0, ""},
        {{"add", "Anna", "--level", "Surveyor"}, "hush7", 1, "already"},
        {{"add", "Bo", "--level", "Survyor"}, "hush7", 1, "Did you mean \"Surveyor\"?"},
        {{"add", "\xC5\x81ukasz", "--level", "Surveyor"}, "hush7", 1, "\"Aukasz\""},
        {{"add", "Bo", "--level", "Surveyor"}, "\n", 1, "--no-password"},
        {{"add", "Bo", "--level", "Surveyor"}, "", 1, "no input"},
        {{"add", "Bo", "--level", "Surveyor"}, "\xC5\x81ush7\n", 1, "can't be stored"},
        {{"add", "Administrator", "--level", "Administrator"}, "hush7", 0, ""},
        {{"check", "Anna"}, "hush7\r\n", 0, ""},
        {{"check", "Anna"}, "Hush7", 1, "can't log in"},
        {{"check", "Ana"}, "hush7", 1, "Did you mean \"Anna\"?"},
        {{"modify", "Anna", "--name", "Ann"}, "", 0, ""},
        {{"check", "Ann"}, "hush7", 0, ""},
        {{"modify", "Ann", "--password"}, "hush7x", 0, ""},
        {{"check", "Ann"}, "hush7", 1, "can't log in"},
        {{"modify", "Administrator", "--name", "Root"}, "", 1, "keeps its name"},
        {{"remove", "Administrator"}, "", 1, "always stays"},
        {{"remove", "Ann"}, "", 0, ""},
    };
    for (const auto& [arguments, input, code, words] : rows) {
        Arguments all = {"users"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const RunResult result = OnInstallation(all, input);
        EXPECT_EQ(result.code, code) << arguments[0] << " " << arguments[1] << ": " << result.err;
        EXPECT_NE(result.err.find(words), std::string::npos) << result.err;
        EXPECT_EQ((result.out + result.err).find("ush7"), std::string::npos);
    }
    EXPECT_EQ(OnInstallation({"users", "list", "--json"}).Json().size(), 1u);
}

TEST_F(OrvcfgHouseTest, ATerminalShowsNoPassword) {
    SignLevels("[USERLEVELS]\nuserlevels=Administrator;Surveyor\n");
    int terminal = -1;
    const pid_t child = OnTerminal(terminal, {"users", "add", "Anna", "--level", "Surveyor"});
    if (child < 0) GTEST_SKIP() << "this system gives no terminals";
    std::string seen;
    std::size_t prompts = 0;
    char buffer[256];
    for (ssize_t got = 0; (got = read(terminal, buffer, sizeof buffer)) > 0;) {
        seen.append(buffer, static_cast<std::size_t>(got));
        if (std::count(seen.begin(), seen.end(), ':') <= static_cast<std::ptrdiff_t>(prompts) || prompts == 2) continue;
        ++prompts;
        ASSERT_EQ(write(terminal, "huxx\x7f\x7fsh7\r", 10), 10);
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    EXPECT_EQ(WEXITSTATUS(status), 0) << seen;
    EXPECT_EQ(seen.find("sh7"), std::string::npos) << seen;
    EXPECT_EQ(OnInstallation({"users", "check", "Anna"}, "hush7").code, 0);
}

TEST_F(OrvcfgHouseTest, ATerminalShowsHowFarARunHasGotAndThenNothingOfIt) {
    std::array<int, 2> input = {};
    ASSERT_EQ(pipe2(input.data(), O_CLOEXEC), 0);
    int terminal = -1;
    const pid_t child = OnTerminal(terminal, {"log", "parse"}, input[0]);
    if (child < 0) GTEST_SKIP() << "this system gives no terminals";
    EXPECT_EQ(write(input[1], "# first\n", 8), 8);  // nothing shows while nothing has come
    std::string seen;
    char buffer[256];
    for (ssize_t got = 0; (got = read(terminal, buffer, sizeof buffer)) > 0;) {
        seen.append(buffer, static_cast<std::size_t>(got));
        if (input[1] < 0 || seen.find("orvcfg log parse: 1 lines, ") == seen.npos) continue;
        EXPECT_EQ(write(input[1], "# last\n", 7), 7);
        close(std::exchange(input[1], -1));
    }
    waitpid(child, nullptr, 0);
    close(terminal);
    close(input[0]);
    const std::size_t drawn = seen.rfind("orvcfg log parse: "), gone = seen.find("\r\033[K", drawn);
    ASSERT_NE(gone, seen.npos) << seen;
    EXPECT_EQ(seen.find("# last\r\n", gone), seen.size() - 8) << seen;
}

TEST_F(OrvcfgHouseTest, WhatIsShown) {
    Put(L"LogData/nav_20260302.log",
        "*** Start of ORV Session ***\n\n2026-03-02 10:15:07 : GPS lost\n2026-03-02 10:15:09 : two\nlines\n");
    Put(L"LogData/acq_night_20260302.log", "bare\n2026-03-02 10:15:08 : Gps there\n");
    Put(L"LogData/acq_20260301.log", "2026-03-01 10:15:08 : before\n");
    SignLevels("[USERLEVELS]\nuserlevels=First;Guest\n[Acq]\nID_A=Save;7;1,0\nOP_B=Grid;8;1\nID_C=odd;9\n");
    WriteBytes(At(L"bad.log"), "2026-03-02 10:15:08 : caf\xE9\n");
    const std::tuple<Arguments, const char*, int, const char*> rows[] = {
        {{"messages", "tail", "-n", "3"},
         "",
         0,
         "2026-03-02 10:15:07  nav          GPS lost\n2026-03-02 10:15:08  acq_night    Gps there\n"
         "2026-03-02 10:15:09  nav          two lines\n"},
        {{"messages", "tail", "--application", "acq", "-n", "2"},
         "",
         0,
         "*                    acq_night    bare       without a time\n2026-03-02 10:15:08  acq_night    Gps there\n"},
        {{"messages", "search", "gps", "T", "--from", "2026-03-02 10:15:08"}, "", 0, "Gps there"},
        {{"messages", "search", "gps", "--from", "2026-02-30"}, "", 2, ""},
        {{"messages", "tail", "bad.log", "--json"}, "", 0, "caf"},
        {{"messages", "tail", "none.log"}, "", 1, ""},
        {{"messages", "tail", "-n", "-1"}, "", 2, ""},
        {{"rights", "show"}, "", 0, "Acq          OP_B   8  Grid  yes    yes\n"},
        {{"rights", "ask", "acq", "7", "--level", "Guest"}, "", 0, "denied\n"},
        {{"rights", "ask", "acq", "7", "--level", "Nobody"}, "", 0, "allowed\n"},
        {{"rights", "ask", "acq", "8", "--level", "Guest", "--json"}, "", 0, "\"allowed\": true"},
        {{"format", "depth", "--unit"},
         "# kept\n\n-1.5 quay\nx y\n",
         1,
         "# kept\n\n-1.50 m quay\n* y  # \"x\" is no number\n"},
        {{"format", "kp", "--unit", "1"}, "", 0, "m\n"},
        {{"format", "4", "2", "nan", "--json"},
         "",
         1,
         "{\"value\":2.0,\"text\":\"2.00\"}\n{\"value\":\"nan\",\"text\":null"},
        {{"format", "depht", "1"}, "", 2, ""},
        {{"language", "set", "0413"}, "", 2, ""},
    };
    for (const auto& [arguments, input, code, words] : rows) {
        const RunResult result = OnInstallation(arguments, input);
        EXPECT_EQ(result.code, code) << arguments[0] << " " << arguments[1] << ": " << result.err;
        EXPECT_EQ(result.err.empty(), code == 0 && arguments.back() != "Nobody") << result.err;
        EXPECT_NE(result.out.find(words), std::string::npos) << result.out << "\nlacks\n" << words;
    }
    std::string levels = ReadBytes(At(L"i/system/navigate.ual"));
    WriteBytes(At(L"i/system/navigate.ual"), levels.replace(levels.find("7;1,0"), 5, "7;1,1"));
    EXPECT_EQ(OnInstallation({"rights", "ask", "acq", "7", "--level", "Guest"}).code, 1) << "open, and nobody knows";
}

}  // namespace
}  // namespace orv::test
