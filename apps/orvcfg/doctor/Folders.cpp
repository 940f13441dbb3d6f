#include <unistd.h>

#include "../HouseReports.h"
#include "../TimeText.h"
#include "Check.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr int kWritten[] = {kLocationSystemData,  kLocationProjects,     kLocationCommon,  kLocationUserGeneral,
                            kLocationProject,     kLocationLogData,      kLocationReports, kLocationMultimedia,
                            kLocationFileHistory, kLocationBackupLogData};
constexpr std::size_t kMostFiles = 200'000;  // of a project that nobody has ever cleaned
constexpr std::int64_t kHour = 3600;
constexpr std::int64_t kBeforeThisProgram = 1704067200;  // 2024: a clock from before then has lost its battery

/// Read-only as the suite's saves take it: no write bit for anybody counts for the administrator, too.
bool IsWritable(const std::wstring& folder) {
    FileStatus status;
    if (Files().Status(folder, status) != FsResult::Ok || status.readOnly) return false;
    return access(PathToBytes(folder).c_str(), W_OK | X_OK) == 0;
}

void LookAtFolder(Examination& examination, int location) {
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetDataPathInfo(location, folder) || folder.empty()) return;
    const std::string name = PathToBytes(folder), what = ToUtf8(pathKeys[static_cast<std::size_t>(location)]);
    if (examination.WasTold(name)) return;
    if (FolderExists(folder)) {
        if (IsWritable(folder)) return;
        examination.Tell(name, "Folder " + what + " can't be written to",
                         "Give those who survey the right to write there.");
        return;
    }
    if (FileExists(WithoutSeparator(folder))) {
        if (location == kLocationFileHistory) return;  // told by the history
        examination.Tell(name, "A file has the name of folder " + what, "Rename the file.");
        return;
    }
    // Folders of a project are made when they are needed first, if there is something to make them in.
    if (FolderExists(GetFolderFromPath(WithoutSeparator(folder))) && LiesInProject(location)) return;
    examination.Tell(name, "Folder " + what + " isn't there",
                     "Make it, mount its disk, or name another; \"orvcfg paths\" shows where it is set.");
}

/// The files dated ahead of the clock.
struct Ahead {
    std::size_t looked = 0, count = 0;
    std::int64_t latest = 0;
    std::wstring path;
};

void Walk(const std::wstring& folder, std::int64_t now, Ahead& ahead) {
    std::vector<FolderEntry> entries;
    if (Files().List(folder, entries) != FsResult::Ok) return;
    for (const FolderEntry& entry : entries) {
        if (entry.isLink || ++ahead.looked > kMostFiles) continue;
        const std::wstring path = folder + entry.name;
        FileStatus status;
        if (entry.isFolder) {
            Walk(path + L"/", now, ahead);
        } else if (Files().Status(path, status) == FsResult::Ok && status.modified > now + kHour) {
            ++ahead.count;
            if (status.modified <= ahead.latest) continue;
            ahead.latest = status.modified;
            ahead.path = path;
        }
    }
}

}  // namespace

void LookAtFolders(Examination& examination) {
    for (const int location : kWritten) {
        if (examination.projectFile.empty() && LiesInProject(location)) continue;
        LookAtFolder(examination, location);
    }
}

void LookAtClock(Examination& examination) {
    const std::int64_t now = CurrentTime();
    const char* const remedy =
        "Set the clock of this computer; if it is right, save those files again, or \"touch\" them.";
    if (now < kBeforeThisProgram) {
        examination.Tell({}, "The clock stands at " + TimeCell(now).text + ", before this program was made", remedy);
        return;
    }
    Ahead ahead;
    Walk(SystemFolder(examination.session), now, ahead);
    if (!examination.projectFolder.empty()) Walk(examination.projectFolder, now, ahead);
    if (ahead.count == 0) return;
    const std::string by = DurationText(static_cast<double>(ahead.latest - now) * 1000);
    examination.Tell(PathToBytes(ahead.path),
                     ahead.count == 1
                         ? "The file is dated " + by + " ahead of the clock"
                         : std::to_string(ahead.count) + " files are dated ahead of the clock, this one by " + by,
                     remedy);
}

}  // namespace orv::cfg
