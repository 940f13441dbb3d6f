// The name of a log: composed by the naming setup of the project, taken apart again, and the folder it goes to.
#include <platform/os/Clock.h>
#include <surveydata/LogFileName.h>

#include "Start.h"

int main(int argc, char** argv) {
    if (!Start(argc, argv)) return 1;

    // quote: logname
    orv::LogFileName log;
    log.SetVesselName(L"Waverly");
    log.SetSurveyType(L"Sweep");
    log.SetRunlineName(L"L001");
    log.SetLogTime(orv::CalendarToUtc({.year = 2024, .month = 3, .day = 1, .hour = 7}));  // names show local time
    std::wstring path = log.GetName();
    orv::DataSearch::GetDataSearch().GetFullPath(orv::GetFileTypeForKey(L"RawLogData"), path);
    // quote end
    std::printf("%s\n", orv::ToUtf8(path).c_str());

    const orv::LogFileName found(path);
    std::printf("run line %s, %s\n", orv::ToUtf8(found.RunlineName()).c_str(),
                found.IsReplayedFile() ? "replayed" : "not replayed");
    return found.IsValid() ? 0 : 1;
}
