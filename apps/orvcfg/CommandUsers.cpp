#include <algorithm>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "PasswordInput.h"
#include "Suggest.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"
#include "users/UserAccountsFile.h"

namespace orv::cfg {

namespace {

struct ListArguments {};

struct UserArguments {
    std::string name, newName, level;
    bool password = false, noPassword = false, isDefault = false, notDefault = false;
};

/// The levels belong to the project's application definition.
bool OpenAccounts(Session& session) {
    return OpenInstallation(session) && OpenProject(session);
}

/// False after a problem has been told. A level that no file defines would leave its user with the rights of the first
/// one.
bool KnowsLevel(Session& session, const UserAccountsFile& accounts, const std::wstring& level) {
    std::vector<std::wstring> known;
    for (int i = 0; i < accounts.LevelCount(); ++i) {
        if (accounts.LevelName(i) == level) return true;
        known.push_back(accounts.LevelName(i));
    }
    if (known.empty()) {
        session.Problem({}, "The project has no valid file of access levels",
                        "\"orvcfg rights show\" tells where it is expected and how it stands.");
        return false;
    }
    std::string remedy = DidYouMean(level, known);
    if (remedy.empty()) {
        remedy = "Levels are:";
        for (const std::wstring& name : known) remedy += " \"" + ToUtf8(name) + "\"";
        remedy += ".";
    }
    session.Problem({}, "There is no access level \"" + ToUtf8(level) + "\"", remedy);
    return false;
}

/// -1 after a problem has been told.
int FindUser(Session& session, const UserAccountsFile& accounts, const std::wstring& name) {
    const int index = accounts.GetUserIndex(name);
    if (index >= 0) return index;
    std::vector<std::wstring> known;
    known.reserve(static_cast<std::size_t>(std::max(0, accounts.UserCount())));
    for (int i = 0; i < accounts.UserCount(); ++i) known.push_back(accounts.UserName(i));
    const std::string remedy = DidYouMean(name, known);
    session.Problem(PathToBytes(accounts.GetPathToFile()), "There is no account \"" + ToUtf8(name) + "\"",
                    remedy.empty() ? "\"orvcfg users list\" shows them all; case counts." : remedy);
    return -1;
}

/// True if the name is free and can be stored as it is; the file's form cuts names and knows only old letters.
bool MayName(Session& session, const UserAccountsFile& accounts, const std::wstring& name) {
    UserDataRecord record;
    record.Set(UserDataRecord::kName, name);
    const std::wstring stored = record.Get(UserDataRecord::kName);
    const std::string quoted = "\"" + ToUtf8(name) + "\"";
    if (name.empty() || stored != name) {
        session.Problem({}, "An account can't be called " + quoted,
                        stored.empty() ? "A name has 1 to 31 letters of the Western alphabets."
                                       : "It would be stored as \"" + ToUtf8(stored) + "\".");
        return false;
    }
    if (accounts.GetUserIndex(name) < 0) return true;
    session.Problem(PathToBytes(accounts.GetPathToFile()), "There is an account " + quoted + " already",
                    "\"orvcfg users modify\" changes it.");
    return false;
}

/// The only place that accepts an empty password is the switch for it: an empty line is more likely a slip.
bool ChoosePassword(Session& session, const UserArguments& arguments, Secret& password) {
    if (arguments.noPassword) return true;
    if (!ReadNewPassword(session, password)) return false;
    UserDataRecord record;
    record.Set(UserDataRecord::kPassword, password.text);
    if (record.IsEmpty(UserDataRecord::kPassword)) {
        session.Problem({}, "The password is empty, or would be once it is stored",
                        "It starts with a letter of the Western alphabets; --no-password asks for none.");
        return false;
    }
    if (record.Holds(UserDataRecord::kPassword, password.text)) return true;
    session.Problem({}, "The password can't be stored as it is, so it would open nothing",
                    "It has up to 31 letters of the Western alphabets.");
    return false;
}

std::vector<Column> Columns() {
    return {{"Name", "name"}, {"Level", "level"}, {"Layout", "layout"}, {"Logs in without password", "isDefault"}};
}

void AddRow(Table& table, const UserAccountsFile& accounts, int index) {
    table.Add({Cell::Of(accounts.UserName(index)), Cell::Of(accounts.UserLevel(index)),
               Cell::OrMissing(accounts.UserLayout(index), "the level was unknown when it was given"),
               Cell::Flag(accounts.UserIsDefaultLevel(index))});
}

ExitCode Save(Session& session, const UserAccountsFile& accounts, int shown) {
    if (!accounts.FileSave()) {
        session.Problem(PathToBytes(accounts.GetPathToFile()), "Can't be written, or could not be read before",
                        "Nothing was changed. Check the rights to the file and the space on its disk.");
        return kSomeFailed;
    }
    if (shown < 0) return kAllGood;
    Table table(Columns());
    AddRow(table, accounts, shown);
    Document::Print(session, table);
    return kAllGood;
}

// ---- subcommands

ExitCode List(Session& session, const ListArguments&) {
    if (!OpenAccounts(session)) return kCannotRun;
    const UserAccountsFile accounts;
    Table table(Columns());
    for (int i = 0; i < accounts.UserCount(); ++i) AddRow(table, accounts, i);
    if (table.Empty()) session.Note("no accounts in " + PathToBytes(accounts.GetPathToFile()));
    Document::Print(session, table);
    return kAllGood;
}

ExitCode Add(Session& session, const UserArguments& arguments) {
    if (!OpenAccounts(session)) return kCannotRun;
    UserAccountsFile accounts;
    const std::wstring name = TextArgument(arguments.name), level = TextArgument(arguments.level);
    Secret password;
    if (!MayName(session, accounts, name) || !KnowsLevel(session, accounts, level) ||
        !ChoosePassword(session, arguments, password)) {
        return kSomeFailed;
    }
    if (!accounts.AddUser(name, password.text, level)) {
        session.Problem({}, "The account is refused", "Name, level or password would be empty once stored.");
        return kSomeFailed;
    }
    const int index = accounts.UserCount() - 1;
    accounts.SetUserAsDefault(index, arguments.isDefault);
    return Save(session, accounts, index);
}

ExitCode Modify(Session& session, const UserArguments& arguments) {
    if (!OpenAccounts(session)) return kCannotRun;
    UserAccountsFile accounts;
    const int index = FindUser(session, accounts, TextArgument(arguments.name));
    if (index < 0) return kSomeFailed;
    const std::wstring name = arguments.newName.empty() ? accounts.UserName(index) : TextArgument(arguments.newName);
    const std::wstring level = arguments.level.empty() ? accounts.UserLevel(index) : TextArgument(arguments.level);
    if (name != accounts.UserName(index) && !MayName(session, accounts, name)) return kSomeFailed;
    if (!arguments.level.empty() && !KnowsLevel(session, accounts, level)) return kSomeFailed;
    Secret password(arguments.noPassword ? std::wstring() : accounts.Password(index));
    if (arguments.password && !ChoosePassword(session, arguments, password)) return kSomeFailed;
    if (!accounts.ModifyUser(index, name, password.text, level)) {
        session.Problem(PathToBytes(accounts.GetPathToFile()), "The account can't be changed like that",
                        accounts.LevelCount() == 0 ? "The project has no valid file of access levels."
                                                   : "The account of the first level keeps its name.");
        return kSomeFailed;
    }
    if (arguments.isDefault || arguments.notDefault) accounts.SetUserAsDefault(index, arguments.isDefault);
    return Save(session, accounts, index);
}

ExitCode Remove(Session& session, const UserArguments& arguments) {
    if (!OpenAccounts(session)) return kCannotRun;
    UserAccountsFile accounts;
    const int index = FindUser(session, accounts, TextArgument(arguments.name));
    if (index < 0) return kSomeFailed;
    if (!accounts.RemoveUser(index)) {
        session.Problem(PathToBytes(accounts.GetPathToFile()), "The account can't be removed",
                        accounts.LevelCount() == 0 ? "The project has no valid file of access levels."
                                                   : "That of the first level always stays.");
        return kSomeFailed;
    }
    return Save(session, accounts, -1);
}

ExitCode Check(Session& session, const UserArguments& arguments) {
    if (!OpenAccounts(session)) return kCannotRun;
    const UserAccountsFile accounts;
    const std::wstring name = TextArgument(arguments.name);
    const int index = FindUser(session, accounts, name);
    if (index < 0) return kSomeFailed;
    Secret password;
    if (!ReadPassword(session, "Password", password)) return kSomeFailed;
    std::wstring level;
    if (!accounts.ValidateUser(name, password.text, level)) {
        session.Problem({}, "\"" + ToUtf8(name) + "\" can't log in with that password", "Case counts.");
        return kSomeFailed;
    }
    if (accounts.UserIsDefaultLevel(index)) session.Note("this account logs in with any password");
    Table table(Columns());
    AddRow(table, accounts, index);
    Document::Print(session, table);
    return kAllGood;
}

}  // namespace

void AddUsers(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "users", "The accounts that may log in");
    OnRun(AddCommand(*group, "list", "List the accounts", "  orvcfg --project Harbour users list --json"), session,
          std::make_shared<ListArguments>(), List);

    const std::string input = "The password is asked for without echo, or read from standard input's first line.";
    auto added = std::make_shared<UserArguments>();
    CLI::App* add = AddCommand(*group, "add", "Add an account", "  orvcfg users add Anna --level Surveyor\n\n" + input);
    add->add_option("NAME", added->name, "Name")->required();
    add->add_option("--level", added->level, "Access level")->required()->type_name("NAME");
    add->add_flag("--no-password", added->noPassword, "The password is empty");
    add->add_flag("--default", added->isDefault, "The account logs in with any password");
    OnRun(add, session, added, Add);

    auto changed = std::make_shared<UserArguments>();
    CLI::App* modify = AddCommand(*group, "modify", "Change an account",
                                  "  orvcfg users modify Anna --level Guest --password\n\n" + input);
    modify->add_option("NAME", changed->name, "Name")->required();
    modify->add_option("--name", changed->newName, "New name")->type_name("NAME");
    modify->add_option("--level", changed->level, "New access level")->type_name("NAME");
    CLI::Option* ask = modify->add_flag("--password", changed->password, "Ask for a new password");
    modify->add_flag("--no-password", changed->noPassword, "Empty the password")->excludes(ask);
    CLI::Option* free = modify->add_flag("--default", changed->isDefault, "The account logs in with any password");
    modify->add_flag("--not-default", changed->notDefault, "It needs its password")->excludes(free);
    OnRun(modify, session, changed, Modify);

    auto removed = std::make_shared<UserArguments>();
    CLI::App* remove = AddCommand(*group, "remove", "Remove an account", "  orvcfg users remove Anna");
    remove->add_option("NAME", removed->name, "Name")->required();
    OnRun(remove, session, removed, Remove);

    auto checked = std::make_shared<UserArguments>();
    CLI::App* check = AddCommand(*group, "check", "Tell whether a password is right, and the level it gives",
                                 "  orvcfg users check Anna\n\n" + input);
    check->add_option("NAME", checked->name, "Name")->required();
    OnRun(check, session, checked, Check);
}

}  // namespace orv::cfg
