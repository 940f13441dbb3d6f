#include <filesystem>

#include "../HouseReports.h"
#include "../TimeText.h"
#include "Check.h"
#include "core/ConfigKeys.h"
#include "housekeeping/DiskSpaceManager.h"
#include "housekeeping/FileHistory.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr int kLongestDays = 36525;    // a century
constexpr double kLittleSpace = 0.25;  // GB: less than an hour of multibeam
constexpr CTime kYear = 366 * 86400;

std::string Gigabytes(double bytes) {
    return Fixed(bytes / kBytesPerGigabyte, 1) + " GB";
}

/// The nearest folder above that is there: that of a project that has logged nothing yet isn't.
std::wstring NearestFolder(std::wstring folder) {
    while (!FolderExists(folder)) {
        std::wstring above = GetFolderFromPath(WithoutSeparator(folder));
        if (above.empty() || above.size() >= folder.size()) return {};
        folder = std::move(above);
    }
    return folder;
}

void LookAtVolume(Examination& examination, const DiskSpaceSetup& rules) {
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetDataPathInfo(kLocationLogData, folder)) return;
    const std::wstring there = NearestFolder(folder);
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(PathToBytes(there), failed);
    if (there.empty() || failed) return;
    const auto size = static_cast<double>(space.capacity), free = static_cast<double>(space.available);
    if (rules.minFreeEnabled && rules.minFree > size) {
        examination.Tell(
            PathToBytes(folder),
            "The rule keeps " + Gigabytes(rules.minFree) + " free on a disk of " + Gigabytes(size) + ": every log goes",
            "Lower MinFree in [DiskSpace] of the project.");
    }
    if (free < kLittleSpace * kBytesPerGigabyte) {
        examination.Tell(PathToBytes(there), "Only " + Gigabytes(free) + " are free on the disk of the logs",
                         "Move logs that are done with to another disk.");
    }
}

}  // namespace

void LookAtDiskSpace(Examination& examination) {
    const std::string file = PathToBytes(examination.projectFile);
    DataSearch& search = DataSearch::GetDataSearch();
    const DiskSpaceSetup rules = LoadDiskSpaceSetup(search.GetProjectDefinition());
    const char* const remedy =
        "Correct [DiskSpace] with \"orvcfg config set\"; \"orvcfg clean plan\" shows the effect.";
    if (rules.maxDaysEnabled && (rules.maxDays < 0 || rules.maxDays > kLongestDays)) {
        examination.Tell(file, "An age limit of " + std::to_string(rules.maxDays) + " days is none", remedy);
    }
    LookAtVolume(examination, rules);
    DiskSpaceManager manager;
    if (!manager.LoadSettings(search)) {
        examination.Tell(file, "The free space of [DiskSpace] is no number of bytes, so the rule does nothing", remedy);
        return;
    }
    if (!rules.maxDaysEnabled && !rules.minFreeEnabled) return;
    const CTime now = CurrentTime();
    const DiskSpacePlan plan = manager.Plan(now);
    if (plan.steps.empty()) return;
    if (now - plan.newest > kYear) {
        examination.Tell(file,
                         "The clock is more than a year ahead of the newest log, and by the rules " +
                             std::to_string(plan.steps.size()) + " logs go in the next round",
                         "Correct the clock, or switch the rules of a project off that is done with.");
    } else if (plan.steps.size() == plan.files) {
        examination.Tell(file, "By the rules all logs (" + std::to_string(plan.files) + ") go in the next round",
                         remedy);
    }
}

void LookAtHistory(Examination& examination) {
    const std::string file = PathToBytes(examination.projectFile);
    const FileHistorySetup setup = LoadFileHistorySetup(examination.Project());
    if (!setup.enabled) return;
    const char* const remedy = "Correct [FileHistory] with \"orvcfg config set\".";
    if (setup.types.empty()) examination.Tell(file, "The file history is on, and no file type is under it", remedy);
    if (setup.maxDays <= 0 || setup.maxDays > kLongestDays) {
        examination.Tell(file, "The file history keeps copies for " + std::to_string(setup.maxDays) + " days", remedy);
    }
    for (const unsigned type : setup.types) {
        bool supported = true;
        if (!DataSearch::GetDataSearch().GetFileSupportFlag(type, supported) || supported) continue;
        examination.Tell(file, "File type " + ToUtf8(fileTypeKeys[type]) + " is under history and isn't supported",
                         remedy);
    }
    std::wstring folder;
    if (!DataSearch::GetDataSearch().GetDataPathInfo(kLocationFileHistory, folder)) {
        examination.Tell(file, "The history folder isn't known", "Set FileHistory in [DataPath] of ORV.ini.");
    } else if (FileExists(WithoutSeparator(folder))) {
        examination.Tell(PathToBytes(folder), "A file has the name of the history folder", "Rename the file.");
    }
}

}  // namespace orv::cfg
