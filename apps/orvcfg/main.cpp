#include <signal.h>

#include <exception>
#include <sstream>
#include <vector>

#include "Commands.h"
#include "Session.h"
#include "Suggest.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

void AddOptions(CLI::App& app, Options& options) {
    const std::string group = "Options of every subcommand";
    app.add_option("--system", options.systemFolder,
                   "System folder, which holds ORV.ini. Default: ./system if it holds one, else the installed one")
        ->type_name("DIR")
        ->group(group);
    app.add_option("--project", options.project, "Project to open. Default: the current one of the settings")
        ->type_name("NAME")
        ->group(group);
    app.add_option("--projects-root", options.projectsRoot, "Folder of all projects, in place of the settings'")
        ->type_name("DIR")
        ->group(group);
    app.add_option("--common", options.common, "Folder of the common project files, in place of the settings'")
        ->type_name("DIR")
        ->group(group);
    app.add_option("--app-def", options.appDef, "Application definition")
        ->type_name("NAME")
        ->capture_default_str()
        ->group(group);
    app.add_flag("--user-def", options.userDef, "Apply the user definition that the settings name, too")->group(group);
    app.add_flag("--json", options.json, "Results as JSON")->group(group);
    app.add_flag("-q,--quiet", options.quiet, "No headings and no notes beside the results")->group(group);
    app.add_flag("-v,--verbose", options.verbose, "Tell on the error output what is opened and done")->group(group);
}

/// The subcommand that the arguments led to, from the outermost inwards.
std::vector<CLI::App*> Chosen(CLI::App& app) {
    std::vector<CLI::App*> chain = {&app};
    while (!chain.back()->get_subcommands().empty()) chain.push_back(chain.back()->get_subcommands().front());
    return chain;
}

std::string NameOf(const std::vector<CLI::App*>& chain) {
    std::string name;
    for (std::size_t i = 1; i < chain.size(); ++i) name += (i > 1 ? " " : "") + chain[i]->get_name();
    return name;
}

/// What could have been meant by an argument that nothing takes.
std::vector<std::wstring> KnownWords(const std::vector<CLI::App*>& chain, bool option) {
    std::vector<std::wstring> words;
    if (!option) {
        for (const CLI::App* command : chain.back()->get_subcommands({}))
            words.push_back(FromUtf8(command->get_name()));
        return words;
    }
    for (const CLI::App* command : chain) {
        for (const CLI::Option* known : command->get_options()) {
            for (const std::string& name : known->get_lnames()) words.push_back(L"--" + FromUtf8(name));
        }
    }
    return words;
}

void TellWrongUsage(CLI::App& app, Session& session, const CLI::ParseError& error) {
    const std::vector<CLI::App*> chain = Chosen(app);
    session.command = NameOf(chain);
    std::string what = error.what(), remedy;
    if (const std::vector<std::string> rest = app.remaining(true); !rest.empty()) {
        const bool option = rest.front().starts_with('-');
        what = (option ? "Unknown option \"" : "Unexpected argument \"") + rest.front() + "\"";
        remedy = DidYouMean(FromUtf8(rest.front()), KnownWords(chain, option));
    }
    if (!remedy.empty()) remedy += " ";
    remedy += "See \"orvcfg " + session.command + (session.command.empty() ? "" : " ") + "--help\".";
    session.Problem({}, what, remedy);
}

ExitCode Run(int argc, char** argv, Session& session) {
    CLI::App app(
        "Looks after installations and projects of the survey suite: settings, paths, files, geoid grids, "
        "reduced heights, messages, old files, users.",
        "orvcfg");
    app.set_version_flag("--version", "orvcfg " ORVCFG_VERSION, "Show the version and end");
    app.set_help_flag("-h,--help", "Show this help and end");
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 all good, 1 some input failed, 2 wrong usage or nothing to work on.\n"
        "On a terminal a long run tells how far it has got, unless --quiet; NO_COLOR takes colours away.\n"
        "Example: orvcfg init /srv/survey && orvcfg --system /srv/survey/system paths");
    AddOptions(app, session.options);
    AddInit(app, session);
    AddProject(app, session);
    AddPaths(app, session);
    AddTypes(app, session);
    AddFiles(app, session);
    AddConfig(app, session);
    AddGeoid(app, session);
    AddDatadef(app, session);
    AddPort(app, session);
    AddApp(app, session);
    AddDeps(app, session);
    AddSvp(app, session);
    AddTide(app, session);
    AddLog(app, session);
    AddFileset(app, session);
    AddMessages(app, session);
    AddHistory(app, session);
    AddClean(app, session);
    AddUsers(app, session);
    AddRights(app, session);
    AddLanguage(app, session);
    AddFormat(app, session);
    AddVessel(app, session);
    AddShape(app, session);
    AddDoctor(app, session);
    AddReport(app, session);
    AddDemo(app, session);
    AddCompletion(app, session);
    AddMan(app, session);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {  // help or version
        std::ostringstream text, unused;
        app.exit(asked, text, unused);
        session.out.Put(text.str());
        return kAllGood;
    } catch (const CLI::ParseError& error) {
        TellWrongUsage(app, session, error);
        return kCannotRun;
    }
    session.command = NameOf(Chosen(app));
    return session.Run();
}

}  // namespace

CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& what, const std::string& example) {
    CLI::App* command = parent.add_subcommand(name, what);
    command->fallthrough();
    command->footer("Options of every subcommand: see \"orvcfg --help\".\n\nExample:\n" + example);
    return command;
}

CLI::App* AddGroup(CLI::App& parent, const std::string& name, const std::string& what) {
    CLI::App* group = parent.add_subcommand(name, what);
    group->fallthrough();
    group->require_subcommand(1);
    return group;
}

}  // namespace orv::cfg

int main(int argc, char** argv) {
    using namespace orv::cfg;
    const int results = TakeStandardOutput();
    signal(SIGPIPE, SIG_IGN);  // a reader that goes away shows as a failed write
    Session session(results);
    try {
        return session.Finish(Run(argc, argv, session));
    } catch (const std::exception& failure) {
        session.Problem({}, std::string("Stopped: ") + failure.what());
        return session.Finish(kCannotRun);
    }
}
