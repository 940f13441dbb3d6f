#include <algorithm>
#include <sstream>

#include "CommandTree.h"
#include "Commands.h"
#include "Installation.h"
#include "platform/os/FileTools.h"
#include "platform/text/PathText.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string folder;
    const CLI::App* program = nullptr;
};

/// Text as the formatter must read it: nothing in it is a request, and everything beyond ASCII is named.
std::string Roff(std::string_view text) {
    std::string result;
    for (const wchar_t c : FromUtf8(text)) {
        if (c == L'\\') {
            result += "\\e";
        } else if (c == L'-') {
            result += "\\-";  // so that options can be copied
        } else if (c == L'\'') {
            result += "\\(aq";
        } else if (c == L'^' || c == L'~') {
            result += c == L'^' ? "\\(ha" : "\\(ti";
        } else if (c < 0x80) {
            result += static_cast<char>(c);
        } else {
            std::ostringstream name;
            name << std::hex << std::uppercase << static_cast<unsigned long>(c);
            result += "\\[u" + std::string(4 - std::min<std::size_t>(4, name.str().size()), '0') + name.str() + "]";
        }
    }
    if (result.starts_with('.')) result.insert(0, "\\&");
    return result;
}

std::string Dashed(std::string name) {
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

/// Paragraphs of a help text below a heading: lines that are indented stay as they are, all others are filled.
std::string Paragraphs(const std::vector<std::string>& lines) {
    std::string result;
    bool literal = false, begins = false;
    for (const std::string& line : lines) {
        const bool indented = line.starts_with("  ");
        if (indented && !literal) result += ".RS 4\n.EX\n";
        if (!indented && literal) result += ".EE\n.RE\n";
        if (!indented && (literal || begins) && !line.empty()) result += ".PP\n";
        begins = line.empty();
        literal = indented;
        if (!line.empty()) result += Roff(indented ? line.substr(2) : line) + "\n";
    }
    return result + (literal ? ".EE\n.RE\n" : "");
}

/// The end of a help: its example, and what is told behind it.
std::string Closing(const CLI::App& command) {
    std::istringstream footer(command.get_footer());
    std::vector<std::string> example, notes;
    bool begun = false;
    for (std::string line; std::getline(footer, line);) {
        if (!begun && line.starts_with("Example: ")) {
            example.push_back("  " + line.substr(9));
        } else if (line == "Example:") {
            begun = true;
        } else if (begun && notes.empty() && (line.empty() || line.starts_with("  "))) {
            example.push_back(line);
        } else if (begun) {
            notes.push_back(line);
        }
    }
    while (!example.empty() && example.back().empty()) example.pop_back();
    return (example.empty() ? "" : ".SH EXAMPLE\n" + Paragraphs(example)) +
           (notes.empty() ? "" : ".SH NOTES\n" + Paragraphs(notes));
}

std::string Entry(const CLI::Option& option) {
    std::string names, value = ValueName(option);
    if (option.get_positional()) {
        names = "\\fI" + Roff(option.get_name(true)) + "\\fR";
        value.clear();
    }
    for (const std::string& name : option.get_snames())
        names += (names.empty() ? "\\fB" : ", \\fB") + Roff("-" + name) + "\\fR";
    for (const std::string& name : option.get_lnames())
        names += (names.empty() ? "\\fB" : ", \\fB") + Roff("--" + name) + "\\fR";
    if (!value.empty()) names += " \\fI" + Roff(value) + "\\fR";
    std::string what = Roff(option.get_description());
    if (const std::string preset = option.get_default_str(); !preset.empty()) what += ". Default: " + Roff(preset);
    return ".TP\n" + names + "\n" + what + "\n";
}

std::string Entries(const char* title, const std::vector<const CLI::Option*>& options) {
    std::string result;
    for (const CLI::Option* option : options) result += Entry(*option);
    return result.empty() ? result : ".SH " + std::string(title) + "\n" + result;
}

std::string Usage(const CLI::App& command, const std::string& name) {
    std::string usage = CLI::Formatter().make_usage(&command, name);
    usage.erase(0, usage.find(name) + name.size());
    usage.erase(usage.find_last_not_of(" \n") + 1);
    return ".B " + Roff(name) + "\n" + Roff(usage.substr(std::min(usage.size(), usage.find_first_not_of(' ')))) + "\n";
}

std::string Page(const CLI::App& command, const std::string& name) {
    const bool program = !command.get_parent();
    std::string title = Dashed(name), page;
    std::transform(title.begin(), title.end(), title.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    page = ".TH \"" + Roff(title) + "\" 1 \"\" \"orvcfg " ORVCFG_VERSION "\" \"Survey suite\"\n.SH NAME\n" +
           Roff(Dashed(name)) + " \\- " +
           Roff(program ? "looks after installations and projects of the survey suite" : command.get_description()) +
           "\n.SH SYNOPSIS\n" + Usage(command, name);
    page += ".SH DESCRIPTION\n" + Roff(command.get_description()) + (program ? "\n" : ".\n");
    page += Entries("ARGUMENTS", ListedArguments(command)) + Entries("OPTIONS", ListedOptions(command));
    if (!program) {
        page += ".PP\nThe options that every subcommand takes are those of\n.BR orvcfg (1).\n";
    }
    std::string seeAlso = program ? "" : ".BR orvcfg (1)";
    if (const auto below = ListedCommands(command); !below.empty()) {
        page += ".SH SUBCOMMANDS\n";
        for (const CLI::App* one : below) {
            page += ".TP\n.BR " + Roff(Dashed(name + " " + one->get_name())) + " (1)\n" + Roff(one->get_description()) +
                    "\n";
        }
    } else if (command.get_parent()->get_parent()) {
        seeAlso += ",\n.BR " + Roff(Dashed(name.substr(0, name.rfind(' ')))) + " (1)";
    }
    page +=
        ".SH EXIT STATUS\n.TP\n0\nAll good.\n.TP\n1\nSome input failed; the rest was dealt with.\n.TP\n2\n"
        "Wrong usage, nothing to work on, or results that could not be written.\n";
    if (program || ListedCommands(command).empty()) page += Closing(command);  // a group shows that of the program
    return seeAlso.empty() ? page : page + ".SH SEE ALSO\n" + seeAlso + "\n";
}

ExitCode Man(Session& session, const Arguments& arguments) {
    const std::wstring folder = WithSeparator(AbsolutePath(PathArgument(arguments.folder)));
    FsResult result = MakeFolders(folder);
    std::wstring path = folder;
    WalkCommands(*arguments.program, [&](const CLI::App& command, const std::string& name) {
        if (result != FsResult::Ok) return;
        path = folder + FromUtf8(Dashed(name)) + L".1";
        result = SaveWholeFile(path, Page(command, name));
    });
    if (result == FsResult::Ok) return kAllGood;
    session.Problem(PathToBytes(path), "Can't be written: " + ToUtf8(FsResultText(result)),
                    "Check the rights to the folder and the space on its disk.");
    return kCannotRun;
}

}  // namespace

void AddMan(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    arguments->program = &app;
    CLI::App* command = AddCommand(app, "man", "Write the manual pages, one a subcommand, into a folder",
                                   "  orvcfg man pages && man -l pages/orvcfg-geoid-eval.1");
    command->add_option("DIR", arguments->folder, "Folder of the pages; made if it isn't there")
        ->required()
        ->type_name("DIR");
    OnRun(command, session, arguments, Man);
}

}  // namespace orv::cfg
