#include <span>

#include "core/ConfigKeys.h"
#include "core/DataSearch.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefaults.h"
#include "project/ProjectDefinition.h"

namespace orv {

bool ProjectDefinition::RepairFile(const std::wstring& path) {
    if (!FileOpen(path, false, kOpenReadWrite)) return true;
    const auto putMissing = [&](std::wstring_view section, std::wstring_view key, const auto& value) {
        if (!HasKey(section, key)) SetItem(section, key, value, true);
    };
    CreateSection(HEADER_SECTION, true);
    for (const std::wstring_view key : projDescKeys) putMissing(HEADER_SECTION, key, ProjectDefaultText());
    CreateSection(DATA_PATH_SECTION, true);
    putMissing(DATA_PATH_SECTION, pathKeys[kLocationLogData], kLogDataFolder);
    CreateSection(APPLICATION_SECTION, true);
    for (const std::wstring_view key : appParamKeys) {
        // Looked up in the header, where these never are: after a repair the user selects definition and
        // configuration again, for those of a damaged project can't be relied on.
        if (!HasKey(HEADER_SECTION, key)) SetItem(APPLICATION_SECTION, key, L"", true);
    }
    CreateSection(FORMATS_SECTION, true);
    WriteDefaultFormats(true);
    CreateSection(UNITS_SECTION, true);
    WriteDefaultUnits(true);
    CreateSection(GPS_TIME_PARAMETERS, true);
    putMissing(GPS_TIME_PARAMETERS, GPS_TIME_PARAMETERS, kGpsTimeParameters);
    CreateSection(SONAR_TARGET_PARAMETERS, true);
    putMissing(SONAR_TARGET_PARAMETERS, SONAR_TARGET_FILE_NAME, L"");
    putMissing(SONAR_TARGET_PARAMETERS, PIPELINE_WIDTH, kPipelineWidth);
    FileSave(path, 0, kSave);
    FileClose();
    return true;
}

// Older versions kept pictures and reports in the project folder itself.
void ProjectDefinition::MoveOldProjectFiles(MoveFileType type) {
    constexpr std::wstring_view kImages[] = {L"*.png", L"*.jpg", L"*.avi", L"*.bmp", L"*.jpeg"};
    constexpr std::wstring_view kReports[] = {L"*.pdf"};
    const std::span<const std::wstring_view> patterns =
        type == MoveFileType::Images ? std::span<const std::wstring_view>(kImages) : std::span(kReports);
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring source, destination;
    if (!search.GetDataPathInfo(kLocationProject, source) ||
        !search.GetDataPathInfo(type == MoveFileType::Images ? kLocationMultimedia : kLocationReports, destination)) {
        return;
    }
    if (!FolderExists(WithoutSeparator(destination))) {
        // Without the folder nothing moves, and the files stay where they are found.
        [[maybe_unused]] const FsResult result = Files().MakeFolder(WithoutSeparator(destination));
    }
    for (const std::wstring_view pattern : patterns) {
        for (const FolderEntry& entry : FindFiles(source, pattern)) {
            if (entry.isFolder) continue;
            // A picture of that name that is there already stays, and so does this one.
            [[maybe_unused]] const FsResult result = Files().Rename(source + entry.name, destination + entry.name);
            multimediaMoved = true;
        }
    }
}

// The map readers look for map images beside the project file: what has been moved away is also there as a copy.
void ProjectDefinition::CopyFilesToProject(MoveFileType type) {
    if (type != MoveFileType::Images) return;
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring source, target;
    if (!search.GetDataPathInfo(kLocationMultimedia, source) || !search.GetDataPathInfo(kLocationProject, target))
        return;
    for (const FolderEntry& entry : FindFiles(source, L"*.tif")) {
        if (entry.isFolder || FileExists(target + entry.name)) continue;
        // A copy that fails is tried again at the next start.
        [[maybe_unused]] const FsResult result = CopyWholeFile(source + entry.name, target + entry.name);
    }
}

}  // namespace orv
