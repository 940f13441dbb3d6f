#include "Commands.h"
#include "ConfigFiles.h"
#include "Document.h"
#include "Installation.h"
#include "Suggest.h"
#include "core/MergeSave.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct GetArguments {
    std::string file, section, key;
};

struct SetArguments {
    std::string file, section, key, value;
    bool add = false, accept = false;
};

struct ListArguments {
    std::string file;
};

struct SignArguments {
    std::vector<std::string> files;
};

// ---- get and list

bool HasSection(Session& session, const FileObject& file, const std::wstring& section) {
    if (file.HasSection(section)) return true;
    session.Problem(PathToBytes(file.GetFileName()), "No section [" + ToUtf8(section) + "]",
                    DidYouMean(section, SectionsOf(file)));
    return false;
}

bool HasKey(Session& session, const FileObject& file, const std::wstring& section, const std::wstring& key) {
    if (file.HasKey(section, key)) return true;
    session.Problem(PathToBytes(file.GetFileName()), "No key " + ToUtf8(key) + " in [" + ToUtf8(section) + "]",
                    DidYouMean(key, KeysOf(file, section)));
    return false;
}

ExitCode Get(Session& session, const GetArguments& arguments) {
    ProtectedFileObject file;
    const std::wstring section = TextArgument(arguments.section), key = TextArgument(arguments.key);
    if (!OpenConfigFile(session, PathArgument(arguments.file), file) || !HasSection(session, file, section)) {
        return kSomeFailed;
    }
    if (key.empty()) {
        Json object = Json::object();
        for (const std::wstring& name : KeysOf(file, section)) {
            std::wstring value;
            file.GetItem(section, name, value);
            object[ToUtf8(name)] = ToUtf8(value);
            if (!session.options.json) session.out.Put(ToUtf8(name) + "=" + ToUtf8(value) + "\n");
        }
        if (session.options.json) PrintJson(session, object);
        return kAllGood;
    }
    if (!HasKey(session, file, section, key)) return kSomeFailed;
    std::wstring value;
    file.GetItem(section, key, value);
    if (session.options.json) {
        PrintJson(session, {{"section", arguments.section}, {"key", arguments.key}, {"value", ToUtf8(value)}});
    } else {
        session.out.Put(ToUtf8(value) + "\n");
    }
    return kAllGood;
}

ExitCode List(Session& session, const ListArguments& arguments) {
    ProtectedFileObject file;
    if (!OpenConfigFile(session, PathArgument(arguments.file), file)) return kSomeFailed;
    Json object = Json::object();
    for (const std::wstring& section : SectionsOf(file)) {
        Json items = Json::object();
        if (!session.options.json) session.out.Put("[" + ToUtf8(section) + "]\n");
        for (const std::wstring& key : KeysOf(file, section)) {
            std::wstring value;
            file.GetItem(section, key, value);
            items[ToUtf8(key)] = ToUtf8(value);
            if (!session.options.json) session.out.Put("  " + ToUtf8(key) + "\n");
        }
        object[ToUtf8(section)] = std::move(items);
    }
    if (session.options.json) PrintJson(session, object);
    return kAllGood;
}

// ---- set

/// True if the file may be written without hiding that somebody else changed it before.
bool MayChange(Session& session, const ProtectedFileObject& file, bool accept) {
    const FileState state = StateOf(file);
    if (state == FileState::Valid || state == FileState::Unsigned || accept) return true;
    session.Problem(PathToBytes(file.GetFileName()),
                    "The file doesn't verify (" + std::string(FileStateText(state)) + "), so it isn't changed",
                    "Look through it; --accept signs it as it stands.");
    return false;
}

ExitCode Set(Session& session, const SetArguments& arguments) {
    ProtectedFileObject file;
    const std::wstring section = TextArgument(arguments.section), key = TextArgument(arguments.key);
    const std::wstring value = TextArgument(arguments.value), path = PathArgument(arguments.file);
    if (!OpenConfigFile(session, path, file) || !MayChange(session, file, arguments.accept)) return kSomeFailed;
    // Plain files stay plain: a signature would only be one more thing to go wrong.
    const bool isSigned = file.HasSection(FileObject::CHECKSUM_SECTION);
    FileObject& plain = file;
    MergeSave merge = isSigned ? MergeSave(file) : MergeSave(plain);
    if (section == FileObject::CHECKSUM_SECTION) {
        session.Problem(PathToBytes(path), "The signature can't be set by hand", "\"orvcfg config sign\" makes it.");
        return kSomeFailed;
    }
    std::wstring before;
    const bool had = file.GetItem(section, key, before);
    if (!arguments.add && !(HasSection(session, file, section) && HasKey(session, file, section, key))) {
        session.Note("--add makes sections and keys that aren't there");
        return kSomeFailed;
    }
    if (!file.SetItem(section, key, value, true)) {
        session.Problem(PathToBytes(path), "[" + arguments.section + "] " + arguments.key + " can't be an item",
                        "Names may not be empty, hold = or line breaks, or start with [ or ;.");
        return kSomeFailed;
    }
    if (!merge.Save(path)) {
        session.Problem(PathToBytes(path), "Can't be written: " + ToUtf8(FsResultText(merge.LastResult())),
                        "Check the rights to the file and the space on its disk.");
        return kSomeFailed;
    }
    std::wstring now;
    file.GetItem(section, key, now);
    Document document;
    Facts& facts = document.AddFacts("Changed", "item");
    facts.Add("Section", "section", Cell::Of(section));
    facts.Add("Key", "key", Cell::Of(key));
    facts.Add("Was", "was", had ? Cell::Of(before) : Cell::Missing("it wasn't there"));
    facts.Add("Is", "is", Cell::Of(now));
    facts.Add("Signature", "signature", Cell::Of(std::string(FileStateText(StateOf(file)))));
    document.Print(session);
    return kAllGood;
}

// ---- sign

bool SignFile(Session& session, const std::wstring& path, Table& table) {
    ProtectedFileObject file;
    if (!OpenConfigFile(session, path, file)) return false;
    const FileState before = StateOf(file);
    if (!file.FileSave(path, 0, kSave)) {
        session.Problem(PathToBytes(path), "Can't be written: " + ToUtf8(FsResultText(file.LastResult())),
                        "Check the rights to the file and the space on its disk.");
        return false;
    }
    table.Add({Cell::Path(path), Cell::Of(std::string(FileStateText(before))),
               Cell::Of(std::string(FileStateText(StateOf(file))))});
    return true;
}

ExitCode Sign(Session& session, const SignArguments& arguments) {
    Table table({{"File", "file"}, {"Was", "was"}, {"Is", "is"}});
    bool good = true;
    for (const std::string& file : arguments.files) good = SignFile(session, PathArgument(file), table) && good;
    Document::Print(session, table);
    return good ? kAllGood : kSomeFailed;
}

}  // namespace

void AddConfig(CLI::App& app, Session& session) {
    CLI::App* group = AddGroup(app, "config", "Read, change, check and sign configuration files");
    auto got = std::make_shared<GetArguments>();
    CLI::App* get = AddCommand(*group, "get", "Print one item, or all of a section",
                               "  orvcfg config get Project.prj Formats DepthDecimals");
    get->add_option("FILE", got->file, "Configuration file")->required();
    get->add_option("SECTION", got->section, "Section")->required();
    get->add_option("KEY", got->key, "Key. Default: all of the section");
    OnRun(get, session, got, Get);

    auto changed = std::make_shared<SetArguments>();
    CLI::App* set = AddCommand(*group, "set", "Change one item; a signed file is signed again",
                               "  orvcfg config set Project.prj Formats DepthDecimals 3");
    set->add_option("FILE", changed->file, "Configuration file")->required();
    set->add_option("SECTION", changed->section, "Section")->required();
    set->add_option("KEY", changed->key, "Key")->required();
    set->add_option("VALUE", changed->value, "Value; \"\" empties the item")->required();
    set->add_flag("--add", changed->add, "Make section and key if they aren't there");
    set->add_flag("--accept", changed->accept, "Also a file that doesn't verify; it is signed as it stands");
    OnRun(set, session, changed, Set);

    auto listed = std::make_shared<ListArguments>();
    CLI::App* list = AddCommand(*group, "list", "List sections and keys", "  orvcfg config list ORV.ini --json");
    list->add_option("FILE", listed->file, "Configuration file")->required();
    OnRun(list, session, listed, List);

    AddConfigCheck(*group, session);

    auto toSign = std::make_shared<SignArguments>();
    CLI::App* sign = AddCommand(*group, "sign", "Sign files as they stand", "  orvcfg config sign Project.prj");
    sign->add_option("FILE", toSign->files, "Configuration files")->required();
    OnRun(sign, session, toSign, Sign);
}

}  // namespace orv::cfg
