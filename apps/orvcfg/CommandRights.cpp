#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "platform/os/FileTools.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "users/UserAccessLevelsFile.h"

namespace orv::cfg {

namespace {

struct ShowArguments {
    std::string application;
};

struct AskArguments {
    int id = 0;
    std::string application, level;
};

std::wstring LevelsPath() {
    const DataSearch& search = DataSearch::GetDataSearch();
    std::wstring folder, definition;
    search.GetFilePath(kFileTypeSystem, folder);
    search.GetProjectDefinition().GetAppDefinition(definition);
    return folder + definition + std::wstring(USER_ACCESS_LEVELS_EXTENSION);
}

/// A file that doesn't count opens every right, and nobody would notice. True if that is all there is to show: no file
/// is a site without levels, a bad one is a problem.
bool TellInvalid(Session& session) {
    const std::wstring path = LevelsPath();
    if (!FileExists(path)) {
        session.Note("no access levels (" + PathToBytes(path) + " isn't there), so everything is allowed");
        return true;
    }
    session.Problem(PathToBytes(path), "The access levels don't verify, so everything is allowed",
                    "See \"orvcfg config check\" of that file; \"orvcfg config sign\" signs it as it stands.");
    return false;
}

/// One column a level.
void AddItems(Table& table, const UserAccessLevelsFile& file, const std::wstring& application) {
    for (const std::wstring_view prefix : {UAL_ITEM_PREFIX, UAL_OPTION_PREFIX}) {
        for (const std::wstring& text : file.GetItems(application, std::wstring(prefix))) {
            UserAccessItem item;
            if (!item.Parse(text)) continue;
            std::vector<Cell> row = {Cell::Of(application), Cell::Of(item.key), Cell::Count(item.id),
                                     Cell::Of(item.label)};
            for (int level = 0; level < static_cast<int>(file.Levels().size()); ++level) {
                row.push_back(Cell::Flag(item.Allows(level)));
            }
            table.Add(std::move(row));
        }
    }
}

ExitCode Show(Session& session, const ShowArguments& arguments) {
    if (!OpenInstallation(session) || !OpenProject(session)) return kCannotRun;
    UserAccessLevelsFile file;
    if (!file.ReadUserAccessLevelsFile()) return TellInvalid(session) ? kAllGood : kSomeFailed;
    std::vector<Column> columns = {
        {"Application", "application"}, {"Key", "key"}, {"Id", "id", true}, {"Item", "label"}};
    for (const std::wstring& level : file.Levels()) columns.push_back({ToUtf8(level), ToUtf8(level)});
    Table table(columns);
    const std::wstring wanted = TextArgument(arguments.application);
    bool found = wanted.empty();
    for (const std::wstring& application : file.Applications()) {
        if (!wanted.empty() && !EqualNoCase(wanted, application)) continue;
        found = true;
        AddItems(table, file, application);
    }
    if (!found) {
        session.Problem(PathToBytes(LevelsPath()), "No rights of an application \"" + arguments.application + "\"",
                        DidYouMean(wanted, file.Applications()));
        return kSomeFailed;
    }
    Document::Print(session, table);
    return kAllGood;
}

ExitCode Ask(Session& session, const AskArguments& arguments) {
    if (!OpenInstallation(session) || !OpenProject(session)) return kCannotRun;
    DataSearch& search = DataSearch::GetDataSearch();
    const std::wstring level = TextArgument(arguments.level), application = TextArgument(arguments.application);
    search.SetUserAccessLevel(level);
    search.LoadAllowedItems();
    UserAccessLevelsFile file;
    if (!file.ReadUserAccessLevelsFile()) {
        if (!TellInvalid(session)) return kSomeFailed;
    } else if (file.UserAccessLevelIndex(level) < 0) {
        session.Note("no level \"" + arguments.level + "\", so the rights are those of the first one. " +
                     DidYouMean(level, file.Levels()));
    }
    const bool allowed = search.PermissionToUseItem(application, arguments.id);
    if (session.options.json) {
        PrintJson(session, {{"application", arguments.application},
                            {"id", arguments.id},
                            {"level", arguments.level},
                            {"allowed", allowed}});
    } else {
        session.out.Put(allowed ? "allowed\n" : "denied\n");
    }
    return kAllGood;
}

}  // namespace

void AddRights(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "rights", "What each access level may use");
    auto shown = std::make_shared<ShowArguments>();
    CLI::App* show = AddCommand(*group, "show", "List items and options with the levels that may use them",
                                "  orvcfg --project Harbour rights show Acquisition");
    show->add_option("APPLICATION", shown->application, "Application. Default: all");
    OnRun(show, session, shown, Show);

    auto asked = std::make_shared<AskArguments>();
    CLI::App* ask = AddCommand(*group, "ask", "Tell whether a level may use an item or option",
                               "  orvcfg rights ask Acquisition 57603 --level Guest\n  denied");
    ask->add_option("APPLICATION", asked->application, "Application")->required();
    ask->add_option("ID", asked->id, "Number of the item or option")->required();
    ask->add_option("--level", asked->level, "Access level")->required()->type_name("NAME");
    OnRun(ask, session, asked, Ask);
}

}  // namespace orv::cfg
