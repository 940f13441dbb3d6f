#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "core/ConfigKeys.h"
#include "definitions/CIoHandlerSettingsList.h"
#include "definitions/InterfaceDef.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct PortArguments {
    std::string file, port, handler = "Socket";
    std::vector<std::string> items;
};

// ---- the interface definition

std::wstring PortsFile(const Session& session, const PortArguments& arguments) {
    return arguments.file.empty() ? SystemFolder(session) + std::wstring(INTERFACE_DEF_FILENAME)
                                  : AbsolutePath(PathArgument(arguments.file));
}

// Not as a host opens it, who puts an end to the replays of the last session: looking on changes nothing.
bool ReadPorts(Session& session, const std::wstring& path, InterfaceDef& ports) {
    if (ports.FileObject::FileOpen(path, kOpenRead)) return true;
    session.Problem(PathToBytes(path), "Can't be read: " + ToUtf8(FsResultText(ports.LastResult())),
                    "\"orvcfg port new\" makes it with its first port; --file names another.");
    return false;
}

std::vector<std::wstring> Handlers() {
    std::vector<std::wstring> handlers;
    std::wstring handler;
    while (GetIoHandlerSettingsList().GetNextHandler(handler)) handlers.push_back(handler);
    return handlers;
}

struct PortLine {
    Cell handler, settings;
    bool complete = false;
};

PortLine LineOf(const InterfaceDef& ports, const std::wstring& name) {
    PortLine line{Cell::Missing("the port has no handler"), Cell::Missing("the port has no handler")};
    std::wstring handler;
    if (!ports.GetItem(name, COM_HANDLER, handler)) return line;
    FileSection section;
    section.GetFromFileObject(name, ports);
    PortSettings settings;
    line.complete = ports.GetPortSettings(name, settings);
    line.handler = Cell::Of(handler);
    line.settings =
        line.complete ? Cell::Of(PortSettingsText(section)) : Cell::Missing("keys of its handler are missing");
    return line;
}

// ---- list and show

ExitCode List(Session& session, const PortArguments& arguments) {
    InterfaceDef ports;
    const std::wstring path = PortsFile(session, arguments);
    if (!ReadPorts(session, path, ports)) return kCannotRun;
    Table table({{"Port", "port"}, {"Handler", "handler"}, {"Settings", "settings"}});
    bool good = true;
    for (const std::wstring& name : SectionsOf(ports)) {
        PortLine line = LineOf(ports, name);
        if (!line.complete) {
            session.Problem(PathToBytes(path), "Port " + ToUtf8(name) + " can't be used: " + line.settings.reason,
                            "\"orvcfg port show\" shows its keys.");
            good = false;
        }
        table.Add({Cell::Of(name), std::move(line.handler), std::move(line.settings)});
    }
    Document::Print(session, table);
    return good ? kAllGood : kSomeFailed;
}

void Describe(Document& document, const InterfaceDef& ports, const std::wstring& name) {
    Facts& facts = document.AddFacts("Port", "port");
    PortLine line = LineOf(ports, name);
    facts.Add("Name", "name", Cell::Of(name));
    facts.Add("Handler", "handler", std::move(line.handler));
    facts.Add("Settings", "settings", std::move(line.settings));
    FileSection section;
    section.GetFromFileObject(name, ports);
    Table& table = document.AddTable("Keys", "keys", {{"Key", "key"}, {"Value", "value"}});
    for (const auto& [key, value] : section.Items()) table.Add({Cell::Of(key), Cell::Of(value)});
}

ExitCode Show(Session& session, const PortArguments& arguments) {
    InterfaceDef ports;
    const std::wstring path = PortsFile(session, arguments), name = TextArgument(arguments.port);
    if (!ReadPorts(session, path, ports)) return kCannotRun;
    if (!ports.HasSection(name)) {
        session.Problem(PathToBytes(path), "No port \"" + arguments.port + "\"", DidYouMean(name, SectionsOf(ports)));
        return kSomeFailed;
    }
    Document document;
    Describe(document, ports, name);
    document.Print(session);
    return kAllGood;
}

// ---- new

bool SetKeys(Session& session, InterfaceDef& ports, const std::wstring& name, const std::vector<std::string>& items) {
    for (const std::string& item : items) {
        const std::wstring text = TextArgument(item);
        const std::size_t equals = text.find(L'=');
        if (equals == std::wstring::npos ||
            !ports.SetItem(name, text.substr(0, equals), text.substr(equals + 1), true)) {
            session.Problem({}, "\"" + item + "\" can't be a key of a port",
                            "Write KEY=VALUE, for instance Baudrate=9600.");
            return false;
        }
    }
    return true;
}

ExitCode New(Session& session, const PortArguments& arguments) {
    const std::wstring path = PortsFile(session, arguments), handler = TextArgument(arguments.handler);
    InterfaceDef ports;
    if (FileExists(path) && !ReadPorts(session, path, ports)) return kCannotRun;
    const auto form = GetIoHandlerSettingsList().CreateNew(handler, nullptr);
    if (!form) {
        std::string remedy = DidYouMean(handler, Handlers());
        session.Problem({}, "No port is made for handler \"" + arguments.handler + "\"",
                        remedy.empty() ? "See \"orvcfg port new --help\"." : remedy);
        return kSomeFailed;
    }
    std::wstring name;
    PortRefusal refusal;
    if (!form->Add(ports, handler, TextArgument(arguments.port), name, refusal)) {
        session.Problem({}, refusal.text.empty() ? "A serial port needs a number" : ToUtf8(refusal.text),
                        "\"orvcfg port list\" shows the ports that are there.");
        return kSomeFailed;
    }
    if (!SetKeys(session, ports, name, arguments.items)) return kSomeFailed;
    if (!ports.FileSave(path, kSave)) {
        session.Problem(PathToBytes(path), "Can't be written: " + ToUtf8(FsResultText(ports.LastResult())),
                        "Check the rights to the file and the space on its disk.");
        return kSomeFailed;
    }
    session.Detail("saved " + PathToBytes(path));
    Document document;
    Describe(document, ports, name);
    document.Print(session);
    return kAllGood;
}

std::string HandlerHelp() {
    std::string text = "  orvcfg port new 3 --handler Serial --set Baudrate=9600\n\nHandlers:\n ";
    std::size_t width = 0;
    for (const std::wstring& handler : Handlers()) {
        const std::string name = " \"" + ToUtf8(handler) + "\"";
        if (width + name.size() > 76) {
            text += "\n ";
            width = 0;
        }
        text += name;
        width += name.size();
    }
    return text;
}

}  // namespace

void AddPort(CLI::App& app, Session& session) {
    RegisterPortEditors();
    CLI::App* port = AddGroup(app, "port", "Show and add the ports that devices talk through");
    const auto file = [](CLI::App* command, const std::shared_ptr<PortArguments>& arguments) {
        command
            ->add_option("--file", arguments->file,
                         "Interface definition. Default: InterfaceDefinition.ini in the system folder")
            ->type_name("FILE");
    };
    auto listed = std::make_shared<PortArguments>();
    CLI::App* list = AddCommand(*port, "list", "List the ports with their settings", "  orvcfg port list");
    file(list, listed);
    OnRun(list, session, listed, List);

    auto shown = std::make_shared<PortArguments>();
    CLI::App* show = AddCommand(*port, "show", "Show all keys of a port", "  orvcfg port show COM3");
    show->add_option("PORT", shown->port, "Name of the port")->required();
    file(show, shown);
    OnRun(show, session, shown, Show);

    auto added = std::make_shared<PortArguments>();
    CLI::App* add = AddCommand(*port, "new", "Add a port with the defaults of its handler", HandlerHelp());
    add->add_option("PORT", added->port, "Number of a serial port, name of any other")->required();
    add->add_option("--handler", added->handler, "Who talks through it")->type_name("NAME")->capture_default_str();
    add->add_option("--set", added->items, "A key in place of its default, or beside them; may be repeated")
        ->allow_extra_args(false)
        ->type_name("KEY=VALUE");
    file(add, added);
    OnRun(add, session, added, New);
}

}  // namespace orv::cfg
