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
void AddProjectUpgrade(CLI::App& project, Session& session);
void AddPaths(CLI::App& app, Session& session);
void AddTypes(CLI::App& app, Session& session);
void AddFiles(CLI::App& app, Session& session);
void AddConfig(CLI::App& app, Session& session);
void AddConfigCheck(CLI::App& config, Session& session);
void AddGeoid(CLI::App& app, Session& session);
void AddGeoidFiles(CLI::App& geoid, Session& session);
void AddGeoidCheck(CLI::App& geoid, Session& session);
void AddGeoidEval(CLI::App& geoid, Session& session);
void AddDatadef(CLI::App& app, Session& session);
void AddPort(CLI::App& app, Session& session);
void AddApp(CLI::App& app, Session& session);
void AddDeps(CLI::App& app, Session& session);
void AddGeoidShift(CLI::App& geoid, Session& session);
void AddGeoidVerify(CLI::App& geoid, Session& session);
void AddGeoidMap(CLI::App& geoid, Session& session);
void AddSvp(CLI::App& app, Session& session);
void AddSvpCheck(CLI::App& svp, Session& session);
void AddTide(CLI::App& app, Session& session);
void AddTideEval(CLI::App& tide, Session& session);
void AddTideImport(CLI::App& tide, Session& session);
void AddTideExport(CLI::App& tide, Session& session);
void AddLog(CLI::App& app, Session& session);
void AddLogHeader(CLI::App& log, Session& session);
void AddFileset(CLI::App& app, Session& session);
void AddMessages(CLI::App& app, Session& session);
void AddHistory(CLI::App& app, Session& session);
void AddClean(CLI::App& app, Session& session);
void AddUsers(CLI::App& app, Session& session);
void AddRights(CLI::App& app, Session& session);
void AddLanguage(CLI::App& app, Session& session);
void AddFormat(CLI::App& app, Session& session);
void AddVessel(CLI::App& app, Session& session);
void AddVesselCheck(CLI::App& vessel, Session& session);
void AddVesselExchange(CLI::App& vessel, Session& session);
void AddShape(CLI::App& app, Session& session);
void AddDoctor(CLI::App& app, Session& session);
void AddReport(CLI::App& app, Session& session);
void AddDemo(CLI::App& app, Session& session);
void AddCompletion(CLI::App& app, Session& session);
void AddMan(CLI::App& app, Session& session);

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
