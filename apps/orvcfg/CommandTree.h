#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace orv::cfg {

// The tree of subcommands as manual pages and shells need it: read from what the help is made of, so that neither can
// differ from it.

/// Calls `visit` with the program, every group and every subcommand, each before what is below it; `name` is what a
/// user types, for instance "orvcfg geoid eval".
void WalkCommands(const CLI::App& program,
                  const std::function<void(const CLI::App& command, const std::string& name)>& visit);

/// Subcommands that the help lists, in its order.
std::vector<const CLI::App*> ListedCommands(const CLI::App& command);
/// Arguments and options that the help lists, in its order.
std::vector<const CLI::Option*> ListedArguments(const CLI::App& command);
std::vector<const CLI::Option*> ListedOptions(const CLI::App& command);

bool TakesValue(const CLI::Option& option);
bool TakesMany(const CLI::Option& option);

/// What stands for the value of an option or argument in the help: "FILE", "N", or "{device,composite}" for a choice.
std::string ValueName(const CLI::Option& option);

}  // namespace orv::cfg
