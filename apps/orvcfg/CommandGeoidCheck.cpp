#include "Commands.h"
#include "Document.h"
#include "GeoidChoice.h"
#include "GridForms.h"
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
    void Good(const std::string& file, const std::string& words) { Add(file, "good", words); }
    void Warning(const std::string& file, const std::string& words) { Add(file, "warning", words), ++warnings; }
    void Bad(const std::string& file, const std::string& words) { Add(file, "bad", words), ++bad; }
    ExitCode Print(Session& session, bool strict) const {
        Document::Print(session, table);
        const int failed = bad + (strict ? warnings : 0);
        if (warnings > 0) session.Note(std::to_string(warnings) + " warnings");
        if (failed == 0) return kAllGood;
        session.Problem({},
                        std::to_string(failed) + (failed == 1 ? " finding means" : " findings mean") +
                            " that a model can't be relied upon",
                        "Get those files again from their publishers.");
        return kSomeFailed;
    }

private:
    void Add(const std::string& file, const char* state, const std::string& words) {
        table.Add({Cell::Of(file), Cell::Of(std::string(state)), Cell::Of(words)});
    }
    Table table{{{"File", "file"}, {"State", "state"}, {"Finding", "finding"}}};
    int warnings = 0, bad = 0;
};

/// `surely`: it is a grid, or is meant to be one; else a file of another kind is nobody's business.
void CheckFile(const std::wstring& path, bool surely, Findings& findings) {
    const std::string file = PathToBytes(path);
    MappedFile content;
    std::string why;
    if (!content.Open(path, why)) return findings.Bad(file, "can't be read: " + why);
    const std::optional<RecognisedGrid> grid = RecogniseGrid(content.Bytes(), why);
    if (!grid && !surely) return;
    if (!grid) return findings.Bad(file, "no grid of a known form" + (why.empty() ? "" : " (" + why + ")"));
    const std::string form(grid->form->name);
    if (grid->facts.fault.empty()) {
        std::int64_t nodes = 0;
        for (const GridPart& part : grid->facts.parts) nodes += part.Nodes();
        findings.Good(file, form + ", " + std::to_string(nodes) + " nodes");
    } else if (grid->form->ifShort.empty()) {
        findings.Bad(file, form + ": " + grid->facts.fault + "; the model refuses it");
    } else {
        findings.Warning(file, form + ": " + grid->facts.fault + "; the model accepts it all the same, and " +
                                   std::string(grid->form->ifShort));
    }
    for (const std::string& remark : grid->facts.remarks) findings.Warning(file, remark);
}

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
            CheckFile(file, true, findings);
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

/// A model with some of its fixed files and not all. None at all is a model that isn't used here.
void CheckSet(unsigned short typeId, const std::wstring& folder, const std::vector<std::wstring>& there,
              Findings& findings) {
    for (const GridForm& form : GridForms()) {
        for (const GridHome& home : form.homes) {
            if (home.typeId != typeId || there.empty()) continue;
            for (const std::wstring_view name : home.names) {
                if (name.starts_with(L'*')) continue;
                const bool found = std::any_of(there.begin(), there.end(),
                                               [&](const std::wstring& own) { return EqualNoCase(own, name); });
                if (!found) findings.Warning(PathToBytes(folder + std::wstring(name)), "missing: what needs it fails");
            }
        }
    }
}

ExitCode Check(Session& session, const Arguments& arguments) {
    Findings findings;
    for (const std::string& file : arguments.files) CheckFile(PathArgument(file), true, findings);
    if (!arguments.files.empty()) return findings.Print(session, arguments.strict);

    if (!OpenInstallation(session)) return kCannotRun;
    std::vector<std::wstring> checked;  // models share folders
    const NoticeRecorder silent;        // a model whose files are missing is a finding, not a notice
    for (const GeoidModelList::Registration& model : GeoidModelList::GetGeoidModelList().Registrations()) {
        if (model.typeId == kTreeHeights || model.typeId == kTreeShifts) continue;
        const std::wstring folder = GeoidModelFolder(model.typeId);
        const std::optional<std::vector<std::wstring>> names = GeoidGridNames(model.typeId);
        if (folder.empty() || !names) continue;
        CheckSet(model.typeId, folder, *names, findings);
        for (const std::wstring& name : *names) {
            if (std::find(checked.begin(), checked.end(), folder + name) != checked.end()) continue;
            checked.push_back(folder + name);
            // Texts of any kind lie among the common project files.
            const bool text = EndsWithNoCase(name, L".txt") || EndsWithNoCase(name, L".csv");
            CheckFile(folder + name, !text, findings);
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
