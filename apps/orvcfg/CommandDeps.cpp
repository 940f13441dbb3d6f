#include <set>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "NeedWalk.h"
#include "core/CFileTypeList.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string file;
    bool list = false;
};

std::string TypeOf(const std::wstring& path) {
    std::wstring folder, name, extension;
    SplitPath(path, folder, name, extension);
    unsigned type = 0;
    if (!DataSearch::GetDataSearch().GetTypeForExtension(L"." + extension, type)) return {};
    return ToUtf8(GetFileKeyForType(type));
}

/// The project whose folder a file lies in, where that is one of this installation's.
std::wstring ProjectOf(const std::wstring& path) {
    std::wstring root;
    const std::wstring folder = GetFolderFromPath(path), above = GetFolderFromPath(WithoutSeparator(folder));
    const bool inside = DataSearch::GetDataSearch().GetDataPathInfo(kLocationProjects, root) && above == root;
    return inside && FileExists(folder + std::wstring(PROJECT_FILENAME)) ? GetTitleFromPath(folder) : std::wstring();
}

// ---- output

/// The lines that join each file to the one that needs it. From the end, as a line goes on only where more comes below.
std::vector<std::string> Branches(const std::vector<NeededFile>& nodes) {
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

void PrintList(Session& session, const std::vector<NeededFile>& nodes) {
    std::set<std::wstring> seen;
    for (const NeededFile& node : nodes) {
        if (seen.insert(node.path).second) session.out.Put(PathToBytes(node.path) + "\n");
    }
}

void PrintTree(Session& session, const std::vector<NeededFile>& nodes) {
    const std::vector<std::string> branches = Branches(nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const std::string mark = nodes[i].problem.empty() ? "" : "   <-- " + nodes[i].problem;
        session.out.Put(branches[i] + PathToBytes(nodes[i].path) + mark + "\n");
    }
}

Json TreeOf(const std::vector<NeededFile>& nodes) {
    Json rows = Json::array();
    for (const NeededFile& node : nodes) {
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

    NeedWalk walk;
    if (given.empty() || given == projectFile) {
        AddProjectNeeds(walk, projectFile);
    } else {
        walk.Add(given, 0);
    }
    for (const Trouble& trouble : walk.Troubles()) session.Problem(trouble.where, trouble.what, trouble.remedy);
    if (session.options.json) {
        PrintJson(session, TreeOf(walk.Nodes()));
    } else if (arguments.list) {
        PrintList(session, walk.Nodes());
    } else {
        PrintTree(session, walk.Nodes());
    }
    return walk.Troubles().empty() ? kAllGood : kSomeFailed;
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
