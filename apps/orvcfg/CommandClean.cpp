#include "Commands.h"
#include "Document.h"
#include "HouseReports.h"
#include "Installation.h"
#include "TimeText.h"
#include "housekeeping/DiskSpaceManager.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr CTime kYear = 366 * 86400;

struct PlanArguments {};

struct RunArguments {
    bool yes = false;
};

/// A round in this program instead of in a worker.
class Cleaner : public DiskSpaceManager {
public:
    using DiskSpaceManager::DeleteOldFiles;
};

/// The project's rules and what they would delete now.
struct Proposal {
    Cleaner cleaner;
    DiskSpaceSetup rules;
    CTime now = 0;
    DiskSpacePlan plan;
};

bool Propose(Session& session, Proposal& proposal) {
    if (!OpenInstallation(session) || !OpenProject(session)) return false;
    DataSearch& search = DataSearch::GetDataSearch();
    proposal.rules = LoadDiskSpaceSetup(search.GetProjectDefinition());
    if (!proposal.cleaner.LoadSettings(search)) {
        session.Problem(PathToBytes(search.GetProjectDefinition().GetFileName()),
                        "The free space of [DiskSpace] is no number of bytes",
                        "Correct MinFree with \"orvcfg config set\".");
        return false;
    }
    proposal.now = CurrentTime();
    if (proposal.rules.maxDaysEnabled || proposal.rules.minFreeEnabled) {
        proposal.plan = proposal.cleaner.Plan(proposal.now);
    } else {
        session.Note("both rules of this project are off: nothing is deleted");
    }
    return true;
}

std::string Gigabytes(double bytes) {
    return Fixed(ShownMinFree(bytes), 3) + " GB";
}

void AddRules(Document& document, const DiskSpaceSetup& rules) {
    Facts& facts = document.AddFacts("Rules of the project", "rules");
    facts.Add("Age limit", "maxDays",
              rules.maxDaysEnabled
                  ? Cell{std::to_string(rules.maxDays) + " days" + (rules.maxDays < 0 ? ", which is no rule" : ""),
                         rules.maxDays,
                         {}}
                  : Cell::Missing("off"));
    facts.Add("Free space", "minFree",
              rules.minFreeEnabled ? Cell{Gigabytes(rules.minFree), rules.minFree, {}} : Cell::Missing("off"));
}

std::string ReasonText(const DiskSpaceStep& step, const DiskSpaceSetup& rules) {
    std::string text;
    if (step.tooOld) text = "older than " + std::to_string(rules.maxDays) + " days";
    if (step.spaceNeeded) text += std::string(text.empty() ? "" : ", and ") + "its space is needed";
    return text;
}

void AddStep(Table& table, const DiskSpaceStep& step, const DiskSpaceSetup& rules, std::string outcome) {
    table.Add({Cell::Of(std::move(outcome)), TimeCell(step.created),
               Cell::Count(static_cast<std::int64_t>(step.length)), Cell::Of(ReasonText(step, rules)),
               Cell::Path(step.path)});
}

std::vector<Column> Columns(std::string outcome) {
    return {{std::move(outcome), "outcome"},
            {"Made", "made"},
            {"Bytes", "bytes", true},
            {"Because", "why"},
            {"File", "file"}};
}

/// What speaks against doing as planned without having looked; empty if nothing does.
std::string Doubt(const Proposal& proposal) {
    const DiskSpacePlan& plan = proposal.plan;
    if (plan.steps.empty()) return {};
    if (proposal.now - plan.newest > kYear) return "The clock is more than a year ahead of the newest file";
    if (plan.steps.size() == plan.files) return "All " + std::to_string(plan.files) + " files of logged data would go";
    return {};
}

ExitCode Plan(Session& session, const PlanArguments&) {
    Proposal proposal;
    if (!Propose(session, proposal)) return kCannotRun;
    Document document;
    AddRules(document, proposal.rules);
    Table& table = document.AddTable("What a round would delete", "files", Columns("Would"));
    double bytes = 0;
    for (const DiskSpaceStep& step : proposal.plan.steps) {
        AddStep(table, step, proposal.rules, step.readOnly ? "stay: read-only" : "go");
        if (!step.readOnly) bytes += static_cast<double>(step.length);
    }
    document.AddRemark(std::to_string(proposal.plan.steps.size()) + " of " + std::to_string(proposal.plan.files) +
                       " files, " + Gigabytes(bytes) + "; a file that a program has open stays");
    document.Print(session);
    if (const std::string doubt = Doubt(proposal); !doubt.empty()) session.Note(doubt + "; a run will ask for --yes");
    return kAllGood;
}

ExitCode RunRound(Session& session, const RunArguments& arguments) {
    Proposal proposal;
    if (!Propose(session, proposal)) return kCannotRun;
    if (const std::string doubt = Doubt(proposal); !doubt.empty() && !arguments.yes) {
        session.Problem({}, doubt,
                        "Check the clock and the rules, look at \"orvcfg clean plan\", and repeat with --yes.");
        return kCannotRun;
    }
    HouseReports reports(session);
    proposal.cleaner.SetMessageLog(&reports.Log());
    proposal.cleaner.DeleteOldFiles(proposal.now);
    Document document;
    AddRules(document, proposal.rules);
    Table& table = document.AddTable("What became of the files", "files", Columns("Did"));
    for (const DiskSpaceStep& step : proposal.plan.steps) {
        AddStep(table, step, proposal.rules, reports.Paths().contains(step.path) ? "go" : "stay");
    }
    // Asked again: what the space that was won made needless is no failure.
    for (const DiskSpaceStep& step : proposal.cleaner.Plan(proposal.now).steps) {
        session.Problem(PathToBytes(step.path), "It should go, and stays",
                        step.readOnly ? "It is read-only." : "A program has it open, or rights are missing.");
    }
    document.Print(session);
    return kAllGood;
}

}  // namespace

void AddClean(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "clean", "Delete old logged data by the rules of the project");
    OnRun(AddCommand(*group, "plan", "Tell which files would go and why, and do nothing",
                     "  orvcfg --project Harbour clean plan"),
          session, std::make_shared<PlanArguments>(), Plan);
    auto arguments = std::make_shared<RunArguments>();
    CLI::App* run = AddCommand(*group, "run", "Delete them. What goes is gone",
                               "  orvcfg --project Harbour clean plan && orvcfg --project Harbour clean run\n\n"
                               "It refuses without --yes when the clock is more than a year ahead of the newest\n"
                               "file, or when all files would go.");
    run->add_flag("--yes", arguments->yes, "Also when that looks like a mistake");
    OnRun(run, session, arguments, RunRound);
}

}  // namespace orv::cfg
