#include "Commands.h"
#include "Document.h"
#include "GeoidChoice.h"
#include "GridForms.h"
#include "Installation.h"
#include "geoid/GeoidModelList.h"
#include "geoid/GridReader.h"
#include "platform/crypto/Sha256.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct NoArguments {};

struct AddArguments {
    std::vector<std::string> files;
    std::string model;
    bool force = false;
};

struct InfoArguments {
    std::string file;
};

// ---- list

Cell GridsCell(unsigned short typeId, const std::wstring& folder) {
    if (folder.empty()) return Cell::Missing("needs none");
    const std::optional<std::vector<std::wstring>> names = GeoidGridNames(typeId);
    if (!names) return Cell::Missing("of any name; projects tell which");
    if (names->empty()) return Cell::Missing("none in its folder");
    Cell cell{{}, Json::array(), {}};
    for (const std::wstring& name : *names) {
        if (!cell.text.empty()) cell.text += ", ";
        cell.text += PathToBytes(name);
        cell.value.push_back(ToUtf8(name));
    }
    return cell;
}

ExitCode List(Session& session, const NoArguments&) {
    if (!OpenInstallation(session)) return kCannotRun;
    Table table({{"Type", "typeId", true},
                 {"Registered as", "name"},
                 {"Key", "key"},
                 {"Folder", "folder"},
                 {"Grids", "grids"}});
    for (const GeoidModelList::Registration& model : GeoidModelList::GetGeoidModelList().Registrations()) {
        const std::wstring folder = GeoidModelFolder(model.typeId);
        Cell place = Cell::Path(folder);
        if (folder.empty()) place = {"-", nullptr, {}};
        table.Add({Cell::Count(model.typeId), Cell::Of(model.name), Cell::Of(GeoidKey(model.typeId)), place,
                   GridsCell(model.typeId, folder)});
    }
    Document::Print(session, table);
    return kAllGood;
}

// ---- add

std::string KnownForms() {
    std::string names;
    for (const GridForm& form : GridForms()) names += (names.empty() ? "" : ", ") + std::string(form.name);
    return names;
}

bool ReadGrid(Session& session, const std::wstring& path, std::string& bytes, RecognisedGrid& grid) {
    if (const FsResult result = ReadWholeFile(path, bytes); result != FsResult::Ok) {
        session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(result)), "Check name and rights.");
        return false;
    }
    std::string why;
    const std::optional<RecognisedGrid> found = RecogniseGrid(AsBytes(bytes), why);
    if (!found) {
        session.Problem(PathToBytes(path), "No grid of a known form (" + why + ")",
                        "Known forms: " + KnownForms() + ".");
        return false;
    }
    grid = *found;
    return true;
}

std::string BoundsText(const GridFacts& facts) {
    return "latitude " + Fixed(facts.south, 4) + " to " + Fixed(facts.north, 4) + ", longitude " +
           Fixed(facts.west, 4) + " to " + Fixed(facts.east, 4);
}

/// The model that a grid goes to; none after a problem has been told.
std::optional<unsigned short> ModelFor(Session& session, const std::wstring& path, const RecognisedGrid& grid,
                                       const std::string& wanted) {
    if (wanted.empty()) {
        if (const GridHome* home = HomeOf(grid)) return home->typeId;
        session.Problem(PathToBytes(path),
                        "No model takes a " + std::string(grid.form->name) + " grid of " + BoundsText(grid.facts),
                        "Name one with --model.");
        return std::nullopt;
    }
    const std::optional<unsigned short> type = GeoidTypeArgument(session, wanted);
    if (!type || Reads(*grid.form, *type)) return type;
    session.Problem(PathToBytes(path),
                    "Geoid model " + ToUtf8(GeoidKey(*type)) + " reads no " + std::string(grid.form->name) + " grids",
                    "Leave --model out to have the model chosen by the grid's bounds.");
    return std::nullopt;
}

enum class Placing { Failed, Copied, Replaced, ThereAlready };

Placing Place(Session& session, const std::wstring& from, const std::string& bytes, const std::wstring& to,
              bool force) {
    const bool exists = FileExists(to);
    std::string present;
    if (exists && ReadWholeFile(to, present) == FsResult::Ok && present == bytes) return Placing::ThereAlready;
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

bool AddGrid(Session& session, const std::wstring& path, const AddArguments& arguments, Document& document) {
    std::string bytes;
    RecognisedGrid grid;
    if (!ReadGrid(session, path, bytes, grid)) return false;
    const std::optional<unsigned short> type = ModelFor(session, path, grid, arguments.model);
    if (!type) return false;
    const std::wstring folder = GeoidModelFolder(*type), name = GetNameFromPath(path);
    if (folder.empty()) {
        session.Problem(PathToBytes(path), "Geoid model " + ToUtf8(GeoidKey(*type)) + " has no folder for grids");
        return false;
    }
    const Placing placing = Place(session, path, bytes, folder + name, arguments.force);
    if (placing == Placing::Failed) return false;
    const std::string key = ToUtf8(GeoidKey(*type)), file = PathToBytes(name);
    Facts& facts = document.AddFacts(file, file);
    facts.Add("Form", "form", Cell::Of(std::string(grid.form->name)));
    facts.Add("Model", "model", Cell::Of(key));
    facts.Add("Put to", "path", Cell::Path(folder + name));
    facts.Add("Done", "done",
              Cell::Of(std::string(placing == Placing::Copied     ? "copied"
                                   : placing == Placing::Replaced ? "replaced another file"
                                                                  : "it was there already")));
    facts.Add("Try", "try",
              Cell::Of("orvcfg geoid eval --model " + key + " --file \"" + file + "\" " +
                       Fixed((grid.facts.south + grid.facts.north) / 2, 4) + " " +
                       Fixed((grid.facts.west + grid.facts.east) / 2, 4)));
    facts.Add("In a project", "project",
              Cell::Of("orvcfg project create NAME --geoid " + key + " --geoid-file \"" + file + "\""));
    return true;
}

ExitCode Add(Session& session, const AddArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    Document document;
    bool good = true;
    for (const std::string& file : arguments.files) {
        good = AddGrid(session, PathArgument(file), arguments, document) && good;
    }
    document.Print(session);
    return good ? kAllGood : kSomeFailed;
}

// ---- info

ExitCode Info(Session& session, const InfoArguments& arguments) {
    std::string bytes;
    RecognisedGrid grid;
    const std::wstring path = PathArgument(arguments.file);
    if (!ReadGrid(session, path, bytes, grid)) return kSomeFailed;
    const GridFacts& facts = grid.facts;
    const auto degrees = [](double value) { return Cell::Number(value, 6); };
    Document document;
    Facts& block = document.AddFacts("Grid", "grid");
    block.Add("File", "file", Cell::Path(path));
    block.Add("Form", "form", Cell::Of(std::string(facts.form)));
    block.Add("Size in bytes", "bytes", Cell::Count(static_cast<std::int64_t>(bytes.size())));
    block.Add("Nodes are", "nodeType", Cell::Of(facts.nodeType));
    block.Add("South", "south", degrees(facts.south));
    block.Add("North", "north", degrees(facts.north));
    block.Add("West", "west", degrees(facts.west));
    block.Add("East", "east", degrees(facts.east));
    block.Add("Latitude step", "latitudeStep", degrees(facts.latitudeStep));
    block.Add("Longitude step", "longitudeStep", degrees(facts.longitudeStep));
    block.Add("Rows", "rows", Cell::Count(facts.rows));
    block.Add("Columns", "columns", Cell::Count(facts.columns));
    block.Add("Nodes", "nodes", Cell::Count(facts.Nodes()));
    Cell share = Cell::Number(100.0 * static_cast<double>(facts.noData) / static_cast<double>(facts.Nodes()), 2);
    share.text += " %";
    block.Add("Without data", "noDataPercent", share);
    block.Add("Smallest value", "smallest", Cell::Number(facts.smallest, 4));
    block.Add("Largest value", "largest", Cell::Number(facts.largest, 4));
    block.Add("SHA-256", "sha256", Cell::Of(Sha256Hex(bytes)));
    document.Print(session);
    return kAllGood;
}

}  // namespace

void AddGeoid(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "geoid", "Geoid models, their grids, and separations at positions");
    CLI::App* list =
        AddCommand(*group, "list", "List the models and the grids that are there for them", "  orvcfg geoid list");
    OnRun(list, session, std::make_shared<NoArguments>(), List);

    auto added = std::make_shared<AddArguments>();
    CLI::App* add = AddCommand(*group, "add", "Put grid files where their model looks for them",
                               "  orvcfg geoid add nlgeo2018.gtx\n"
                               "  orvcfg geoid eval --model GeoidModelRDNAP2018 --file nlgeo2018.gtx 52.1 4.3");
    add->add_option("FILE", added->files, "Grid files; they are known by their content")->required();
    add->add_option("--model", added->model, "Model, by key or type id. Default: by the grid's bounds")
        ->type_name("MODEL");
    add->add_flag("--force", added->force, "Replace another file of that name");
    OnRun(add, session, added, Add);

    auto shown = std::make_shared<InfoArguments>();
    CLI::App* info = AddCommand(*group, "info", "Show what a grid file holds", "  orvcfg geoid info nlgeo2018.gtx");
    info->add_option("FILE", shown->file, "Grid file")->required();
    OnRun(info, session, shown, Info);

    AddGeoidEval(*group, session);
}

}  // namespace orv::cfg
