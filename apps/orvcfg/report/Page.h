#pragma once

#include <string>

#include "../doctor/Doctor.h"

namespace orv::cfg {

class Session;

/// The page of a project that `Diagnose` has opened, in HTML. A `LookOnly` is in force.
std::string ProjectPage(Session& session, const std::wstring& project, const Diagnosis& diagnosis);

}  // namespace orv::cfg
