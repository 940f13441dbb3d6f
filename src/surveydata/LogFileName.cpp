#include "surveydata/LogFileName.h"

#include <algorithm>

#include "core/DataSearch.h"
#include "platform/os/Clock.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "project/ProjectDefinition.h"  // upward: the naming setup stands in the project

namespace orv {

const std::wstring& LogFileName::GetName() {
    LogNaming naming = LogNaming::Of(DataSearch::GetDataSearch().GetProjectDefinition());
    if (forceAutoNaming) naming.choice = kLogNamingAutomatic;
    if (name.empty()) name = ComposeLogName(fields, naming);
    ApplyDotsRule(name, naming);
    return name;
}

bool LogFileName::SetName(std::wstring path) {  // NOLINT(performance-unnecessary-value-param)
    Clear();
    if (primarySearch == kSearchNameFirst) return SetNameFromFileTitle(path) || SetNameFromFileHeader(path);
    return SetNameFromFileHeader(path) || SetNameFromFileTitle(path);
}

bool LogFileName::SetNameFromFileTitle(const std::wstring& path) {
    std::wstring title = GetTitleFromPath(path);  // before the name goes, which `path` may be
    Clear();
    name = std::move(title);
    return ParseLogName(name, fields);
}

bool LogFileName::SetNameFromFileHeader(const std::wstring& path) {
    // What the header lacks may have been told by the title.
    LogHeader header{orvVersion,     fileVersion,    fields.vessel,    fields.surveyType,
                     fields.runline, fields.logTime, fields.replayTime};
    const bool read = ReadLogHeader(path, header);  // a spoilt time doesn't take away what was told before it
    orvVersion = header.orvVersion;
    fileVersion = header.fileVersion;
    fields.vessel = header.vessel;
    fields.surveyType = header.surveyType;
    fields.runline = header.runline;
    fields.logTime = header.logTime;
    fields.replayTime = header.replayTime;
    return read;
}

void LogFileName::Clear() {
    name.clear();
    fields = {};
}

void LogFileName::SetRunlineName(std::wstring runline) {
    std::replace(runline.begin(), runline.end(), L'-', L'~');
    Set(fields.runline, std::move(runline));
}

std::wstring LogFileName::CreateReplayString(const std::wstring& path) {
    std::wstring folder, title, extension;
    SplitPath(path, folder, title, extension);
    std::vector<std::wstring> replays;
    for (const FolderEntry& entry : FindFiles(folder, title + L"-R*." + extension)) {
        if (entry.name != title) replays.push_back(entry.name);
    }
    return ReplayText(replays, TheClock().UtcMilliseconds() / 1000);
}

}  // namespace orv
