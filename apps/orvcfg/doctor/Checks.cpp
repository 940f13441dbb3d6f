#include "Check.h"

namespace orv::cfg {

namespace {

using enum Severity;

constexpr Check kChecks[] = {
    {"signature", Error, Needs::Settings,
     "Settings, permissions or the coordinate system may not be those that were released; whoever opens the file next "
     "signs it again, and the change is hidden for good.",
     LookAtSignatures},
    {"installation", Error, Needs::Settings, "No application of the suite starts, or it starts with everything locked.",
     LookAtInstallation},
    {"project", Error, Needs::Project, "No application can work in this project.", LookAtProject},
    {"needed-file", Error, Needs::Project, "What needs the file runs without it: a vessel without alarms, say.",
     LookAtNeededFiles},
    {"geoid", Error, Needs::Project, "Heights can't be reduced to the vertical datum of the project.", LookAtGeoid},
    {"grid", Warning, Needs::Project, "Heights can't be reduced everywhere, or not as the publisher meant.",
     LookAtGrids},
    {"port", Error, Needs::Project, "The data of the device don't come in.", LookAtPorts},
    {"reference", Error, Needs::Project, "Computations and corrections go without the value, or take a wrong one.",
     LookAtReferences},
    {"numbering", Warning, Needs::Project, "What stands behind a gap may not be found.", LookAtNumbers},
    {"permission", Warning, Needs::Project, "The applications leave out what isn't permitted.", LookAtPermissions},
    {"rights", Error, Needs::Installation, "Everybody may use everything.", LookAtRights},
    {"account", Error, Needs::Installation, "Somebody can't log in, or has the rights of somebody else.",
     LookAtAccounts},
    {"disk-space", Error, Needs::Project, "Logged data go that nobody meant to lose, or the disk fills up.",
     LookAtDiskSpace},
    {"history", Warning, Needs::Project, "A configuration that is changed by mistake can't be had back.",
     LookAtHistory},
    {"folder", Error, Needs::Installation, "Applications can't save there, or lose what they log.", LookAtFolders},
    {"clock", Error, Needs::Installation,
     "Logs get wrong times, tide is taken of another hour, and housekeeping takes new files for old ones.",
     LookAtClock},
    {"log", Error, Needs::Project, "The log can't be replayed or processed.", LookAtLogs},
    {"file-set", Error, Needs::Project, "Part of the survey is missing from what is processed.", LookAtFileSets},
    {"tide", Warning, Needs::Project, "Soundings of that time can't be reduced by this station.", LookAtTide},
    {"tide-of-log", Warning, Needs::Project, "The soundings of the log can't be reduced by tide.", LookAtTideOfLogs},
    {"profile", Warning, Needs::Project, "Depths are computed with a wrong sound velocity.", LookAtProfiles},
};

}  // namespace

std::span<const Check> Checks() {
    return kChecks;
}

}  // namespace orv::cfg
