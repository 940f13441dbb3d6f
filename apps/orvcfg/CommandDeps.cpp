#include <algorithm>
#include <optional>
#include <set>

#include "Commands.h"
#include "Document.h"
#include "GeoidChoice.h"
#include "Installation.h"
#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "project/FileDependencies.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string file;
    bool list = false;
};

struct Node {
    std::wstring path;
    int level = 0;
    std::string problem;  ///< why it can't be used; empty if it can
};

std::string ProblemOf(const std::wstring& path) {
    FileStatus status;
    const FsResult asked = Files().Status(path, status);
    if (asked == FsResult::Ok && !status.exists) return "missing";
    std::unique_ptr<File> file;
    const FsResult opened = asked != FsResult::Ok ? asked : Files().Open(path, {.share = Share::DenyNone}, file);
    if (status.isFolder) return "a folder";
    return opened == FsResult::Ok ? "" : "can't be read: " + ToUtf8(FsResultText(opened));
}

std::string TypeOf(const std::wstring& path) {
    std::wstring folder, name, extension;
    SplitPath(path, folder, name, extension);
    unsigned type = 0;
    if (!DataSearch::GetDataSearch().GetTypeForExtension(L"." + extension, type)) return {};
    return ToUtf8(GetFileKeyForType(type));
}

/// All that is needed, each file behind the one that needs it, and what was said on the way.
class NeedWalk {
public:
    explicit NeedWalk(Session& forSession) : session(forSession) {}

    void Add(const std::wstring& path, int level) {
        FileDependencies files;
        files.Add(path);
        Take(files, level);
    }
    void Add(unsigned type, const std::wstring& name, int level) {
        FileDependencies files;
        files.Add(type, name);
        Take(files, level);
    }
    bool Good() const { return good; }
    const std::vector<Node>& Nodes() const { return nodes; }

private:
    void Take(const FileDependencies& files, int level) {
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
            session.Problem(
                {},
                "\"" + ToUtf8(missing.name) + "\" is needed, but files of type " + ToUtf8(key) + " have no folder here",
                "\"orvcfg paths\" shows the folders.");
            good = false;
        }
        if (!files.IsComplete()) {
            session.Problem(PathToBytes(files[0]), "Needs more files than can be followed: the list isn't complete",
                            "Files that list each other are made by damage or by hand.");
            good = false;
        }
    }
    void Tell(const Node& node) {
        good = false;
        if (!told.insert(node.path).second) return;
        const std::string by = chain.empty() ? "" : ", needed by " + PathToBytes(GetNameFromPath(chain.back()));
        session.Problem(PathToBytes(node.path), node.problem + by, "Bring it back from a copy, or take its name out.");
    }

    Session& session;
    std::vector<Node> nodes;
    std::vector<std::wstring> chain;  // from the outermost file to the one that needs the next
    std::set<std::wstring> told;
    bool good = true;
};

/// The project whose folder a file lies in, where that is one of this installation's.
std::wstring ProjectOf(const std::wstring& path) {
    std::wstring root;
    const std::wstring folder = GetFolderFromPath(path), above = GetFolderFromPath(WithoutSeparator(folder));
    const bool inside = DataSearch::GetDataSearch().GetDataPathInfo(kLocationProjects, root) && above == root;
    return inside && FileExists(folder + std::wstring(PROJECT_FILENAME)) ? GetTitleFromPath(folder) : std::wstring();
}

/// The grid that the project's heights come from; none if it names none.
std::optional<std::wstring> GridOf(const ProjectDefinition& project) {
    GeoidChoice geoid;
    project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[13], geoid.key);
    project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[14], geoid.file);
    project.GetItem(COORDSYSTEM_SECTION, coordsystemKeys[15], geoid.chartDatum);
    if (geoid.key.empty() || geoid.file.empty()) return std::nullopt;
    const std::wstring path = OpenGeoid(geoid).path;
    if (path.empty()) return std::nullopt;
    return path;
}

void AddProject(NeedWalk& walk, const std::wstring& path) {
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

// ---- output

/// The lines that join each file to the one that needs it. From the end, as a line goes on only where more comes below.
std::vector<std::string> Branches(const std::vector<Node>& nodes) {
    std::vector<std::string> lines(nodes.size());
    std::vector<bool> more;  // by level
    for (std::size_t i = nodes.size(); i-- > 0;) {
        const auto level = static_cast<std::size_t>(nodes[i].level);
        more.resize(level + 1);
        for (std::size_t above = 1; above < level; ++above) lines[i] += more[above] ? "│  " : "   ";
        if (level > 0) lines[i] += more[level] ? "├─ " : "└─ ";
        more[level] = true;
    }
    return lines;
}

void PrintList(Session& session, const std::vector<Node>& nodes) {
    std::set<std::wstring> seen;
    for (const Node& node : nodes) {
        if (seen.insert(node.path).second) session.out.Put(PathToBytes(node.path) + "\n");
    }
}

void PrintTree(Session& session, const std::vector<Node>& nodes) {
    const std::vector<std::string> branches = Branches(nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const std::string mark = nodes[i].problem.empty() ? "" : "   <-- " + nodes[i].problem;
        session.out.Put(branches[i] + PathToBytes(nodes[i].path) + mark + "\n");
    }
}

Json TreeOf(const std::vector<Node>& nodes) {
    Json rows = Json::array();
    for (const Node& node : nodes) {
        const std::string type = TypeOf(node.path);
        rows.push_back({{"level", node.level},
                        {"file", ToUtf8(node.path)},
                        {"type", type.empty() ? Json() : Json(type)},
                        {"good", node.problem.empty()},
                        {"problem", node.problem.empty() ? Json() : Json(node.problem)}});
    }
    return rows;
}

ExitCode Deps(Session& session, const Arguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    const std::wstring given = arguments.file.empty() ? std::wstring() : AbsolutePath(PathArgument(arguments.file));
    // Folders depend on the project: that of the file itself comes first.
    std::wstring name = given.empty() ? std::wstring() : ProjectOf(given);
    name = ChosenProject(session, name);
    if (given.empty() && !HasProject(session, name)) return kCannotRun;
    const std::wstring projectFile = name.empty() ? std::wstring() : ProjectFile(name);
    ProjectDefinition& project = DataSearch::GetDataSearch().GetProjectDefinition();
    if (!projectFile.empty()) project.FileObject::FileOpen(projectFile, kOpenRead);

    NeedWalk walk(session);
    if (given.empty() || given == projectFile) {
        AddProject(walk, projectFile);
    } else {
        walk.Add(given, 0);
    }
    if (session.options.json) {
        PrintJson(session, TreeOf(walk.Nodes()));
    } else if (arguments.list) {
        PrintList(session, walk.Nodes());
    } else {
        PrintTree(session, walk.Nodes());
    }
    return walk.Good() ? kAllGood : kSomeFailed;
}

}  // namespace

void AddDeps(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(app, "deps", "List the files that a project or a configuration file needs, as a tree",
                   "  orvcfg --project Harbour deps\n"
                   "  orvcfg deps 'Survey[navigate].acf'\n"
                   "  orvcfg --project Harbour deps --list | tar -czf harbour.tgz -T -");
    command->add_option("FILE", arguments->file, "Configuration, vessel or project file. Default: the current project");
    command->add_flag("--list", arguments->list, "Plain names, each once");
    OnRun(command, session, arguments, Deps);
}

}  // namespace orv::cfg
