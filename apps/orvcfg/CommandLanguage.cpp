#include <charconv>

#include "Commands.h"
#include "Document.h"
#include "Installation.h"
#include "frontend/ChooseLanguage.h"
#include "platform/text/CaseFold.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct ListArguments {};

struct SetArguments {
    std::string id;
};

std::optional<int> ReadId(std::string_view text) {
    while (text.starts_with(' ')) text.remove_prefix(1);
    if (text.starts_with("0x")) text.remove_prefix(2);
    int id = 0;
    const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), id, 16);
    if (failed != std::errc() || end != text.data() + text.size() || id <= 0) return std::nullopt;
    return id;
}

/// An id as the folders are called.
std::string IdText(int id) {
    std::string text = ToUtf8(LanguageSettingText(id));
    for (char& c : text) {
        if (c == ' ') c = '0';
    }
    return text;
}

bool OpenLanguages(Session& session, ChooseLanguageDialog& dialog) {
    if (!OpenInstallation(session)) return false;
    if (dialog.Open()) return true;
    session.Problem(PathToBytes(DataRoot(session) + L"localizations"), "No translations are installed",
                    "They come with the applications, a folder a language.");
    return false;
}

ExitCode List(Session& session, const ListArguments&) {
    ChooseLanguageDialog dialog;
    if (!OpenLanguages(session, dialog)) return kCannotRun;
    std::wstring setting;
    DataSearch::GetDataSearch().GetOrvIni().GetUserLanguage(setting);
    const std::optional<int> chosen = ReadId(ToUtf8(setting));
    Table table({{"Id", "id"}, {"Language", "name"}, {"Chosen", "chosen"}});
    for (const auto& [id, name] : dialog.Choices()) {
        table.Add(
            {Cell::Of(IdText(id)), Cell::OrMissing(name, "its showas.txt can't be read"), Cell::Flag(chosen == id)});
    }
    if (chosen && !dialog.Choices().contains(*chosen)) session.Note("the chosen language isn't installed");
    Document::Print(session, table);
    return kAllGood;
}

ExitCode Set(Session& session, const SetArguments& arguments) {
    ChooseLanguageDialog dialog;
    if (!OpenLanguages(session, dialog)) return kCannotRun;
    const std::optional<int> id = ReadId(arguments.id);
    if (!id || !dialog.Choices().contains(*id)) {
        session.Problem({}, "No installed language has the id \"" + arguments.id + "\"",
                        "\"orvcfg language list\" shows them; an id is hexadecimal, as 0413.");
        return kSomeFailed;
    }
    if (!dialog.Ok(*id)) {
        session.Problem(PathToBytes(SystemFolder(session)), "The choice can't be stored",
                        "Check the rights to ORV.ini and the space on its disk.");
        return kSomeFailed;
    }
    session.Note("the applications take it at their next start");
    return kAllGood;
}

}  // namespace

void AddLanguage(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "language", "The language of the applications");
    OnRun(AddCommand(*group, "list", "List the installed translations", "  orvcfg language list"), session,
          std::make_shared<ListArguments>(), List);
    auto arguments = std::make_shared<SetArguments>();
    CLI::App* set = AddCommand(*group, "set", "Choose one of them", "  orvcfg language set 0413");
    set->add_option("ID", arguments->id, "Locale id, hexadecimal, as the list shows it")->required();
    OnRun(set, session, arguments, Set);
}

}  // namespace orv::cfg
