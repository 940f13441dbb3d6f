#include "CommandTree.h"

namespace orv::cfg {

namespace {

void Walk(const CLI::App& command, const std::string& name,
          const std::function<void(const CLI::App&, const std::string&)>& visit) {
    visit(command, name);
    for (const CLI::App* below : ListedCommands(command)) Walk(*below, name + " " + below->get_name(), visit);
}

std::vector<const CLI::Option*> Listed(const CLI::App& command, bool positional) {
    return command.get_options([positional](const CLI::Option* option) {
        return !option->get_group().empty() && option->get_positional() == positional;
    });
}

}  // namespace

void WalkCommands(const CLI::App& program, const std::function<void(const CLI::App&, const std::string&)>& visit) {
    Walk(program, program.get_name(), visit);
}

std::vector<const CLI::App*> ListedCommands(const CLI::App& command) {
    return command.get_subcommands([](const CLI::App* below) { return !below->get_group().empty(); });
}

std::vector<const CLI::Option*> ListedArguments(const CLI::App& command) {
    return Listed(command, true);
}

std::vector<const CLI::Option*> ListedOptions(const CLI::App& command) {
    return Listed(command, false);
}

bool TakesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

bool TakesMany(const CLI::Option& option) {
    return option.get_expected_max() > 1;
}

std::string ValueName(const CLI::Option& option) {
    if (!TakesValue(option)) return {};
    std::string type = option.get_type_name();
    if (const std::size_t choice = type.find('{'); choice != std::string::npos) return type.substr(choice);
    // An argument is named by itself where it has no better word than its kind of value.
    if (option.get_positional() && type == "TEXT") return option.get_name(true);
    return type;
}

}  // namespace orv::cfg
