#include <algorithm>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "MakeInstallation.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string folder;
    bool force = false;
};

bool MayUse(Session& session, const std::wstring& root, bool force) {
    std::vector<FolderEntry> entries;
    const FsResult result = Files().List(root, entries);
    const bool installed = FileExists(SystemFolderOf(root) + std::wstring(ORV_DEF_FILENAME));
    if (result == FsResult::NotFound || entries.empty() || installed || force) return true;
    session.Problem(PathToBytes(root), "The folder isn't empty and holds no installation",
                    "Choose another, or --force to put one beside what is there; no file is overwritten.");
    return false;
}

ExitCode Init(Session& session, const Arguments& arguments) {
    InstallationPlan plan;
    plan.root = WithSeparator(AbsolutePath(PathArgument(arguments.folder)));
    const auto folder = [](const std::string& option) {
        return option.empty() ? std::wstring() : WithSeparator(AbsolutePath(PathArgument(option)));
    };
    plan.projects = folder(session.options.projectsRoot);
    plan.common = folder(session.options.common);
    if (!MayUse(session, plan.root, arguments.force)) return kCannotRun;

    std::vector<MadeThing> things;
    const bool good = MakeInstallation(session, plan, things);
    Table table({{"", "made"}, {"What", "what"}, {"Path", "path"}});
    for (const MadeThing& thing : things) {
        Cell made = Cell::Flag(thing.made);
        made.text = thing.made ? "made" : "kept";
        table.Add({made, Cell::Of(thing.what), Cell::Path(thing.path)});
    }
    Document::Print(session, table);
    if (!good) return kCannotRun;
    const auto made = std::count_if(things.begin(), things.end(), [](const MadeThing& thing) { return thing.made; });
    session.Note(made == 0 ? "the installation was complete"
                           : "use it with --system \"" + PathToBytes(SystemFolderOf(plan.root)) + "\"");
    return kAllGood;
}

}  // namespace

void AddInit(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(app, "init", "Make an installation, or complete one: settings, general data, folders",
                   "  orvcfg init /srv/survey\n"
                   "  orvcfg --system /srv/survey/system project create Harbour\n"
                   "\n--projects-root and --common put those folders elsewhere.");
    command->add_option("DIR", arguments->folder, "Folder to put it into; made if it is missing")->required();
    command->add_flag("--force", arguments->force, "Also into a folder that holds other things");
    OnRun(command, session, arguments, Init);
}

}  // namespace orv::cfg
