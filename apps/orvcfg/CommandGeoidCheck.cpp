#include "Commands.h"
#include "Document.h"
#include "GeoidChoice.h"
#include "GridCheck.h"
#include "Installation.h"
#include "core/ConfigKeys.h"
#include "geoid/GeoidModelList.h"
#include "geoid/GridReader.h"
#include "geoid/VdatumGrids.h"
#include "platform/notify/Notices.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::vector<std::string> files;
    bool strict = false;
};

/// The models of the vertical datum tree, whose files an index lists.
constexpr unsigned short kTreeHeights = 7, kTreeShifts = 8;

/// Findings, a line each. Warnings leave the exit code alone: such a file works, if not everywhere.
class Findings {
public:
    void Take(const std::vector<GridFinding>& found) {
        for (const GridFinding& finding : found) Add(finding);
    }
    void Good(const std::string& file, const std::string& words) { Add({GridFinding::Good, file, words}); }
    void Warning(const std::string& file, const std::string& words) { Add({GridFinding::Warning, file, words}); }
    void Bad(const std::string& file, const std::string& words) { Add({GridFinding::Bad, file, words}); }
    ExitCode Print(Session& session, bool strict) const {
        Document::Print(session, table);
        const int failed = counts[GridFinding::Bad] + (strict ? counts[GridFinding::Warning] : 0);
        if (counts[GridFinding::Warning] > 0) {
            session.Note(std::to_string(counts[GridFinding::Warning]) + " warnings");
        }
        if (failed == 0) return kAllGood;
        session.Problem({},
                        std::to_string(failed) + (failed == 1 ? " finding means" : " findings mean") +
                            " that a model can't be relied upon",
                        "Get those files again from their publishers.");
        return kSomeFailed;
    }

private:
    void Add(const GridFinding& finding) {
        constexpr const char* states[] = {"good", "warning", "bad"};
        table.Add({Cell::Of(finding.file), Cell::Of(std::string(states[finding.state])), Cell::Of(finding.words)});
        ++counts[finding.state];
    }
    Table table{{{"File", "file"}, {"State", "state"}, {"Finding", "finding"}}};
    int counts[3] = {};
};

/// What an index lists is there and whole.
void CheckIndex(const std::wstring& tree, const std::wstring& path, Findings& findings) {
    std::string text;
    if (ReadWholeFile(path, text) != FsResult::Ok) return findings.Bad(PathToBytes(path), "can't be read");
    const std::vector<VdatumGrid> grids = ReadInf(tree, text);
    const bool areas = EqualNoCase(GetNameFromPath(path), L"tidal_area.inf");
    if (grids.empty()) return findings.Bad(PathToBytes(path), "lists no grid");
    findings.Good(PathToBytes(path), "index of " + std::to_string(grids.size()) + (areas ? " areas" : " grids"));
    for (const VdatumGrid& grid : grids) {
        const std::wstring start = areas ? WithSeparator(grid.fileName) : grid.fileName;
        const std::wstring file = areas ? start + L"tss.gtx" : start;
        if (!FileExists(file)) {
            findings.Bad(PathToBytes(file), "is in the index and not in the folder");
        } else {
            findings.Take(CheckGridFile(file, true));
        }
        const std::wstring outline = start + ToNativePath(grid.source) + L".bnd";
        if (areas && !FileExists(outline)) findings.Bad(PathToBytes(outline), "the area's outline is missing");
    }
}

std::string OnOneLine(const std::wstring& message) {
    std::string text = ToUtf8(message);
    text.erase(std::unique(text.begin(), text.end(), [](char a, char b) { return a == '\n' && b == '\n'; }),
               text.end());
    while (!text.empty() && text.back() == '\n') text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

void CheckTree(Findings& findings) {
    const std::wstring common = GeoidFolder(kLocationCommon);
    const std::wstring tree = WithSeparator(common + L"vdatum");
    if (common.empty() || !FolderExists(tree)) return;
    const std::unique_ptr<GeoidModel> shifts = GeoidModelList::GetGeoidModelList().Create(kTreeShifts);
    std::wstring message;
    if (shifts && !shifts->CheckGeoidModelFiles(common, message, false)) {
        findings.Warning(PathToBytes(tree), ToUtf8(GeoidKey(kTreeShifts)) + ": " + OnOneLine(message));
    }
    const std::wstring core = WithSeparator(tree + L"core");
    for (const std::wstring& folder : {core, tree}) {
        for (const FolderEntry& entry : FindFiles(folder, L"*.inf")) CheckIndex(tree, folder + entry.name, findings);
    }
}

ExitCode Check(Session& session, const Arguments& arguments) {
    Findings findings;
    session.progress.Expect("grids", arguments.files.size());
    for (const std::string& file : arguments.files) {
        const Progress::Item counted(session.progress);
        findings.Take(CheckGridFile(PathArgument(file), true));
    }
    if (!arguments.files.empty()) return findings.Print(session, arguments.strict);

    if (!OpenInstallation(session)) return kCannotRun;
    std::vector<std::wstring> checked;  // models share folders
    const NoticeRecorder silent;        // a model whose files are missing is a finding, not a notice
    for (const GeoidModelList::Registration& model : GeoidModelList::GetGeoidModelList().Registrations()) {
        if (model.typeId == kTreeHeights || model.typeId == kTreeShifts) continue;
        const std::wstring folder = GeoidModelFolder(model.typeId);
        const std::optional<std::vector<std::wstring>> names = GeoidGridNames(model.typeId);
        if (folder.empty() || !names) continue;
        findings.Take(CheckGridSet(model.typeId, folder, *names));
        for (const std::wstring& name : *names) {
            if (std::find(checked.begin(), checked.end(), folder + name) != checked.end()) continue;
            checked.push_back(folder + name);
            const Progress::Item counted(session.progress);
            // Texts of any kind lie among the common project files.
            const bool text = EndsWithNoCase(name, L".txt") || EndsWithNoCase(name, L".csv");
            findings.Take(CheckGridFile(folder + name, !text));
        }
    }
    CheckTree(findings);
    return findings.Print(session, arguments.strict);
}

}  // namespace

void AddGeoidCheck(CLI::App& geoid, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* command = AddCommand(
        geoid, "check", "Check that grids keep what their headers promise",
        "  orvcfg geoid check\n"
        "  orvcfg geoid check nlgeo2018.gtx\n\n"
        "Warnings tell of files that work, but not everywhere: those that a model accepts although they are\n"
        "cut short, or reads other than their publisher meant. They leave the exit code at 0\n"
        "unless --strict is given.");
    command->add_option("FILE", arguments->files, "Grid files. Default: all of the installation's models");
    command->add_flag("--strict", arguments->strict, "Count warnings as failures");
    OnRun(command, session, arguments, Check);
}

}  // namespace orv::cfg
