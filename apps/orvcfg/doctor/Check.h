#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "../Installation.h"

namespace orv::cfg {

struct Check;
class Session;

/// One thing that was found. What it is worth and why it matters stands in the row of its check.
struct Finding {
    const Check* check;
    std::string where, what, remedy;
};

/// What checks look at, and where they put what they find. Paths are of this installation; nothing on disk may change
/// while it lives.
class Examination {
public:
    /// Opens the installation, and the project unless its name is empty, as far as they can be opened.
    Examination(Session& run, const std::wstring& projectName);

    Session& session;
    const std::wstring projectName;           ///< empty when the installation alone is looked at
    std::wstring projectFile, projectFolder;  ///< the folder ends in a separator
    std::optional<Trouble> installationTrouble, projectTrouble;

    ProjectDefinition& Project() const { return DataSearch::GetDataSearch().GetProjectDefinition(); }
    /// Full names of the files of a type that are there.
    std::vector<std::wstring> FilesOf(unsigned fileType) const;

    void Tell(std::string where, std::string what, std::string remedy);
    void Tell(const Trouble& trouble) { Tell(trouble.where, trouble.what, trouble.remedy); }
    bool WasTold(const std::string& where) const;

    void Run(const Check& check);
    const std::vector<Finding>& Findings() const { return findings; }

private:
    const Check* current = nullptr;
    std::vector<Finding> findings;
};

enum class Severity { Error, Warning };
enum class Needs { Settings, Installation, Project };  ///< what has to be open, or at least there

/// A row a check. `why` is what its findings do to a survey, for a surveyor.
struct Check {
    std::string_view name;
    Severity severity;
    Needs needs;
    std::string_view why;
    void (*look)(Examination& examination);
};

// The checks by what they look at; a source each.

// Signatures.cpp
void LookAtSignatures(Examination& examination);
// Opening.cpp
void LookAtInstallation(Examination& examination);
void LookAtProject(Examination& examination);
void LookAtNeededFiles(Examination& examination);
// Heights.cpp
void LookAtGeoid(Examination& examination);
void LookAtGrids(Examination& examination);
// Vessels.cpp
void LookAtPorts(Examination& examination);
void LookAtReferences(Examination& examination);
void LookAtNumbers(Examination& examination);
// Permissions.cpp
void LookAtPermissions(Examination& examination);
void LookAtRights(Examination& examination);
void LookAtAccounts(Examination& examination);
// Housekeeping.cpp
void LookAtDiskSpace(Examination& examination);
void LookAtHistory(Examination& examination);
// SurveyData.cpp
void LookAtLogs(Examination& examination);
void LookAtFileSets(Examination& examination);
void LookAtTide(Examination& examination);
void LookAtTideOfLogs(Examination& examination);
void LookAtProfiles(Examination& examination);
// Folders.cpp
void LookAtFolders(Examination& examination);
void LookAtClock(Examination& examination);

/// In order of harm.
std::span<const Check> Checks();

}  // namespace orv::cfg
