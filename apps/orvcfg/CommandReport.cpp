#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "LookOnly.h"
#include "SurveyFiles.h"
#include "platform/notify/Notices.h"
#include "report/Page.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string project, output;
};

ExitCode Run(Session& session, const Arguments& arguments) {
    if (!HasInstallation(session)) return kCannotRun;
    std::string page;
    Diagnosis diagnosis;
    {
        const LookOnly nothingChanges;
        std::wstring project = TextArgument(arguments.project);
        if (const auto trouble = TryInstallation(session); trouble && TryInstallation(session, true)) {
            session.Problem(trouble->where, trouble->what, trouble->remedy);
            return kCannotRun;
        }
        project = ChosenProject(session, project);
        if (!HasProject(session, project)) return kCannotRun;
        diagnosis = Diagnose(session, project);
        const NoticeRecorder silent;  // what there is to say stands among the findings
        page = ProjectPage(session, project, diagnosis);
    }
    if (!WriteResult(session, arguments.output, page)) return kSomeFailed;
    const bool toFile = !arguments.output.empty() && arguments.output != "-";
    if (session.options.json && toFile) {
        PrintJson(session, {{"file", arguments.output},
                            {"bytes", page.size()},
                            {"errors", diagnosis.errors},
                            {"warnings", diagnosis.warnings}});
    }
    const std::optional<Trouble>& closed = diagnosis.projectTrouble;
    if (closed) session.Problem(closed->where, closed->what + " The page lacks what can't be read", closed->remedy);
    return closed ? kSomeFailed : kAllGood;
}

}  // namespace

void AddReport(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(app, "report", "Make a page of a project to look at or print, as HTML",
                   "  orvcfg report Harbour --output harbour.html\n\n"
                   "Findings of the doctor, coordinate system with its grid, vessels to scale, ports, tide, sound\n"
                   "velocity, files, history and disk. The page needs nothing beside itself. The project isn't "
                   "changed.");
    command->add_option("PROJECT", arguments->project, "Project. Default: that of --project, or the current one");
    command->add_option("-o,--output", arguments->output, "File to write. Default: standard output")->type_name("FILE");
    OnRun(command, session, arguments, Run);
}

}  // namespace orv::cfg
