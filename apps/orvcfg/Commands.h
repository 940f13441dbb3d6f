#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "Session.h"

namespace orv::cfg {

// Each adds its subcommand, whose arguments live in the subcommand itself, and leaves in the session what to do.

void AddInit(CLI::App& app, Session& session);
void AddProject(CLI::App& app, Session& session);
void AddProjectCreate(CLI::App& project, Session& session);
void AddProjectSystems(CLI::App& project, Session& session);
void AddPaths(CLI::App& app, Session& session);
void AddTypes(CLI::App& app, Session& session);
void AddFiles(CLI::App& app, Session& session);
void AddConfig(CLI::App& app, Session& session);
void AddConfigCheck(CLI::App& config, Session& session);
void AddGeoid(CLI::App& app, Session& session);
void AddGeoidEval(CLI::App& geoid, Session& session);
void AddDatadef(CLI::App& app, Session& session);
void AddPort(CLI::App& app, Session& session);
void AddApp(CLI::App& app, Session& session);
void AddDeps(CLI::App& app, Session& session);
void AddVessel(CLI::App& app, Session& session);
void AddVesselCheck(CLI::App& vessel, Session& session);
void AddVesselExchange(CLI::App& vessel, Session& session);
void AddShape(CLI::App& app, Session& session);
void AddDemo(CLI::App& app, Session& session);

/// A subcommand whose global options may stand behind its own; `example` ends its help.
CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& what, const std::string& example);
/// The same for a group of subcommands, of which one must be named.
CLI::App* AddGroup(CLI::App& parent, const std::string& name, const std::string& what);

/// Has `run` called with the arguments once all of them are known to be good.
template <class Arguments>
void OnRun(CLI::App* command, Session& session, std::shared_ptr<Arguments> arguments,
           ExitCode (*run)(Session&, const Arguments&)) {
    command->callback([&session, arguments, run] {
        session.operation = [&session, arguments, run] { return run(session, *arguments); };
    });
}

}  // namespace orv::cfg
