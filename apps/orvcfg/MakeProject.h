#pragma once

#include <string>

#include "GeoidChoice.h"

namespace orv::cfg {

class Session;

/// What a new project is to hold. Empty texts keep what a default file has.
struct NewProject {
    std::wstring name;
    std::wstring title, number, task, client, contractor, remarks;
    std::wstring group, system;
    GeoidChoice geoid;  ///< an empty key leaves the choice to the coordinate system
};

/// Makes the project in the open installation and opens it as a host does. False after a problem has been told;
/// what was made of it is gone then.
bool MakeProject(Session& session, const NewProject& wanted);

}  // namespace orv::cfg
