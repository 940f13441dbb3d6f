#include "NeedWalk.h"

#include "GeoidChoice.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "project/FileDependencies.h"

namespace orv::cfg {

namespace {

std::string ProblemOf(const std::wstring& path) {
    FileStatus status;
    const FsResult asked = Files().Status(path, status);
    if (asked == FsResult::Ok && !status.exists) return "missing";
    std::unique_ptr<File> file;
    const FsResult opened = asked != FsResult::Ok ? asked : Files().Open(path, {.share = Share::DenyNone}, file);
    if (status.isFolder) return "a folder";
    return opened == FsResult::Ok ? "" : "can't be read: " + ToUtf8(FsResultText(opened));
}

}  // namespace

void NeedWalk::Add(const std::wstring& path, int level) {
    FileDependencies files;
    files.Add(path);
    Take(files, level);
}

void NeedWalk::Add(unsigned type, const std::wstring& name, int level) {
    FileDependencies files;
    files.Add(type, name);
    Take(files, level);
}

void NeedWalk::Take(const FileDependencies& files, int level) {
    for (int i = 0; i < files.GetSize(); ++i) {
        const std::wstring path = files[i];
        const int below = level + files.GetLevel(i);
        nodes.push_back({path, below, ProblemOf(path)});
        chain.resize(static_cast<std::size_t>(below));
        if (!nodes.back().problem.empty()) Tell(nodes.back());
        chain.push_back(path);
    }
    for (const FileDependencies::Unresolved& missing : files.GetUnresolved()) {
        const std::wstring_view key = missing.type < fileTypeKeys.size() ? fileTypeKeys[missing.type] : L"unknown";
        troubles.push_back(
            {{},
             "\"" + ToUtf8(missing.name) + "\" is needed, but files of type " + ToUtf8(key) + " have no folder here",
             "\"orvcfg paths\" shows the folders."});
    }
    if (!files.IsComplete()) {
        troubles.push_back({PathToBytes(files[0]), "Needs more files than can be followed: the list isn't complete",
                            "Files that list each other are made by damage or by hand."});
    }
}

void NeedWalk::Tell(const NeededFile& node) {
    if (!told.insert(node.path).second) return;
    const std::string by = chain.empty() ? "" : ", needed by " + PathToBytes(GetNameFromPath(chain.back()));
    troubles.push_back({PathToBytes(node.path), node.problem + by, "Bring it back from a copy, or take its name out."});
}

/// The grid that the project's heights come from; none if it names none.
std::optional<std::wstring> GridOf(const ProjectDefinition& project) {
    GeoidChoice geoid;
    project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGeoidName], geoid.key);
    project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysGeoidFile], geoid.file);
    project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[kCoordsysChartDatum], geoid.chartDatum);
    if (geoid.key.empty() || geoid.file.empty()) return std::nullopt;
    const std::wstring path = OpenGeoid(geoid).path;
    if (path.empty()) return std::nullopt;
    return path;
}

void AddProjectNeeds(NeedWalk& walk, const std::wstring& path) {
    const DataSearch& search = DataSearch::GetDataSearch();
    const ProjectDefinition& project = search.GetProjectDefinition();
    walk.Add(path, 0);
    std::wstring definition, configuration, file;
    project.GetAppDefinition(definition);
    project.GetAppConfiguration(configuration);
    if (!definition.empty()) walk.Add(AppDefFile(definition), 1);
    if (search.GetDefaultFileName(kFileTypeUnits, file)) walk.Add(kFileTypeUnits, file, 1);
    if (const auto grid = GridOf(project)) walk.Add(*grid, 1);
    if (!configuration.empty()) walk.Add(kFileTypeAppConfig, configuration + L"[" + definition + L"]", 1);
    file = L"#PMF@";
    // Made when the first file is ticked for display.
    if (search.GetFullPath(kFileTypeProjectFile, file) && FileExists(file)) walk.Add(file, 1);
}

}  // namespace orv::cfg
