// What a host waits for: Initialise and InitProject on a sample project with the coordinate module, beside PROJ's own
// first creation of one transformation. Both are first times of a process, so each round is a process of its own:
// this program runs itself.

#include <proj.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "geoid/GeoidModelList.h"
#include "platform/coord/OrvGeoCoordSysFactories.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileTools.h"
#include "platform/os/ProgramPath.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"
#include "support/TestInstallation.h"

namespace {

double Milliseconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since).count();
}

/// Runs `task` in a child process and gives the milliseconds that it reports.
template <class Task>
double InChild(Task task) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    const pid_t child = fork();
    if (child == 0) {
        const double time = task();
        if (write(ends[1], &time, sizeof(time)) != sizeof(time)) _exit(1);
        _exit(0);
    }
    close(ends[1]);
    double time = -1;
    if (read(ends[0], &time, sizeof(time)) != sizeof(time)) time = -1;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return time;
}

/// `module`: with the coordinate module; without it the project fails at its stated point.
double Start(const orv::test::TestInstallation& installation, bool module) {
    const orv::NoticeRecorder quiet;
    orv::OrvGeoCoordSysLoader::Instance().SetSearchFolder(module ? orv::PathFromBytes(ORV_BINARY_DIR) + L"/lib/"
                                                                 : installation.SystemFolder());
    const auto begin = std::chrono::steady_clock::now();
    orv::RegisterGeoidModels();
    const bool started = installation.Start();
    const bool opened = started && orv::DataSearch::GetDataSearch().InitProject(L"Harbour", false);
    const double time = Milliseconds(begin);
    if (!started || opened != module) std::abort();
    return time;
}

double Peer() {
    const auto begin = std::chrono::steady_clock::now();
    PJ_CONTEXT* context = proj_context_create();
    PJ* transformation = proj_create_crs_to_crs(context, "EPSG:4326", "EPSG:28992", nullptr);
    if (!transformation) std::abort();
    return Milliseconds(begin);
}

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace

int main() {
    const orv::test::TestInstallation installation;
    {
        const std::wstring shipped = orv::PathFromBytes(ORV_SOURCE_DIR) + L"/data/CoordSystems.geo";
        if (orv::CopyWholeFile(shipped, installation.SystemFolder() + L"CoordSystems.geo") != orv::FsResult::Ok)
            return 1;
        if (!installation.Start()) return 1;
        orv::test::MakeFolders(installation.ProjectFolder());
        orv::ProjectDefinition project;
        project.CreateDefaultFile(installation.ProjectFolder(), true);
        orv::ProtectedFileObject file;
        if (!file.FileOpen(installation.ProjectFolder() + L"Project.prj", false, orv::kOpenRead)) return 1;
        orv::SetCoordSysData(&file, L"Mercator", L"WGS 84 - Mercator", L"ORVCoordSys", L"Meters", L"", L"", L"", L"",
                             L"");
        file.SetItem(orv::COORDSYSTEM_SECTION, orv::GEODESY_VERSION_KEY, orv::GEODESY_VERSION, true);
        if (!file.FileSave(L"", 0, orv::kSave)) return 1;
        installation.Restart();
    }
    std::vector<double> with, without, peer;
    for (int round = 0; round < 15; ++round) {
        with.push_back(InChild([&] { return Start(installation, true); }));
        peer.push_back(InChild(Peer));
        without.push_back(InChild([&] { return Start(installation, false); }));
    }
    std::printf(
        "Initialise and InitProject: with the module %.2f ms, PROJ's first transformation %.2f ms (ratio %.2f)\n",
        Median(with), Median(peer), Median(with) / Median(peer));
    std::printf("up to the missing module: %.2f ms\n", Median(without));
    return 0;
}
