// A host's start: the installation, the project, a height. Arguments: system folder, project name.
#include <core/ConfigKeys.h>
#include <core/DataSearch.h>
#include <geoid/GeoidModelList.h>
#include <platform/text/Utf.h>
#include <project/ProjectDefinition.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    orv::RegisterGeoidModels();
    orv::DataSearch& search = orv::DataSearch::GetDataSearch();
    if (!search.Initialise(orv::FromUtf8(argv[1]) + L"/", true, L"navigate", false, L"", L"") ||
        !search.InitProject(orv::FromUtf8(argv[2]), false)) {
        std::printf("not started: status %d %s\n", search.GetErrorStatus(),
                    orv::ToUtf8(search.GetProjectDefinition().LastProblem()).c_str());
        return 1;
    }
    orv::ProjectDefinition& project = search.GetProjectDefinition();
    std::wstring title, logFolder, reason;
    project.GetProjectTitle(title);
    search.GetDataPathInfo(orv::kLocationLogData, logFolder);
    std::printf("project: %s\nlogs go to: %s\n", orv::ToUtf8(title).c_str(), orv::ToUtf8(logFolder).c_str());

    double separation = 0;
    if (project.GetGeoCoordSys()->HeightSeparation(52.9600, 4.7900, separation, reason)) {
        std::printf("separation: %.4f m\n", separation);
    } else {
        std::printf("no height: %s\n", orv::ToUtf8(reason).c_str());
    }
    return 0;
}
