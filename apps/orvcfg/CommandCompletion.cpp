#include <algorithm>
#include <array>
#include <string_view>

#include "CommandTree.h"
#include "Commands.h"

namespace orv::cfg {

namespace {

struct Arguments {
    std::string shell;
    const CLI::App* program = nullptr;
};

/// Arguments that are files, by path or by their name in the project: a path is what a shell can help with.
constexpr std::array<std::string_view, 8> kFileNames = {"FILE", "VESSEL",        "STATION", "LOG",
                                                        "SET",  "CONFIGURATION", "RUNLINE", "SVP"};

/// What the shell offers for a value: "file", "dir", "=one,of,these", or "-" for nothing.
std::string Offer(const CLI::Option& option) {
    const std::string value = ValueName(option);
    if (value.starts_with('{')) return "=" + value.substr(1, value.find('}') - 1);
    if (value == "DIR") return "dir";
    return std::find(kFileNames.begin(), kFileNames.end(), value) == kFileNames.end() ? "-" : "file";
}

std::vector<std::string> Spellings(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option.get_snames()) names.push_back("-" + name);
    return names;
}

std::string Row(const std::string& key, const std::vector<std::string>& words) {
    return "        ['" + key + "']='" + CLI::detail::join(words, " ") + "'\n";
}

constexpr std::string_view kScript = R"(    local path=orvcfg option= count=0 offer word i
    local cur=${COMP_WORDS[COMP_CWORD]}
    # Readline cuts --option=value in three.
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $option ]]; then
            [[ $word == = ]] || option=
        elif [[ $word == -* ]]; then
            option=${values["$path $word"]:-${values["orvcfg $word"]:-}}
        elif [[ " ${commands[$path]:-} " == *" $word "* ]]; then
            path="$path $word"
        else
            ((++count))
        fi
    done
    [[ $cur == = ]] && cur=
    COMPREPLY=()
    if [[ $option ]]; then
        offer=$option
    elif [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "${options[$path]} ${options[orvcfg]}" -- "$cur"))
        return
    elif [[ ${commands[$path]:-} ]]; then
        COMPREPLY=($(compgen -W "${commands[$path]}" -- "$cur"))
        return
    else
        local -a offers=(${arguments[$path]:--})
        # The last one is what further arguments are, too, if it takes many.
        ((count >= ${#offers[@]})) && [[ ${offers[-1]} == *+ ]] && count=$((${#offers[@]} - 1))
        offer=${offers[count]:-}
        offer=${offer%+}
    fi
    case $offer in
        file) compopt -o default ;;
        dir) compopt -o dirnames ;;
        =*) COMPREPLY=($(compgen -W "${offer//[=,]/ }" -- "$cur")) ;;
    esac
}
complete -F _orvcfg orvcfg
)";

std::string BashScript(const CLI::App& program) {
    std::string commands, options, values, arguments;
    WalkCommands(program, [&](const CLI::App& command, const std::string& name) {
        std::vector<std::string> words;
        for (const CLI::App* below : ListedCommands(command)) words.push_back(below->get_name());
        if (!words.empty()) commands += Row(name, words);
        words.clear();
        for (const CLI::Option* option : ListedOptions(command)) {
            const std::vector<std::string> spellings = Spellings(*option);
            words.insert(words.end(), spellings.begin(), spellings.end());
            if (!TakesValue(*option)) continue;
            for (const std::string& spelling : spellings) values += Row(name + " " + spelling, {Offer(*option)});
        }
        options += Row(name, words);
        words.clear();
        for (const CLI::Option* argument : ListedArguments(command)) {
            words.push_back(Offer(*argument) + (TakesMany(*argument) ? "+" : ""));
        }
        if (!words.empty()) arguments += Row(name, words);
    });
    return "# Completion of orvcfg for bash, made by \"orvcfg completion bash\".\n_orvcfg() {\n    local -A "
           "commands=(\n" +
           commands + "    )\n    local -A options=(\n" + options + "    )\n    local -A values=(\n" + values +
           "    )\n    local -A arguments=(\n" + arguments + "    )\n" + std::string(kScript);
}

ExitCode Completion(Session& session, const Arguments& arguments) {
    session.out.Put(BashScript(*arguments.program));
    return kAllGood;
}

}  // namespace

void AddCompletion(CLI::App& app, Session& session) {
    auto arguments = std::make_shared<Arguments>();
    arguments->program = &app;
    CLI::App* command = AddCommand(app, "completion", "Write what a shell needs to complete arguments of orvcfg",
                                   "  source <(orvcfg completion bash)");
    command->add_option("SHELL", arguments->shell, "Shell")->required()->check(CLI::IsMember({"bash"}));
    OnRun(command, session, arguments, Completion);
}

}  // namespace orv::cfg
