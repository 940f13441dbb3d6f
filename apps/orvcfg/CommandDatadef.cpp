#include <algorithm>

#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "definitions/DataDefinition.h"
#include "platform/os/FileSystem.h"
#include "platform/text/CaseFold.h"
#include "platform/text/NumberText.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct DatadefArguments {
    std::string file, kind, group;
    std::vector<std::string> words;
};

// ---- the definition

enum class Kind { Device, Computation, Composite };
constexpr std::string_view kKindNames[] = {"device", "computation", "composite"};

Kind KindOf(unsigned id) {
    return id < 1000 ? Kind::Device : id < 2000 ? Kind::Computation : Kind::Composite;
}

std::string_view KindName(unsigned id) {
    return kKindNames[static_cast<int>(KindOf(id))];
}

bool OpenDefinition(Session& session, const DatadefArguments& arguments, DataDefinition*& definition) {
    definition = &DataDefinition::GetDataDefinition();
    const std::wstring path = arguments.file.empty() ? DataRoot(session) + std::wstring(DATA_DEF_FILENAME)
                                                     : AbsolutePath(PathArgument(arguments.file));
    session.Detail("data definition " + PathToBytes(path));
    if (arguments.file.empty() ? definition->Initialise() : definition->FileOpen(path, kOpenRead)) return true;
    session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(definition->LastResult())),
                    arguments.file.empty() ? "It comes with the program: install it again." : "");
    return false;
}

/// A name that composites have too, which hosts take from the file itself.
std::wstring NameOf(const DataDefinition& definition, unsigned id) {
    std::wstring name;
    if (!definition.GetGroupName(id, name)) definition.GetItem(IntText(id), L"Name", name);
    return name;
}

std::vector<unsigned> AllGroups(const DataDefinition& definition) {
    std::vector<unsigned> groups;
    for (const std::wstring& section : SectionsOf(definition)) {
        if (const std::optional<unsigned> id = ParseUnsigned(section)) groups.push_back(*id);
    }
    return groups;
}

/// Group by id, file id or name; none after a problem with near names has been told.
std::optional<unsigned> GroupOf(Session& session, DataDefinition& definition, const std::string& which) {
    const std::wstring wanted = TextArgument(which);
    const std::optional<unsigned> id = ParseUnsigned(wanted);
    std::vector<std::wstring> known;
    for (const unsigned group : AllGroups(definition)) {
        std::wstring fileId;
        definition.GetGroupFileId(group, fileId);
        known.push_back(NameOf(definition, group));
        if (id ? *id == group : EqualNoCase(known.back(), wanted) || EqualNoCase(fileId, wanted)) return group;
        if (!fileId.empty()) known.push_back(fileId);
    }
    std::string remedy = DidYouMean(wanted, known);
    if (remedy.empty()) remedy = "\"orvcfg datadef groups\" shows them all.";
    session.Problem({}, "No group has the id, name or file id \"" + which + "\"", remedy);
    return std::nullopt;
}

// ---- items

/// Calls `visit` with the index of each item: two stretches, of which the second follows where the first is full.
template <class Visit>
void ForEachItem(const DataDefinition& definition, unsigned group, Visit visit) {
    const std::wstring section = IntText(group);
    for (unsigned index = 0; index < 65535; index = index == 99 ? 60000 : index + 1) {
        if (!definition.HasKey(section, L"Item(" + IntText(index) + L")")) return;
        visit(static_cast<unsigned short>(index));
    }
}

const std::vector<Column>& ItemColumns() {
    static const std::vector<Column> columns = {{"Item", "index", true},
                                                {"Name", "name"},
                                                {"Mnemonic", "mnemonic"},
                                                {"Type", "type"},
                                                {"Bytes", "length", true},
                                                {"Format", "format", true},
                                                {"Use as", "useAs", true},
                                                {"Editable", "editable", true},
                                                {"Simulation", "simulation", true},
                                                {"Values", "values"}};
    return columns;
}

Cell TypeCell(unsigned short type) {
    std::string text;
    return DataDefinition::GetTypeInStringFormat(type, text) ? Cell::Of(text)
                                                             : Cell::Missing("type " + std::to_string(type) + "?");
}

/// Texts of the values of an enumeration, or the value 1 in the item's format.
std::string ValuesText(const DataDefinition& definition, unsigned group, unsigned short index) {
    std::wstring map;
    definition.GetItem(IntText(group), L"@.Item(" + IntText(index) + L")", map);
    return ToUtf8(map);
}

std::vector<Cell> ItemCells(const DataDefinition& definition, unsigned group, unsigned short index) {
    std::wstring name, mnemonic, simulation;
    unsigned short type = 0, length = 0, format = 0, useAs = 0;
    int editable = 0;
    definition.GetGroupItemName(group, index, name);
    definition.GetGroupItemMnem(group, index, mnemonic);
    const auto count = [&](bool (DataDefinition::*query)(unsigned, unsigned short, unsigned short&) const,
                           unsigned short& out) {
        return (definition.*query)(group, index, out) ? Cell::Count(out) : Cell::Missing("no number in the file");
    };
    std::wstring list;
    definition.GetItem(IntText(group), L"Item(" + IntText(index) + L")", list);
    const COrvString fields(list, L',', true);
    const Cell typeCell =
        definition.GetGroupItemType(group, index, type) ? TypeCell(type) : Cell::Missing("no number in the file");
    Cell useAsCell = count(&DataDefinition::GetGroupItemUseas, useAs);
    if (useAs == 0 && useAsCell.reason.empty()) useAsCell = Cell::Missing("not used as anything");
    Cell editableCell = fields.GetItem(6, editable) ? Cell::Count(editable) : Cell::Missing("not told");
    Cell simulationCell = fields.GetItem(7, simulation) ? Cell::Of(simulation) : Cell::Missing("not told");
    for (Cell* const untold : {&useAsCell, &editableCell, &simulationCell}) {
        // Most items lack one of these: a reason behind each row would drown the rest.
        if (!untold->reason.empty()) *untold = Cell{"-", nullptr, ""};
    }
    return {Cell::Count(index),
            Cell::Of(name),
            Cell::Of(mnemonic),
            typeCell,
            count(&DataDefinition::GetGroupItemLength, length),
            count(&DataDefinition::GetGroupItemFormat, format),
            useAsCell,
            editableCell,
            simulationCell,
            Cell::Of(ValuesText(definition, group, index))};
}

// ---- groups

ExitCode Groups(Session& session, const DatadefArguments& arguments) {
    DataDefinition* definition = nullptr;
    if (!OpenDefinition(session, arguments, definition)) return kCannotRun;
    Table table({{"Id", "id", true},
                 {"Kind", "kind"},
                 {"Name", "name"},
                 {"File id", "fileId"},
                 {"Items", "items", true},
                 {"Buffer", "buffer", true},
                 {"Description", "description"}});
    for (const unsigned id : AllGroups(*definition)) {
        if (!arguments.kind.empty() && arguments.kind != KindName(id)) continue;
        int items = 0, buffer = 0;
        std::wstring description, fileId;
        definition->GetGroupNumItems(id, items);
        definition->GetGroupFileId(id, fileId);
        if (!definition->GetGroupDescription(id, 0, description)) {
            definition->GetItem(IntText(id), L"DescriptionText", description);
        }
        table.Add({Cell::Count(id), Cell::Of(std::string(KindName(id))), Cell::Of(NameOf(*definition, id)),
                   Cell::Of(fileId), Cell::Count(items),
                   definition->GetGroupBufferlength(id, buffer) ? Cell::Count(buffer) : Cell{"-", nullptr, ""},
                   Cell::Of(description)});
    }
    Document::Print(session, table);
    return kAllGood;
}

void AddMembers(Document& document, const DataDefinition& definition, unsigned group) {
    Table& table = document.AddTable("Members", "members", {{"Id", "id", true}, {"Name", "name"}, {"Spare", "spare"}});
    for (const bool spare : {false, true}) {
        unsigned member = 0;
        for (unsigned n = 0;
             spare ? definition.GetSpareItemGroup(group, n, member) : definition.GetGroupItemGroup(group, n, member);
             ++n) {
            table.Add({Cell::Count(member), Cell::OrMissing(NameOf(definition, member), "the file has no such group"),
                       Cell::Flag(spare)});
        }
    }
}

ExitCode Items(Session& session, const DatadefArguments& arguments) {
    DataDefinition* definition = nullptr;
    if (!OpenDefinition(session, arguments, definition)) return kCannotRun;
    const std::optional<unsigned> group = GroupOf(session, *definition, arguments.group);
    if (!group) return kSomeFailed;
    Document document;
    Facts& facts = document.AddFacts("Group", "group");
    facts.Add("Id", "id", Cell::Count(*group));
    facts.Add("Name", "name", Cell::Of(NameOf(*definition, *group)));
    facts.Add("Kind", "kind", Cell::Of(std::string(KindName(*group))));
    std::wstring text;
    for (int index = 0; definition->GetGroupDescription(*group, index, text); ++index) {
        facts.Add(index == 0 ? "Description" : "", "description" + (index == 0 ? "" : std::to_string(index)),
                  Cell::Of(text));
    }
    COrvString points(L',');
    if (definition->GetAttachmentPoints(*group, points)) {
        facts.Add("Attachment points", "attachmentPoints", Cell::Of(points.GetString()));
    }
    if (KindOf(*group) == Kind::Composite) {
        AddMembers(document, *definition, *group);
    } else {
        Table& table = document.AddTable("Items", "items", ItemColumns());
        ForEachItem(*definition, *group,
                    [&](unsigned short index) { table.Add(ItemCells(*definition, *group, index)); });
    }
    document.Print(session);
    return kAllGood;
}

// ---- find

bool Holds(std::wstring_view text, std::wstring_view word) {
    return ToLower(text).find(ToLower(word)) != std::wstring::npos;
}

ExitCode Find(Session& session, const DatadefArguments& arguments) {
    DataDefinition* definition = nullptr;
    if (!OpenDefinition(session, arguments, definition)) return kCannotRun;
    std::vector<Column> columns = ItemColumns();
    columns.insert(columns.begin(), {{"Group", "group", true}, {"Group name", "groupName"}});
    Table table(std::move(columns));
    bool all = true;
    for (const std::string& argument : arguments.words) {
        const std::wstring word = TextArgument(argument);
        const std::optional<unsigned> code = ParseUnsigned(word);
        bool found = false;
        for (const unsigned group : AllGroups(*definition)) {
            const std::wstring groupName = NameOf(*definition, group);
            ForEachItem(*definition, group, [&](unsigned short index) {
                std::wstring name, mnemonic;
                unsigned short useAs = 0;
                definition->GetGroupItemName(group, index, name);
                definition->GetGroupItemMnem(group, index, mnemonic);
                definition->GetGroupItemUseas(group, index, useAs);
                if (code ? *code != useAs : !Holds(name, word) && !Holds(mnemonic, word)) return;
                std::vector<Cell> cells = ItemCells(*definition, group, index);
                cells.insert(cells.begin(), {Cell::Count(group), Cell::Of(groupName)});
                table.Add(std::move(cells));
                found = true;
            });
        }
        if (!found) {
            session.Problem({}, "No item has \"" + argument + "\" in its name or mnemonic, or as its use-as code");
        }
        all = all && found;
    }
    Document::Print(session, table);
    return all ? kAllGood : kSomeFailed;
}

}  // namespace

void AddDatadef(CLI::App& app, Session& session) {
    CLI::App* datadef = AddGroup(app, "datadef", "Show what data devices, computations and composites produce");
    const auto file = [](CLI::App* command, const std::shared_ptr<DatadefArguments>& arguments) {
        command->add_option("--file", arguments->file, "Definition file. Default: the one that comes with the program")
            ->type_name("FILE");
    };
    auto listed = std::make_shared<DatadefArguments>();
    CLI::App* groups = AddCommand(*datadef, "groups", "List the groups", "  orvcfg datadef groups --kind device");
    groups->add_option("--kind", listed->kind, "Only device, computation or composite groups")
        ->check(CLI::IsMember({"device", "computation", "composite"}))
        ->type_name("KIND");
    file(groups, listed);
    OnRun(groups, session, listed, Groups);

    auto shown = std::make_shared<DatadefArguments>();
    CLI::App* items = AddCommand(*datadef, "items", "Show a group with its items or members",
                                 "  orvcfg datadef items 31\n  orvcfg datadef items \"Motion sensor\"");
    items->add_option("GROUP", shown->group, "Id, name or file id of a group")->required();
    file(items, shown);
    OnRun(items, session, shown, Items);

    auto sought = std::make_shared<DatadefArguments>();
    CLI::App* find = AddCommand(*datadef, "find", "Find items by a part of their name or mnemonic, or by use-as code",
                                "  orvcfg datadef find heave\n  orvcfg datadef find 140");
    find->add_option("WORD", sought->words, "Words and use-as codes")->required();
    file(find, sought);
    OnRun(find, session, sought, Find);
}

}  // namespace orv::cfg
