#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/DataSearch.h"
#include "core/ProtectedFileObject.h"
#include "project/ProjectDefinition.h"

namespace orv::cfg {

class Session;

/// The system folder by the options, else ./system if it holds ORV.ini, else the installation's own. Ends in a
/// separator.
std::wstring SystemFolder(const Session& session);
/// Where the shipped templates lie; empty after a problem has been told.
std::wstring DataRoot(Session& session);

/// Why something doesn't work, as `Session::Problem` tells it: where, what, and what to do about it.
struct Trouble {
    std::string where, what, remedy;
};

/// Does what a host does at its start: registers the geoid models and initialises the data search. False after a
/// problem has been told.
bool OpenInstallation(Session& session);
/// False after it has been told that the system folder has no settings.
bool HasInstallation(Session& session);
/// `OpenInstallation` for who tells himself what came of it. `withoutAppDef` opens what a broken application definition
/// would keep closed.
std::optional<Trouble> TryInstallation(Session& session, bool withoutAppDef = false);

/// Where the data search finds an application definition, or would.
std::wstring AppDefFile(const std::wstring& name);

/// True for a location that lies in the project's folder, or is it. Without a project the data search completes such a
/// path all the same, to a folder that is nobody's.
bool LiesInProject(int location);

/// Opens a project of the open installation as a host does: `name`, else that of the options, else the current one of
/// the settings. False after a problem has been told.
bool OpenProject(Session& session, std::wstring name = {});
/// The same for who tells himself what came of it; the project is there.
std::optional<Trouble> TryProject(Session& session, const std::wstring& name);
/// The project that `OpenProject` would take; empty if there is none.
std::wstring ChosenProject(const Session& session, std::wstring name = {});
/// Full name of a project's file: by its name, or with the name as the current one of the settings when empty.
std::wstring ProjectFile(const std::wstring& name);
/// True if the projects folder holds that project; else a problem has been told, with the names that are near.
bool HasProject(Session& session, const std::wstring& name);

/// How a file stands against its signature, without touching it. None if it can't be read.
enum class FileState { Valid, ContentChanged, TitleChanged, Unsigned, Enciphered };
std::string_view FileStateText(FileState state);
FileState StateOf(const ProtectedFileObject& file);

/// A file read as it is: not verified, so never signed again on the way.
bool ReadAsItIs(const std::wstring& path, ProtectedFileObject& file);

/// Removes a folder with all in it; false when something had to stay.
bool RemoveTree(const std::wstring& folder);

/// `path` against the working folder, without "." and "..", which no file of settings should hold.
std::wstring AbsolutePath(std::wstring_view path);
/// An argument as a path, and as any other text.
std::wstring PathArgument(std::string_view argument);
std::wstring TextArgument(std::string_view argument);

}  // namespace orv::cfg
