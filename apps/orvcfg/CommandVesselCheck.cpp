#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "VesselFile.h"
#include "VesselSurvey.h"
#include "core/ConfigKeys.h"
#include "definitions/InterfaceDef.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> vessels;
    std::string ports;
};

ExitCode Check(Session& session, const Arguments& arguments) {
    const bool installed = FileExists(SystemFolder(session) + std::wstring(ORV_DEF_FILENAME));
    if (installed && !OpenInstallation(session)) return kCannotRun;
    if (!installed) session.Note("without an installation maxima aren't checked; --system names one");
    const std::wstring portsPath = arguments.ports.empty()
                                       ? SystemFolder(session) + std::wstring(INTERFACE_DEF_FILENAME)
                                       : AbsolutePath(PathArgument(arguments.ports));
    InterfaceDef ports;
    // Not as a host opens it: names of the old form count as the new ones, but a replay isn't ended.
    const bool havePorts = ports.FileObject::FileOpen(portsPath, kOpenRead);
    if (!havePorts && (!arguments.ports.empty() || FileExists(portsPath))) {
        session.Problem(PathToBytes(portsPath), "Can't be read: " + ToUtf8(FsResultText(ports.LastResult())),
                        "Check name and rights.");
        return kCannotRun;
    }
    if (!havePorts) session.Note("no " + PathToBytes(portsPath) + ", so it isn't checked whether ports exist");
    if (!HaveDataDefinition(session)) session.Note("no data definition, so groups aren't checked");
    Table table({{"Sound", "sound"},
                 {"Devices", "devices", true},
                 {"Offsets", "offsets", true},
                 {"Findings", "findings", true},
                 {"File", "file"}});
    bool good = true;
    session.progress.Expect("vessels", arguments.vessels.size());
    for (const std::string& which : arguments.vessels) {
        const Progress::Item counted(session.progress);
        VesselConfig vessel;
        if (!OpenVessel(session, which, vessel)) {
            good = false;
            continue;
        }
        VesselSurvey survey(session, vessel);
        survey.CheckNumbers();
        survey.CheckPorts(havePorts ? &ports : nullptr);
        survey.CheckGroups();
        survey.CheckReferences();
        if (installed) survey.CheckMaxima();
        const std::string path = PathToBytes(vessel.GetFileName());
        Json rows = Json::array();
        for (const VesselFinding& finding : survey.Findings()) {
            session.Problem(path, finding.Text(), finding.remedy);
            rows.push_back({{"section", finding.section}, {"what", finding.what}, {"remedy", finding.remedy}});
        }
        const std::size_t found = survey.Findings().size();
        good = good && found == 0;
        Cell findings = Cell::Count(static_cast<std::int64_t>(found));
        findings.value = std::move(rows);
        table.Add({Cell::Flag(found == 0), Cell::Count(static_cast<std::int64_t>(survey.Devices())),
                   Cell::Count(static_cast<std::int64_t>(survey.Offsets())), std::move(findings),
                   Cell::Path(vessel.GetFileName())});
    }
    Document::Print(session, table);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddVesselCheck(CLI::App& vessel, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(vessel, "check", "Check vessels: ports, references, numbers, maxima",
                                   "  orvcfg vessel check /srv/survey/Projects/Basin/*.vcf\n\n"
                                   "Exit code 1 if anything is found.");
    command->add_option("VESSEL", arguments->vessels, "Vessel files, or vessels of the project")->required();
    command->add_option("--ports", arguments->ports, "Interface definition. Default: that of the system folder")
        ->type_name("FILE");
    OnRun(command, session, arguments, Check);
}

}  // namespace orv::cfg
