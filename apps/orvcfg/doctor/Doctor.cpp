#include "Doctor.h"

#include <algorithm>

#include "../Session.h"
#include "core/ConfigKeys.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"

namespace orv::cfg {

Examination::Examination(Session& run, const std::wstring& name) : session(run), projectName(name) {
    installationTrouble = TryInstallation(session);
    // A broken application definition shouldn't hide what else is wrong.
    if (installationTrouble && TryInstallation(session, true)) return;
    if (projectName.empty()) return;
    projectFile = ProjectFile(projectName);
    projectFolder = GetFolderFromPath(projectFile);
    projectTrouble = TryProject(session, projectName);
    // Its file may be fit to be looked at all the same.
    if (projectTrouble) Project().FileObject::FileOpen(projectFile, kOpenRead);
}

std::vector<std::wstring> Examination::FilesOf(unsigned fileType) const {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, extension;
    std::vector<std::wstring> names;
    if (!search.GetFilePath(fileType, folder) || folder.empty() || !search.GetFileExtension(fileType, extension) ||
        !search.GetFileNames(fileType, names)) {
        return {};
    }
    for (std::wstring& name : names) name = folder + name + extension;
    return names;
}

void Examination::Tell(std::string where, std::string what, std::string remedy) {
    findings.push_back({current, std::move(where), std::move(what), std::move(remedy)});
}

bool Examination::WasTold(const std::string& where) const {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& known) { return known.where == where; });
}

void Examination::Run(const Check& check) {
    current = &check;
    check.look(*this);
}

Diagnosis Diagnose(Session& session, const std::wstring& projectName) {
    const NoticeRecorder silent;
    Examination examination(session, projectName);
    const bool settings = DataSearch::GetDataSearch().IsInit();
    const bool readable = settings && !projectName.empty() && examination.Project().FileInitialised();
    Diagnosis diagnosis;
    session.progress.Expect("checks", Checks().size());
    for (const Check& check : Checks()) {
        const bool can =
            check.needs == Needs::Settings || (settings && (check.needs == Needs::Installation || readable ||
                                                            (check.look == LookAtProject && !projectName.empty())));
        if (can) examination.Run(check);
        const bool asked = check.needs != Needs::Project || !projectName.empty();
        session.progress.Step();
        if (asked) ++(can ? diagnosis.looked : diagnosis.skipped);
    }
    diagnosis.findings = examination.Findings();
    diagnosis.projectTrouble = examination.projectTrouble;
    diagnosis.projectOpen = readable && !examination.projectTrouble;
    if (readable) {
        diagnosis.vessels = examination.FilesOf(kFileTypeVesselConfig);
        diagnosis.stations = examination.FilesOf(kFileTypeTideStation);
        diagnosis.profiles = examination.FilesOf(kFileTypeSVProfile);
    }
    for (const Finding& finding : diagnosis.findings) {
        ++(finding.check->severity == Severity::Error ? diagnosis.errors : diagnosis.warnings);
    }
    return diagnosis;
}

}  // namespace orv::cfg
