#include <sstream>

#include "Commands.h"
#include "Document.h"
#include "GeoidSource.h"
#include "Installation.h"
#include "geoid/GeoidModelList.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct NoArguments {};

struct DumpArguments {
    GeoidArguments geoid;
};

// ---- list

Cell JoinedNames(const std::vector<std::wstring>& names) {
    Cell cell{{}, Json::array(), {}};
    for (const std::wstring& name : names) {
        if (!cell.text.empty()) cell.text += ", ";
        cell.text += PathToBytes(name);
        cell.value.push_back(ToUtf8(name));
    }
    return cell;
}

Cell ExpectedCell(unsigned short typeId, const std::wstring& folder) {
    const std::vector<std::wstring> names = GeoidFileNames(typeId);
    if (!names.empty()) return JoinedNames(names);
    return Cell::Missing(folder.empty() ? "needs none" : "of any name; projects tell which");
}

Cell GridsCell(unsigned short typeId, const std::wstring& folder) {
    if (folder.empty()) return Cell::Missing("needs none");
    const std::optional<std::vector<std::wstring>> names = GeoidGridNames(typeId);
    if (!names) return Cell::Missing("of any name; projects tell which");
    if (names->empty()) return Cell::Missing("none in its folder");
    return JoinedNames(*names);
}

ExitCode List(Session& session, const NoArguments&) {
    if (!OpenInstallation(session)) return kCannotRun;
    Table table({{"Type", "typeId", true},
                 {"Registered as", "name"},
                 {"Key", "key"},
                 {"Folder", "folder"},
                 {"Expected", "expected"},
                 {"Present", "grids"}});
    for (const GeoidModelList::Registration& model : GeoidModelList::GetGeoidModelList().Registrations()) {
        const std::wstring folder = GeoidModelFolder(model.typeId);
        Cell place = Cell::Path(folder);
        if (folder.empty()) place = {"-", nullptr, {}};
        table.Add({Cell::Count(model.typeId), Cell::Of(model.name), Cell::Of(GeoidKey(model.typeId)), place,
                   ExpectedCell(model.typeId, folder), GridsCell(model.typeId, folder)});
    }
    Document::Print(session, table);
    return kAllGood;
}

// ---- dump

/// Models that can't read their file have a dump, too: it tells which file they look for.
ExitCode Dump(Session& session, const DumpArguments& arguments) {
    if (!OpenInstallation(session)) return kCannotRun;
    const std::optional<GeoidChoice> choice = ChoiceOf(session, arguments.geoid);
    if (!choice) return kCannotRun;
    const OpenedGeoid opened = OpenGeoid(*choice);
    if (!opened.model) return kCannotRun;
    std::wostringstream xml;
    opened.model->DumpGeoidXml(xml, L"");
    session.out.Put(ToUtf8(xml.str()));
    if (opened.problem.empty()) return kAllGood;
    session.Problem({}, "Geoid model " + ToUtf8(choice->key) + ": " + opened.problem,
                    "\"orvcfg geoid add\" puts a grid there.");
    return kSomeFailed;
}

}  // namespace

void AddGeoid(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "geoid", "Geoid models, their grids, and separations at positions");
    CLI::App* list =
        AddCommand(*group, "list", "List the models and the grids that are there for them", "  orvcfg geoid list");
    OnRun(list, session, std::make_shared<NoArguments>(), List);

    auto dumped = std::make_shared<DumpArguments>();
    CLI::App* dump = AddCommand(*group, "dump", "Show a model and its files as XML, as logs hold them",
                                "  orvcfg geoid dump --model 28 --file nlgeo2018.gtx");
    AddGeoidOptions(*dump, dumped->geoid);
    dump->get_option("--model")->required();
    OnRun(dump, session, dumped, Dump);

    AddGeoidFiles(*group, session);
    AddGeoidCheck(*group, session);
    AddGeoidEval(*group, session);
    AddGeoidShift(*group, session);
    AddGeoidVerify(*group, session);
    AddGeoidMap(*group, session);
}

}  // namespace orv::cfg
