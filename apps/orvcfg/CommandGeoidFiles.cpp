#include "Commands.h"
#include "Document.h"
#include "GeoidChoice.h"
#include "GridReport.h"
#include "Installation.h"
#include "core/ConfigKeys.h"
#include "geoid/GridReader.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct AddArguments {
    std::vector<std::string> files;
    std::string model, name;
    bool force = false;
};

struct InfoArguments {
    std::vector<std::string> files;
};

std::string KnownForms() {
    std::string names;
    for (const GridForm& form : GridForms()) names += (names.empty() ? "" : ", ") + std::string(form.name);
    return names;
}

bool ReadGrid(Session& session, const std::wstring& path, MappedFile& file, RecognisedGrid& grid) {
    std::string why;
    if (!file.Open(path, why)) {
        session.Problem(PathToBytes(path), "Can't be read: " + why, "Check name and rights.");
        return false;
    }
    const std::optional<RecognisedGrid> found = RecogniseGrid(file.Bytes(), why);
    if (!found) {
        session.Problem(PathToBytes(path), "No grid of a known form" + (why.empty() ? "" : " (" + why + ")"),
                        "Known forms: " + KnownForms() + ".");
        return false;
    }
    grid = *found;
    return true;
}

// ---- add

std::string BoundsText(const GridPart& part) {
    const int decimals = part.degrees ? 4 : 0;
    const auto range = [&](double low, double high) { return Fixed(low, decimals) + " to " + Fixed(high, decimals); };
    return (part.degrees ? "latitude " : "northing ") + range(part.south, part.north) +
           (part.degrees ? ", longitude " : ", easting ") + range(part.west, part.east);
}

/// The model and name that a grid goes to; none after a problem has been told.
const GridHome* ChooseHome(Session& session, const std::wstring& path, const RecognisedGrid& grid,
                           const AddArguments& arguments) {
    const std::wstring name = arguments.name.empty() ? GetNameFromPath(path) : PathArgument(arguments.name);
    const std::string form(grid.form->name);
    if (arguments.model.empty()) {
        const GridHome* home = HomeOf(grid, name);
        if (!home) {
            session.Problem(PathToBytes(path),
                            "No model takes a " + form + " grid of " + BoundsText(grid.facts.parts.front()),
                            "Name one with --model.");
        }
        return home;
    }
    const std::optional<unsigned short> type = GeoidTypeArgument(session, arguments.model);
    if (!type) return nullptr;
    // A model may have a home for heights and another for shifts.
    const GridHome* best = HomeOf(grid, name);
    const GridHome* home = best && best->typeId == *type ? best : HomeOf(*grid.form, *type);
    if (!home) {
        session.Problem(PathToBytes(path), "Geoid model " + ToUtf8(GeoidKey(*type)) + " reads no " + form + " grids",
                        "Leave --model out to have the model chosen by the grid's bounds.");
    }
    return home;
}

/// A table that replaces a built-in one lies beside the folders of the others.
std::wstring FolderOf(const GridHome& home) {
    const std::wstring folder = GeoidModelFolder(home.typeId);
    return folder.empty() ? GeoidFolder(kLocationGeoidModels) : folder;
}

enum class Placing { Failed, Copied, Replaced, ThereAlready };

Placing Place(Session& session, const std::wstring& from, const MappedFile& content, const std::wstring& to,
              bool force) {
    const bool exists = FileExists(to);
    if (exists) {
        MappedFile present;
        std::string why;
        if (present.Open(to, why) && present.Text() == content.Text()) return Placing::ThereAlready;
    }
    if (exists && !force) {
        session.Problem(PathToBytes(to), "Another grid of that name is there", "--force replaces it.");
        return Placing::Failed;
    }
    FsResult result = MakeFolders(GetFolderFromPath(to));
    if (result == FsResult::Ok) result = CopyWholeFile(from, to);
    if (result == FsResult::Ok) return exists ? Placing::Replaced : Placing::Copied;
    session.Problem(PathToBytes(to), "Can't be written: " + ToUtf8(FsResultText(result)),
                    "Check the rights to the folder and the space on its disk.");
    return Placing::Failed;
}

/// What to give the model as its file name: models with files of fixed names take none, others leave the extension out.
std::string FileOption(const GridHome& home, const std::string& file) {
    if (home.names.empty()) return " --file \"" + file + "\"";
    if (!home.names.front().starts_with(L'*')) return {};
    // The British model wants the extension, the Nordic ones add it.
    const bool whole = home.names.front() == L"*.gri";
    return " --file \"" + (whole ? file : file.substr(0, file.rfind('.'))) + "\"";
}

std::string Example(const GridHome& home, const GridPart& part, const std::string& option) {
    const double y = (part.south + part.north) / 2, x = (part.west + part.east) / 2;
    const std::string key = ToUtf8(GeoidKey(home.typeId));
    const bool shifts = part.values.front().what != "height";
    if (part.degrees) {
        return std::string("orvcfg geoid ") + (shifts ? "shift" : "eval") + " --model " + key + option + " " +
               Fixed(y, 4) + " " + Fixed(x, 4);
    }
    return std::string("orvcfg geoid ") + (shifts ? "shift" : "eval --grid") + " --model " + key + option + " " +
           Fixed(x, 0) + " " + Fixed(y, 0);
}

bool AddGrid(Session& session, const std::wstring& path, const AddArguments& arguments, Document& document) {
    MappedFile content;
    RecognisedGrid grid;
    if (!ReadGrid(session, path, content, grid)) return false;
    if (!grid.facts.fault.empty()) {
        session.Problem(PathToBytes(path), "As " + std::string(grid.form->name) + " grid: " + grid.facts.fault,
                        "Get the file again from its publisher.");
        return false;
    }
    const GridHome* home = ChooseHome(session, path, grid, arguments);
    if (!home) return false;
    const std::wstring given = arguments.name.empty() ? GetNameFromPath(path) : PathArgument(arguments.name);
    const std::wstring folder = FolderOf(*home), name = NameIn(*home, given);
    if (name.empty()) {
        std::string names;
        for (const std::wstring_view own : home->names) names += (names.empty() ? "" : ", ") + ToUtf8(own);
        session.Problem(PathToBytes(path), "The model's files are called " + names, "Say with --as which one this is.");
        return false;
    }
    if (folder.empty()) {
        session.Problem(PathToBytes(path),
                        "Geoid model " + ToUtf8(GeoidKey(home->typeId)) + " has no folder for grids");
        return false;
    }
    const Placing placing = Place(session, path, content, folder + name, arguments.force);
    if (placing == Placing::Failed) return false;
    for (const std::string& remark : grid.facts.remarks) session.Note(PathToBytes(path) + ": " + remark);
    const std::string key = ToUtf8(GeoidKey(home->typeId)), file = PathToBytes(name);
    const std::string option = FileOption(*home, file);
    Facts& facts = document.AddFacts(file, file);
    facts.Add("Form", "form", Cell::Of(std::string(grid.form->name)));
    facts.Add("Model", "model", Cell::Of(key));
    facts.Add("Put to", "path", Cell::Path(folder + name));
    facts.Add("Done", "done",
              Cell::Of(std::string(placing == Placing::Copied     ? "copied"
                                   : placing == Placing::Replaced ? "replaced another file"
                                                                  : "it was there already")));
    facts.Add("Try", "try", Cell::Of(Example(*home, grid.facts.parts.front(), option)));
    if (!option.empty()) {
        facts.Add("In a project", "project",
                  Cell::Of("orvcfg project create NAME --geoid " + key + " --geoid-file" + option.substr(7)));
    }
    return true;
}

ExitCode Add(Session& session, const AddArguments& arguments) {
    if (!arguments.name.empty() && arguments.files.size() > 1) {
        session.Problem({}, "--as names one file", "Add the others by themselves.");
        return kCannotRun;
    }
    if (!OpenInstallation(session)) return kCannotRun;
    Document document;
    bool good = true;
    session.progress.Expect("grids", arguments.files.size());
    for (const std::string& file : arguments.files) {
        const Progress::Item counted(session.progress);
        good = AddGrid(session, PathArgument(file), arguments, document) && good;
    }
    document.Print(session);
    return good ? kAllGood : kSomeFailed;
}

// ---- info

bool ShowFile(Session& session, const std::wstring& path, const std::string& name, Document& document) {
    MappedFile content;
    RecognisedGrid grid;
    if (!ReadGrid(session, path, content, grid)) return false;
    const GridFacts& facts = grid.facts;
    ReportGrid(document, path, content, grid, name);
    for (const std::string& remark : facts.remarks) session.Note(PathToBytes(path) + ": " + remark);
    if (facts.fault.empty()) return true;
    session.Problem(PathToBytes(path), facts.fault, "Get the file again from its publisher.");
    return false;
}

ExitCode Info(Session& session, const InfoArguments& arguments) {
    Document document;
    bool good = true;
    for (std::size_t n = 0; n < arguments.files.size(); ++n) {
        const std::string name = n == 0 ? "grid" : "grid" + std::to_string(n + 1);
        good = ShowFile(session, PathArgument(arguments.files[n]), name, document) && good;
    }
    document.Print(session);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddGeoidFiles(CLI::App& geoid, Session& session) {
    auto added = std::make_shared<AddArguments>();
    CLI::App* add = AddCommand(geoid, "add", "Put grid files where their model looks for them",
                               "  orvcfg geoid add nlgeo2018.gtx\n"
                               "  orvcfg geoid eval --model GeoidModelRDNAP2018 --file nlgeo2018.gtx 52.1 4.3");
    add->add_option("FILE", added->files, "Grid files; they are known by their content")->required();
    add->add_option("--model", added->model, "Model, by key or type id. Default: by the grid's name and bounds")
        ->type_name("MODEL");
    add->add_option("--as", added->name, "Name to put it under. Default: its own, or the only one the model reads")
        ->type_name("NAME");
    add->add_flag("--force", added->force, "Replace another file of that name");
    OnRun(add, session, added, Add);

    auto shown = std::make_shared<InfoArguments>();
    CLI::App* info = AddCommand(geoid, "info", "Show what grid files hold", "  orvcfg geoid info nlgeo2018.gtx");
    info->add_option("FILE", shown->files, "Grid files")->required();
    OnRun(info, session, shown, Info);
}

}  // namespace orv::cfg
