// A history round over 10,000 small files beside "cp -a", one with nothing changed beside listing and stat of both
// folders, and PermissionToUseItem with 40 applications of 500 denied items each. ORV_BENCH_FILES sets the number of
// files; they lie below TMPDIR, whose disk is part of the figures.

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/ConfigKeys.h"
#include "core/ProtectedFileObject.h"
#include "housekeeping/FileHistory.h"
#include "platform/os/Clock.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace {

using namespace orv;

template <class Task>
double Seconds(Task task) {
    const auto begin = std::chrono::steady_clock::now();
    task();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void Shell(const std::string& command) {
    if (std::system(command.c_str()) != 0) std::abort();
}

std::size_t ListAndStat(const std::string& folder) {
    std::vector<std::string> names;
    DIR* const open = opendir(folder.c_str());
    while (const dirent* const entry = readdir(open)) names.push_back(folder + "/" + entry->d_name);
    closedir(open);
    std::size_t bytes = 0;
    struct stat status;
    for (const std::string& name : names) bytes += stat(name.c_str(), &status) == 0 ? std::size_t(status.st_size) : 0;
    return bytes;
}

void Report(const char* what, const std::vector<double>& ours, const std::vector<double>& peer) {
    std::printf("%-28s ours %8.1f ms  peer %8.1f ms  ours/peer %5.2f\n", what, Median(ours) * 1e3, Median(peer) * 1e3,
                Median(ours) / Median(peer));
}

void History(int files) {
    test::TestInstallation installation;
    if (!installation.Start()) std::abort();
    ProjectDefinition& project = installation.Search().GetProjectDefinition();
    StoreFileHistorySetup(project, {true, 30, {kFileTypeAppConfig}});
    FileHistory history;
    if (!history.LoadSettings(installation.Search())) std::abort();
    const std::wstring folder = installation.ProjectFolder();
    for (int i = 0; i < files; ++i) {
        test::WriteBytes(folder + L"Configuration " + std::to_wstring(i) + L".acf", std::string(1000 + i % 1000, 'x'));
    }
    const std::string from = PathToBytes(folder), kept = from + "History", peer = from + "peer";
    const std::atomic<bool> stop = false;
    const CTime now = TheClock().UtcMilliseconds() / 1000 + 1;
    std::vector<double> first, copy, again, look;
    for (int round = 0; round < 5; ++round) {
        Shell("rm -rf '" + kept + "' '" + peer + "' && mkdir '" + peer + "' && sync");
        first.push_back(Seconds([&] { history.MakeBackup(now, stop); }));
        copy.push_back(
            Seconds([&] { Shell("cd '" + from + "' && find . -maxdepth 1 -name '*.acf' -exec cp -a -t peer {} +"); }));
        for (int i = 0; i < 3; ++i) {
            again.push_back(Seconds([&] { history.MakeBackup(now, stop); }));
            look.push_back(Seconds([&] {
                if (ListAndStat(from) < ListAndStat(kept)) std::abort();
            }));
        }
    }
    Report("first round / cp -a", first, copy);
    Report("nothing changed / list+stat", again, look);
}

void Rights() {
    test::TestInstallation installation;
    std::string text = "[USERLEVELS]\nuserlevels=Guest\n";
    for (int app = 0; app < 40; ++app) {
        text += "[Application " + std::to_string(app) + "]\n";
        for (int i = 0; i < 500; ++i) {
            text += "ID_" + std::to_string(i) + "=Item;" + std::to_string(1000 + 7 * i) + ";0\n";
        }
    }
    const std::wstring path = installation.SystemFolder() + L"bench.ual";
    test::WriteBytes(path, text);
    ProtectedFileObject file;
    if (!installation.Start() || !file.FileObject::FileOpen(path, kOpenRead) || !file.FileSave(path, 0, kSave))
        std::abort();
    DataSearch& search = installation.Search();
    search.GetProjectDefinition().SetAppDefinition(L"bench");
    search.SetUserAccessLevel(L"Guest");
    search.LoadAllowedItems();
    const std::wstring last = L"application 39";
    if (search.PermissionToUseItem(last, 1000) || !search.PermissionToUseItem(last, 1001)) std::abort();
    constexpr int calls = 2000000;
    std::vector<double> rates;
    for (int round = 0; round < 11; ++round) {
        int allowed = 0;
        const double time = Seconds([&] {
            for (int i = 0; i < calls; ++i) allowed += search.PermissionToUseItem(last, 1000 + i % 4000);
        });
        if (allowed == 0) std::abort();
        rates.push_back(calls / time / 1e6);
    }
    std::printf("%-28s %.1f M/s\n", "PermissionToUseItem", Median(rates));
}

}  // namespace

int main() {
    const char* const count = std::getenv("ORV_BENCH_FILES");
    History(count ? std::atoi(count) : 10000);
    Rights();
    return 0;
}
