#pragma once

#include <string>
#include <vector>

namespace orv::cfg {

class Session;

/// Where a new installation goes. Folders end in a separator.
struct InstallationPlan {
    std::wstring root;
    std::wstring projects, common;  ///< as the settings are to name them; empty for the usual ones below the root
};

/// What was looked at on the way: made, or there before and left as it was.
struct MadeThing {
    std::wstring path;
    std::string what;
    bool made;
};

/// Makes whatever an installation lacks out of the shipped templates, and leaves it open. A file that is there is never
/// touched. False after a problem has been told.
bool MakeInstallation(Session& session, const InstallationPlan& plan, std::vector<MadeThing>& things);

/// System folder of the installation at `root`.
std::wstring SystemFolderOf(const std::wstring& root);

}  // namespace orv::cfg
