#pragma once

#include <string>
#include <vector>

#include "Check.h"

namespace orv::cfg {

struct Diagnosis {
    std::vector<Finding> findings;  ///< in order of harm
    std::size_t errors = 0, warnings = 0;
    std::optional<Trouble> projectTrouble;  ///< why the project doesn't open
    bool projectOpen = false;
    std::vector<std::wstring> vessels, stations, profiles;  ///< files of the project
    std::size_t looked = 0, skipped = 0;  ///< checks; those are skipped whose installation or project doesn't open
};

/// Runs all checks over the installation, and over the project unless its name is empty, and leaves both open as far
/// as they open. A `LookOnly` must be in force. What the library says meanwhile is a finding, or none.
Diagnosis Diagnose(Session& session, const std::wstring& projectName);

}  // namespace orv::cfg
