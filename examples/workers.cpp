// The two background workers: dated copies of configuration files, and room on the disk.
#include <housekeeping/BaseORVMessage.h>
#include <housekeeping/DiskSpaceManager.h>
#include <housekeeping/FileHistoryBackup.h>
#include <platform/os/Clock.h>

#include <chrono>
#include <thread>

#include "Start.h"

int main(int argc, char** argv) {
    if (!Start(argc, argv)) return 1;
    orv::DataSearch& search = orv::DataSearch::GetDataSearch();
    orv::ProjectDefinition& project = search.GetProjectDefinition();
    // What a user sets in the project's forms. Opening a project takes these settings; whoever changes them while it is
    // open loads them again.
    orv::StoreFileHistorySetup(project, {.enabled = true, .maxDays = 30, .types = {orv::kFileTypeProject}});
    orv::StoreDiskSpaceSetup(project, {.maxDaysEnabled = true, .maxDays = 365});
    orv::FileHistoryBackup::Instance().LoadSettings(search);
    orv::DiskSpaceManager::Instance().LoadSettings(search);

    // quote: workers
    orv::BaseORVMessage messages;  // outlives what reports to it
    orv::FileHistoryBackup& history = orv::FileHistoryBackup::Instance();
    orv::DiskSpaceManager& diskSpace = orv::DiskSpaceManager::Instance();
    history.SetMessageLog(&messages);
    diskSpace.SetMessageLog(&messages);
    const orv::CTime now = orv::TheClock().UtcMilliseconds() / 1000;
    history.Start(now);    // whenever configuration may have changed
    diskSpace.Start(now);  // whenever logging starts or a new log begins
    // quote end

    orv::Message<wchar_t> message;
    for (int i = 0; i < 100 && !messages.GetLastMessage(message); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));  // a host shows messages as they come
    }
    std::printf("%s\n", orv::ToUtf8(message.GetText()).c_str());

    // quote: stop
    history.Stop();  // waits for the file under way
    diskSpace.Stop();
    history.SetMessageLog(nullptr);
    diskSpace.SetMessageLog(nullptr);
    // quote end
    return 0;
}
