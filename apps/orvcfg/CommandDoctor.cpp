#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "LookOnly.h"
#include "doctor/Doctor.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string project;
};

std::string_view Word(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

std::string Counted(std::size_t count, const std::string& word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

void PrintText(Session& session, const Diagnosis& diagnosis) {
    for (const Finding& finding : diagnosis.findings) {
        const Style style = finding.check->severity == Severity::Error ? Style::Error : Style::Warning;
        session.out.Put(session.out.Styled(Word(finding.check->severity), style) + ": " +
                        (finding.where.empty() ? "" : finding.where + ": ") + finding.what + " [" +
                        std::string(finding.check->name) + "]\n");
        session.out.Put("    why it matters: " + std::string(finding.check->why) + "\n");
        session.out.Put("    what to do:     " + finding.remedy + "\n");
    }
    if (session.options.quiet) return;
    std::string last = Counted(diagnosis.looked, "check") + ": ";
    last += diagnosis.findings.empty()
                ? session.out.Styled("nothing wrong", Style::Good)
                : Counted(diagnosis.errors, "error") + ", " + Counted(diagnosis.warnings, "warning");
    if (diagnosis.skipped > 0) last += "; " + Counted(diagnosis.skipped, "check") + " must wait until it opens";
    session.out.Put(last + "\n");
}

void PrintAsJson(Session& session, const std::wstring& project, const Diagnosis& diagnosis) {
    Json rows = Json::array();
    for (const Finding& finding : diagnosis.findings) {
        rows.push_back({{"check", finding.check->name},
                        {"severity", Word(finding.check->severity)},
                        {"where", finding.where.empty() ? Json() : Json(finding.where)},
                        {"what", finding.what},
                        {"why", finding.check->why},
                        {"remedy", finding.remedy}});
    }
    PrintJson(session, {{"project", project.empty() ? Json() : Json(ToUtf8(project))},
                        {"checks", diagnosis.looked},
                        {"skipped", diagnosis.skipped},
                        {"errors", diagnosis.errors},
                        {"warnings", diagnosis.warnings},
                        {"findings", std::move(rows)}});
}

ExitCode Run(Session& session, const Arguments& arguments) {
    if (!HasInstallation(session)) return kCannotRun;
    const LookOnly nothingChanges;
    std::wstring project = TextArgument(arguments.project);
    if (const auto trouble = TryInstallation(session); !trouble || !TryInstallation(session, true)) {
        project = ChosenProject(session, project);
        if (!project.empty() && !HasProject(session, project)) return kCannotRun;
    }
    if (project.empty()) session.Note("no project is selected: the installation alone is looked at");
    const Diagnosis diagnosis = Diagnose(session, project);
    if (session.options.json) {
        PrintAsJson(session, project, diagnosis);
    } else {
        PrintText(session, diagnosis);
    }
    return diagnosis.errors > 0 ? kSomeFailed : kAllGood;
}

}  // namespace

void AddDoctor(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command =
        AddCommand(app, "doctor", "Find what is wrong with an installation and a project, in order of harm",
                   "  orvcfg doctor Harbour\n"
                   "  error: /srv/survey/system/InterfaceDefinition.ini: Port COM4 can't be used: ... [port]\n"
                   "      why it matters: The data of the device don't come in.\n"
                   "      what to do:     \"orvcfg port show COM4\" shows its keys.\n"
                   "  orvcfg doctor --json | jq '.findings[] | select(.severity == \"error\")'\n\n"
                   "Nothing is changed: no file is signed, made or completed. The exit code is 1 if there is any\n"
                   "error; warnings leave it at 0.");
    command->add_option("PROJECT", arguments->project,
                        "Project. Default: that of --project, or the current one; none: the installation alone");
    OnRun(command, session, arguments, Run);
}

}  // namespace orv::cfg
